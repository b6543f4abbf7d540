// Tests of one variance, of the ratio of two, and of the equality of several.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "tests/parametric/decision.hpp"
#include "tests/parametric/samples.hpp"

namespace numcore::tests {

/// What is asked of a test of variances; the tests of several groups are upper-tailed.
struct VarianceQuestion {
    double hypothesised = 1.0;  ///< variance, or ratio of the variances
    double alpha = 0.05;
    Alternative alternative = Alternative::kTwoSided;
    ResamplingOptions* resampling = nullptr;  ///< null: by the test's law
};

struct RatioTest {
    std::int32_t status = kTooFew;
    double ratio = kMissing;
    double F = kMissing;
    double critical = kMissing;
    double df1 = kMissing;
    double df2 = kMissing;
    double pValue = kMissing;
    Limits limits;
};

/// A variance and its degrees of freedom.
struct VarianceEstimate {
    double variance;
    double df;
};

/// F test of two variances, by Fisher's law whatever the question says of resampling.
RatioTest varianceRatioTest(const VarianceEstimate& first, const VarianceEstimate& second,
                            const VarianceQuestion& question);
/// F test of two compact samples.
///
/// @param weightedDf  degrees of freedom from the sums of weights instead of the counts
RatioTest varianceRatioTest(const Sample& first, const Sample& second, bool weightedDf,
                            const VarianceQuestion& question);

struct VarianceTest {
    double variance = kMissing;
    double ratio = kMissing;
    double chiSquare = kMissing;
    double critical = kMissing;
    double df = kMissing;
    double pValue = kMissing;
    Limits limits;
};

/// Chi-square test of one variance; the values are not compacted.
VarianceTest varianceTest(std::span<const double> values, std::span<const double> weights,
                          const VarianceQuestion& question);

struct BartlettTest {
    std::int32_t status = kDegenerate;
    double statistic = kMissing;
    double critical = kMissing;
    double df = kMissing;
    double pValue = kMissing;
};

BartlettTest bartlettTest(std::span<const Sample> groups, const VarianceQuestion& question);

/// An F statistic of several groups.
struct GroupsTest {
    std::int32_t status = kDegenerate;
    double F = kMissing;
    double critical = kMissing;
    double df1 = kMissing;
    double df2 = kMissing;
    double pValue = kMissing;
};

/// One-way analysis of variance of unweighted groups: F and degrees of freedom only.
GroupsTest oneWayStatistic(std::span<const Sample> groups);

/// Fills p-value and critical value by Fisher's law or, asked to, by resampling the groups.
void decideGroups(GroupsTest& test, Statistic statistic, std::span<const Sample> groups,
                  const VarianceQuestion& question);

enum class LeveneCentre { kMedian, kMean };

GroupsTest leveneTest(std::span<const Sample> groups, LeveneCentre centre, const VarianceQuestion& question);

/// Welch's test of equal means.
GroupsTest welchAnova(std::span<const Sample> groups, const VarianceQuestion& question);

}  // namespace numcore::tests
