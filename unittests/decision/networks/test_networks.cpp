#include "decision/networks/test_networks.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <random>

namespace numcore::networks::testing {
namespace {

std::size_t familyCells(const Network& network, std::size_t node) {
    return axesOf(familyOf(network, node), network.sizes).nCells();
}

/// Random rows of sum 1, some cells 0.
void addTables(TestNetwork& out, std::mt19937& random) {
    std::uniform_real_distribution<double> uniform;
    for (std::size_t node = 0; node < out.network.n(); ++node) {
        const auto size = static_cast<std::size_t>(out.network.sizes[node]);
        for (std::size_t row = 0; row < familyCells(out.network, node) / size; ++row) {
            std::vector<double> cells(size);
            for (double& cell : cells) cell = uniform(random) < 0.1 ? 0.0 : uniform(random);
            cells[0] += 0.01;
            normalise(cells);
            out.tables.insert(out.tables.end(), cells.begin(), cells.end());
        }
    }
}

}  // namespace

const Json& reference() {
    static const Json file = [] {
        std::ifstream in(std::string(NUMCORE_REFERENCE_DIR) + "/networks/networks.json");
        return Json::parse(in);
    }();
    return file;
}

std::vector<Number> numbersOf(const Json& list) {
    std::vector<Number> out;
    for (const Json& number : list) out.push_back(number.get<Number>() - 1);
    return out;
}

TestNetwork networkOf(const Json& entry) {
    TestNetwork out;
    out.network.sizes = entry["sizes"].get<std::vector<Number>>();
    for (const Json& list : entry["parents"]) out.network.parents.append(numbersOf(list));
    if (entry.contains("tables"))
        for (const Json& table : entry["tables"])
            for (const Json& cell : table) out.tables.push_back(cell.get<double>());
    return out;
}

std::vector<double> likelihoodsOf(const Json& observed, const Network& network) {
    if (observed.empty()) return {};
    std::vector<double> out;
    for (std::size_t node = 0; node < network.n(); ++node) {
        Number state = 0;
        for (const Json& pair : observed)
            if (pair[0].get<std::size_t>() == node + 1) state = pair[1].get<Number>();
        for (Number s = 1; s <= network.sizes[node]; ++s) out.push_back(state == 0 || state == s ? 1.0 : 0.0);
    }
    return out;
}

Compiled::Compiled(const TestNetwork& source, std::vector<double> likelihoods)
    : network(source.network),
      tree(buildJunctionTree(network)),
      calibrated(propagate(network, tree, {source.tables, likelihoods})) {}

std::vector<double> Compiled::marginal(std::size_t node) const {
    std::vector<double> out(static_cast<std::size_t>(network.sizes[node]));
    marginalOf(model(), node, out);
    return out;
}

std::vector<double> Compiled::joint(const std::vector<Number>& nodes) const {
    const JointQuery query(network, tree, nodes);
    std::vector<double> out(static_cast<std::size_t>(query.nCells()));
    query.answer(calibrated, out);
    return out;
}

TestNetwork randomNetwork(std::size_t n, std::size_t maxParents, std::size_t reach, Number maxSize,
                          std::uint32_t seed) {
    std::mt19937 random(seed);
    TestNetwork out;
    for (std::size_t node = 0; node < n; ++node) {
        out.network.sizes.push_back(1 + static_cast<Number>(random() % static_cast<unsigned>(maxSize)));
        std::vector<Number> parents;
        const std::size_t nCandidates = std::min(reach, node);
        for (std::size_t p = 0; p < std::min(maxParents, nCandidates); ++p) {
            const auto parent = static_cast<Number>(node - 1 - random() % nCandidates);
            if (std::find(parents.begin(), parents.end(), parent) == parents.end()) parents.push_back(parent);
        }
        out.network.parents.append(parents);
    }
    addTables(out, random);
    return out;
}

TestNetwork binaryTree(std::size_t n, std::size_t fanOut, std::uint32_t seed) {
    std::mt19937 random(seed);
    TestNetwork out;
    out.network.sizes.assign(n, 2);
    for (std::size_t node = 0; node < n; ++node) {
        const auto parent = static_cast<Number>(node == 0 ? 0 : (node - 1) / fanOut);
        out.network.parents.append(std::span(&parent, node == 0 ? 0 : 1));
    }
    addTables(out, random);
    return out;
}

std::vector<double> bruteForceJoint(const TestNetwork& source, const std::vector<double>& likelihoods) {
    const Network& network = source.network;
    std::size_t nCells = 1;
    for (const Number size : network.sizes) nCells *= static_cast<std::size_t>(size);
    std::vector<double> joint(nCells, 1.0);
    std::vector<std::size_t> state(network.n());
    for (std::size_t cell = 0; cell < nCells; ++cell) {
        for (std::size_t node = network.n(), rest = cell; node-- > 0;) {
            state[node] = rest % static_cast<std::size_t>(network.sizes[node]);
            rest /= static_cast<std::size_t>(network.sizes[node]);
        }
        std::size_t tableAt = 0;
        std::size_t stateAt = 0;
        for (std::size_t node = 0; node < network.n(); ++node) {
            std::size_t row = 0;
            for (const Number parent : network.parents[node])
                row = row * static_cast<std::size_t>(network.sizes[static_cast<std::size_t>(parent)]) +
                      state[static_cast<std::size_t>(parent)];
            const auto size = static_cast<std::size_t>(network.sizes[node]);
            joint[cell] *= source.tables[tableAt + row * size + state[node]];
            if (!likelihoods.empty()) joint[cell] *= likelihoods[stateAt + state[node]];
            tableAt += familyCells(network, node);
            stateAt += size;
        }
    }
    return joint;
}

std::vector<double> bruteForceSums(const std::vector<double>& joint, const Network& network,
                                   const std::vector<Number>& nodes) {
    std::vector<double> sums(axesOf(nodes, network.sizes).nCells(), 0.0);
    for (std::size_t cell = 0; cell < joint.size(); ++cell) {
        std::vector<std::size_t> state(network.n());
        for (std::size_t node = network.n(), rest = cell; node-- > 0;) {
            state[node] = rest % static_cast<std::size_t>(network.sizes[node]);
            rest /= static_cast<std::size_t>(network.sizes[node]);
        }
        std::size_t at = 0;
        for (const Number node : nodes)
            at = at * static_cast<std::size_t>(network.sizes[static_cast<std::size_t>(node)]) +
                 state[static_cast<std::size_t>(node)];
        sums[at] += joint[cell];
    }
    normalise(sums);
    return sums;
}

void expectTable(const std::vector<double>& got, const std::vector<double>& expected, double tolerance,
                 const std::string& what) {
    ASSERT_EQ(got.size(), expected.size()) << what;
    for (std::size_t i = 0; i < got.size(); ++i)
        EXPECT_NEAR(got[i], expected[i], tolerance) << what << ", cell " << i;
}

}  // namespace numcore::networks::testing
