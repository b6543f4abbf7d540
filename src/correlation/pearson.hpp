// Pearson coefficient of one pair of columns, and what the matrix shares with it.
#pragma once

#include "correlation/observations.hpp"

namespace numcore::correlation {

struct PearsonOptions {
    bool correlation = true;  ///< otherwise the covariance
    bool unbiased = true;
    bool frequency = true;  ///< weights count rows
    bool withPValue = true;
    std::int32_t alternative = kTwoSided;
};

/// Weighted sums of a pair.
struct PairSums {
    std::int64_t nPairs = 0;
    double weight = 0.0;
    double xx = 0.0;  ///< of squared deviations
    double yy = 0.0;
    double xy = 0.0;  ///< of products of deviations
};

/// Coefficient or covariance, and p-value, from the sums.
Coefficient pearsonOfSums(const PairSums& sums, const PearsonOptions& options);

/// Sums by weighted updating, one observation after another.
PairSums pearsonSums(std::span<const double> x, std::span<const double> y, const Rows& rows);

inline Coefficient pearsonPair(std::span<const double> x, std::span<const double> y, const Rows& rows,
                               const PearsonOptions& options) {
    return pearsonOfSums(pearsonSums(x, y, rows), options);
}

}  // namespace numcore::correlation
