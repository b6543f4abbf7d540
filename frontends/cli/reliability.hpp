// The alpha command: reliability of a scale.
#pragma once

#include "cli/report.hpp"
#include "cli/sample.hpp"

namespace numcore::cli {

/// Adds the tables "reliability" (Cronbach's alpha, of covariances and standardised) and "items" (each item's
/// mean, deviation, correlation with the rest of the scale, and alpha without it) to the report. Rows with a
/// missing cell are left out. Text columns are left out and named in a note. Throws DataError for fewer than
/// two items.
void reliability(Sample sample, Report& report);

}  // namespace numcore::cli
