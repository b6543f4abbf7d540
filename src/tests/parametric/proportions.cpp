// z tests of one and two proportions.

#include "tests/parametric/proportions.hpp"

#include <cmath>

#include "numcore/special.h"
#include "suite/basecore.hpp"
#include "tests/clopper_pearson.hpp"

namespace numcore::tests {
namespace {

using basecore::FSgn;
using basecore::Max;
using basecore::Min;

constexpr double kVarianceThreshold = 1e-12;

// What both designs bring to the statistic.
struct Parts {
    double distance;    // difference less the hypothesised one
    double correction;  // of continuity
    double variance;    // of the statistic, times scale
    double scale;
    double limitVariance;  // of the interval
};

double statisticOf(const Parts& parts) {
    if (parts.variance > kVarianceThreshold) {
        return (parts.distance - FSgn(parts.distance) * parts.correction) /
               std::sqrt(parts.scale * parts.variance);
    }
    // Kept: the negative marker whatever the sign of the distance.
    return std::abs(parts.distance) < kVarianceThreshold ? 0.0 : kMissing;
}

ProportionTest decideProportions(const Parts& parts, const ProportionQuestion& question) {
    ProportionTest test;
    test.status = kDone;
    test.z = asResult(statisticOf(parts));
    const double lowerTail = test.z == kMissing ? 0.0 : CDFNormalStd(test.z);
    const Decision decision =
        decide({lowerTail, 1.0 - lowerTail}, question.alpha, question.alternative(), InvCDFNormalStd);
    test.pValue = decision.pValue;
    test.critical = decision.critical;
    return test;
}

// Kept: the open ends of one-sided intervals are -1 and 1, of one share as well.
void openEnds(Limits& limits, std::int32_t alternativeCode) {
    if (alternativeCode == -1) limits.lower = -1.0;
    if (alternativeCode == 1) limits.upper = 1.0;
}

Limits differenceLimits(const Parts& parts, double critical, Alternative alternative) {
    const double half = std::abs(critical) * std::sqrt(parts.limitVariance) + parts.correction;
    // Kept: centred on the difference less the hypothesised one.
    return {alternative == Alternative::kLower ? -1.0 : Max(parts.distance - half, -1.0),
            alternative == Alternative::kUpper ? 1.0 : Min(parts.distance + half, 1.0)};
}

Limits waldLimits(const Proportion& sample, double share, double n, double critical, double correction) {
    const double half = correction / sample.n + std::sqrt(share * (1.0 - share) / n) * std::abs(critical);
    return {Max(sample.p - half, 0.0), Min(sample.p + half, 1.0)};
}

Limits shareLimits(const Proportion& sample, double theoretical, double critical, double correction,
                   const ProportionQuestion& question) {
    switch (question.interval) {
        case ProportionInterval::kWald:
            return waldLimits(sample, question.separateVariance ? sample.p : theoretical, sample.n, critical,
                              correction);
        case ProportionInterval::kWilson:
            return wilsonLimits(critical, sample, correction);
        case ProportionInterval::kClopperPearson:
            // Kept: the correction is added to the count.
            return clopperPearsonLimits(sample.n * sample.p + correction, sample.n, question.alpha);
        default:
            // Kept: centred on the share itself, not on the adjusted one. Agresti and Coull (1998), Am. Stat.
            // 52:119-126.
            return waldLimits(sample, (sample.n * sample.p + 2.0) / (sample.n + 4.0), sample.n + 4.0, critical,
                              correction);
    }
}

}  // namespace

bool isProportion(const Proportion& sample) {
    return sample.n >= 1.0 && sample.p >= 0.0 && sample.p <= 1.0;
}

ProportionTest oneProportionTest(const Proportion& sample, double theoretical,
                                 const ProportionQuestion& question) {
    const double distance = sample.p - theoretical - question.hypothesised;
    if (!(sample.n >= 1.0) || !std::isfinite(distance)) return {};
    const double wanted = question.continuity ? 0.5 : 0.0;
    const double available = std::abs(sample.n * sample.p - sample.n * theoretical);
    const double correction = Min(wanted, available) / sample.n;
    const double variance = theoretical * (1.0 - theoretical);
    ProportionTest test =
        decideProportions({distance, correction, variance, 1.0 / sample.n, variance}, question);

    const double sides = question.alternativeCode == 0 ? 0.5 : 1.0;
    test.critical = InvCDFNormalStd(1.0 - question.alpha * sides);
    // Kept: by the code itself, so that it is negative for the lower tail.
    if (question.alternativeCode != 0) test.critical *= question.alternativeCode;
    test.critical = asResult(test.critical);
    const Limits limits = shareLimits(sample, theoretical, test.critical, correction, question);
    test.limits = {asResult(limits.lower), asResult(limits.upper)};
    openEnds(test.limits, question.alternativeCode);
    return test;
}

ProportionTest twoProportionsTest(const Proportion& first, const Proportion& second,
                                  const ProportionQuestion& question) {
    const double distance = first.p - second.p - question.hypothesised;
    if (!(first.n >= 1.0) || !(second.n >= 1.0) || !std::isfinite(distance)) return {};
    const double reciprocals = 1.0 / first.n + 1.0 / second.n;
    const double wanted = question.continuity ? 0.5 : 0.0;
    const double correction = Min(wanted, std::abs(distance) / reciprocals) * reciprocals;
    const double separate = first.p * (1.0 - first.p) / first.n + second.p * (1.0 - second.p) / second.n;
    const double pooled = (first.n * first.p + second.n * second.p) / (first.n + second.n);
    const Parts parts = question.separateVariance
                            ? Parts{distance, correction, separate, 1.0, separate}
                            : Parts{distance, correction, pooled * (1.0 - pooled), reciprocals, separate};
    ProportionTest test = decideProportions(parts, question);
    const Limits limits = differenceLimits(parts, test.critical, question.alternative());
    test.limits = {asResult(limits.lower), asResult(limits.upper)};
    openEnds(test.limits, question.alternativeCode);
    return test;
}

Limits wilsonLimits(double critical, const Proportion& sample, double correction) {
    const double square = critical * critical / sample.n;
    const auto limit = [&](double p, double side) {
        const double half =
            std::abs(critical) * std::sqrt(p * (1.0 - p) / sample.n + square / (4.0 * sample.n));
        return std::clamp((p + square / 2.0 + side * half) / (1.0 + square), 0.0, 1.0);
    };
    if (!(sample.n >= 1.0) || !std::isfinite(critical + sample.p + correction)) return {};
    // The correction moves the share outwards, but not out of its range.
    return {limit(Max(sample.p - correction, 0.0), -1.0), limit(Min(sample.p + correction, 1.0), 1.0)};
}

Limits clopperPearsonLimits(double count, double n, double alpha) {
    if (!(n >= 1.0) || !std::isfinite(count) || !(alpha > 0.0 && alpha < 1.0)) return {};
    const ProportionLimits limits = clopperPearson(count, n, alpha / 2.0);
    return {asResult(limits.lower), asResult(limits.upper)};
}

}  // namespace numcore::tests
