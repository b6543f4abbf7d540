#include "cli/tests/means.hpp"

#include <algorithm>
#include <cstddef>
#include <new>

#include "cli/codes.hpp"
#include "cli/moments.hpp"
#include "cli/tests/resampling.hpp"
#include "numcore/parametric_tests.h"

namespace numcore::cli {

namespace {

void checkMemory(std::int32_t status) {
    if (status == NUMCORE_TEST_NO_MEMORY) throw std::bad_alloc();
}

const char* nameOfTwo(const TestRequest& request, bool normal) {
    if (normal) {
        if (request.paired)
            return request.variances.empty() ? "Paired z test" : "Paired z test, known variance";
        return request.variances.empty() ? "Two-sample z test, estimated variances"
                                         : "Two-sample z test, known variances";
    }
    if (request.paired) return "Paired t test";
    if (request.cochranCox) {
        return request.equalVariances ? "Two-sample t test, pooled variance, critical value of Cochran and Cox"
                                      : "Welch's two-sample t test, critical value of Cochran and Cox";
    }
    return request.equalVariances ? "Two-sample t test, pooled variance" : "Welch's two-sample t test";
}

const char* nameOfOne(const TestRequest& request, bool normal) {
    if (!normal) return "One-sample t test";
    return request.variances.empty() ? "One-sample z test, estimated variance"
                                     : "One-sample z test, known variance";
}

/// Room for the pairs of a paired test.
ST_PairOutput roomFor(Pairs& pairs, std::size_t n) {
    pairs.means.resize(n);
    pairs.differences.resize(n);
    return {1, 0, pairs.means.data(), pairs.differences.data()};
}

}  // namespace

TestOutcome testOneMean(const TestSample& sample, const TestRequest& request, bool normal) {
    TestOutcome out;
    out.method = nameOfOne(request, normal);
    const double mu = request.mu.value_or(0.0);
    const std::int32_t alternative = codeOf(request.alternative);
    double difference = NUMCORE_MISSING;
    if (normal) {
        const double variance = request.variances.empty() ? 0.0 : request.variances[0];
        out.status = Cpp_ZTestTheoreticalMean(sample.values.data(), sample.n(), sample.weightData(), mu,
                                              variance, flagOf(!request.variances.empty()), request.alpha,
                                              alternative, &difference, &out.statistic, &out.critical,
                                              &out.pValue, &out.lower, &out.upper);
    } else {
        out.status = Cpp_TTestTheoreticalMean(sample.values.data(), sample.n(), sample.weightData(), mu,
                                              request.alpha, alternative, &difference, &out.statistic,
                                              &out.critical, &out.df, &out.pValue, &out.lower, &out.upper);
    }
    checkMemory(out.status);
    // The doors leave an open limit where there is none.
    if (out.status != 0) out.upper = NUMCORE_MISSING;
    out.estimate = momentsOf(sample.values, sample.weights).mean;
    return out;
}

TestOutcome testTwoMeans(const Comparison& comparison, const TestRequest& request, bool normal, Pairs* pairs) {
    TestOutcome out;
    out.method = nameOfTwo(request, normal);
    out.resampling = resamplingOf(request.resample);
    const TestSample& x = comparison.samples[0];
    const TestSample& y = comparison.samples[1];
    ST_PairOutput room{};
    if (pairs != nullptr) room = roomFor(*pairs, std::min(x.values.size(), y.values.size()));
    const std::int32_t alternative = codeOf(request.alternative);
    if (normal) {
        const bool known = !request.variances.empty();
        const double variance1 = known ? request.variances.front() : 0.0;
        const double variance2 = known ? request.variances.back() : 0.0;
        out.status =
            Cpp_ZTest2SamplesNew(x.values.data(), x.n(), y.values.data(), y.n(), x.weightData(), y.weightData(),
                                 request.difference, variance1, variance2, flagOf(known), request.alpha,
                                 alternative, flagOf(request.paired), &out.resampling, &out.estimate,
                                 &out.statistic, &out.critical, &out.pValue, &out.lower, &out.upper, &room);
        // The library calls z infinite also where there is nothing to tell apart.
        if (out.statistic == NUMCORE_MISSING && out.estimate == request.difference)
            out.status = NUMCORE_TEST_DEGENERATE;
    } else {
        out.status = Cpp_TTest2SamplesNew(
            x.values.data(), x.n(), y.values.data(), y.n(), x.weightData(), y.weightData(), request.difference,
            request.alpha, alternative, flagOf(request.equalVariances), flagOf(request.cochranCox),
            flagOf(request.paired), &out.resampling, &out.estimate, &out.statistic, &out.critical, &out.df,
            &out.pValue, &out.lower, &out.upper, &room);
    }
    checkMemory(out.status);
    if (out.status != 0) out.pValue = out.critical = out.upper = out.lower = NUMCORE_MISSING;
    return out;
}

MeanLimits limitsOfMean(const TestSample& sample, double alpha) {
    TestRequest request;
    request.alpha = alpha;
    const TestOutcome outcome = testOneMean(sample, request, false);
    return {outcome.estimate, outcome.lower, outcome.upper};
}

}  // namespace numcore::cli
