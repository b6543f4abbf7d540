#include "cli/tests/variances.hpp"

#include <algorithm>
#include <new>
#include <utility>
#include <vector>

#include "caller/data_set.hpp"
#include "cli/codes.hpp"
#include "cli/tests/resampling.hpp"
#include "numcore/parametric_tests.h"

namespace numcore::cli {

namespace {

/// A result that is missing in spite of the status: too few values, or nothing that varies.
void settleStatus(TestOutcome& out, bool enough) {
    if (out.status == NUMCORE_TEST_NO_MEMORY) throw std::bad_alloc();
    if (out.status == NUMCORE_TEST_DONE && out.pValue == NUMCORE_MISSING)
        out.status = enough ? NUMCORE_TEST_DEGENERATE : NUMCORE_TEST_TOO_FEW;
    if (out.status != NUMCORE_TEST_DONE) out.upper = out.pValue = NUMCORE_MISSING;
}

/// One part of the samples as columns of one length; what is lacking is filled.
template <class Part>
caller::NumericTable columnsOf(const Comparison& comparison, double filling, Part part) {
    std::size_t nRows = 0;
    for (const TestSample& sample : comparison.samples) nRows = std::max(nRows, sample.values.size());
    caller::NumericTable table(comparison.samples.size(), nRows);
    for (std::size_t j = 0; j < comparison.samples.size(); ++j) {
        const auto cells = table.column(j).asDoubles();
        std::ranges::fill(cells, filling);
        std::ranges::copy(part(comparison.samples[j]), cells.begin());
    }
    return table;
}

caller::DataSet dataOf(const Comparison& comparison) {
    caller::DataSet data;
    data.setNumeric1(columnsOf(
        comparison, NUMCORE_MISSING, [](const TestSample& sample) -> const auto& { return sample.values; }));
    if (comparison.weighted()) {
        data.setNumeric2(columnsOf(
            comparison, 0.0, [](const TestSample& sample) -> const auto& { return sample.weights; }));
    }
    return data;
}

}  // namespace

TestOutcome testRatio(const Comparison& comparison, const TestRequest& request) {
    TestOutcome out;
    out.method = "F test of two variances";
    out.twoTails = request.alternative == Alternative::kTwoSided;
    out.resampling = resamplingOf(request.resample);
    const TestSample& x = comparison.samples[0];
    const TestSample& y = comparison.samples[1];
    // Weights repeat rows, so degrees of freedom follow them.
    out.status = Cpp_FTest2SamplesNew(
        x.values.data(), x.n(), y.values.data(), y.n(), x.weightData(), y.weightData(), request.ratio,
        request.alpha, codeOf(request.alternative), flagOf(comparison.weighted()), &out.resampling,
        &out.estimate, &out.statistic, &out.critical, &out.df, &out.df2, &out.pValue, &out.lower, &out.upper);
    settleStatus(out, true);
    return out;
}

TestOutcome testVariance(const TestSample& sample, const TestRequest& request) {
    TestOutcome out;
    out.method = "Chi-square test of a variance";
    double ratio = NUMCORE_MISSING;
    out.status =
        Cpp_VarTestOneSample(sample.values.data(), sample.n(), sample.weightData(), request.variances.at(0),
                             request.alpha, codeOf(request.alternative), &out.estimate, &ratio, &out.statistic,
                             &out.critical, &out.df, &out.pValue, &out.lower, &out.upper);
    settleStatus(out, sample.n() > 1);
    return out;
}

TestOutcome testBartlett(const Comparison& comparison, const TestRequest& request) {
    TestOutcome out;
    out.method = "Bartlett's test of equal variances";
    out.resampling = resamplingOf(request.resample);
    caller::DataSet data = dataOf(comparison);
    out.status = Cpp_BTestKSamplesNew(&data.record(), 1, static_cast<std::int32_t>(comparison.samples.size()),
                                      request.alpha, &out.resampling, &out.statistic, &out.critical, &out.df,
                                      &out.pValue);
    settleStatus(out, true);
    return out;
}

TestOutcome testLevene(const Comparison& comparison, const TestRequest& request) {
    TestOutcome out;
    out.method = request.fromMeans ? "Levene's test of equal variances, deviations from means"
                                   : "Levene's test of equal variances, deviations from medians";
    out.resampling = resamplingOf(request.resample);
    caller::DataSet data = dataOf(comparison);
    out.status = Cpp_LTestKSamplesNew(&data.record(), 1, static_cast<std::int32_t>(comparison.samples.size()),
                                      request.alpha, flagOf(!request.fromMeans), &out.resampling,
                                      &out.statistic, &out.critical, &out.df, &out.df2, &out.pValue);
    settleStatus(out, true);
    return out;
}

TestOutcome testWelchAnova(const Comparison& comparison, const TestRequest& request) {
    TestOutcome out;
    out.method = "Welch's analysis of variance";
    out.resampling = resamplingOf(request.resample);
    std::vector<double> values;
    std::vector<double> weights;
    std::vector<std::int32_t> groups;
    std::int32_t group = 0;
    for (const TestSample& sample : comparison.samples) {
        values.insert(values.end(), sample.values.begin(), sample.values.end());
        weights.insert(weights.end(), sample.weights.begin(), sample.weights.end());
        groups.insert(groups.end(), sample.values.size(), ++group);
    }
    out.status =
        ComputeWelchANOVA(values.data(), groups.data(), weights.empty() ? nullptr : weights.data(),
                          static_cast<std::int32_t>(values.size()), group, request.alpha, &out.resampling,
                          &out.statistic, &out.critical, &out.df, &out.df2, &out.pValue);
    settleStatus(out, true);
    return out;
}

}  // namespace numcore::cli
