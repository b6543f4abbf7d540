// Small statistics of vectors.

#include <algorithm>
#include <cmath>
#include <limits>

#include "suite/vmcore.hpp"
#include "suite/vmcore_kernels.hpp"

namespace numcore::vmcore {

double V_Sum2(std::span<const double> values) {
    // Neumaier (1974), Z. Angew. Math. Mech. 54:39-51.
    double sum = 0.0;
    double lost = 0.0;
    for (const double x : values) {
        if (IsMissingValue(x)) continue;
        const double next = sum + x;
        lost += std::abs(sum) >= std::abs(x) ? (sum - next) + x : (x - next) + sum;
        sum = next;
    }
    return std::isfinite(sum) ? sum + lost : sum;
}

double V_Min(std::span<const double> values) {
    return summarize(values).minimum;
}

double V_Max(std::span<const double> values) {
    return summarize(values).maximum;
}

std::int32_t V_NbMissing(std::span<const double> values) {
    return static_cast<std::int32_t>(kernels().countMissing(values.data(), values.size()));
}

bool V_Is01(std::span<const double> values) {
    return std::all_of(values.begin(), values.end(),
                       [](double x) { return IsMissingValue(x) || (x >= 0.0 && x <= 1.0); });
}

void InitVectorToFalse(std::span<std::int16_t> flags) {
    std::fill(flags.begin(), flags.end(), std::int16_t{0});
}

void V_MeanVar(std::span<const double> data, std::int32_t n, double& mean, double& variance,
               std::span<const std::int16_t> exclusion, std::span<const double> weights,
               std::int16_t frequencyWeights, std::int16_t skipMissing) {
    const std::size_t nRows = std::min(data.size(), static_cast<std::size_t>(std::max(n, 0)));
    std::vector<double> cells;
    std::vector<double> cellWeights;
    cells.reserve(nRows);
    for (std::size_t i = 0; i < nRows; ++i) {
        if (i < exclusion.size() && exclusion[i] != 0) continue;
        if (!weights.empty() && i >= weights.size()) break;
        cells.push_back(data[i]);
        if (!weights.empty()) cellWeights.push_back(weights[i]);
    }
    const Summary summary = summarize(cells, cellWeights);
    mean = summary.mean;
    variance = vmcore::variance(summary);
    if (!isTrue(skipMissing) && summary.nMissing > 0) {
        mean = kMissing;
        variance = kMissing;
    } else if (!isTrue(frequencyWeights) && summary.nUsed > 1) {
        variance = summary.sumSquares / (summary.weight - summary.weight / static_cast<double>(summary.nUsed));
    }
}

void V_MeanVarW2(std::span<const double> data, std::span<const double> weights, double& mean,
                 double& variance) {
    const Summary summary = summarize(data, weights);
    mean = summary.mean;
    variance = vmcore::variance(summary);
}

double V_MeanW2(std::span<const double> data, std::span<const double> weights) {
    return summarize(data, weights).mean;
}

void V_MeanVarSkewPKurtP(std::span<const double> data, std::span<const double> weights, double& mean,
                         double& variance, double& skewness, double& kurtosis) {
    const Summary summary = summarize(data, weights);
    mean = summary.mean;
    variance = vmcore::variance(summary);
    skewness = kMissing;
    kurtosis = kMissing;
    const double m2 = summary.sumSquares / summary.weight;
    if (summary.nUsed == 0 || m2 == 0.0) return;
    // Deviations in units of the deviation of the sample: their powers do not overflow.
    const double scale = std::sqrt(m2);
    double cubes = 0.0;
    double fourths = 0.0;
    const std::size_t nRows = weights.empty() ? data.size() : std::min(data.size(), weights.size());
    for (std::size_t i = 0; i < nRows; ++i) {
        const double w = weights.empty() ? 1.0 : weights[i];
        if (IsMissingValue(data[i]) || !(w > kWeightEpsilon)) continue;
        const double z = (data[i] - mean) / scale;
        cubes += w * z * z * z;
        fourths += w * (z * z) * (z * z);
    }
    skewness = cubes / summary.weight;
    kurtosis = fourths / summary.weight - 3.0;
}

}  // namespace numcore::vmcore
