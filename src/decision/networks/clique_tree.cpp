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

/// Finds the cliques that share more with a given one than with any before it.
///
/// Two sets that share t members or more have one in common among any |a| - t + 1 members of a. So a clique
/// that already has an offer of overlap b is looked for under its |a| - b rarest members only (b + 1 is
/// wanted), and a node that nearly all cliques hold soon finds none. Chaudhuri, Ganti and Kaushik (2006), A
/// primitive operator for similarity joins in data cleaning, ICDE: prefix filter.
class Overlaps {
  public:
    Overlaps(const Lists& cliques, std::size_t n)
        : cliques_(cliques),
          entries_(n),
          nRarest_(cliques.count()),
          isMember_(n, 0),
          lastSeen_(cliques.count(), -1) {
        const Lists holding = listsHolding(cliques, n);
        const auto isRarer = [&](Number a, Number b) {
            return holding[a].size() != holding[b].size() ? holding[a].size() < holding[b].size() : a < b;
        };
        std::vector<Number> members;
        for (std::size_t c = 0; c < cliques.count(); ++c) {
            members.assign(cliques[c].begin(), cliques[c].end());
            std::ranges::sort(members, isRarer);
            nRarest_[c] = static_cast<Number>(members.size());
            for (std::size_t place = 0; place < members.size(); ++place)
                entries_[static_cast<std::size_t>(members[place])].push_back(
                    {static_cast<Number>(c), static_cast<Number>(place)});
        }
    }

    /// From now on only an overlap of more than this is wanted for clique j.
    void wantMore(Number j, Number overlap) {
        nRarest_[static_cast<std::size_t>(j)] = static_cast<Number>(cliques_[j].size()) - overlap;
    }
    void remove(Number j) { nRarest_[static_cast<std::size_t>(j)] = 0; }

    /// Calls visit(j, overlap) for the cliques that may share more with clique k than is told of them.
    template <class Visit>
    void forEach(Number k, const Visit& visit) {
        for (const Number node : cliques_[k]) isMember_[static_cast<std::size_t>(node)] = 1;
        for (const Number node : cliques_[k]) {
            auto& entries = entries_[static_cast<std::size_t>(node)];
            std::erase_if(entries, [&](const Entry& entry) {
                return entry.place >= nRarest_[static_cast<std::size_t>(entry.clique)];
            });
            for (const Entry& entry : entries)
                if (std::exchange(lastSeen_[static_cast<std::size_t>(entry.clique)], k) != k)
                    visit(entry.clique, overlapWithMarked(entry.clique));
        }
        for (const Number node : cliques_[k]) isMember_[static_cast<std::size_t>(node)] = 0;
    }

  private:
    /// A clique under one of its members, and the place of this member among them, the rarest first.
    struct Entry {
        Number clique;
        Number place;
    };

    Number overlapWithMarked(Number j) const {
        return static_cast<Number>(std::ranges::count_if(
            cliques_[j], [&](Number node) { return isMember_[static_cast<std::size_t>(node)] != 0; }));
    }

    const Lists& cliques_;
    std::vector<std::vector<Entry>> entries_;  // of each node
    std::vector<Number> nRarest_;              // members that each clique is found under
    std::vector<char> isMember_;               // of the clique that is compared
    std::vector<Number> lastSeen_;             // the clique that each one was last compared with
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
    const auto offerFrom = [&](Number k, auto improved) {
        overlaps.remove(k);
        overlaps.forEach(k, [&](Number j, Number overlap) {
            const auto at = static_cast<std::size_t>(j);
            if (-overlap >= offers.cost[at]) return;
            offers.cost[at] = -overlap;
            offers.weight[at] = weights[static_cast<std::size_t>(k)] + weights[at];
            offers.closest[at] = k;
            overlaps.wantMore(j, overlap);
            improved(j);
        });
    };

    for (std::size_t j = 0; j < nCliques; ++j) offers.weight[j] = weights[0] + weights[j];
    offerFrom(0, [](Number) {});
    Tournament best(nCliques, [&](Number a, Number b) { return offers.better(a, b); });
    best.remove(0);
    while (joins.size() < nCliques - 1) {
        const Number k = best.first();
        joins.push_back({offers.closest[static_cast<std::size_t>(k)], k});
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
