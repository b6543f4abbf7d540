// Association of a number with an ordered or two-valued variable.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "correlation/association/polychoric.hpp"
#include "numcore/markers.hpp"

namespace numcore::association {

/// The side of a test of no association.
enum class Side { kTwoSided, kLower, kUpper };

struct Association {
    FitStatus status = FitStatus::kDegenerate;
    double coefficient = kMissing;
    double standardError = kMissing;
    double statistic = kMissing;
    double pValue = kMissing;
    double upperWeight = 0.0;
    double weight = 0.0;
    std::int32_t nCategories = 0;
};

/// A number and its category in each observation that takes part: both present, neither NaN, weight above the
/// double epsilon.
struct GradedSample {
    std::vector<double> x;
    std::vector<std::int32_t> category;  ///< from 0, ascending with the graded variable
    std::vector<double> weights;
    std::int32_t nCategories = 0;  ///< without observations when there are too many
};
GradedSample gradedSample(std::span<const double> x, std::span<const double> grades,
                          std::span<const double> weights);

/// Coefficients from summaries; the missing value outside the domain.
///
/// Biserial: (upper - lower) / deviation * p (1 - p) / density at the p-quantile. Pearson, K. (1909),
/// Biometrika 7:96-105. Not bounded by 1.
double biserialOf(double upperMean, double lowerMean, double deviation, double upperShare);
/// Point-biserial: (upper - lower) / deviation * sqrt(p (1 - p)), deviation with divisor n.
double pointBiserialOf(double upperMean, double lowerMean, double deviation, double upperShare);
/// Rank-biserial: 2 (upper - lower) / n of mean ranks. Glass, G. V. (1966), Educ. Psychol. Meas. 26:623-631.
double rankBiserialOf(double upperMeanRank, double lowerMeanRank, double n);
/// Polyserial from the Pearson coefficient r with category numbers of deviation s: r s / (sum of the densities
/// at the thresholds). Olsson, U., Drasgow, F. and Dorans, N. J. (1982), Psychometrika 47:337-347.
double polyserialOf(double pearson, std::span<const double> categoryWeights);

/// The same from observations. The first three need exactly two categories.
Association biserial(const GradedSample& sample, Side side);
Association pointBiserial(const GradedSample& sample, Side side);
Association rankBiserial(const GradedSample& sample, Side side);

/// Polyserial correlation: mean, deviation and thresholds from the margins, then the correlation at which the
/// likelihood of the categories given the numbers is largest (polyserial.cpp).
Association polyserial(const GradedSample& sample, Side side);

/// Normal test of a coefficient with a standard error, filled into the result.
void testByNormal(double nullError, Side side, Association& result);

}  // namespace numcore::association
