#include <gtest/gtest.h>

#include <cmath>
#include <numeric>
#include <random>

#include "decision/networks/test_networks.hpp"
#include "numcore/markers.hpp"

namespace numcore::networks::testing {
namespace {

constexpr double kTolerance = 1e-12;

void expectMarginals(const Compiled& compiled, const Json& expected, const std::string& what) {
    for (std::size_t node = 0; node < compiled.network.n(); ++node)
        expectTable(compiled.marginal(node), expected[node].get<std::vector<double>>(), kTolerance,
                    what + ", node " + std::to_string(node + 1));
}

TEST(NetworkInference, MarginalsMatchTheReference) {
    for (const Json& entry : reference()["networks"]) {
        const TestNetwork source = networkOf(entry);
        const std::string name = entry["name"];
        expectMarginals(Compiled(source, {}), entry["marginals"], name);
        for (const Json& evidence : entry["evidence"]) {
            const Compiled compiled(source, likelihoodsOf(evidence["observed"], source.network));
            expectMarginals(compiled, evidence["marginals"], name + " given " + evidence["observed"].dump());
            const auto probability = evidence["probability"].get<double>();
            EXPECT_NEAR(compiled.calibrated.probability / probability, 1.0, kTolerance);
            EXPECT_NEAR(compiled.calibrated.logProbability, std::log(probability), 1e-11);
        }
    }
}

TEST(NetworkInference, ConditionalsAndCliqueJointsMatchTheReference) {
    for (const Json& entry : reference()["networks"]) {
        const TestNetwork source = networkOf(entry);
        for (const Json& query : entry["conditionals"]) {
            const Compiled compiled(source, likelihoodsOf(query["evidence"], source.network));
            std::vector<Number> nodes = numbersOf(query["given"]);
            nodes.push_back(query["node"].get<Number>() - 1);
            std::vector<double> table = compiled.joint(nodes);
            const auto size =
                static_cast<std::size_t>(source.network.sizes[static_cast<std::size_t>(nodes.back())]);
            conditionOn(table, size);
            std::vector<double> expected;
            for (const Json& row : query["rows"])
                for (std::size_t s = 0; s < size; ++s)
                    expected.push_back(row.is_null() ? kMissing : row[s].get<double>());
            expectTable(table, expected, kTolerance, std::string(entry["name"]) + query.dump());
        }
        for (const Json& joint : entry["clique_joints"]) {
            const Compiled compiled(source, likelihoodsOf(joint["evidence"], source.network));
            const auto table = compiled.calibrated.cliques.table(joint["clique"].get<std::size_t>() - 1);
            expectTable({table.begin(), table.end()}, joint["table"].get<std::vector<double>>(), kTolerance,
                        std::string(entry["name"]) + joint["clique"].dump());
        }
    }
}

TEST(NetworkInference, ImpossibleEvidenceLeavesNoNaN) {
    for (const Json& entry : reference()["networks"]) {
        if (!entry.contains("impossible_evidence")) continue;
        const TestNetwork source = networkOf(entry);
        const Compiled compiled(source, likelihoodsOf(entry["impossible_evidence"], source.network));
        EXPECT_FALSE(compiled.calibrated.isPossible());
        EXPECT_EQ(compiled.calibrated.probability, 0.0);
        EXPECT_EQ(compiled.calibrated.logProbability, -std::numeric_limits<double>::infinity());
        for (std::size_t c = 0; c < compiled.tree.cliques.count(); ++c)
            for (const double cell : compiled.calibrated.cliques.table(c)) EXPECT_FALSE(std::isnan(cell));
    }
}

TEST(NetworkInference, RandomNetworksMatchBruteForce) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> uniform;
    for (std::uint32_t seed = 1; seed <= 25; ++seed) {
        const TestNetwork source = randomNetwork(9, 3, 8, 4, seed);
        std::vector<double> likelihoods;
        if (seed % 2 == 0)
            for (const Number size : source.network.sizes)
                for (Number s = 0; s < size; ++s)
                    likelihoods.push_back(uniform(random) + (s == 0 ? 0.01 : 0.0));
        const std::vector<double> joint = bruteForceJoint(source, likelihoods);
        const Compiled compiled(source, likelihoods);
        EXPECT_NEAR(compiled.calibrated.probability / std::accumulate(joint.begin(), joint.end(), 0.0), 1.0,
                    kTolerance);
        // Pairs and triples in any order, most of them in no common clique; the last list is all nodes.
        std::vector<std::vector<Number>> questions = {
            {0}, {8, 0}, {4, 8, 1}, {2, 7, 5, 0}, {8, 7, 6, 5, 4, 3, 2, 1, 0}};
        for (Number node = 0; node < 9; ++node) questions.push_back({node, (node + 4) % 9});
        for (const auto& nodes : questions)
            expectTable(compiled.joint(nodes), bruteForceSums(joint, source.network, nodes), kTolerance,
                        "seed " + std::to_string(seed));
        for (std::size_t node = 0; node < 9; ++node) {
            const std::vector<Number> family = familyOf(source.network, node);
            std::vector<double> table(axesOf(family, source.network.sizes).nCells());
            familyJointOf(compiled.model(), node, table);
            expectTable(table, bruteForceSums(joint, source.network, family), kTolerance, "family");
        }
    }
}

TEST(NetworkInference, SeparatorsAgreeOnBothSides) {
    for (std::uint32_t seed = 1; seed <= 5; ++seed) {
        const TestNetwork source = randomNetwork(80, 3, 6, 5, seed);
        const Compiled compiled(source, {});
        const auto sumsOf = [&](Number clique, std::size_t join) {
            const auto c = static_cast<std::size_t>(clique);
            const Projection onto(axesOf(compiled.tree.cliques[c], source.network.sizes),
                                  compiled.tree.separators[join]);
            std::vector<double> sums(onto.partCells());
            onto.sum(compiled.calibrated.cliques[c], sums.data());
            return sums;
        };
        for (std::size_t join = 0; join < compiled.tree.joins.size(); ++join)
            expectTable(sumsOf(compiled.tree.joins[join].from, join),
                        sumsOf(compiled.tree.joins[join].to, join), kTolerance, "join");
    }
}

TEST(NetworkInference, NodesMayComeInAnyOrder) {
    // The same network with its nodes numbered backwards.
    const TestNetwork source = randomNetwork(30, 3, 6, 3, 3);
    TestNetwork reversed;
    const auto n = static_cast<Number>(source.network.n());
    std::vector<std::size_t> starts{0};
    for (std::size_t node = 0; node < source.network.n(); ++node)
        starts.push_back(starts.back() + axesOf(familyOf(source.network, node), source.network.sizes).nCells());
    for (auto node = static_cast<std::size_t>(n); node-- > 0;) {
        std::vector<Number> parents;
        for (const Number parent : source.network.parents[node]) parents.push_back(n - 1 - parent);
        reversed.network.parents.append(parents);
        reversed.network.sizes.push_back(source.network.sizes[node]);
        for (std::size_t i = starts[node]; i < starts[node + 1]; ++i)
            reversed.tables.push_back(source.tables[i]);
    }
    const Compiled forwards(source, {});
    const Compiled backwards(reversed, {});
    for (std::size_t node = 0; node < source.network.n(); ++node)
        expectTable(forwards.marginal(node), backwards.marginal(source.network.n() - 1 - node), kTolerance,
                    "node");
}

TEST(NetworkInference, DeepAndWideNetworksNeitherOverflowNorUnderflow) {
    // A hidden chain by the forward recursion with a soft observation at every node: P(evidence) far below
    // 1e-308.
    const std::size_t n = 10000;
    const TestNetwork chain = binaryTree(n, 1, 4);
    std::vector<double> likelihoods;
    for (std::size_t i = 0; i < n; ++i) likelihoods.insert(likelihoods.end(), {i % 3 == 0 ? 1e-6 : 0.5, 1e-3});
    double forward[2] = {1.0, 1.0};
    double logProbability = 0.0;
    std::vector<double> last(2);
    for (std::size_t i = 0; i < n; ++i) {
        const double* table = chain.tables.data() + (i == 0 ? 0 : 4 * i - 2);
        double next[2];
        for (std::size_t s = 0; s < 2; ++s) {
            next[s] = i == 0 ? table[s] : forward[0] * table[s] + forward[1] * table[2 + s];
            next[s] *= likelihoods[2 * i + s];
        }
        const double total = next[0] + next[1];
        logProbability += std::log(total);
        for (std::size_t s = 0; s < 2; ++s) forward[s] = last[s] = next[s] / total;
    }
    const Compiled compiled(chain, likelihoods);
    EXPECT_EQ(compiled.calibrated.probability, 0.0);
    EXPECT_TRUE(compiled.calibrated.isPossible());
    EXPECT_NEAR(compiled.calibrated.logProbability / logProbability, 1.0, 1e-12);
    expectTable(compiled.marginal(n - 1), last, 1e-10, "end of the chain");
    const std::vector<double> ends = compiled.joint({0, static_cast<Number>(n - 1)});
    EXPECT_NEAR(std::accumulate(ends.begin(), ends.end(), 0.0), 1.0, kTolerance);

    // A star whose leaves pull its middle in turns, so that both of its states become tiny.
    TestNetwork star = binaryTree(n, n, 4);
    for (std::size_t leaf = 1; leaf < n; ++leaf) {
        double* rows = star.tables.data() + 4 * leaf - 2;
        for (std::size_t row = 0; row < 2; ++row) {
            rows[2 * row] = (row + leaf) % 2 == 0 ? 0.9 : 0.001;
            rows[2 * row + 1] = 1.0 - rows[2 * row];
        }
    }
    std::vector<double> observed(2 * n, 1.0);
    for (std::size_t leaf = 1; leaf < n; ++leaf) observed[2 * leaf + 1] = 0.0;
    const Compiled middle(star, observed);
    // Leaves are odd in number, so one more pulls towards the second state.
    std::vector<double> expected = {star.tables[0] * 0.001, star.tables[1] * 0.9};
    normalise(expected);
    expectTable(middle.marginal(0), expected, 1e-9, "middle of the star");
}

}  // namespace
}  // namespace numcore::networks::testing
