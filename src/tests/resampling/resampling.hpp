// Resampling: p-values and critical values of the tests from permutations, sign changes or bootstrap samples.
#pragma once

#include <span>

#include "numcore/markers.hpp"
#include "numcore/resampling.h"
#include "tests/alternative.hpp"

namespace numcore::tests {

/// Observations that take part: present values with positive weights.
struct Sample {
    std::span<const double> values;
    std::span<const double> weights;  ///< one a value; empty: unit weights
};

enum class Statistic {
    kZ,              ///< two groups: difference of means over sqrt(variance1 / n1 + variance2 / n2), n counts
    kT,              ///< two groups: the same over the pooled standard error
    kWelch,          ///< two groups: the same over sqrt(variance1 / W1 + variance2 / W2), W sums of weights
    kPairedZ,        ///< one group, the differences of pairs: mean over sqrt(squares / (n - 1) / n)
    kPairedT,        ///< one group, the differences of pairs: mean over sqrt(squares / (W - 1) / W)
    kOneMean,        ///< one group: mean over sqrt(variance / n), n counts
    kVarianceRatio,  ///< two groups
    kBartlett,       ///< two and more groups
    kLevene,         ///< two and more groups of deviations from their centre: their one-way F
    kOneWayF,        ///< two and more groups
    kWelchF          ///< two and more groups: Welch's F for unequal variances
};

struct ResamplingRequest {
    Statistic statistic = Statistic::kT;
    std::span<const Sample> groups{};
    double hypothesised = 0.0;  ///< mean, difference of the means, or ratio of the variances
    /// kZ, kPairedZ and kOneMean only: the known variance of each group; empty: estimated
    std::span<const double> givenVariances{};
    double alpha = 0.05;
    Alternative alternative = Alternative::kTwoSided;  ///< the tests of several groups are upper-tailed
};

struct Resampled {
    double pValue = kMissing;
    double critical = kMissing;       ///< as the test's law would give it: negative for a lower tail
    double lowerCritical = kMissing;  ///< two-sided variance ratio: the quantile of alpha / 2
    /// Clopper-Pearson limits, confidence 0.99, of the p-value that endless resamples would give; both the
    /// p-value itself when every arrangement was tried.
    double pFrom = kMissing;
    double pTo = kMissing;
    bool ok = false;  ///< false: the data gives no statistic, and everything is missing
};

/// p-value and critical value of a test by resampling.
///
/// @param request  the test and its data; each group has one observation at least
/// @param options  in/out as `ResamplingOptions` tells; its flag is not looked at
///
/// Permutations move whole observations, values with their weights, between groups; those of one group change
/// the signs of its values, the distances from the hypothesis. The hypothesis is imposed first: means are
/// shifted by the hypothesised difference, the groups of kVarianceRatio and kBartlett are centred at their
/// means and divided by the root of the hypothesised ratio. The bootstrap draws from each group of its own,
/// with the group's mean (variance tests: its mean and variance) moved to the hypothesis; Efron and Tibshirani
/// (1993), An Introduction to the Bootstrap, section 16. With drawn resamples p = (b + 1) / (m + 1): Phipson
/// and Smyth (2010), Stat. Appl. Genet. Mol. Biol. 9(1):39.
///
/// Two-sided tests of means compare absolute values; the two-sided variance ratio takes twice the smaller tail.
/// A resample whose statistic is within 1e-9 of the data's (relative, absolute below 1) ties with it and
/// counts; so does one that has no statistic. The critical value is the order statistic of the resamples, of
/// rank ceil((1 - alpha) m) for m arrangements and ceil((1 - alpha)(m + 1)), at most m, for m drawn ones: what
/// is beyond it has p <= alpha. Missing for an alpha that is NaN.
///
/// @throws std::bad_alloc
Resampled resample(const ResamplingRequest& request, ResamplingOptions& options);

}  // namespace numcore::tests
