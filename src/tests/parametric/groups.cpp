// Tests of several groups: equal variances (Bartlett, Levene) and equal means (Welch).

#include <algorithm>
#include <cmath>

#include "numcore/continuous_laws.h"
#include "tests/group_statistics.hpp"
#include "tests/parametric/variances.hpp"

namespace numcore::tests {
namespace {

std::vector<GroupMoments> momentsOfAll(std::span<const Sample> groups) {
    std::vector<GroupMoments> moments;
    moments.reserve(groups.size());
    for (const Sample& group : groups) {
        const Moments own = momentsOf(group);
        moments.push_back({own.n, own.weight, own.mean, own.squares});
    }
    return moments;
}

// Groups whose sum of weights exceeds 1 and whose variance is not 0.
double countUsable(std::span<const GroupMoments> groups) {
    const auto isUsable = [](const GroupMoments& group) { return group.weight > 1.0 && group.squares != 0.0; };
    return static_cast<double>(std::ranges::count_if(groups, isUsable));
}

// |value - centre| weight of each observation.
std::vector<double> deviationsOf(const Sample& group, LeveneCentre centre) {
    const double middle = centre == LeveneCentre::kMedian
                              ? vmcore::V_QuantileW2(group.values, group.weights, 0.5)
                              : vmcore::V_MeanW2(group.values, group.weights);
    std::vector<double> deviations;
    deviations.reserve(group.values.size());
    for (std::size_t i = 0; i < group.values.size(); ++i) {
        const double weight = group.weights.empty() ? 1.0 : group.weights[i];
        deviations.push_back(std::abs(group.values[i] - middle) * weight);
    }
    return deviations;
}

// The groups that hold an observation.
std::vector<Sample> occupied(std::span<const Sample> groups) {
    std::vector<Sample> kept;
    kept.reserve(groups.size());
    for (const Sample& group : groups) {
        if (!group.values.empty()) kept.push_back(group);
    }
    return kept;
}

// Welch (1951), Biometrika 38:330-336, (14).
double welchDenominatorDf(std::span<const GroupMoments> groups) {
    double precisions = 0.0;
    for (const GroupMoments& group : groups) precisions += group.weight / group.variance();
    double imprecision = 0.0;
    for (const GroupMoments& group : groups) {
        const double rest = 1.0 - group.weight / group.variance() / precisions;
        imprecision += rest * rest / (group.weight - 1.0);
    }
    const auto k = static_cast<double>(groups.size());
    return (k * k - 1.0) / (3.0 * imprecision);
}

Decision resampled(Statistic statistic, std::span<const Sample> groups, const VarianceQuestion& question) {
    const Resampled found =
        resample({.statistic = statistic, .groups = groups, .alpha = question.alpha}, *question.resampling);
    return {found.pValue, found.critical};
}

}  // namespace

BartlettTest bartlettTest(std::span<const Sample> groups, const VarianceQuestion& question) {
    const std::vector<Sample> kept = occupied(groups);
    const std::vector<GroupMoments> moments = momentsOfAll(kept);
    const double statistic = bartlettStatistic(moments);
    BartlettTest test;
    if (!std::isfinite(statistic)) return test;
    test.status = kDone;
    test.df = countUsable(moments) - 1.0;
    test.statistic = statistic;
    const Decision decision =
        question.resampling == nullptr
            ? Decision{asResult(pValChiSq(statistic, test.df)),
                       asResult(InvCDFChiSq(criticalOrder(question.alpha, Alternative::kUpper), test.df))}
            : resampled(Statistic::kBartlett, kept, question);
    test.pValue = decision.pValue;
    test.critical = decision.critical;
    return test;
}

GroupsTest oneWayStatistic(std::span<const Sample> groups) {
    const std::vector<Sample> kept = occupied(groups);
    const std::vector<GroupMoments> moments = momentsOfAll(kept);
    double n = 0.0;
    for (const GroupMoments& group : moments) n += group.count;
    const auto k = static_cast<double>(kept.size());
    const double F = oneWayF(moments);
    GroupsTest test;
    test.status = k < 2.0 ? kDegenerate : n <= k ? kTooFew : std::isnan(F) ? kDegenerate : kDone;
    if (test.status != kDone) return test;
    test.F = asResult(F);
    test.df1 = k - 1.0;
    test.df2 = n - k;
    return test;
}

void decideGroups(GroupsTest& test, Statistic statistic, std::span<const Sample> groups,
                  const VarianceQuestion& question) {
    const Decision decision =
        question.resampling == nullptr
            ? Decision{asResult(pValFisher(test.F, test.df1, test.df2)),
                       asResult(InvCDFFisher(criticalOrder(question.alpha, Alternative::kUpper), test.df1,
                                             test.df2, NUMCORE_TRUE))}
            : resampled(statistic, groups, question);
    test.pValue = decision.pValue;
    test.critical = decision.critical;
}

GroupsTest leveneTest(std::span<const Sample> groups, LeveneCentre centre, const VarianceQuestion& question) {
    const std::vector<Sample> kept = occupied(groups);
    std::vector<std::vector<double>> deviations;
    std::vector<Sample> deviationGroups;
    deviations.reserve(kept.size());
    deviationGroups.reserve(kept.size());
    for (const Sample& group : kept) {
        deviations.push_back(deviationsOf(group, centre));
        deviationGroups.push_back({deviations.back(), {}});
    }
    GroupsTest test = oneWayStatistic(deviationGroups);
    if (test.status == kDone) decideGroups(test, Statistic::kLevene, deviationGroups, question);
    return test;
}

GroupsTest welchAnova(std::span<const Sample> groups, const VarianceQuestion& question) {
    const std::vector<Sample> kept = occupied(groups);
    const std::vector<GroupMoments> moments = momentsOfAll(kept);
    const auto isShort = [](const GroupMoments& group) { return !(group.weight > 1.0); };
    GroupsTest test;
    test.status = kTooFew;
    if (kept.size() < 2 || std::ranges::any_of(moments, isShort)) return test;
    const double F = welchF(moments);
    test.status = std::isfinite(F) ? kDone : kDegenerate;
    if (test.status != kDone) return test;
    test.F = F;
    test.df1 = static_cast<double>(kept.size()) - 1.0;
    test.df2 = welchDenominatorDf(moments);
    decideGroups(test, Statistic::kWelchF, kept, question);
    return test;
}

}  // namespace numcore::tests
