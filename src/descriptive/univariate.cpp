#include "descriptive/univariate.hpp"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "descriptive/quantile.hpp"
#include "suite/vmcore.hpp"

namespace numcore::descriptive {
namespace {

using vmcore::kMissing;

struct Observation {
    double value;
    double weight;
};
using Sample = std::vector<Observation>;

/// The observations that take part: present, with a weight above the double epsilon.
Sample usedObservations(std::span<const double> cells, std::span<const double> weights) {
    Sample used;
    used.reserve(cells.size());
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const double weight = weights.empty() ? 1.0 : (i < weights.size() ? weights[i] : 0.0);
        if (!vmcore::IsMissingValue(cells[i]) && weight > vmcore::kWeightEpsilon)
            used.push_back({cells[i], weight});
    }
    return used;
}

template <class F>
double weightedSum(const Sample& sample, F&& term) {
    double sum = 0.0;
    for (const auto& [value, weight] : sample) sum += weight * term(value);
    return sum;
}

/// a / b, or the missing value when b is not above 0.
double ratio(double a, double b) {
    return b > 0.0 ? a / b : kMissing;
}

/// Sum of weights, mean, and central moments with the sum of weights as divisor.
struct Moments {
    double weight = 0.0;
    double mean = kMissing;
    double second = kMissing;
    double third = kMissing;
    double fourth = kMissing;
};

Moments momentsOf(const Sample& sample) {
    Moments m;
    m.weight = weightedSum(sample, [](double) { return 1.0; });
    if (sample.empty()) return m;
    const double first = weightedSum(sample, [](double x) { return x; }) / m.weight;
    // The second look at the deviations takes out what rounding left in the first mean.
    m.mean = first + weightedSum(sample, [&](double x) { return x - first; }) / m.weight;
    const auto central = [&](int power) {
        return weightedSum(sample, [&](double x) { return std::pow(x - m.mean, power); }) / m.weight;
    };
    m.second = central(2);
    m.third = central(3);
    m.fourth = central(4);
    return m;
}

double populationSkewness(const Moments& m) {
    return m.weight > 0.0 && m.second > 0.0 ? m.third / (m.second * std::sqrt(m.second)) : kMissing;
}

double populationKurtosis(const Moments& m) {
    return m.weight > 0.0 && m.second > 0.0 ? m.fourth / (m.second * m.second) - 3.0 : kMissing;
}

double sampleSkewness(double g1, double w) {
    return g1 == kMissing || w <= 2.0 ? kMissing : g1 * std::sqrt(w * (w - 1.0)) / (w - 2.0);
}

double sampleKurtosis(double g2, double w) {
    if (g2 == kMissing || w <= 3.0) return kMissing;
    return (w - 1.0) / ((w - 2.0) * (w - 3.0)) * ((w + 1.0) * g2 + 6.0);
}

void putLocation(UnivariateStatistics& s, const Sample& used, const Moments& m) {
    if (used.empty()) return;
    const auto [low, high] = std::minmax_element(
        used.begin(), used.end(), [](const auto& a, const auto& b) { return a.value < b.value; });
    const auto weightAt = [&](double at) {
        return weightedSum(used, [&](double x) { return x == at ? 1.0 : 0.0; });
    };
    s[NUMCORE_UNI_MINIMUM] = low->value;
    s[NUMCORE_UNI_MAXIMUM] = high->value;
    s[NUMCORE_UNI_AT_MINIMUM] = weightAt(low->value);
    s[NUMCORE_UNI_AT_MAXIMUM] = weightAt(high->value);
    s[NUMCORE_UNI_RANGE] = high->value - low->value;
    s[NUMCORE_UNI_SUM] = m.mean * m.weight;
    s[NUMCORE_UNI_MEAN] = m.mean;
}

void putSpread(UnivariateStatistics& s, const Sample& used, const Moments& m) {
    if (used.empty()) return;
    const double w = m.weight;
    const double variance = used.size() == 1 ? 0.0 : ratio(m.second * w, w - 1.0);
    s[NUMCORE_UNI_VARIANCE_N] = m.second;
    s[NUMCORE_UNI_VARIANCE] = variance;
    s[NUMCORE_UNI_DEVIATION_N] = std::sqrt(m.second);
    s[NUMCORE_UNI_DEVIATION] = variance == kMissing ? kMissing : std::sqrt(variance);
    s[NUMCORE_UNI_VARIATION] = m.mean == 0.0 ? kMissing : std::sqrt(m.second) / m.mean;
    s[NUMCORE_UNI_SE_MEAN] = variance == kMissing ? kMissing : std::sqrt(variance / w);
    s[NUMCORE_UNI_MEAN_ABS_DEVIATION] = weightedSum(used, [&](double x) { return std::abs(x - m.mean); }) / w;
}

void putShape(UnivariateStatistics& s, const Moments& m) {
    const double w = m.weight;
    const double g1 = populationSkewness(m);
    const double g2 = populationKurtosis(m);
    s[NUMCORE_UNI_SKEWNESS_N] = g1;
    s[NUMCORE_UNI_SKEWNESS] = sampleSkewness(g1, w);
    s[NUMCORE_UNI_KURTOSIS_N] = g2;
    s[NUMCORE_UNI_KURTOSIS] = sampleKurtosis(g2, w);
    if (w <= 2.0) return;
    const double errorSquared = 6.0 * w * (w - 1.0) / ((w - 2.0) * (w + 1.0) * (w + 3.0));
    s[NUMCORE_UNI_SE_SKEWNESS] = std::sqrt(errorSquared);
    if (w > 3.0) {
        s[NUMCORE_UNI_SE_KURTOSIS] = std::sqrt(4.0 * (w * w - 1.0) * errorSquared / ((w - 3.0) * (w + 5.0)));
    }
}

/// Quartiles, and the median of the distances from the median: weighted when there are weights, by method
/// otherwise.
void putQuartiles(UnivariateStatistics& s, const Sample& used, bool weighted, std::int32_t method) {
    if (used.empty()) return;
    std::vector<double> values;
    std::vector<double> weights;
    for (const auto& [value, weight] : used) {
        values.push_back(value);
        weights.push_back(weight);
    }
    const auto at = [&](double order) {
        return weighted ? weightedQuantile(values, weights, order) : quantile(values, method, order);
    };
    const double first = at(0.25);
    const double median = at(0.5);
    const double third = at(0.75);
    s[NUMCORE_UNI_FIRST_QUARTILE] = first;
    s[NUMCORE_UNI_MEDIAN] = median;
    s[NUMCORE_UNI_THIRD_QUARTILE] = third;
    if (third > first) s[NUMCORE_UNI_SKEWNESS_BOWLEY] = (first + third - 2.0 * median) / (third - first);
    for (double& value : values) value = std::abs(value - median);
    s[NUMCORE_UNI_MEDIAN_ABS_DEVIATION] = at(0.5);
}

/// Means of logarithms and reciprocals: of positive values only.
void putPositiveMeans(UnivariateStatistics& s, Sample used, double w) {
    const bool positive = std::all_of(used.begin(), used.end(), [](const auto& o) { return o.value > 0.0; });
    if (used.empty() || !positive) return;
    s[NUMCORE_UNI_HARMONIC_MEAN] = w / weightedSum(used, [](double x) { return 1.0 / x; });
    for (auto& observation : used) observation.value = std::log(observation.value);
    const Moments logs = momentsOf(used);
    s[NUMCORE_UNI_GEOMETRIC_MEAN] = std::exp(logs.mean);
    const double variance = used.size() == 1 ? 0.0 : ratio(logs.second * w, w - 1.0);
    if (variance != kMissing) s[NUMCORE_UNI_GEOMETRIC_DEVIATION] = std::exp(std::sqrt(variance));
}

}  // namespace

UnivariateStatistics univariate(std::span<const double> cells, std::span<const double> weights,
                                std::int32_t method) {
    UnivariateStatistics s;
    s.fill(kMissing);
    const Sample used = usedObservations(cells, weights);
    const Moments m = momentsOf(used);
    s[NUMCORE_UNI_COUNT] = static_cast<double>(cells.size());
    s[NUMCORE_UNI_MISSING] =
        static_cast<double>(static_cast<std::int64_t>(cells.size()) - vmcore::countPresent(cells));
    s[NUMCORE_UNI_WEIGHT] = m.weight;
    putLocation(s, used, m);
    putSpread(s, used, m);
    putShape(s, m);
    putQuartiles(s, used, !weights.empty(), method);
    putPositiveMeans(s, used, m.weight);
    return s;
}

double skewness(std::span<const double> cells, std::span<const double> weights, std::int32_t kind) {
    const Sample used = usedObservations(cells, weights);
    const Moments m = momentsOf(used);
    const double g1 = used.size() < 2 ? kMissing : populationSkewness(m);
    if (g1 == kMissing) return kMissing;
    switch (kind) {
        case 0:
            return g1;
        case 1:
            return sampleSkewness(g1, m.weight);
        case 2:
            return m.weight > 1.0 ? g1 * std::pow((m.weight - 1.0) / m.weight, 1.5) : kMissing;
        default:
            return kMissing;
    }
}

}  // namespace numcore::descriptive
