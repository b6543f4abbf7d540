// Doors of the tests of means.

#include <algorithm>

#include "exports/parametric_input.hpp"

namespace inside = numcore::tests;

using inside::cellsAt;
using inside::CompactPairs;
using inside::MeanQuestion;
using inside::MeanTest;
using numcore::isTrue;

namespace {

struct MeanOutputs {
    double* difference;
    double* statistic;
    double* critical;
    double* df;  // null for z
    double* pValue;
    double* lower;
    double* upper;

    std::int32_t write(const MeanTest& test) const {
        inside::put(difference, test.difference);
        inside::put(statistic, test.statistic);
        inside::put(critical, test.critical);
        inside::put(df, test.df);
        inside::put(pValue, test.pValue);
        inside::put(lower, test.limits.lower);
        inside::put(upper, test.limits.upper);
        return test.status;
    }
};

MeanQuestion questionOf(double hypothesised, double alpha, std::int32_t alternative,
                        ResamplingOptions* resampling) {
    return {hypothesised, alpha, inside::alternativeOf(alternative), inside::askedFor(resampling)};
}

// Kept: too few pairs leave every output as it was; too few observations leave the degrees of freedom.
std::int32_t writeIndependent(const MeanTest& test, MeanOutputs out) {
    if (test.status == inside::kTooFew) out.df = nullptr;
    return out.write(test);
}

std::int32_t writePaired(const MeanTest& test, const CompactPairs& pairs, const MeanOutputs& out,
                         ST_PairOutput* plot) {
    if (test.status == inside::kTooFew) return test.status;
    if (plot != nullptr && plot->requested >= 1) {
        const std::size_t n = pairs.first.size();
        plot->nPairs = static_cast<std::int32_t>(n);
        for (std::size_t i = 0; plot->means != nullptr && i < n; ++i)
            plot->means[i] = (pairs.first[i] + pairs.second[i]) * 0.5;
        for (std::size_t i = 0; plot->differences != nullptr && i < n; ++i)
            plot->differences[i] = pairs.first[i] - pairs.second[i];
    }
    return out.write(test);
}

}  // namespace

int32_t TTest2SamplesNew(const double* x1, int32_t n1, const double* x2, int32_t n2, const double* weights1,
                         const double* weights2, double D, double alpha, int32_t alternative,
                         int16_t equalVariances, int16_t cochranCox, int16_t paired,
                         ResamplingOptions* resampling, double* difference, double* t, double* critical,
                         double* df, double* pValue, double* lower, double* upper, ST_PairOutput* pairs) {
    return inside::withinMemory([&] {
        const MeanQuestion question = questionOf(D, alpha, alternative, resampling);
        const MeanOutputs out{difference, t, critical, df, pValue, lower, upper};
        if (isTrue(paired)) {
            const auto kept = inside::compactPairs(cellsAt(x1, n1), cellsAt(x2, n2), cellsAt(weights1, n1));
            return writePaired(inside::tTestPaired(kept, question), kept, out, pairs);
        }
        const auto first = inside::compactSample(cellsAt(x1, n1), cellsAt(weights1, n1));
        const auto second = inside::compactSample(cellsAt(x2, n2), cellsAt(weights2, n2));
        return writeIndependent(
            inside::tTestIndependent(first.view(), second.view(), {isTrue(equalVariances), isTrue(cochranCox)},
                                     question),
            out);
    });
}

int32_t Cpp_TTest2SamplesNew(const double* x1, int32_t n1, const double* x2, int32_t n2, const double* weights1,
                             const double* weights2, double D, double alpha, int32_t alternative,
                             int16_t equalVariances, int16_t cochranCox, int16_t paired,
                             ResamplingOptions* resampling, double* difference, double* t, double* critical,
                             double* df, double* pValue, double* lower, double* upper, ST_PairOutput* pairs) {
    return inside::withCopy(resampling, [&](ResamplingOptions* options) {
        return TTest2SamplesNew(x1, n1, x2, n2, weights1, weights2, D, alpha, alternative, equalVariances,
                                cochranCox, paired, options, difference, t, critical, df, pValue, lower, upper,
                                pairs);
    });
}

int32_t TTest2Samples(const double* x1, int32_t n, const double* x2, const double* weights, double D,
                      double alpha, int32_t alternative, int16_t equalVariances, int16_t cochranCox,
                      int16_t paired, double* difference, double* t, double* critical, double* df,
                      double* pValue, double* lower, double* upper) {
    return TTest2SamplesNew(x1, n, x2, n, weights, weights, D, alpha, alternative, equalVariances, cochranCox,
                            paired, nullptr, difference, t, critical, df, pValue, lower, upper, nullptr);
}

int32_t VB_TTest2Samples(SAFEARRAY* x1, SAFEARRAY* x2, SAFEARRAY* weights, double D, double alpha,
                         int32_t alternative, int16_t equalVariances, int16_t cochranCox, int16_t paired,
                         double* difference, double* t, double* critical, double* df, double* pValue,
                         double* lower, double* upper) {
    const inside::ArraySamples samples(x1, x2, weights);
    return TTest2Samples(samples.first(), samples.n(), samples.second(), samples.weights(), D, alpha,
                         alternative, equalVariances, cochranCox, paired, difference, t, critical, df, pValue,
                         lower, upper);
}

int32_t Cpp_TTestTheoreticalMean(const double* x, int32_t n, const double* weights, double mu0, double alpha,
                                 int32_t alternative, double* difference, double* t, double* critical,
                                 double* df, double* pValue, double* lower, double* upper) {
    return inside::withinMemory([&] {
        const MeanOutputs out{difference, t, critical, df, pValue, lower, upper};
        return out.write(inside::tTestOneSample(cellsAt(x, n), cellsAt(weights, n),
                                                questionOf(mu0, alpha, alternative, nullptr)));
    });
}

int32_t Cpp_ZTestTheoreticalMean(const double* x, int32_t n, const double* weights, double mu0, double variance,
                                 int16_t givenVariance, double alpha, int32_t alternative, double* difference,
                                 double* z, double* critical, double* pValue, double* lower, double* upper) {
    return inside::withinMemory([&] {
        const MeanOutputs out{difference, z, critical, nullptr, pValue, lower, upper};
        const auto given = isTrue(givenVariance) ? std::optional(variance) : std::nullopt;
        return out.write(inside::zTestOneSample(cellsAt(x, n), cellsAt(weights, n), given,
                                                questionOf(mu0, alpha, alternative, nullptr)));
    });
}

int32_t Cpp_ZTest2SamplesNew(const double* x1, int32_t n1, const double* x2, int32_t n2, const double* weights1,
                             const double* weights2, double D, double variance1, double variance2,
                             int16_t givenVariances, double alpha, int32_t alternative, int16_t paired,
                             ResamplingOptions* resampling, double* difference, double* z, double* critical,
                             double* pValue, double* lower, double* upper, ST_PairOutput* pairs) {
    return inside::withCopy(resampling, [&](ResamplingOptions* options) {
        return inside::withinMemory([&] {
            const MeanQuestion question = questionOf(D, alpha, alternative, options);
            const MeanOutputs out{difference, z, critical, nullptr, pValue, lower, upper};
            const auto given = isTrue(givenVariances)
                                   ? std::optional(inside::GivenVariances{variance1, variance2})
                                   : std::nullopt;
            if (isTrue(paired)) {
                const auto kept = inside::compactPairs(cellsAt(x1, n1), cellsAt(x2, n2), cellsAt(weights1, n1));
                return writePaired(inside::zTestPaired(kept, given, question), kept, out, pairs);
            }
            const auto first = inside::compactSample(cellsAt(x1, n1), cellsAt(weights1, n1));
            const auto second = inside::compactSample(cellsAt(x2, n2), cellsAt(weights2, n2));
            return writeIndependent(inside::zTestIndependent(first.view(), second.view(), given, question),
                                    out);
        });
    });
}

int32_t ZTest2Samples(const double* x1, int32_t n, const double* x2, const double* weights, double D,
                      double variance1, double variance2, int16_t givenVariances, double alpha,
                      int32_t alternative, int16_t paired, double* difference, double* z, double* critical,
                      double* pValue, double* lower, double* upper) {
    return Cpp_ZTest2SamplesNew(x1, n, x2, n, weights, weights, D, variance1, variance2, givenVariances, alpha,
                                alternative, paired, nullptr, difference, z, critical, pValue, lower, upper,
                                nullptr);
}

int32_t VB_ZTest2Samples(SAFEARRAY* x1, SAFEARRAY* x2, SAFEARRAY* weights, double D, double variance1,
                         double variance2, int16_t givenVariances, double alpha, int32_t alternative,
                         int16_t paired, double* difference, double* z, double* critical, double* pValue,
                         double* lower, double* upper) {
    const inside::ArraySamples samples(x1, x2, weights);
    return ZTest2Samples(samples.first(), samples.n(), samples.second(), samples.weights(), D, variance1,
                         variance2, givenVariances, alpha, alternative, paired, difference, z, critical, pValue,
                         lower, upper);
}

int32_t ComputeWelchANOVA(const double* values, const int32_t* groups, const double* weights, int32_t n,
                          int32_t nGroups, double alpha, ResamplingOptions* resampling, double* F,
                          double* critical, double* df1, double* df2, double* pValue) {
    return inside::withCopy(resampling, [&](ResamplingOptions* options) {
        return inside::withinMemory([&] {
            const auto split =
                inside::groupsByNumber(cellsAt(values, n), cellsAt(groups, n), cellsAt(weights, n), nGroups);
            const inside::GroupsOutputs out{F, critical, df1, df2, pValue};
            return out.write(
                inside::welchAnova(split.views, {.alpha = alpha, .resampling = inside::askedFor(options)}));
        });
    });
}
