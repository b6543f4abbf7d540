// Doors of the tests of proportions.

#include <algorithm>

#include "exports/parametric_input.hpp"
#include "suite/rngcore.hpp"
#include "tests/parametric/proportions.hpp"

namespace inside = numcore::tests;

using inside::cellsAt;
using inside::Proportion;
using inside::put;
using numcore::isTrue;

namespace {

inside::ProportionInterval intervalOf(std::int32_t code) {
    switch (code) {
        case NUMCORE_PROPORTION_WALD:
            return inside::ProportionInterval::kWald;
        case NUMCORE_PROPORTION_WILSON:
            return inside::ProportionInterval::kWilson;
        case NUMCORE_PROPORTION_CLOPPER_PEARSON:
            return inside::ProportionInterval::kClopperPearson;
        default:
            return inside::ProportionInterval::kAdjustedWald;
    }
}

void putLimits(const inside::Limits& limits, double* lower, double* upper) {
    put(lower, limits.lower);
    put(upper, limits.upper);
}

std::vector<Proportion> proportionsAt(const std::int32_t* n, const double* p, std::int32_t k) {
    std::vector<Proportion> samples;
    if (n == nullptr || p == nullptr || k < 1) return samples;
    samples.reserve(static_cast<std::size_t>(k));
    for (std::int64_t i = 0; i < k; ++i) samples.push_back({static_cast<double>(n[i]), p[i]});
    return samples;
}

}  // namespace

int32_t TestProportions(int32_t nSamples, int32_t n1, int32_t n2, double p1, double p2, double D, double alpha,
                        int32_t alternative, int16_t continuity, int32_t variance, int32_t interval, double* z,
                        double* critical, double* pValue, double* lower, double* upper) {
    const inside::ProportionQuestion question{
        .hypothesised = D,
        .alpha = alpha,
        .alternativeCode = alternative,
        .continuity = isTrue(continuity),
        .separateVariance = variance == NUMCORE_PROPORTION_SEPARATE,
        .interval = intervalOf(interval),
    };
    const Proportion first{static_cast<double>(n1), p1};
    const Proportion second{static_cast<double>(n2), p2};
    const inside::ProportionTest test = nSamples == 1 ? inside::oneProportionTest(first, p2, question)
                                                      : inside::twoProportionsTest(first, second, question);
    put(z, test.z);
    put(critical, test.critical);
    put(pValue, test.pValue);
    putLimits(test.limits, lower, upper);
    return test.status;
}

int32_t Cpp_TestProportions(int32_t nSamples, int32_t n1, int32_t n2, double p1, double p2, double D,
                            double alpha, int32_t alternative, int16_t continuity, int32_t variance,
                            int32_t interval, double* z, double* critical, double* pValue, double* lower,
                            double* upper) {
    return TestProportions(nSamples, n1, n2, p1, p2, D, alpha, alternative, continuity, variance, interval, z,
                           critical, pValue, lower, upper);
}

void GetInfSupWilson(double critical, double p, int32_t n, double correction, double* lower, double* upper) {
    putLimits(inside::wilsonLimits(critical, {static_cast<double>(n), p}, correction), lower, upper);
}

void GetInfSupClopper(double count, int32_t n, double alpha, double* lower, double* upper) {
    putLimits(inside::clopperPearsonLimits(count, n, alpha), lower, upper);
}

int32_t TestKProportionsChi2(int32_t k, const int32_t* n, const double* p, const double* theoretical,
                             double alpha, double* chiSquare, double* critical, double* df, double* pValue) {
    return inside::withinMemory([&] {
        const inside::ProportionsChiSquare test =
            inside::kProportionsTest(proportionsAt(n, p, k), cellsAt(theoretical, k), alpha);
        put(chiSquare, test.chiSquare);
        put(critical, test.critical);
        put(df, test.df);
        put(pValue, test.pValue);
        return test.status;
    });
}

int32_t TestKProportionsMarascuilo(int32_t k, const int32_t* n, const double* p, double alpha,
                                   double* differences, double* critical, double* pValues,
                                   int32_t* significant) {
    return inside::withinMemory([&] {
        const std::vector<Proportion> samples = proportionsAt(n, p, k);
        if (samples.size() < 2 || !std::ranges::all_of(samples, inside::isProportion)) return inside::kTooFew;
        std::size_t cell = 0;
        for (const Proportion& second : samples) {
            for (const Proportion& first : samples) {
                const inside::ProportionPair pair = inside::marascuiloPair(first, second, k, alpha);
                if (differences != nullptr) differences[cell] = pair.difference;
                if (critical != nullptr) critical[cell] = pair.critical;
                if (pValues != nullptr) pValues[cell] = pair.pValue;
                if (significant != nullptr) significant[cell] = pair.significant ? 1 : 0;
                ++cell;
            }
        }
        return inside::kDone;
    });
}

int32_t Test2ProportionsMonte(int32_t n1, int32_t n2, double p1, double p2, double D, int32_t alternative,
                              int32_t nSimulations, int32_t* seed, int16_t seedGiven, double* difference,
                              double* pValue, double* lower, double* upper) {
    return inside::withinMemory([&] {
        std::int32_t used = seed == nullptr ? 0 : *seed;
        if (!isTrue(seedGiven)) used = numcore::rngcore::chooseSeed();
        const inside::MonteCarloTest test =
            inside::monteCarloProportions({static_cast<double>(n1), p1}, {static_cast<double>(n2), p2}, D,
                                          inside::alternativeOf(alternative), nSimulations, used);
        if (seed != nullptr) *seed = used;
        put(difference, test.difference);
        put(pValue, test.pValue);
        putLimits(test.limits, lower, upper);
        return test.status;
    });
}
