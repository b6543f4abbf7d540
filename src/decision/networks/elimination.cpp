#include "decision/networks/elimination.hpp"

#include <algorithm>

#include "decision/networks/tournament.hpp"

namespace numcore::networks {
namespace {

/// What candidates are compared by; kept up to date as edges come and nodes go.
class Candidates {
  public:
    Candidates(Graph graph, std::span<const Number> sizes, std::span<const double> stages)
        : graph_(std::move(graph)),
          sizes_(sizes),
          weights_(graph_.n()),
          fills_(graph_.n()),
          nEdgesAmong_(graph_.n()),
          stages_(stages.begin(), stages.end()) {
        stages_.resize(graph_.n());
        for (std::size_t k = 0; k < graph_.n(); ++k) {
            const auto node = static_cast<Number>(k);
            std::int64_t nShared = 0;
            for (const Number j : graph_.neighbours(node))
                graph_.forEachShared(node, j, [&](Number) { ++nShared; });
            nEdgesAmong_[k] = nShared / 2;
            refresh(node);
        }
    }

    Graph& graph() { return graph_; }
    double fill(Number k) const { return static_cast<double>(fills_[at(k)]); }
    bool isLight(Number k) const { return weights_[at(k)] <= kLightestCap; }
    double weight(Number k) const {
        return weightOf(graph_.neighbours(k), sizes_) * weightOf(std::span(&k, 1), sizes_);
    }

    bool lighter(Number a, Number b) const {
        if (stages_[at(a)] != stages_[at(b)]) return stages_[at(a)] < stages_[at(b)];
        if (weights_[at(a)] != weights_[at(b)]) return weights_[at(a)] < weights_[at(b)];
        return fuller(a, b);
    }
    bool emptier(Number a, Number b) const {
        if (stages_[at(a)] != stages_[at(b)]) return stages_[at(a)] < stages_[at(b)];
        return fuller(a, b);
    }

    /// Joins the neighbours of k and takes it out. The nodes whose keys changed are in `changed`, perhaps
    /// twice.
    void eliminate(Number k, std::vector<Number>& changed) {
        const std::vector<Number>& neighbours = graph_.neighbours(k);
        changed.assign(neighbours.begin(), neighbours.end());
        // Each neighbour loses k and with it the edges from k to the other neighbours of both.
        for (const Number m : neighbours) graph_.forEachShared(m, k, [&](Number) { --nEdgesAmong_[at(m)]; });
        graph_.withdraw(k);
        for (std::size_t i = 0; i < neighbours.size(); ++i)
            for (std::size_t j = 0; j < i; ++j) joinCounted(neighbours[i], neighbours[j], changed);
        for (const Number m : changed) refresh(m);
    }

  private:
    static std::size_t at(Number k) { return static_cast<std::size_t>(k); }

    bool fuller(Number a, Number b) const {
        return fills_[at(a)] != fills_[at(b)] ? fills_[at(a)] < fills_[at(b)] : a < b;
    }

    /// A new edge lies among the neighbours of every node that both ends share, and brings each end the edges
    /// from the other end to the shared ones.
    void joinCounted(Number a, Number b, std::vector<Number>& changed) {
        if (graph_.hasEdge(a, b)) return;
        std::int64_t nShared = 0;
        graph_.forEachShared(a, b, [&](Number m) {
            ++nEdgesAmong_[at(m)];
            ++nShared;
            changed.push_back(m);
        });
        nEdgesAmong_[at(a)] += nShared;
        nEdgesAmong_[at(b)] += nShared;
        graph_.join(a, b);
    }

    void refresh(Number k) {
        const std::vector<Number>& neighbours = graph_.neighbours(k);
        const auto nNeighbours = static_cast<std::int64_t>(neighbours.size());
        // Kept: the diagonal cells of the neighbours count as fill.
        fills_[at(k)] = nNeighbours * nNeighbours - 2 * nEdgesAmong_[at(k)];
        // Beyond the cap weights are not told apart.
        double weight = std::max<Number>(sizes_[at(k)], 1);
        for (const Number j : neighbours) {
            weight *= std::max<Number>(sizes_[at(j)], 1);
            if (weight > kLightestCap) break;
        }
        weights_[at(k)] = weight;
    }

    Graph graph_;
    std::span<const Number> sizes_;
    std::vector<double> weights_;
    std::vector<std::int64_t> fills_;
    std::vector<std::int64_t> nEdgesAmong_;
    std::vector<double> stages_;
};

}  // namespace

// 1. Weigh every node and count its fill; hold two tournaments, by weight and by fill.
// 2. Take the winner by weight if it is light, otherwise the winner by fill.
// 3. Join its neighbours, take it out, and replay the matches of the nodes that this touched.
Elimination bestFirstOrder(Graph graph, std::span<const Number> sizes, std::size_t nNodes,
                           std::span<const double> stages) {
    const std::size_t n = graph.n();
    Candidates candidates(std::move(graph), sizes, stages);
    Tournament byWeight(n, [&](Number a, Number b) { return candidates.lighter(a, b); });
    Tournament byFill(n, [&](Number a, Number b) { return candidates.emptier(a, b); });

    std::vector<Number> order;
    std::vector<double> weights;
    std::vector<double> fills;
    std::vector<Number> changed;
    order.reserve(n);
    weights.reserve(n);
    fills.reserve(n);
    for (std::size_t step = 0; step < std::min(n, nNodes); ++step) {
        // Kept: above the cap of 10000 no candidate is lightest, and all of them compete by fill.
        const Number k = candidates.isLight(byWeight.first()) ? byWeight.first() : byFill.first();
        order.push_back(k);
        weights.push_back(candidates.weight(k));
        fills.push_back(candidates.fill(k));
        byWeight.remove(k);
        byFill.remove(k);
        candidates.eliminate(k, changed);
        for (const Number m : changed) {
            byWeight.update(m);
            byFill.update(m);
        }
    }
    return {std::move(order), std::move(weights), std::move(fills), std::move(candidates.graph())};
}

}  // namespace numcore::networks
