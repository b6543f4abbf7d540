#include "tests/resampling/formula.hpp"

#include <cmath>

namespace numcore::tests {
namespace {

double overError(double difference, double squaredError) {
    if (squaredError > 0.0) return difference / std::sqrt(squaredError);
    if (!(squaredError == 0.0)) return std::nan("");
    if (difference == 0.0) return 0.0;
    return difference > 0.0 ? kOverflow : -kOverflow;
}

double zStatistic(const GroupMoments& a, const GroupMoments& b, std::span<const double> given) {
    const double variance1 = given.empty() ? a.variance() : given[0];
    const double variance2 = given.empty() ? b.variance() : given[1];
    return overError(a.mean - b.mean, variance1 / a.count + variance2 / b.count);
}

double oneMean(const GroupMoments& group, double estimated, std::span<const double> given) {
    return overError(group.mean, (given.empty() ? estimated : given[0]) / group.count);
}

double pooledT(const GroupMoments& a, const GroupMoments& b) {
    const double pooled = (a.squares + b.squares) / (a.weight + b.weight - 2.0);
    return overError(a.mean - b.mean, (1.0 / a.weight + 1.0 / b.weight) * pooled);
}

double welchT(const GroupMoments& a, const GroupMoments& b) {
    return overError(a.mean - b.mean, a.variance() / a.weight + b.variance() / b.weight);
}

double varianceRatio(const GroupMoments& a, const GroupMoments& b) {
    const double ratio = a.variance() / b.variance();
    return std::isinf(ratio) ? std::copysign(kOverflow, ratio) : ratio;
}

template <class Weight>
GroupMoments momentsBy(std::span<const double> values, std::span<const std::uint32_t> numbers,
                       const Weight& weightOf) {
    // From the first value on, so that equal values have exactly no spread.
    const double pilot = values[numbers.front()];
    GroupMoments moments;
    moments.count = static_cast<double>(numbers.size());
    moments.weight = sumOver(numbers, weightOf);
    const auto distance = [&](std::uint32_t i) { return weightOf(i) * (values[i] - pilot); };
    const double shift = sumOver(numbers, distance) / moments.weight;
    moments.mean = pilot + shift;
    moments.squares = sumOver(numbers, [&](std::uint32_t i) {
        const double deviation = values[i] - pilot - shift;
        return weightOf(i) * deviation * deviation;
    });
    return moments;
}

}  // namespace

double Formula::operator()(std::span<const GroupMoments> groups) const {
    switch (statistic) {
        case Statistic::kZ:
            return zStatistic(groups[0], groups[1], givenVariances);
        case Statistic::kT:
            return pooledT(groups[0], groups[1]);
        case Statistic::kWelch:
            return welchT(groups[0], groups[1]);
        case Statistic::kPairedZ:
            return oneMean(groups[0], groups[0].squares / (groups[0].count - 1.0), givenVariances);
        case Statistic::kOneMean:
            return oneMean(groups[0], groups[0].variance(), givenVariances);
        case Statistic::kPairedT:
            return overError(groups[0].mean, groups[0].variance() / groups[0].weight);
        case Statistic::kVarianceRatio:
            return varianceRatio(groups[0], groups[1]);
        case Statistic::kBartlett:
            return bartlettStatistic(groups);
        case Statistic::kWelchF:
            return welchF(groups);
        default:
            return oneWayF(groups);
    }
}

GroupMoments momentsOf(std::span<const double> values, std::span<const double> weights,
                       std::span<const std::uint32_t> numbers) {
    if (numbers.empty()) return {};
    if (weights.empty()) return momentsBy(values, numbers, [](std::uint32_t) { return 1.0; });
    return momentsBy(values, numbers, [weights](std::uint32_t i) { return weights[i]; });
}

}  // namespace numcore::tests
