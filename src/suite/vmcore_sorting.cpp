// Sorting, ranks, and the quantile that walks a sorted sample.

#include <algorithm>
#include <cmath>
#include <numeric>

#include "suite/vmcore.hpp"

namespace numcore::vmcore {
namespace {

struct Weighted {
    double value;
    double weight;
    std::size_t place;
};

// The order of all sorts here: NaN after every number, equal to NaN.
bool comesBefore(double a, double b) {
    return a < b || (std::isnan(b) && !std::isnan(a));
}

bool tied(double a, double b) {
    return !comesBefore(a, b) && !comesBefore(b, a);
}

void sortByValue(std::vector<Weighted>& observations) {
    std::stable_sort(observations.begin(), observations.end(),
                     [](const Weighted& a, const Weighted& b) { return comesBefore(a.value, b.value); });
}

double weightAt(std::span<const double> weights, std::size_t i) {
    if (weights.empty()) return 1.0;
    return i < weights.size() && weights[i] > kWeightEpsilon ? weights[i] : 0.0;
}

}  // namespace

void SortQVector(std::span<double> values) {
    const auto end = std::partition(values.begin(), values.end(), [](double x) { return !std::isnan(x); });
    std::sort(values.begin(), end);
}

void SortQ(std::span<double> values, std::span<double> weights) {
    const std::size_t n = std::min(values.size(), weights.size());
    std::vector<Weighted> observations(n);
    for (std::size_t i = 0; i < n; ++i) observations[i] = {values[i], weights[i], i};
    sortByValue(observations);
    for (std::size_t i = 0; i < n; ++i) {
        values[i] = observations[i].value;
        weights[i] = observations[i].weight;
    }
}

double V_QuantileW2(std::span<const double> data, std::span<const double> weights, double p) {
    std::vector<Weighted> observations;
    for (std::size_t i = 0; i < data.size(); ++i) {
        if (!IsMissingValue(data[i])) observations.push_back({data[i], weightAt(weights, i), i});
    }
    if (observations.empty() || std::isnan(p)) return kMissing;
    sortByValue(observations);
    if (p <= 0.0) return observations.front().value;
    if (p >= 1.0) return observations.back().value;
    double total = 0.0;
    for (const Weighted& observation : observations) total += observation.weight;
    const double target = total * p;
    double running = 0.0;
    for (std::size_t i = 0; i + 1 < observations.size(); ++i) {
        running += observations[i].weight;
        if (running == target) return std::midpoint(observations[i].value, observations[i + 1].value);
        if (running > target) return observations[i].value;
    }
    return observations.back().value;
}

std::vector<double> V_GetRanksTies(std::span<const double> values, std::span<const double> weights,
                                   std::span<double> ranks) {
    const std::size_t n = std::min(values.size(), ranks.size());
    std::vector<Weighted> observations;
    for (std::size_t i = 0; i < n; ++i) {
        ranks[i] = kMissing;
        const double weight = weightAt(weights, i);
        if (!IsMissingValue(values[i]) && weight > 0.0) observations.push_back({values[i], weight, i});
    }
    sortByValue(observations);
    std::vector<double> tieSizes;
    double running = 0.0;
    for (std::size_t first = 0, end = 0; first < observations.size(); first = end) {
        double size = 0.0;
        for (; end < observations.size() && tied(observations[first].value, observations[end].value); ++end) {
            size += observations[end].weight;
        }
        for (std::size_t i = first; i < end; ++i) ranks[observations[i].place] = running + (size + 1.0) / 2.0;
        running += size;
        tieSizes.push_back(size);
    }
    return tieSizes;
}

}  // namespace numcore::vmcore
