// Correlations with other columns held constant.
#pragma once

#include "cli/correlation/compute.hpp"

namespace numcore::cli {

/// Pearson correlations of the pairs of a sample, each over the rows where both variables and every column
/// held constant are present (listwise: every column). Degrees of freedom are rows less 2 less the columns held
/// constant; limits count rows less those columns.
Correlations correlatePartially(const Sample& sample, const CorrelationRequest& request);

}  // namespace numcore::cli
