// Node numbers, sets, graphs, cliques and tables of probabilities as the exported routines keep them: in column
// sets of doubles. `numcore/bayesian_network.hpp` tells how.
#pragma once

#include <optional>

#include "decision/networks/clique_tree.hpp"
#include "decision/networks/projection.hpp"
#include "numcore/bayesian_network.hpp"

namespace numcore::networks {

/// Gives a table rows x columns cells of 0: in place when it has them, otherwise in storage of its own.
void clearTo(cBYN_Table& table, std::int32_t rows, std::int32_t columns);

/// Cells of the first column; empty without one.
std::span<const double> vectorOf(const cBYN_Table& table);
/// A vector of n cells with some numbers, from 1, and zeros behind them.
void writeVector(std::span<const Number> numbers, std::int32_t n, cBYN_Table& out);
/// A vector with cells as they are.
void writeCells(std::span<const double> cells, cBYN_Table& out);

/// Members of a set, from 0, in the order of its cells; what is above n is left out.
std::vector<Number> membersOf(std::span<const double> cells, std::int32_t n);

/// Order of an n x n matrix: n, or fewer when it has fewer columns; at least 0.
std::int32_t orderOf(std::int32_t n, const cBYN_Table& matrix);

Graph readGraph(std::int32_t n, const cBYN_Table& table);
void writeGraph(const Graph& graph, cBYN_Table& table);
/// Neighbour rows: j in cell (i, j).
void writeNeighbours(const Graph& graph, cBYN_Table& table);

/// The first nCliques rows, members ascending.
Lists readCliques(std::int32_t n, std::int32_t nCliques, const cBYN_Table& cliques);
void writeCliques(const Lists& cliques, std::int32_t n, cBYN_Table& out);

/// Sizes of the first n nodes; what is not there is unknown.
std::vector<Number> readSizes(std::int32_t n, const matrix<std::int32_t>& sizes);

/// A table of probabilities with its axes.
struct ProbabilityTable {
    Axes axes;
    std::vector<Number> sizes;  ///< of all nodes
    std::span<const double> cells;

    bool has(std::span<const Number> nodes) const;
};
/// The table over some members; nothing when a member has no size or comes twice, or when cells are lacking.
std::optional<ProbabilityTable> readTable(const matrix<std::int32_t>& sizes, const cBYN_Table& members,
                                          const cBYN_Table& table);

}  // namespace numcore::networks
