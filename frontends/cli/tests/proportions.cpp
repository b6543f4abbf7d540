#include "cli/tests/proportions.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "cli/codes.hpp"
#include "numcore/parametric_tests.h"

namespace numcore::cli {

namespace {

std::int32_t codeOf(ProportionInterval interval) {
    switch (interval) {
        case ProportionInterval::kWald:
            return NUMCORE_PROPORTION_WALD;
        case ProportionInterval::kClopperPearson:
            return NUMCORE_PROPORTION_CLOPPER_PEARSON;
        case ProportionInterval::kAdjusted:
            return NUMCORE_PROPORTION_ADJUSTED_WALD;
        case ProportionInterval::kWilson:
            break;
    }
    return NUMCORE_PROPORTION_WILSON;
}

/// A statistic that is missing: the hypothesis leaves no variance.
void settleStatus(TestOutcome& out) {
    if (out.status == NUMCORE_TEST_DONE && out.statistic == NUMCORE_MISSING)
        out.status = NUMCORE_TEST_DEGENERATE;
    if (out.status != NUMCORE_TEST_DONE) out.pValue = out.critical = out.lower = out.upper = NUMCORE_MISSING;
}

/// The library's limits of p1 - p2 - D as those of p1 - p2; what it cuts at -1 and 1 stays there.
double shifted(double limit, double difference) {
    return std::abs(limit) >= 1.0 ? limit : std::clamp(limit + difference, -1.0, 1.0);
}

std::vector<std::int32_t> trialsOf(const std::vector<CountSample>& samples) {
    std::vector<std::int32_t> n;
    n.reserve(samples.size());
    for (const CountSample& sample : samples) n.push_back(sample.trials);
    return n;
}

std::vector<double> proportionsOf(const std::vector<CountSample>& samples) {
    std::vector<double> p;
    p.reserve(samples.size());
    for (const CountSample& sample : samples) p.push_back(sample.proportion());
    return p;
}

/// The p-value of drawn counts in place of that of the normal law.
void simulate(const CountSample& x, const CountSample& y, double hypothesis, Alternative alternative,
              const TestRequest& request, TestOutcome& out) {
    if (!out.computed() || !request.resample.wanted()) return;
    ResamplingOptions& told = out.resampling;
    told.nUsed = told.nResamples = request.resample.nResamples;
    told.seed = request.resample.seed.value_or(0);
    double difference = NUMCORE_MISSING;
    double lower = NUMCORE_MISSING;
    double upper = NUMCORE_MISSING;
    out.status = Test2ProportionsMonte(x.trials, y.trials, x.proportion(), y.proportion(), hypothesis,
                                       codeOf(alternative), static_cast<std::int32_t>(told.nUsed), &told.seed,
                                       flagOf(request.resample.seed.has_value()), &difference, &out.pValue,
                                       &lower, &upper);
    if (out.status != NUMCORE_TEST_DONE) return;
    told.outcome = NUMCORE_RESAMPLED;
    told.nExtreme = std::llround(out.pValue * (static_cast<double>(told.nUsed) + 1.0)) - 1;
    out.drawn = "drawn counts";
}

Alternative mirrored(Alternative alternative) {
    if (alternative == Alternative::kTwoSided) return alternative;
    return alternative == Alternative::kLess ? Alternative::kGreater : Alternative::kLess;
}

/// The same for one proportion: its difference from a trial that always fails. What is counted, successes or
/// failures, is rarer than the hypothesis says, so that the hypothesis leaves that trial its proportion of 0.
void simulateOne(const CountSample& sample, double hypothesis, const TestRequest& request, TestOutcome& out) {
    const CountSample never{"", 0, 1, 0};
    if (sample.proportion() <= hypothesis) {
        simulate(sample, never, hypothesis, request.alternative, request, out);
        return;
    }
    CountSample failures = sample;
    failures.successes = sample.trials - sample.successes;
    simulate(failures, never, 1.0 - hypothesis, mirrored(request.alternative), request, out);
}

}  // namespace

ProportionLimits limitsOfProportion(const CountSample& sample, const TestRequest& request) {
    constexpr double kAny = 0.5;
    TestRequest twoSided = request;
    twoSided.alternative = Alternative::kTwoSided;
    twoSided.resample = {};
    const TestOutcome outcome = testOneProportion(sample, kAny, twoSided);
    return {outcome.lower, outcome.upper};
}

TestOutcome testOneProportion(const CountSample& sample, double hypothesis, const TestRequest& request) {
    TestOutcome out;
    out.method =
        request.continuity ? "z test of a proportion, continuity correction" : "z test of a proportion";
    out.estimate = sample.proportion();
    // Separate: the Wald limits are those of the sample's proportion, not of the hypothesis.
    out.status = TestProportions(1, sample.trials, 0, out.estimate, hypothesis, 0.0, request.alpha,
                                 codeOf(request.alternative), flagOf(request.continuity),
                                 NUMCORE_PROPORTION_SEPARATE, codeOf(request.interval), &out.statistic,
                                 &out.critical, &out.pValue, &out.lower, &out.upper);
    // The library leaves an open limit at -1.
    out.lower = std::max(out.lower, 0.0);
    settleStatus(out);
    simulateOne(sample, hypothesis, request, out);
    return out;
}

TestOutcome testTwoProportions(const std::vector<CountSample>& samples, const TestRequest& request) {
    TestOutcome out;
    out.method = fmt::format("z test of two proportions, {}{}",
                             request.separateVariances ? "separate variances" : "pooled variance",
                             request.continuity ? ", continuity correction" : "");
    const CountSample& x = samples[0];
    const CountSample& y = samples[1];
    out.estimate = x.proportion() - y.proportion();
    out.status = TestProportions(
        2, x.trials, y.trials, x.proportion(), y.proportion(), request.difference, request.alpha,
        codeOf(request.alternative), flagOf(request.continuity),
        request.separateVariances ? NUMCORE_PROPORTION_SEPARATE : NUMCORE_PROPORTION_POOLED,
        codeOf(request.interval), &out.statistic, &out.critical, &out.pValue, &out.lower, &out.upper);
    if (out.status == NUMCORE_TEST_DONE) {
        out.lower = shifted(out.lower, request.difference);
        out.upper = shifted(out.upper, request.difference);
    }
    settleStatus(out);
    simulate(x, y, request.difference, request.alternative, request, out);
    return out;
}

TestOutcome testManyProportions(const std::vector<CountSample>& samples, const TestRequest& request) {
    TestOutcome out;
    std::vector<double> given = request.proportions;
    if (given.size() == 1) given.assign(samples.size(), given[0]);
    out.method =
        fmt::format("Chi-square test of {} {}proportions", samples.size(), given.empty() ? "" : "given ");
    const std::vector<std::int32_t> trials = trialsOf(samples);
    const std::vector<double> proportions = proportionsOf(samples);
    out.status = TestKProportionsChi2(static_cast<std::int32_t>(samples.size()), trials.data(),
                                      proportions.data(), given.empty() ? nullptr : given.data(), request.alpha,
                                      &out.statistic, &out.critical, &out.df, &out.pValue);
    settleStatus(out);
    return out;
}

std::vector<ProportionPair> comparePairs(const std::vector<CountSample>& samples, double alpha) {
    const std::size_t k = samples.size();
    const std::vector<std::int32_t> trials = trialsOf(samples);
    const std::vector<double> proportions = proportionsOf(samples);
    std::vector<double> differences(k * k, NUMCORE_MISSING);
    std::vector<double> critical = differences;
    std::vector<double> pValues = differences;
    std::vector<std::int32_t> significant(k * k);
    TestKProportionsMarascuilo(static_cast<std::int32_t>(k), trials.data(), proportions.data(), alpha,
                               differences.data(), critical.data(), pValues.data(), significant.data());
    std::vector<ProportionPair> pairs;
    pairs.reserve(k * (k - 1) / 2);
    for (std::size_t i = 0; i < k; ++i) {
        for (std::size_t j = i + 1; j < k; ++j) {
            const std::size_t at = i * k + j;
            pairs.push_back({i, j, differences[at], critical[at], pValues[at], significant[at] != 0});
        }
    }
    return pairs;
}

}  // namespace numcore::cli
