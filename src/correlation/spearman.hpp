// Spearman coefficient of one pair of columns, and what the matrix shares with it.
#pragma once

#include "correlation/observations.hpp"
#include "correlation/ranked_column.hpp"

namespace numcore::correlation {

struct SpearmanCoefficient : Coefficient {
    double statistic = kMissing;
};

/// Coefficient and p-value from D = sum of w (Rx - Ry)^2, the ties and the sum of weights.
SpearmanCoefficient spearmanOfSums(std::int64_t nPairs, double weight, double differences, const Ties& tiesX,
                                   const Ties& tiesY, std::int32_t alternative);

/// Coefficient of two columns of the same rows, pairwise.
SpearmanCoefficient spearmanOfColumns(const RankedColumn& x, const RankedColumn& y,
                                      std::span<const double> weights, std::int32_t alternative);

SpearmanCoefficient spearmanPair(std::span<const double> x, std::span<const double> y, const Rows& rows,
                                 std::int32_t alternative);

}  // namespace numcore::correlation
