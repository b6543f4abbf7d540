// Tests of one mean and of the difference of two.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "tests/parametric/decision.hpp"
#include "tests/parametric/samples.hpp"

namespace numcore::tests {

/// What is asked of a test of means.
struct MeanQuestion {
    double hypothesised = 0.0;  ///< mean, or difference of the means
    double alpha = 0.05;
    Alternative alternative = Alternative::kTwoSided;
    ResamplingOptions* resampling = nullptr;  ///< null: by the test's law
};

struct MeanTest {
    std::int32_t status = kTooFew;
    double difference = kMissing;
    double statistic = kMissing;
    double critical = kMissing;
    double df = kMissing;  ///< not set by z tests
    double pValue = kMissing;
    Limits limits;
};

/// Known variances of two samples; of paired ones the first is that of the differences.
struct GivenVariances {
    double first;
    double second;
};

/// Student's t test against a theoretical mean. Limits are those of the mean. The values are not compacted;
/// resampling needs compact ones, and gives nothing otherwise.
MeanTest tTestOneSample(std::span<const double> values, std::span<const double> weights,
                        const MeanQuestion& question);
/// The same with the normal law; without a given variance it is estimated.
MeanTest zTestOneSample(std::span<const double> values, std::span<const double> weights,
                        std::optional<double> givenVariance, const MeanQuestion& question);

/// Variances of the t test of independent samples.
struct TVariant {
    bool equalVariances = false;  ///< otherwise Welch's test
    bool cochranCox = false;      ///< two-sided critical value of Cochran and Cox
};

MeanTest tTestIndependent(const Sample& first, const Sample& second, TVariant variant,
                          const MeanQuestion& question);
MeanTest tTestPaired(const CompactPairs& pairs, const MeanQuestion& question);

MeanTest zTestIndependent(const Sample& first, const Sample& second, std::optional<GivenVariances> given,
                          const MeanQuestion& question);
MeanTest zTestPaired(const CompactPairs& pairs, std::optional<GivenVariances> given,
                     const MeanQuestion& question);

}  // namespace numcore::tests
