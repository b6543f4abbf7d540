#include "decision/networks/triangulation.hpp"

#include <algorithm>

namespace numcore::networks {
namespace {

void joinAll(Graph& graph, std::span<const Number> nodes, std::vector<std::pair<Number, Number>>& added) {
    for (std::size_t i = 0; i < nodes.size(); ++i)
        for (std::size_t j = i + 1; j < nodes.size(); ++j)
            if (graph.join(nodes[i], nodes[j])) added.emplace_back(nodes[i], nodes[j]);
}

}  // namespace

// For each node in turn: 1. gather it and its remaining neighbours, 2. join them all and take the node out,
// 3. keep them as a clique unless an earlier one holds them all.
//
// An earlier clique never lies inside a later one, for it holds a node eliminated before; and one that holds
// the later clique holds the node just eliminated. So only the cliques of that node are looked at.
Triangulation triangulate(Graph graph, std::span<const Number> order) {
    Triangulation out{{}, {}, Graph(0)};
    std::vector<std::vector<Number>> cliquesOf(graph.n());
    std::vector<Number> nodes;
    for (const Number u : order) {
        nodes.assign(graph.neighbours(u).begin(), graph.neighbours(u).end());
        nodes.push_back(u);
        std::ranges::sort(nodes);
        joinAll(graph, nodes, out.fillEdges);
        graph.withdraw(u);

        const auto holdsThem = [&](Number clique) { return isSubset(nodes, out.cliques[clique]); };
        if (std::ranges::any_of(cliquesOf[static_cast<std::size_t>(u)], holdsThem)) continue;
        const auto clique = static_cast<Number>(out.cliques.count());
        out.cliques.append(nodes);
        for (const Number node : nodes) cliquesOf[static_cast<std::size_t>(node)].push_back(clique);
    }
    std::ranges::sort(out.fillEdges);
    out.graph = std::move(graph);
    return out;
}

}  // namespace numcore::networks
