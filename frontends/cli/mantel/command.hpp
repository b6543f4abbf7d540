// The mantel command.
#pragma once

#include "cli/options.hpp"
#include "cli/report.hpp"

namespace numcore::cli {

/// Reads two or three distance matrices and tests the association of the first two, the third held constant.
/// Throws DataError.
Report testMatrices(const Options& options);

}  // namespace numcore::cli
