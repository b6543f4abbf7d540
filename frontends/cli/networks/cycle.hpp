// Whether the arcs of a network make a cycle.
#pragma once

#include <cstddef>
#include <vector>

#include "cli/networks/network.hpp"

namespace numcore::cli {

/// The nodes of one directed cycle, each a parent of the next and the last of the first; empty when there is
/// none. Topological sort by removing nodes without parents: Kahn (1962), Communications of the ACM 5:558-562.
std::vector<std::size_t> findCycle(const Network& network);

}  // namespace numcore::cli
