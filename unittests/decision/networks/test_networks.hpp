// Networks for tests: those of the reference file, random ones, and their joint table by brute force.
#pragma once

#include <nlohmann/json.hpp>

#include <cstdint>
#include <vector>

#include "decision/networks/propagation.hpp"
#include "decision/networks/queries.hpp"

namespace numcore::networks::testing {

using Json = nlohmann::json;

/// The reference file.
const Json& reference();

/// A list of the file, from 1, as numbers from 0.
std::vector<Number> numbersOf(const Json& list);

struct TestNetwork {
    Network network;
    std::vector<double> tables;  ///< node after node
};

/// Sizes and parents of an entry; tables when it has them.
TestNetwork networkOf(const Json& entry);

/// Likelihoods of observed pairs (node, state) from 1; empty for none.
std::vector<double> likelihoodsOf(const Json& observed, const Network& network);

/// A compiled network, calibrated.
struct Compiled {
    Compiled(const TestNetwork& source, std::vector<double> likelihoods);

    Model model() const { return {network, tree, calibrated}; }
    std::vector<double> marginal(std::size_t node) const;
    std::vector<double> joint(const std::vector<Number>& nodes) const;

    const Network& network;
    JunctionTree tree;
    Calibrated calibrated;
};

/// A network of random tables in which each node has up to maxParents of the `reach` nodes before it as
/// parents.
TestNetwork randomNetwork(std::size_t n, std::size_t maxParents, std::size_t reach, Number maxSize,
                          std::uint32_t seed);

/// A network of n nodes of two states in which node i has parent (i - 1) / fanOut: a chain for 1, a star for n.
TestNetwork binaryTree(std::size_t n, std::size_t fanOut, std::uint32_t seed);

/// Joint table of all nodes times the likelihoods, not normalised, the first node slowest.
std::vector<double> bruteForceJoint(const TestNetwork& source, const std::vector<double>& likelihoods);

/// Sums of a joint table of all nodes onto some of them, normalised.
std::vector<double> bruteForceSums(const std::vector<double>& joint, const Network& network,
                                   const std::vector<Number>& nodes);

/// Fails where two tables differ by more than the tolerance.
void expectTable(const std::vector<double>& got, const std::vector<double>& expected, double tolerance,
                 const std::string& what);

}  // namespace numcore::networks::testing
