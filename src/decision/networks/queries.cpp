#include "decision/networks/queries.hpp"

#include <algorithm>
#include <limits>

#include "numcore/markers.hpp"

namespace numcore::networks {
namespace {

void sumClique(const Model& model, Number clique, std::span<const Number> nodes, std::span<double> out) {
    const auto c = static_cast<std::size_t>(clique);
    const Projection projection(axesOf(model.tree.cliques[c], model.network.sizes), nodes);
    projection.sum(model.calibrated.cliques[c], out.data());
    normalise(out);
}

void addNew(std::vector<Number>& nodes, std::span<const Number> more) {
    for (const Number node : more)
        if (std::ranges::find(nodes, node) == nodes.end()) nodes.push_back(node);
}

bool holds(std::span<const Number> nodes, Number node) {
    return std::ranges::find(nodes, node) != nodes.end();
}

}  // namespace

void marginalOf(const Model& model, std::size_t node, std::span<double> out) {
    const auto number = static_cast<Number>(node);
    sumClique(model, model.tree.lightestCliques[node], std::span(&number, 1), out);
}

void familyJointOf(const Model& model, std::size_t node, std::span<double> out) {
    sumClique(model, model.tree.familyCliques[node], familyOf(model.network, node), out);
}

void conditionOn(std::span<double> joint, std::size_t runLength) {
    for (std::size_t start = 0; start + runLength <= joint.size() && runLength > 0; start += runLength) {
        const auto run = joint.subspan(start, runLength);
        if (!(normalise(run) > 0.0)) std::ranges::fill(run, kMissing);
    }
}

JointQuery::JointQuery(const Network& network, const JunctionTree& tree, std::span<const Number> nodes)
    : network_(network), tree_(tree), nodes_(nodes.begin(), nodes.end()) {
    nCells_ = weightOf(nodes_, network.sizes);
    planSteps();
    double largestScope = 0.0;
    for (const Step& step : steps_) {
        largestScope = std::max(largestScope, weightOf(step.scope, network.sizes));
        nWorkCells_ += weightOf(step.kept, network.sizes);
    }
    nWorkCells_ += largestScope;
    if (largestScope > kMostCells) nWorkCells_ = std::numeric_limits<double>::infinity();
}

// 1. From the highest clique of each node, go up to where the paths meet; only these cliques take part.
// 2. Children before parents, each clique sends the sum of its product onto its separator and the nodes asked
// for. A single clique that holds all nodes is the only step.
void JointQuery::planSteps() {
    const Lists holding = listsHolding(tree_.cliques, network_.n());
    const auto lightest = [&](Number c) { return tree_.cliqueCells[static_cast<std::size_t>(c)]; };
    std::vector<Number> together;
    for (const Number clique : holding[nodes_.front()]) {
        const auto members = tree_.cliques[clique];
        if (std::ranges::all_of(nodes_, [&](Number q) { return std::ranges::binary_search(members, q); }))
            together.push_back(clique);
    }
    if (!together.empty()) {
        planStep(static_cast<std::size_t>(*std::ranges::min_element(together, {}, lightest)), true, {});
        return;
    }

    std::vector<std::size_t> nPathsThrough(tree_.cliques.count(), 0);
    for (const Number node : nodes_) {
        // The paths of nodes with the same highest clique are counted each.
        for (Number c = highestCliqueWith(node); c >= 0; c = tree_.rooted.parents[static_cast<std::size_t>(c)])
            ++nPathsThrough[static_cast<std::size_t>(c)];
    }
    std::vector<std::vector<std::size_t>> below(tree_.cliques.count());
    for (const Number clique : tree_.rooted.postorder) {
        const auto c = static_cast<std::size_t>(clique);
        if (nPathsThrough[c] == 0) continue;
        const bool isTop = nPathsThrough[c] == nodes_.size();
        planStep(c, isTop, std::move(below[c]));
        if (isTop) return;
        below[static_cast<std::size_t>(tree_.rooted.parents[c])].push_back(steps_.size() - 1);
    }
}

Number JointQuery::highestCliqueWith(Number node) const {
    // The cliques of a node hang together, and the walk enters the highest of them first.
    Number clique = tree_.lightestCliques[static_cast<std::size_t>(node)];
    while (true) {
        const Number parent = tree_.rooted.parents[static_cast<std::size_t>(clique)];
        if (parent < 0 || !std::ranges::binary_search(tree_.cliques[parent], node)) return clique;
        clique = parent;
    }
}

void JointQuery::planStep(std::size_t clique, bool isTop, std::vector<std::size_t> below) {
    const auto members = tree_.cliques[clique];
    Step step{clique,
              {members.begin(), members.end()},
              {},
              std::move(below),
              isTop ? Number{-1} : tree_.joinAbove[clique]};
    for (const std::size_t child : step.below) addNew(step.scope, steps_[child].kept);
    if (isTop) {
        step.kept = nodes_;
    } else {
        const auto separator = tree_.separators[step.joinAbove];
        step.kept.assign(separator.begin(), separator.end());
        for (const Number node : nodes_)
            if (holds(step.scope, node)) addNew(step.kept, std::span(&node, 1));
    }
    steps_.push_back(std::move(step));
}

void JointQuery::answer(const Calibrated& calibrated, std::span<double> out) const {
    std::vector<std::vector<double>> sent(steps_.size());
    for (std::size_t s = 0; s < steps_.size(); ++s) {
        const Step& step = steps_[s];
        const Axes axes = axesOf(step.scope, network_.sizes);
        std::vector<double> product(axes.nCells(), 1.0);
        Projection(axes, tree_.cliques[step.clique]).multiply(product.data(), calibrated.cliques[step.clique]);
        for (const std::size_t child : step.below) {
            Projection(axes, steps_[child].kept).multiply(product.data(), sent[child].data());
            sent[child] = {};
        }
        if (step.joinAbove >= 0) {
            const auto join = static_cast<std::size_t>(step.joinAbove);
            const auto separator = calibrated.separators.table(join);
            std::vector<double> reciprocals(separator.begin(), separator.end());
            const std::vector<double> ones(reciprocals.size(), 1.0);
            divideInto(ones, reciprocals);
            Projection(axes, tree_.separators[join]).multiply(product.data(), reciprocals.data());
        }
        const Projection onto(axes, step.kept);
        sent[s].resize(onto.partCells());
        onto.sum(product.data(), sent[s].data());
        normalise(sent[s]);
    }
    std::ranges::copy(sent.back(), out.begin());
}

}  // namespace numcore::networks
