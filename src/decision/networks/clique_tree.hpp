// Cliques joined into a tree, and the tree with a root.
#pragma once

#include "decision/networks/graph.hpp"

namespace numcore::networks {

/// A clique that joins the tree, and the one it is joined to.
struct Join {
    Number from;
    Number to;
};

/// Maximum spanning tree by overlap, ties to the pair of lighter cliques: joins in the order they are made.
/// Cliques without a shared node are joined too. Prim (1957), Bell Syst. Tech. J. 36:1389-1401.
///
/// @param weights  table length of each clique
/// @param n        number of nodes
std::vector<Join> joinCliques(const Lists& cliques, std::span<const double> weights, std::size_t n);

struct RootedTree {
    Number root = 0;
    std::vector<Number> parents;  ///< of each clique; -1 at the root and where the walk does not come
    std::vector<Number> preorder;
    std::vector<Number> postorder;
};

/// Depth-first walk from the root, neighbours in ascending order.
///
/// @param neighbours  of each clique, ascending; a clique that was entered is not entered again
RootedTree walkFrom(Number root, const Lists& neighbours);

/// Neighbours of each of n cliques in a tree, ascending.
Lists neighboursOf(std::span<const Join> joins, std::size_t n);

}  // namespace numcore::networks
