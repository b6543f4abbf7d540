// Tests of several proportions.

#include <algorithm>
#include <cmath>

#include "numcore/continuous_laws.h"
#include "tests/parametric/proportions.hpp"

namespace numcore::tests {
namespace {

constexpr double kVarianceThreshold = 1e-12;

double pooledShare(std::span<const Proportion> samples) {
    double n = 0.0;
    double successes = 0.0;
    for (const Proportion& sample : samples) {
        n += sample.n;
        successes += sample.n * sample.p;
    }
    return successes / n;
}

}  // namespace

ProportionsChiSquare kProportionsTest(std::span<const Proportion> samples, std::span<const double> theoretical,
                                      double alpha) {
    ProportionsChiSquare test;
    const bool equality = theoretical.empty();
    const auto isShare = [](double p) { return p >= 0.0 && p <= 1.0; };
    if (samples.size() < (equality ? 2U : 1U) || !std::ranges::all_of(samples, isProportion) ||
        !std::ranges::all_of(theoretical, isShare)) {
        return test;
    }
    const double pooled = pooledShare(samples);
    double chiSquare = 0.0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double share = equality ? pooled : theoretical[i];
        const double variance = share * (1.0 - share);
        if (!(variance > kVarianceThreshold)) {
            test.status = kDegenerate;
            return test;
        }
        const double distance = samples[i].p - share;
        chiSquare += samples[i].n * distance * distance / variance;
    }
    test.status = kDone;
    test.chiSquare = chiSquare;
    test.df = static_cast<double>(samples.size()) - (equality ? 1.0 : 0.0);
    test.pValue = asResult(pValChiSq(chiSquare, test.df));
    test.critical = asResult(InvCDFChiSq(criticalOrder(alpha, Alternative::kUpper), test.df));
    return test;
}

ProportionPair marascuiloPair(const Proportion& first, const Proportion& second, double k, double alpha) {
    const double variance = first.p * (1.0 - first.p) / first.n + second.p * (1.0 - second.p) / second.n;
    const double quantile = asResult(InvCDFChiSq(criticalOrder(alpha, Alternative::kUpper), k - 1.0));
    ProportionPair pair{};
    pair.difference = std::abs(first.p - second.p);
    pair.critical = quantile == kMissing ? kMissing : asResult(std::sqrt(quantile) * std::sqrt(variance));
    pair.significant = pair.critical != kMissing && pair.difference > pair.critical;
    if (variance > 0.0) {
        pair.pValue = asResult(pValChiSq(pair.difference * pair.difference / variance, k - 1.0));
    } else {
        pair.pValue = pair.difference > 0.0 ? 0.0 : 1.0;
    }
    return pair;
}

}  // namespace numcore::tests
