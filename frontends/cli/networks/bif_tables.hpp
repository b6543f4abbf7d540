// The table of a node from the entries of its probability block.
#pragma once

#include <cstddef>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "cli/networks/bif_blocks.hpp"
#include "cli/networks/network.hpp"

namespace numcore::cli {

using PositionsByName = std::unordered_map<std::string_view, std::size_t>;

/// Most numbers that the tables of a network may hold together.
inline constexpr std::size_t kMostTableCells = std::size_t{1} << 25;

/// Fills the table of a node whose parents are known. An entry `default` gives every row that nothing else
/// gives; `table` gives all rows, the node's own state varying slowest and the last parent fastest; rows give
/// one each. A table whose rows sum to 1 only when the own state varies fastest is read so, with a warning.
/// Rows that do not sum to 1 are kept, with warnings. Throws DataError with line and column.
void fillTable(const BifSource& source, const BifProbability& block, const std::vector<PositionsByName>& states,
               std::size_t node, Network& network);

}  // namespace numcore::cli
