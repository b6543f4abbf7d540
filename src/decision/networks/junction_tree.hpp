// The junction tree of a network, and how much memory its tables take.
#pragma once

#include <utility>

#include "decision/networks/clique_tree.hpp"
#include "decision/networks/graph.hpp"

namespace numcore::networks {

struct JunctionTree {
    std::size_t nMoralEdges = 0;
    std::vector<Number> order;  ///< of elimination
    std::vector<double> orderWeights;
    std::vector<double> orderFills;
    std::vector<std::pair<Number, Number>> fillEdges;
    Lists cliques;
    std::vector<double> cliqueCells;
    std::vector<Join> joins;
    Lists separators;  ///< of the joins
    std::vector<double> separatorCells;
    RootedTree rooted;
    std::vector<Number> joinAbove;        ///< of each clique: the join with its parent; -1 at the root
    std::vector<Number> familyCliques;    ///< of each node: the first clique that holds it and its parents
    std::vector<Number> lightestCliques;  ///< of each node: the lightest clique that holds it
};

/// 1. moral graph, 2. order of elimination, 3. triangulation, 4. tree of cliques, 5. root, 6. families.
/// A network without nodes gives a tree without cliques.
JunctionTree buildJunctionTree(const Network& network);

/// The first clique that holds all of some nodes; -1 when none does.
///
/// @param holding  for each node the cliques that hold it
Number firstCliqueWith(std::span<const Number> nodes, const Lists& cliques, const Lists& holding);

/// Sizes of the tables, before any is allocated.
struct Forecast {
    double cells = 0.0;
    double largest = 0.0;
    double separatorCells = 0.0;
    double bytes = 0.0;
};
Forecast forecastOf(const JunctionTree& tree);

/// No table may have more cells, whatever the bound: positions in it are 32-bit numbers.
inline constexpr double kMostCells = 4294967295.0;

/// Bytes that tables may take: the bound if it is a positive number, otherwise half of the physical memory.
double memoryBound(double bound);

/// Bytes of memory in the machine; infinite when the system does not tell.
double physicalMemory();

}  // namespace numcore::networks
