#include "decision/networks/clique_tree.hpp"

#include <algorithm>

#include "decision/networks/tournament.hpp"

namespace numcore::networks {
namespace {

/// The cost of joining cliques that share no node.
constexpr double kApart = 1000000.0;

/// The cheapest way known to join each clique to the tree.
struct Offers {
    std::vector<double> cost;    ///< minus the overlap, or kApart
    std::vector<double> weight;  ///< of the two cliques together
    std::vector<Number> closest;

    explicit Offers(std::size_t n) : cost(n, kApart), weight(n), closest(n, 0) {}

    bool better(Number a, Number b) const {
        const auto i = static_cast<std::size_t>(a);
        const auto j = static_cast<std::size_t>(b);
        if (cost[i] != cost[j]) return cost[i] < cost[j];
        return weight[i] != weight[j] ? weight[i] < weight[j] : a < b;
    }
};

/// Overlaps of one clique with all others, without visiting those that share nothing.
class Overlaps {
  public:
    Overlaps(const Lists& cliques, std::size_t n)
        : cliques_(cliques), holding_(listsHolding(cliques, n)), counts_(cliques.count()) {}

    /// Calls visit(j, overlap) for each clique that shares a node with clique k, itself included.
    template <class Visit>
    void forEach(Number k, const Visit& visit) {
        touched_.clear();
        for (const Number node : cliques_[k]) {
            for (const Number j : holding_[node])
                if (counts_[static_cast<std::size_t>(j)]++ == 0) touched_.push_back(j);
        }
        for (const Number j : touched_) visit(j, std::exchange(counts_[static_cast<std::size_t>(j)], 0));
    }

  private:
    const Lists& cliques_;
    Lists holding_;
    std::vector<Number> counts_;
    std::vector<Number> touched_;
};

}  // namespace

// 1. The tree is the first clique; every other one has an offer to join it, by overlap and common weight.
// 2. Take the best offer: the largest overlap, then the lightest pair, then the lowest number.
// 3. Improve the offers of the others where they share more with the clique just taken. Kept: an equal overlap
//    does not change an offer, even if the pair is lighter.
std::vector<Join> joinCliques(const Lists& cliques, std::span<const double> weights, std::size_t n) {
    std::vector<Join> joins;
    const std::size_t nCliques = cliques.count();
    if (nCliques < 2) return joins;
    joins.reserve(nCliques - 1);

    Overlaps overlaps(cliques, n);
    Offers offers(nCliques);
    std::vector<char> isUsed(nCliques, 0);
    const auto offerFrom = [&](Number k, auto improved) {
        overlaps.forEach(k, [&](Number j, Number overlap) {
            const auto at = static_cast<std::size_t>(j);
            if (isUsed[at] != 0 || -overlap >= offers.cost[at]) return;
            offers.cost[at] = -overlap;
            offers.weight[at] = weights[static_cast<std::size_t>(k)] + weights[at];
            offers.closest[at] = k;
            improved(j);
        });
    };

    isUsed[0] = 1;
    for (std::size_t j = 0; j < nCliques; ++j) offers.weight[j] = weights[0] + weights[j];
    offerFrom(0, [](Number) {});
    Tournament best(nCliques, [&](Number a, Number b) { return offers.better(a, b); });
    best.remove(0);
    while (joins.size() < nCliques - 1) {
        const Number k = best.first();
        joins.push_back({offers.closest[static_cast<std::size_t>(k)], k});
        isUsed[static_cast<std::size_t>(k)] = 1;
        best.remove(k);
        offerFrom(k, [&](Number j) { best.update(j); });
    }
    return joins;
}

Lists neighboursOf(std::span<const Join> joins, std::size_t n) {
    std::vector<std::vector<Number>> neighbours(n);
    for (const Join& join : joins) {
        neighbours[static_cast<std::size_t>(join.from)].push_back(join.to);
        neighbours[static_cast<std::size_t>(join.to)].push_back(join.from);
    }
    Lists out;
    for (auto& list : neighbours) {
        std::ranges::sort(list);
        out.append(list);
    }
    return out;
}

RootedTree walkFrom(Number root, const Lists& neighbours) {
    const std::size_t n = neighbours.count();
    RootedTree tree;
    tree.root = root;
    tree.parents.assign(n, -1);
    if (root < 0 || static_cast<std::size_t>(root) >= n) return tree;

    // A stack of its own: a chain of cliques is as deep as it is long.
    std::vector<char> isEntered(n, 0);
    std::vector<std::size_t> nVisited(n, 0);
    std::vector<Number> stack;
    const auto enter = [&](Number clique) {
        isEntered[static_cast<std::size_t>(clique)] = 1;
        tree.preorder.push_back(clique);
        stack.push_back(clique);
    };
    enter(root);
    while (!stack.empty()) {
        const Number clique = stack.back();
        const auto around = neighbours[clique];
        std::size_t& next = nVisited[static_cast<std::size_t>(clique)];
        while (next < around.size() && isEntered[static_cast<std::size_t>(around[next])] != 0) ++next;
        if (next == around.size()) {
            tree.postorder.push_back(clique);
            stack.pop_back();
        } else {
            tree.parents[static_cast<std::size_t>(around[next])] = clique;
            enter(around[next]);
        }
    }
    return tree;
}

}  // namespace numcore::networks
