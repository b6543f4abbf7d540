#include "decision/networks/junction_tree.hpp"

#include <algorithm>
#include <cmath>

#include "decision/networks/elimination.hpp"
#include "decision/networks/triangulation.hpp"

namespace numcore::networks {
namespace {

std::vector<double> weightsOf(const Lists& lists, std::span<const Number> sizes) {
    std::vector<double> weights(lists.count());
    for (std::size_t i = 0; i < lists.count(); ++i) weights[i] = weightOf(lists[i], sizes);
    return weights;
}

void separate(JunctionTree& tree, std::span<const Number> sizes) {
    for (const Join& join : tree.joins)
        tree.separators.append(sharedMembers(tree.cliques[join.from], tree.cliques[join.to]));
    tree.separatorCells = weightsOf(tree.separators, sizes);
}

void noteJoinsAbove(JunctionTree& tree) {
    tree.joinAbove.assign(tree.cliques.count(), -1);
    for (std::size_t j = 0; j < tree.joins.size(); ++j) {
        const auto [from, to] = tree.joins[j];
        const bool fromIsAbove = tree.rooted.parents[static_cast<std::size_t>(to)] == from;
        tree.joinAbove[static_cast<std::size_t>(fromIsAbove ? to : from)] = static_cast<Number>(j);
    }
}

void assignNodes(JunctionTree& tree, const Network& network, const Lists& holding) {
    std::vector<Number> family;
    tree.familyCliques.reserve(network.n());
    tree.lightestCliques.reserve(network.n());
    for (std::size_t node = 0; node < network.n(); ++node) {
        const auto parents = network.parents[node];
        family.assign(parents.begin(), parents.end());
        family.push_back(static_cast<Number>(node));
        tree.familyCliques.push_back(firstCliqueWith(family, tree.cliques, holding));
        tree.lightestCliques.push_back(*std::ranges::min_element(
            holding[node], {}, [&](Number c) { return tree.cliqueCells[static_cast<std::size_t>(c)]; }));
    }
}

}  // namespace

Number firstCliqueWith(std::span<const Number> nodes, const Lists& cliques, const Lists& holding) {
    if (nodes.empty()) return -1;
    const Number rarest =
        *std::ranges::min_element(nodes, {}, [&](Number node) { return holding[node].size(); });
    for (const Number clique : holding[rarest]) {
        const auto members = cliques[clique];
        if (std::ranges::all_of(nodes, [&](Number node) { return std::ranges::binary_search(members, node); }))
            return clique;
    }
    return -1;
}

JunctionTree buildJunctionTree(const Network& network) {
    JunctionTree tree;
    if (network.n() == 0) return tree;
    Graph moral = moralGraph(network);  // 1
    tree.nMoralEdges = moral.nEdges();
    Elimination elimination = bestFirstOrder(moral, network.sizes, network.n());  // 2
    tree.order = std::move(elimination.order);
    tree.orderWeights = std::move(elimination.weights);
    tree.orderFills = std::move(elimination.fills);
    Triangulation triangulation = triangulate(std::move(moral), tree.order);  // 3
    tree.cliques = std::move(triangulation.cliques);
    tree.fillEdges = std::move(triangulation.fillEdges);
    tree.cliqueCells = weightsOf(tree.cliques, network.sizes);
    tree.joins = joinCliques(tree.cliques, tree.cliqueCells, network.n());  // 4
    separate(tree, network.sizes);
    const Lists holding = listsHolding(tree.cliques, network.n());
    const Number root = holding[network.n() - 1].front();  // 5
    tree.rooted = walkFrom(root, neighboursOf(tree.joins, tree.cliques.count()));
    noteJoinsAbove(tree);
    assignNodes(tree, network, holding);  // 6
    return tree;
}

Forecast forecastOf(const JunctionTree& tree) {
    Forecast out;
    for (const double cells : tree.cliqueCells) {
        out.cells += cells;
        out.largest = std::max(out.largest, cells);
    }
    for (const double cells : tree.separatorCells) out.separatorCells += cells;
    // A separator's table is kept while the new one is made.
    out.bytes = static_cast<double>(sizeof(double)) * (out.cells + 2.0 * out.separatorCells);
    return out;
}

double memoryBound(double bound) {
    return bound > 0.0 ? bound : physicalMemory() / 2.0;
}

}  // namespace numcore::networks
