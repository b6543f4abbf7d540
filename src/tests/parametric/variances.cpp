// Tests of one variance and of the ratio of two.

#include "tests/parametric/variances.hpp"

#include <cmath>

#include "numcore/continuous_laws.h"
#include "numcore/special.h"

namespace numcore::tests {
namespace {

double fisherQuantile(double p, const RatioTest& test) {
    return InvCDFFisher(p, test.df1, test.df2, NUMCORE_TRUE);
}

void decideRatio(RatioTest& test, const VarianceQuestion& question) {
    const double upperTail = pValFisher(test.F, test.df1, test.df2);
    const Decision decision = decide({1.0 - upperTail, upperTail}, question.alpha, question.alternative,
                                     [&test](double p) { return fisherQuantile(p, test); });
    test.pValue = decision.pValue;
    test.critical = decision.critical;
    const double lowerQuantile = question.alternative == Alternative::kTwoSided
                                     ? fisherQuantile(question.alpha / 2.0, test)
                                     : test.critical;
    test.limits = limitsOfScale(test.ratio, test.critical, lowerQuantile, question.alternative, 0.0);
}

bool isComputable(const VarianceEstimate& first, const VarianceEstimate& second,
                  const VarianceQuestion& question) {
    return first.variance >= 0.0 && second.variance >= 0.0 && first.variance + second.variance > 0.0 &&
           std::isfinite(first.variance + second.variance) && first.df > 0.0 && second.df > 0.0 &&
           question.hypothesised > 0.0 && std::isfinite(question.hypothesised);
}

RatioTest ratioOf(const VarianceEstimate& first, const VarianceEstimate& second,
                  const VarianceQuestion& question) {
    RatioTest test;
    test.df1 = asResult(first.df);
    test.df2 = asResult(second.df);
    test.status = isComputable(first, second, question) ? kDone : kDegenerate;
    if (test.status != kDone) return test;
    test.ratio = asResult(first.variance / second.variance);
    test.F = asResult(test.ratio / question.hypothesised);
    return test;
}

}  // namespace

RatioTest varianceRatioTest(const VarianceEstimate& first, const VarianceEstimate& second,
                            const VarianceQuestion& question) {
    RatioTest test = ratioOf(first, second, question);
    if (test.status == kDone) decideRatio(test, question);
    return test;
}

RatioTest varianceRatioTest(const Sample& first, const Sample& second, bool weightedDf,
                            const VarianceQuestion& question) {
    if (first.values.size() < 2 || second.values.size() < 2) return {};
    const Moments a = momentsOf(first);
    const Moments b = momentsOf(second);
    const VarianceEstimate estimates[] = {{a.variance, (weightedDf ? a.weight : a.n) - 1.0},
                                          {b.variance, (weightedDf ? b.weight : b.n) - 1.0}};
    if (question.resampling == nullptr) return varianceRatioTest(estimates[0], estimates[1], question);

    RatioTest test = ratioOf(estimates[0], estimates[1], question);
    if (test.status != kDone) return test;
    const Sample groups[] = {first, second};
    const Resampled found = resample({.statistic = Statistic::kVarianceRatio,
                                      .groups = groups,
                                      .hypothesised = question.hypothesised,
                                      .alpha = question.alpha,
                                      .alternative = question.alternative},
                                     *question.resampling);
    test.pValue = found.pValue;
    test.critical = found.critical;
    const bool twoSided = question.alternative == Alternative::kTwoSided;
    test.limits = limitsOfScale(test.ratio, found.critical, twoSided ? found.lowerCritical : found.critical,
                                question.alternative, 0.0);
    return test;
}

VarianceTest varianceTest(std::span<const double> values, std::span<const double> weights,
                          const VarianceQuestion& question) {
    double mean = kMissing;
    double variance = kMissing;
    vmcore::V_MeanVarW2(values, weights, mean, variance);
    VarianceTest test;
    test.df = static_cast<double>(values.size()) - vmcore::V_NbMissing(values) - 1.0;
    const auto quantile = [&test](double p) { return asResult(InvCDFChiSq(p, test.df)); };
    test.critical = quantile(criticalOrder(question.alpha, question.alternative));
    test.limits = {kMissing, question.alternative == Alternative::kUpper ? kOverflow : kMissing};
    // Kept: no size check. One observation has a statistic of 0.
    if (variance == kMissing || !std::isfinite(variance)) return test;
    test.variance = variance;
    test.ratio = asResult(variance / question.hypothesised);
    const double chiSquare = test.df * variance / question.hypothesised;
    test.chiSquare = asResult(chiSquare);
    const double upperTail = 1.0 - IncompleteGamma(chiSquare / 2.0, test.df / 2.0);
    test.pValue = asResult(pValueOf({1.0 - upperTail, upperTail}, question.alternative));
    const double lowerQuantile =
        question.alternative == Alternative::kTwoSided ? quantile(question.alpha / 2.0) : test.critical;
    // Kept: the open lower limit is the missing value, not 0.
    test.limits =
        limitsOfScale(test.df * variance, test.critical, lowerQuantile, question.alternative, kMissing);
    return test;
}

}  // namespace numcore::tests
