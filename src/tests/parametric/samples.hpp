// The observations that take part in a test, and their moments.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "suite/vmcore.hpp"
#include "tests/resampling/resampling.hpp"

namespace numcore::tests {

/// Status of the tests: 0 computed.
inline constexpr std::int32_t kDone = 0;
inline constexpr std::int32_t kTooFew = -1;
inline constexpr std::int32_t kDegenerate = -2;

/// A value above the missing one: neither missing nor NaN nor minus infinity.
constexpr bool isPresent(double value) {
    return value > kMissing;
}

/// True when observation i of the weights takes part; no weights stand for 1 each, and observations beyond a
/// shorter weight span have none.
constexpr bool hasWeight(std::span<const double> weights, std::size_t i) {
    return weights.empty() || (i < weights.size() && weights[i] > vmcore::kWeightEpsilon);
}

/// A sample reduced to the observations that take part.
struct CompactSample {
    std::vector<double> values;
    std::vector<double> weights;  ///< empty for unit weights

    Sample view() const { return {values, weights}; }
};

CompactSample compactSample(std::span<const double> values, std::span<const double> weights);

/// Pairs of which both values are present and the first sample's weight counts.
struct CompactPairs {
    std::vector<double> first;
    std::vector<double> second;
    std::vector<double> weights;  ///< empty for unit weights
};

/// Pairs beyond the shorter sample are left out.
CompactPairs compactPairs(std::span<const double> first, std::span<const double> second,
                          std::span<const double> weights);

/// What the tests need of a compact sample.
struct Moments {
    double n = 0.0;       ///< observations
    double weight = 0.0;  ///< sum of their weights
    double mean = kMissing;
    double squares = 0.0;        ///< weighted sum of squared deviations from the mean
    double variance = kMissing;  ///< squares / (weight - 1); 0 for one observation
};

Moments momentsOf(const Sample& sample);

/// Mean and squares of the pairs' differences first - second, accumulated pair by pair: West (1979), Comm. ACM
/// 22:532-535. The variance is not set.
Moments momentsOfDifferences(const CompactPairs& pairs);

}  // namespace numcore::tests
