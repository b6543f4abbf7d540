// Tests of the difference of two means, of independent samples and of pairs.

#include <cmath>
#include <limits>

#include "numcore/continuous_laws.h"
#include "tests/parametric/mean_conclusion.hpp"

namespace numcore::tests {
namespace {

constexpr MeanLaw kNormalLaw{true, 0.0};
constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

double orNoNumber(double value) {
    return value == kMissing ? kNoNumber : value;
}

struct Spread {
    double standardError;
    double df;
};

Spread pooledSpread(const Moments& a, const Moments& b) {
    const double df = a.weight + b.weight - 2.0;
    return {std::sqrt((1.0 / a.weight + 1.0 / b.weight) * ((a.squares + b.squares) / df)), df};
}

Spread welchSpread(const Moments& a, const Moments& b) {
    const double first = orNoNumber(a.variance) / a.weight;
    const double second = orNoNumber(b.variance) / b.weight;
    const double sum = first + second;
    if (sum == 0.0) return {0.0, a.weight + b.weight - 2.0};
    // By shares of the sum, whose squares cannot leave the range of doubles.
    const double share = first / sum;
    const double other = second / sum;
    return {std::sqrt(sum), 1.0 / (share * share / (a.weight - 1.0) + other * other / (b.weight - 1.0))};
}

// Cochran and Cox (1957), Experimental Designs, 4.14. Kept: counts, not sums of weights.
double cochranCoxCritical(const Moments& a, const Moments& b, double alpha) {
    const double p = criticalOrder(alpha, Alternative::kTwoSided);
    const double first = orNoNumber(a.variance) / a.n;
    const double second = orNoNumber(b.variance) / b.n;
    // One observation has no quantile and no variance, hence no part.
    const double firstTerm = first == 0.0 ? 0.0 : InvCDFStudent(p, a.n - 1.0) * first;
    const double secondTerm = second == 0.0 ? 0.0 : InvCDFStudent(p, b.n - 1.0) * second;
    return (secondTerm + firstTerm) / (first + second);
}

// The differences of pairs as the one group to resample.
struct Differences {
    explicit Differences(const CompactPairs& pairs) {
        values.reserve(pairs.first.size());
        for (std::size_t i = 0; i < pairs.first.size(); ++i) values.push_back(pairs.first[i] - pairs.second[i]);
    }
    std::vector<double> values;
};

MeanTest concludePairs(const CompactPairs& pairs, const Estimate& estimate, const MeanLaw& law,
                       ResamplingRequest request, const MeanQuestion& question) {
    if (question.resampling == nullptr) return concludeMeans(estimate, law, question, {});
    const Differences differences(pairs);
    const Sample group{differences.values, pairs.weights};
    request.groups = {&group, 1};
    return concludeMeans(estimate, law, question, request);
}

}  // namespace

MeanTest tTestIndependent(const Sample& first, const Sample& second, TVariant variant,
                          const MeanQuestion& question) {
    const auto n1 = first.values.size();
    const auto n2 = second.values.size();
    const bool enough = variant.equalVariances ? n1 > 1 || n2 > 1 : n1 > 1 && n2 > 1;
    // An empty sample has no mean to compare, so that it fails with equal variances as well.
    if (!enough || n1 == 0 || n2 == 0) return {};
    const Moments a = momentsOf(first);
    const Moments b = momentsOf(second);
    const Spread spread = variant.equalVariances ? pooledSpread(a, b) : welchSpread(a, b);
    const bool twoCriticals = variant.cochranCox && question.alternative == Alternative::kTwoSided;
    const double critical = twoCriticals ? cochranCoxCritical(a, b, question.alpha) : kMissing;
    const Sample groups[] = {first, second};
    return concludeMeans(
        {a.mean - b.mean, spread.standardError}, {false, spread.df}, question,
        {.statistic = variant.equalVariances ? Statistic::kT : Statistic::kWelch, .groups = groups},
        twoCriticals ? &critical : nullptr);
}

MeanTest tTestPaired(const CompactPairs& pairs, const MeanQuestion& question) {
    const Moments moments = momentsOfDifferences(pairs);
    if (moments.n < 2.0) return {};
    const double df = moments.weight - 1.0;
    const double standardError = std::sqrt(moments.squares / df / moments.weight);
    return concludePairs(pairs, {moments.mean, standardError}, {false, df}, {.statistic = Statistic::kPairedT},
                         question);
}

MeanTest zTestIndependent(const Sample& first, const Sample& second, std::optional<GivenVariances> given,
                          const MeanQuestion& question) {
    if (first.values.size() < 2 || second.values.size() < 2) return {};
    const Moments a = momentsOf(first);
    const Moments b = momentsOf(second);
    const double variances[] = {given ? given->first : orNoNumber(a.variance),
                                given ? given->second : orNoNumber(b.variance)};
    // Kept: counts, not sums of weights.
    const double standardError = std::sqrt(variances[0] / a.n + variances[1] / b.n);
    const Sample groups[] = {first, second};
    ResamplingRequest request{.statistic = Statistic::kZ, .groups = groups};
    if (given) request.givenVariances = variances;
    return concludeMeans({a.mean - b.mean, standardError}, kNormalLaw, question, request);
}

MeanTest zTestPaired(const CompactPairs& pairs, std::optional<GivenVariances> given,
                     const MeanQuestion& question) {
    const Moments moments = momentsOfDifferences(pairs);
    if (moments.n < 2.0) return {};
    const double variance = given ? given->first : moments.squares / (moments.n - 1.0);
    ResamplingRequest request{.statistic = Statistic::kPairedZ};
    if (given) request.givenVariances = {&variance, 1};
    return concludePairs(pairs, {moments.mean, std::sqrt(variance / moments.n)}, kNormalLaw, request, question);
}

}  // namespace numcore::tests
