// Tests of a mean against a theoretical one.

#include <cmath>

#include "tests/parametric/mean_conclusion.hpp"

namespace numcore::tests {
namespace {

// Kept: n counts the values that are not the missing one, whatever their weight.
double countNotMissing(std::span<const double> values) {
    return static_cast<double>(values.size()) - vmcore::V_NbMissing(values);
}

struct OneSample {
    double n;
    double mean;
    double variance;
    double nNeeded;
};

MeanTest concludeOneSample(const OneSample& sample, const MeanLaw& law, const MeanQuestion& question,
                           const ResamplingRequest& request) {
    MeanTest test;
    test.df = sample.n - 1.0;
    if (sample.mean != kMissing) test.difference = asResult(sample.mean - question.hypothesised);
    // Kept: the upper limit stays open where nothing can be computed.
    test.limits.upper = kOverflow;
    if (sample.n < sample.nNeeded) return test;
    const bool computable = sample.variance >= vmcore::kWeightEpsilon && std::isfinite(sample.variance) &&
                            std::isfinite(sample.mean) && std::isfinite(question.hypothesised);
    test.status = computable ? kDone : kDegenerate;
    if (!computable) return test;

    const double standardError = std::sqrt(sample.variance / sample.n);
    test.statistic = asResult((sample.mean - question.hypothesised) / standardError);
    const Decision decision = decideMeans(law, test.statistic, question, request);
    test.pValue = decision.pValue;
    test.critical = decision.critical;
    test.limits = limitsAround(sample.mean, test.critical, standardError, question.alternative);
    return test;
}

}  // namespace

MeanTest tTestOneSample(std::span<const double> values, std::span<const double> weights,
                        const MeanQuestion& question) {
    OneSample sample{countNotMissing(values), kMissing, kMissing, 2.0};
    vmcore::V_MeanVarW2(values, weights, sample.mean, sample.variance);
    const Sample group{values, weights};
    return concludeOneSample(sample, {false, sample.n - 1.0}, question,
                             {.statistic = Statistic::kOneMean, .groups = {&group, 1}});
}

MeanTest zTestOneSample(std::span<const double> values, std::span<const double> weights,
                        std::optional<double> givenVariance, const MeanQuestion& question) {
    OneSample sample{countNotMissing(values), kMissing, kMissing, givenVariance ? 1.0 : 2.0};
    vmcore::V_MeanVarW2(values, weights, sample.mean, sample.variance);
    if (givenVariance && sample.mean != kMissing) sample.variance = *givenVariance;
    const Sample group{values, weights};
    ResamplingRequest request{.statistic = Statistic::kOneMean, .groups = {&group, 1}};
    if (givenVariance) request.givenVariances = {&*givenVariance, 1};
    return concludeOneSample(sample, {true, 0.0}, question, request);
}

}  // namespace numcore::tests
