// The order in which nodes are eliminated from the moral graph.
#pragma once

#include "decision/networks/graph.hpp"

namespace numcore::networks {

/// Weights up to this one count as light.
inline constexpr double kLightestCap = 10000.0;

struct Elimination {
    std::vector<Number> order;
    std::vector<double> weights;  ///< of each node in turn: its size times its remaining neighbours' sizes
    std::vector<double> fills;  ///< cells without an edge among its remaining neighbours, the diagonal counted
    Graph graph;                ///< with the edges that were added
};

/// Greedy order: of the nodes of the lowest stage the lightest, of these the one with the fewest fill cells, of
/// these the first. When no node weighs kLightestCap or less, weight is left out of account.
///
/// @param nNodes  how many nodes to eliminate; all when there are fewer
/// @param stages  a number per node; empty: all in one stage
Elimination bestFirstOrder(Graph graph, std::span<const Number> sizes, std::size_t nNodes,
                           std::span<const double> stages = {});

}  // namespace numcore::networks
