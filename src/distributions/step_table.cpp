#include "distributions/step_table.hpp"

#include <algorithm>
#include <cmath>

#include "suite/vmcore.hpp"

namespace numcore::distributions {

namespace {

// Kept: an absolute distance, so that values of tiny magnitude are all tied.
constexpr double kTieDistance = 2.220446049250313e-16;

/// Observations that take part, in order.
struct Sample {
    std::vector<double> values;
    std::vector<double> weights;
};

Sample takingPart(std::span<const double> values, std::span<const double> weights) {
    const std::size_t n = weights.empty() ? values.size() : std::min(values.size(), weights.size());
    Sample sample;
    sample.values.reserve(n);
    sample.weights.reserve(n);
    for (std::size_t i = 0; i < n; ++i) {
        const double weight = weights.empty() ? 1.0 : weights[i];
        if (vmcore::IsMissingValue(values[i]) || std::isnan(values[i]) || vmcore::IsMissingValue(weight))
            continue;
        sample.values.push_back(values[i]);
        sample.weights.push_back(weight);
    }
    return sample;
}

}  // namespace

std::vector<StepRow> stepRows(std::span<const double> values, std::span<const double> weights, bool sort) {
    Sample sample = takingPart(values, weights);
    const double total = vmcore::V_Sum2(sample.weights);
    if (sample.values.empty() || !(total > 0.0) || std::isinf(total)) return {};
    if (sort) vmcore::SortQ(sample.values, sample.weights);

    std::vector<StepRow> rows = {{sample.values.front(), 0.0}};
    // The running weight is divided as a whole: exact for counts, where a sum of shares gathers rounding.
    double weightBefore = sample.weights.front();
    for (std::size_t i = 1; i < sample.values.size(); ++i) {
        const double previous = sample.values[i - 1];
        const double value = sample.values[i];
        if (std::abs(value - previous) > kTieDistance) {
            const double probability = weightBefore / total;
            rows.push_back({previous, probability});
            rows.push_back({value, probability});
        }
        weightBefore += sample.weights[i];
    }
    rows.push_back({sample.values.back(), 1.0});
    return rows;
}

StepColumns stepColumns(const double* table, std::int32_t nRows) {
    if (table == nullptr || nRows < 1) return {};
    const auto n = static_cast<std::size_t>(nRows);
    return {{table, n}, {table + n, n}};
}

double quantileOfSteps(double p, const StepColumns& table) {
    for (std::size_t top = 1; top < table.values.size(); top += 2) {
        if (table.probabilities[top] >= p) return table.values[top];
    }
    return 0.0;
}

double probabilityOfSteps(double x, const StepColumns& table) {
    if (vmcore::IsMissingValue(x) || std::isnan(x) || table.values.size() < 2) return kMissing;
    const auto above = std::upper_bound(table.values.begin(), table.values.end(), x);
    if (above == table.values.begin()) return 0.0;
    return table.probabilities[static_cast<std::size_t>(above - table.values.begin()) - 1];
}

}  // namespace numcore::distributions
