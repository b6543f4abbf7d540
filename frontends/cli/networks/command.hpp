// The bayes command.
#pragma once

#include "cli/options.hpp"
#include "cli/report.hpp"

namespace numcore::cli {

/// Reads a network and answers what is asked of it. Writes the drawing when there is to be one. Throws
/// UsageError for nodes and states that are not there, DataError for a faulty network, arcs that make a cycle,
/// and tables that would not fit the memory bound.
Report askNetwork(const Options& options);

}  // namespace numcore::cli
