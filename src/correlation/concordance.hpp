// Concordant and discordant pairs of observations.
#pragma once

#include "correlation/kendall.hpp"
#include "correlation/kernels.hpp"

namespace numcore::correlation {

inline constexpr double kTieEpsilon = 2.220446049250313e-16;
/// When |dx dy| <= kTieEpsilon one of both differences is at most its root.
inline constexpr double kNear = 1.0 / 67108864.0;

/// By sorting: the discordant pairs are those out of order in y once x is in order. Knight, W. R. (1966), A
/// computer method for calculating Kendall's tau with ungrouped data, JASA 61:436-439. The columns can be
/// sorted, or their smallest steps are large enough; the weights are counts.
PairCounts countBySorting(const KendallColumn& x, const KendallColumn& y, std::span<const double> weights);

/// By comparing all pairs.
PairCounts countByComparing(std::span<const double> x, std::span<const double> y,
                            std::span<const double> weights);

/// True when no pair of observations that differ in both columns lies within kTieEpsilon.
bool stepsAreLarge(const KendallColumn& x, const KendallColumn& y);

}  // namespace numcore::correlation
