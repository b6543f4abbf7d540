// Fill-in edges and maximal cliques of a graph, given an order of elimination.
#pragma once

#include <utility>

#include "decision/networks/graph.hpp"

namespace numcore::networks {

struct Triangulation {
    Lists cliques;                                     ///< in the order found, members ascending
    std::vector<std::pair<Number, Number>> fillEdges;  ///< lower node first, ascending
    Graph graph;                                       ///< with the fill-in edges
};

/// @param order  nodes, each at most once; what it leaves out stays in the graph and gives no clique
Triangulation triangulate(Graph graph, std::span<const Number> order);

}  // namespace numcore::networks
