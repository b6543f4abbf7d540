// Generated inputs of the benchmarks: the same numbers in every run.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <span>
#include <utility>

#include "caller/data_set.hpp"

namespace numcore::benchmarks {

/// Standard normal values; a share of the cells is missing.
inline void fillNormal(std::span<double> cells, double missingShare, std::uint64_t seed) {
    std::mt19937_64 random(seed);
    std::normal_distribution<double> normal;
    std::bernoulli_distribution missing(missingShare);
    for (double& cell : cells) {
        const double value = normal(random);
        cell = missing(random) ? NUMCORE_MISSING : value;
    }
}

inline caller::NumericTable normalTable(std::size_t nRows, std::size_t nColumns, double missingShare) {
    caller::NumericTable table(nColumns, nRows);
    for (std::size_t j = 0; j < nColumns; ++j) fillNormal(table.column(j).asDoubles(), missingShare, j + 1);
    return table;
}

/// Frequency weights 1, 2, 3 in turn.
inline caller::Array frequencyWeights(std::size_t nRows) {
    caller::Array weights = caller::Array::doubles(nRows);
    const std::span<double> cells = weights.asDoubles();
    for (std::size_t i = 0; i < nRows; ++i) cells[i] = static_cast<double>(i % 3 + 1);
    return weights;
}

}  // namespace numcore::benchmarks
