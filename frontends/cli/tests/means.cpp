#include "cli/tests/means.hpp"

#include <algorithm>
#include <cstddef>
#include <new>
#include <utility>

#include "caller/data_set.hpp"
#include "cli/codes.hpp"
#include "cli/moments.hpp"
#include "cli/tests/resampling.hpp"
#include "numcore/parametric_tests.h"

namespace numcore::cli {

namespace {

constexpr const char* kSigns = "drawn changes of sign";

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

/// One sample as a data set.
caller::DataSet dataOf(const TestSample& sample) {
    caller::NumericTable table(1, sample.values.size());
    std::ranges::copy(sample.values, table.column(0).asDoubles().begin());
    caller::DataSet data;
    data.setNumeric1(std::move(table));
    if (!sample.weights.empty()) data.setWeights(caller::Array::doubles(sample.weights));
    return data;
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
    out.drawn = kSigns;
    out.resampling = resamplingOf(request.resample);
    caller::DataSet data = dataOf(sample);
    const caller::Array table = caller::Array::matrix(1, NUMCORE_MEAN_COLUMNS);
    ST_TZParam param{};
    param.test = normal ? NUMCORE_MEAN_Z : NUMCORE_MEAN_T;
    param.design = NUMCORE_MEAN_ONE_SAMPLE;
    param.alternative = codeOf(request.alternative);
    param.givenVariances = flagOf(!request.variances.empty());
    param.hypothesised = request.mu.value_or(0.0);
    param.alpha = request.alpha;
    param.variance1 = request.variances.empty() ? 0.0 : request.variances[0];
    param.resampling = &out.resampling;
    ST_TZResults results{table.get(), 0, 0};
    out.status = Cpp_TZ_Compute(&data.record(), &param, &results);
    checkMemory(out.status);
    out.statistic = table.at(0, NUMCORE_MEAN_STATISTIC);
    out.critical = table.at(0, NUMCORE_MEAN_CRITICAL);
    out.df = table.at(0, NUMCORE_MEAN_DF);
    out.pValue = table.at(0, NUMCORE_MEAN_P);
    out.lower = table.at(0, NUMCORE_MEAN_LOWER);
    // The library leaves an open limit where there is none.
    out.upper = out.status == 0 ? table.at(0, NUMCORE_MEAN_UPPER) : NUMCORE_MISSING;
    out.estimate = momentsOf(sample.values, sample.weights).mean;
    return out;
}

TestOutcome testTwoMeans(const Comparison& comparison, const TestRequest& request, bool normal, Pairs* pairs) {
    TestOutcome out;
    out.method = nameOfTwo(request, normal);
    if (request.paired) out.drawn = kSigns;
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
