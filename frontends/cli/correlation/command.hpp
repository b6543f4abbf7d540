// The cor command.
#pragma once

#include "cli/report.hpp"
#include "cli/sample.hpp"

namespace numcore::cli {

/// Adds the tables of correlations to the report and draws the map that was asked for. Text columns are left
/// out and named in a note, so are constant ones. The sample's columns are used up. Throws DataError when there
/// are no two columns to correlate.
void correlations(Sample sample, const Options& options, Report& report);

}  // namespace numcore::cli
