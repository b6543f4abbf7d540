#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

#include "decision/networks/elimination.hpp"
#include "decision/networks/test_networks.hpp"
#include "decision/networks/triangulation.hpp"

namespace numcore::networks::testing {
namespace {

std::vector<std::vector<Number>> fromLists(const Lists& lists) {
    std::vector<std::vector<Number>> out;
    for (std::size_t i = 0; i < lists.count(); ++i) out.emplace_back(lists[i].begin(), lists[i].end());
    return out;
}

std::vector<std::vector<Number>> fromJson(const Json& lists) {
    std::vector<std::vector<Number>> out;
    for (const Json& list : lists) out.push_back(numbersOf(list));
    return out;
}

std::vector<std::vector<Number>> fromEdges(const std::vector<std::pair<Number, Number>>& edges) {
    std::vector<std::vector<Number>> out;
    out.reserve(edges.size());
    for (const auto& [a, b] : edges) out.push_back({a, b});
    return out;
}

void expectStructure(const Network& network, const Json& expected, const std::string& name) {
    SCOPED_TRACE(name);
    const Graph moral = moralGraph(network);
    EXPECT_EQ(moral.nEdges(), expected["moral_edges"].size());
    for (const auto& edge : fromJson(expected["moral_edges"])) EXPECT_TRUE(moral.hasEdge(edge[0], edge[1]));

    const JunctionTree tree = buildJunctionTree(network);
    EXPECT_EQ(tree.nMoralEdges, moral.nEdges());
    EXPECT_EQ(tree.order, numbersOf(expected["elimination_order"]));
    EXPECT_EQ(tree.orderWeights, expected["elimination_weights"].get<std::vector<double>>());
    EXPECT_EQ(tree.orderFills, expected["elimination_fills"].get<std::vector<double>>());
    EXPECT_EQ(fromEdges(tree.fillEdges), fromJson(expected["fill_edges"]));
    EXPECT_EQ(fromLists(tree.cliques), fromJson(expected["cliques"]));
    EXPECT_EQ(tree.cliqueCells, expected["clique_weights"].get<std::vector<double>>());
    EXPECT_EQ(forecastOf(tree).cells, expected["total_weight"].get<double>());

    std::vector<std::vector<Number>> joins;
    for (const Join& join : tree.joins) joins.push_back({join.from, join.to});
    EXPECT_EQ(joins, fromJson(expected["tree_edges"]));
    EXPECT_EQ(fromLists(tree.separators), fromJson(expected["separators"]));
    EXPECT_EQ(tree.rooted.root, expected["root"].get<Number>() - 1);
    std::vector<std::vector<Number>> arcs;
    for (std::size_t i = 1; i < tree.rooted.preorder.size(); ++i) {
        const Number clique = tree.rooted.preorder[i];
        arcs.push_back({tree.rooted.parents[static_cast<std::size_t>(clique)], clique});
    }
    EXPECT_EQ(arcs, fromJson(expected["rooted_arcs"]));
    EXPECT_EQ(tree.rooted.preorder, numbersOf(expected["preorder"]));
    EXPECT_EQ(tree.rooted.postorder, numbersOf(expected["postorder"]));
    EXPECT_EQ(tree.familyCliques, numbersOf(expected["family_clique"]));
}

/// The rule of the order, step by step over a dense matrix.
std::vector<Number> orderByRule(const Graph& graph, const std::vector<Number>& sizes) {
    const auto n = static_cast<Number>(graph.n());
    std::vector<std::vector<int>> edges(graph.n(), std::vector<int>(graph.n()));
    for (Number i = 0; i < n; ++i)
        for (Number j = 0; j < n; ++j)
            edges[static_cast<std::size_t>(i)][static_cast<std::size_t>(j)] = graph.hasEdge(i, j);
    std::set<std::size_t> left;
    for (std::size_t i = 0; i < graph.n(); ++i) left.insert(i);
    std::vector<Number> order;
    while (!left.empty()) {
        std::vector<double> weights(graph.n());
        std::vector<int> fills(graph.n());
        double lightest = 10000.0;
        for (const std::size_t k : left) {
            std::vector<std::size_t> around;
            std::ranges::copy_if(left, std::back_inserter(around),
                                 [&](std::size_t j) { return edges[k][j] != 0; });
            weights[k] = sizes[k];
            fills[k] = static_cast<int>(around.size() * around.size());
            for (const std::size_t i : around) {
                weights[k] *= sizes[i];
                for (const std::size_t j : around) fills[k] -= edges[i][j];
            }
            lightest = std::min(lightest, weights[k]);
        }
        std::size_t chosen = graph.n();
        const bool hasLight = std::ranges::any_of(left, [&](std::size_t k) { return weights[k] == lightest; });
        for (const std::size_t k : left)
            if ((!hasLight || weights[k] == lightest) && (chosen == graph.n() || fills[k] < fills[chosen]))
                chosen = k;
        left.erase(chosen);
        order.push_back(static_cast<Number>(chosen));
        for (const std::size_t i : left)
            for (const std::size_t j : left)
                if (i != j && edges[chosen][i] != 0 && edges[chosen][j] != 0) edges[i][j] = 1;
    }
    return order;
}

/// Prim's method on dense matrices of costs, word for word.
std::vector<std::pair<Number, Number>> joinsByRule(const Lists& cliques, const std::vector<double>& weights) {
    constexpr double kInfinite = 1000000.0;
    const std::size_t n = cliques.count();
    const auto overlap = [&](std::size_t i, std::size_t j) {
        return i == j ? 0.0 : static_cast<double>(sharedMembers(cliques[i], cliques[j]).size());
    };
    const auto primary = [&](std::size_t i, std::size_t j) {
        return overlap(i, j) > 0.0 ? -overlap(i, j) : kInfinite;
    };
    std::vector<double> cost(n);
    std::vector<double> weight(n);
    std::vector<std::size_t> closest(n, 0);
    std::set<std::size_t> unused;
    for (std::size_t j = 1; j < n; ++j) {
        unused.insert(j);
        cost[j] = primary(0, j);
        weight[j] = weights[0] + weights[j];
    }
    std::vector<std::pair<Number, Number>> joins;
    while (!unused.empty()) {
        const std::size_t k =
            *std::ranges::min_element(unused, {}, [&](std::size_t j) { return std::pair(cost[j], weight[j]); });
        joins.emplace_back(closest[k], k);
        unused.erase(k);
        for (const std::size_t j : unused) {
            if (primary(k, j) >= cost[j]) continue;
            cost[j] = primary(k, j);
            weight[j] = weights[k] + weights[j];
            closest[j] = k;
        }
    }
    return joins;
}

TEST(NetworkStructure, JoinsFollowTheRule) {
    // Any sets at all: some nodes in nearly every one, equal sets, sets inside others, sets that share nothing.
    std::mt19937 random(11);
    for (int round = 0; round < 60; ++round) {
        const auto n = static_cast<Number>(4 + random() % 40);
        const std::size_t nHubs = random() % 4;
        Lists cliques;
        std::vector<double> weights;
        for (std::size_t c = 0; c < 3 + random() % 60; ++c) {
            std::set<Number> members{static_cast<Number>(random() % static_cast<std::uint32_t>(n))};
            for (std::size_t i = random() % 5; i > 0; --i)
                members.insert(static_cast<Number>(random() % static_cast<std::uint32_t>(n)));
            for (std::size_t hub = 0; hub < nHubs; ++hub)
                if (random() % 8 != 0) members.insert(static_cast<Number>(hub));
            cliques.append(std::vector(members.begin(), members.end()));
            weights.push_back(static_cast<double>(2 + random() % 3));
        }
        std::vector<std::pair<Number, Number>> joins;
        for (const Join& join : joinCliques(cliques, weights, static_cast<std::size_t>(n)))
            joins.emplace_back(join.from, join.to);
        EXPECT_EQ(joins, joinsByRule(cliques, weights)) << "round " << round;
    }
}

TEST(NetworkStructure, MatchesTheReference) {
    for (const Json& entry : reference()["networks"])
        expectStructure(networkOf(entry).network, entry["structure"], entry["name"]);
    for (const Json& entry : reference()["little_structures"])
        expectStructure(networkOf(entry).network, entry, entry["name"]);
}

TEST(NetworkStructure, OrderFollowsTheRuleOnDenseGraphs) {
    // Sizes and densities at which steps without a light candidate occur, besides light ones.
    for (std::uint32_t seed = 1; seed <= 30; ++seed) {
        const auto source =
            randomNetwork(24, 3 + seed % 4, 10 + seed % 14, 2 + static_cast<Number>(seed % 8), seed);
        const Graph moral = moralGraph(source.network);
        EXPECT_EQ(bestFirstOrder(moral, source.network.sizes, 24).order,
                  orderByRule(moral, source.network.sizes))
            << seed;
    }
}

TEST(NetworkStructure, AWeightOf10000IsLight) {
    // The pair of nodes 3 and 4 (100 x 100) is light, that of 1 and 2 (101 x 100) is not.
    Network network{{101, 100, 100, 100}, {}};
    network.parents.append({});
    for (const Number parent : {0, -1, 2}) network.parents.append(std::span(&parent, parent < 0 ? 0 : 1));
    const auto order = bestFirstOrder(moralGraph(network), network.sizes, 4).order;
    EXPECT_EQ(order, (std::vector<Number>{2, 3, 0, 1}));
}

TEST(NetworkStructure, StagesGoInAscendingOrder) {
    const auto source = randomNetwork(12, 2, 6, 3, 5);
    std::vector<double> stages(12, 0.0);
    stages[7] = stages[3] = -1.0;
    stages[0] = 2.0;
    const auto order = bestFirstOrder(moralGraph(source.network), source.network.sizes, 12, stages).order;
    EXPECT_EQ(std::set(order.begin(), order.begin() + 2), (std::set<Number>{3, 7}));
    EXPECT_EQ(order.back(), 0);
}

TEST(NetworkStructure, TreesHaveTheRunningIntersection) {
    for (std::uint32_t seed = 1; seed <= 20; ++seed) {
        const auto source = randomNetwork(60, 3, 8, 4, seed);
        const JunctionTree tree = buildJunctionTree(source.network);
        const Lists holding = listsHolding(tree.cliques, source.network.n());
        const Lists separated = listsHolding(tree.separators, source.network.n());
        // In a tree, the cliques of a node hang together when one separator fewer holds it.
        for (std::size_t node = 0; node < source.network.n(); ++node)
            EXPECT_EQ(separated[node].size() + 1, holding[node].size());
        EXPECT_EQ(tree.rooted.preorder.size(), tree.cliques.count());
        EXPECT_EQ(std::ranges::count(tree.familyCliques, -1), 0);
    }
}

TEST(NetworkStructure, DeepChainsAndWideStars) {
    const JunctionTree chain = buildJunctionTree(binaryTree(10000, 1, 1).network);
    EXPECT_EQ(chain.cliques.count(), 9999U);
    EXPECT_EQ(chain.rooted.postorder.size(), 9999U);
    const JunctionTree star = buildJunctionTree(binaryTree(10000, 10000, 1).network);
    EXPECT_EQ(star.cliques.count(), 9999U);
    EXPECT_EQ(forecastOf(star).largest, 4.0);
}

TEST(NetworkStructure, FindsCycles) {
    for (const Json& entry : reference()["acyclicity"]) {
        Network network;
        const auto n = entry["n"].get<Number>();
        network.sizes.assign(static_cast<std::size_t>(n), 2);
        for (std::size_t node = 0; node < network.n(); ++node) {
            std::vector<Number> parents = numbersOf(entry["parents"][node]);
            std::erase_if(parents, [&](Number p) { return p < 0 || p >= n || p == static_cast<Number>(node); });
            network.parents.append(parents);
        }
        EXPECT_EQ(isAcyclic(network), entry["nodes_on_a_cycle"] == 0) << entry["name"];
    }
}

}  // namespace
}  // namespace numcore::networks::testing
