#include "correlation/association/biserial.hpp"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "distributions/laws/normal_tail.hpp"
#include "numcore/continuous_laws.h"
#include "numcore/special.h"
#include "suite/vmcore.hpp"

namespace numcore::association {
namespace {

using distributions::normalDensity;

// Means of the two groups and deviation of all, divisor n.
struct GroupMeans {
    double upper = kMissing;
    double lower = kMissing;
    double deviation = 0.0;
    double upperWeight = 0.0;
    double weight = 0.0;

    double share() const { return upperWeight / weight; }
};

GroupMeans groupMeans(std::span<const double> x, const GradedSample& sample) {
    std::vector<double> upperWeights(sample.weights);
    std::vector<double> lowerWeights(sample.weights);
    for (std::size_t i = 0; i < x.size(); ++i) (sample.category[i] == 0 ? upperWeights : lowerWeights)[i] = 0.0;
    const vmcore::Summary upper = vmcore::summarize(x, upperWeights);
    const vmcore::Summary lower = vmcore::summarize(x, lowerWeights);
    const vmcore::Summary all = vmcore::summarize(x, sample.weights);
    return {upper.mean, lower.mean, std::sqrt(all.sumSquares / all.weight), upper.weight, all.weight};
}

bool isDomain(double deviation, double upperShare) {
    return deviation > 0.0 && std::isfinite(deviation) && upperShare > 0.0 && upperShare < 1.0;
}

Association begin(const GradedSample& sample) {
    Association result;
    result.nCategories = sample.nCategories;
    result.weight = std::accumulate(sample.weights.begin(), sample.weights.end(), 0.0);
    for (std::size_t i = 0; i < sample.category.size(); ++i) {
        if (sample.category[i] > 0) result.upperWeight += sample.weights[i];
    }
    if (sample.nCategories == 0) result.status = FitStatus::kTooFew;
    return result;
}

double sideOf(double lowerTail, double upperTail, Side side) {
    if (side == Side::kTwoSided) return std::min(1.0, 2.0 * std::min(lowerTail, upperTail));
    return side == Side::kLower ? lowerTail : upperTail;
}

void testByStudent(double degreesOfFreedom, Side side, Association& result) {
    const double r = result.coefficient;
    if (!(degreesOfFreedom > 0.0)) return;
    if (std::abs(r) >= 1.0) {
        result.pValue = sideOf(r > 0.0 ? 1.0 : 0.0, r > 0.0 ? 0.0 : 1.0, side);
        return;
    }
    result.standardError = std::sqrt((1.0 - r * r) / degreesOfFreedom);
    result.statistic = r / result.standardError;
    result.pValue = sideOf(CDFStudent(result.statistic, degreesOfFreedom),
                           CDFStudent(-result.statistic, degreesOfFreedom), side);
}

}  // namespace

GradedSample gradedSample(std::span<const double> x, std::span<const double> grades,
                          std::span<const double> weights) {
    std::vector<bool> use(x.size());
    for (std::size_t i = 0; i < x.size(); ++i) {
        use[i] = isCategory(x[i]) && isCategory(grades[i]) &&
                 (weights.empty() || weights[i] > vmcore::kWeightEpsilon);
    }
    GradedSample sample;
    const auto categories = categoriesOf(grades, use);
    sample.nCategories = static_cast<std::int32_t>(categories.size());
    if (!isScale(categories.size())) return sample;
    sample.x.reserve(x.size());
    sample.category.reserve(x.size());
    sample.weights.reserve(x.size());
    for (std::size_t i = 0; i < x.size(); ++i) {
        if (!use[i]) continue;
        sample.x.push_back(x[i]);
        sample.category.push_back(categoryOf(grades[i], categories));
        sample.weights.push_back(weights.empty() ? 1.0 : weights[i]);
    }
    return sample;
}

double pointBiserialOf(double upperMean, double lowerMean, double deviation, double upperShare) {
    if (!isDomain(deviation, upperShare)) return kMissing;
    return (upperMean - lowerMean) / deviation * std::sqrt(upperShare * (1.0 - upperShare));
}

double biserialOf(double upperMean, double lowerMean, double deviation, double upperShare) {
    if (!isDomain(deviation, upperShare)) return kMissing;
    const double density = normalDensity(InvCDFNormalStd(upperShare));
    return (upperMean - lowerMean) / deviation * upperShare * (1.0 - upperShare) / density;
}

double rankBiserialOf(double upperMeanRank, double lowerMeanRank, double n) {
    return n > 0.0 ? 2.0 * (upperMeanRank - lowerMeanRank) / n : kMissing;
}

double polyserialOf(double pearson, std::span<const double> categoryWeights) {
    double weight = 0.0;
    double mean = 0.0;
    for (std::size_t i = 0; i < categoryWeights.size(); ++i) {
        if (!(categoryWeights[i] > 0.0)) return kMissing;
        weight += categoryWeights[i];
        mean += categoryWeights[i] * static_cast<double>(i);
    }
    if (categoryWeights.size() < 2) return kMissing;
    mean /= weight;
    double variance = 0.0;
    for (std::size_t i = 0; i < categoryWeights.size(); ++i) {
        const double from = static_cast<double>(i) - mean;
        variance += categoryWeights[i] * from * from / weight;
    }
    double densities = 0.0;
    for (const double threshold : thresholdsOf(categoryWeights)) densities += normalDensity(threshold);
    return pearson * std::sqrt(variance) / densities;
}

void testByNormal(double nullError, Side side, Association& result) {
    if (!(nullError > 0.0)) return;
    result.statistic = result.coefficient / nullError;
    result.pValue = sideOf(distributions::normalLowerTail(result.statistic),
                           distributions::normalUpperTail(result.statistic), side);
}

Association biserial(const GradedSample& sample, Side side) {
    Association result = begin(sample);
    if (sample.nCategories != 2) return result;
    const GroupMeans means = groupMeans(sample.x, sample);
    result.coefficient = biserialOf(means.upper, means.lower, means.deviation, means.share());
    if (result.coefficient == kMissing) return result;
    result.status = FitStatus::kConverged;
    // Large-sample errors with and without association: Soper, H. E. (1914), Biometrika 10:384-390, and Tate,
    // R. F. (1955), Biometrika 42:205-216.
    const double p = means.share();
    const double root = std::sqrt(p * (1.0 - p)) / normalDensity(InvCDFNormalStd(p));
    const double atCoefficient = root - result.coefficient * result.coefficient;
    if (atCoefficient > 0.0) result.standardError = atCoefficient / std::sqrt(means.weight);
    testByNormal(root / std::sqrt(means.weight), side, result);
    return result;
}

Association pointBiserial(const GradedSample& sample, Side side) {
    Association result = begin(sample);
    if (sample.nCategories != 2) return result;
    const GroupMeans means = groupMeans(sample.x, sample);
    result.coefficient = pointBiserialOf(means.upper, means.lower, means.deviation, means.share());
    if (result.coefficient == kMissing) return result;
    result.coefficient = std::clamp(result.coefficient, -1.0, 1.0);
    result.status = FitStatus::kConverged;
    testByStudent(means.weight - 2.0, side, result);
    return result;
}

Association rankBiserial(const GradedSample& sample, Side side) {
    Association result = begin(sample);
    if (sample.nCategories != 2) return result;
    std::vector<double> ranks(sample.x.size());
    const auto ties = vmcore::V_GetRanksTies(sample.x, sample.weights, ranks);
    const GroupMeans means = groupMeans(ranks, sample);
    const double n = means.weight;
    const double coefficient = rankBiserialOf(means.upper, means.lower, n);
    if (!std::isfinite(coefficient)) return result;
    result.coefficient = std::clamp(coefficient, -1.0, 1.0);
    result.status = FitStatus::kConverged;
    if (!(means.deviation > 0.0)) return result;
    // Of U without association, ties included, over its half range: Lehmann, E. L. (1975), Nonparametrics.
    double tieSum = 0.0;
    for (const double t : ties) tieSum += t * (t * t - 1.0);
    const double upper = means.upperWeight;
    const double variance = (n + 1.0 - tieSum / (n * (n - 1.0))) / (3.0 * upper * (n - upper));
    if (!(variance > 0.0)) return result;
    result.standardError = std::sqrt(variance);
    testByNormal(result.standardError, side, result);
    return result;
}

}  // namespace numcore::association
