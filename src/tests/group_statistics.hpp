// Statistics of tests that compare groups, from the moments of each group.
#pragma once

#include <span>

namespace numcore::tests {

/// What the tests need of a group. Weights stand for sample sizes where a test says so.
struct GroupMoments {
    double count = 0.0;   ///< observations
    double weight = 0.0;  ///< sum of their weights
    double mean = 0.0;
    double squares = 0.0;  ///< weighted sum of squared deviations from the mean

    double variance() const { return squares / (weight - 1.0); }
};

/// Bartlett's statistic; Bartlett, M. S. (1937), Proc. R. Soc. A 160:268-282.
///
/// @return NaN when fewer than two groups have a weight above 1 and a variance that is not 0. Kept: the sums
/// are over
///         the groups with a weight and a variance above 1e-12, and the pooled degrees of freedom are made
///         whole after each addition, so that with fractional weights the statistic depends on the unit of the
///         data.
double bartlettStatistic(std::span<const GroupMoments> groups);

/// F of a one-way analysis of variance; groups without weight are left out. The overflow marker when only the
/// means differ; NaN when nothing differs or the degrees of freedom are not positive.
double oneWayF(std::span<const GroupMoments> groups);

/// Welch's F for unequal variances; Welch, B. L. (1951), Biometrika 38:330-336. NaN when a group's variance is
/// not positive or there are fewer than two groups.
double welchF(std::span<const GroupMoments> groups);

}  // namespace numcore::tests
