#include "tests/parametric/samples.hpp"

#include <algorithm>

namespace numcore::tests {

CompactSample compactSample(std::span<const double> values, std::span<const double> weights) {
    CompactSample sample;
    sample.values.reserve(values.size());
    sample.weights.reserve(weights.empty() ? 0 : values.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (!isPresent(values[i]) || !hasWeight(weights, i)) continue;
        sample.values.push_back(values[i]);
        if (!weights.empty()) sample.weights.push_back(weights[i]);
    }
    return sample;
}

CompactPairs compactPairs(std::span<const double> first, std::span<const double> second,
                          std::span<const double> weights) {
    CompactPairs pairs;
    const std::size_t n = std::min(first.size(), second.size());
    pairs.first.reserve(n);
    pairs.second.reserve(n);
    pairs.weights.reserve(weights.empty() ? 0 : n);
    for (std::size_t i = 0; i < n; ++i) {
        if (!isPresent(first[i]) || !isPresent(second[i]) || !hasWeight(weights, i)) continue;
        pairs.first.push_back(first[i]);
        pairs.second.push_back(second[i]);
        if (!weights.empty()) pairs.weights.push_back(weights[i]);
    }
    return pairs;
}

Moments momentsOf(const Sample& sample) {
    vmcore::Summary summary = vmcore::summarize(sample.values, sample.weights);
    if (summary.minimum == summary.maximum) {
        // Equal values have no spread, whatever rounding makes of their mean.
        summary.mean = summary.minimum;
        summary.sumSquares = 0.0;
    }
    return {static_cast<double>(summary.nUsed), summary.weight, summary.mean, summary.sumSquares,
            vmcore::variance(summary)};
}

Moments momentsOfDifferences(const CompactPairs& pairs) {
    Moments moments;
    moments.n = static_cast<double>(pairs.first.size());
    moments.mean = 0.0;
    for (std::size_t i = 0; i < pairs.first.size(); ++i) {
        const double weight = pairs.weights.empty() ? 1.0 : pairs.weights[i];
        moments.weight += weight;
        const double deviation = pairs.first[i] - pairs.second[i] - moments.mean;
        const double share = weight / moments.weight;
        moments.squares += deviation * deviation * weight * (1.0 - share);
        moments.mean += deviation * share;
    }
    return moments;
}

}  // namespace numcore::tests
