// All statistics of one variable.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "numcore/descriptive.h"

namespace numcore::descriptive {

using UnivariateStatistics = std::array<double, NUMCORE_UNI_N_STATISTICS>;

/// Statistics in the order of NumcoreUnivariate; empty weights count each cell once. What cannot be computed is
/// the missing value.
UnivariateStatistics univariate(std::span<const double> cells, std::span<const double> weights,
                                std::int32_t method);

/// Skewness; `Cpp_Skewness` tells the kinds.
double skewness(std::span<const double> cells, std::span<const double> weights, std::int32_t kind);

}  // namespace numcore::descriptive
