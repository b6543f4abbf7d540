// Polychoric correlation: the correlation of the bivariate normal law behind a table of two ordinal variables.
// Olsson, U. (1979), Maximum likelihood estimation of the polychoric correlation coefficient, Psychometrika
// 44:443-460.
#pragma once

#include <cstdint>

#include "correlation/association/ordinal_table.hpp"
#include "correlation/association/polychoric_cells.hpp"
#include "numcore/markers.hpp"

namespace numcore::association {

/// How an estimate ended.
enum class FitStatus : std::int32_t {
    kConverged = 0,
    kTooFew = -1,        ///< no observation, or weights that leave a category without a share
    kDegenerate = -2,    ///< fewer than two categories, or too many
    kNotConverged = -3,  ///< the estimate is that of the last step
    kAtLimit = 1         ///< the likelihood is largest at -1 or 1: no standard error
};

struct PolychoricFit {
    FitStatus status = FitStatus::kDegenerate;
    double rho = kMissing;
    double standardError = kMissing;
    double logLikelihood = kMissing;
    std::int32_t nSteps = 0;
    LatentLaw law;
};

/// Likelihood ratio against the table's own proportions: whether a bivariate normal law can lie behind it.
struct NormalityTest {
    double statistic = kMissing;
    double pValue = kMissing;
    std::int32_t degreesOfFreedom = 0;
};

/// Thresholds from the margins, then the correlation at which the likelihood of the cells is largest. The
/// standard error accounts for the estimated thresholds: Joereskog, K. G. (1994), On the estimation of
/// polychoric correlations and their asymptotic covariance matrix, Psychometrika 59:381-389.
///
/// @param start  first correlation tried
PolychoricFit fitTwoStep(const OrdinalTable& table, double start);

/// Correlation and thresholds together, by quasi-Newton steps from the two-step estimate; standard error from
/// the expected information. At the limits -1 and 1 the two-step estimate stays.
PolychoricFit fitFull(const OrdinalTable& table, double start);

NormalityTest testNormality(const OrdinalTable& table, const PolychoricFit& fit);

}  // namespace numcore::association
