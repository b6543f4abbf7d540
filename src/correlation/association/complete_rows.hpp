// Rows without a missing cell, and the Pearson coefficients or covariances over them.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "suite/vmcore.hpp"

namespace numcore::association {

struct RowSelection {
    std::vector<std::int16_t> exclusion;  ///< -1 for a row with a missing cell, otherwise 0
    std::int32_t nUsed = 0;
};

RowSelection completeRows(std::span<const std::span<const double>> columns);

/// Pearson coefficients, or unbiased covariances with frequency weights, of all pairs of columns.
///
/// @param weights  one a row; empty = 1 each
/// @param out      out, a row and a column per column of data
/// @return false when a cell is not finite or missing
bool pairMatrix(std::span<const std::span<const double>> columns, const RowSelection& rows,
                std::span<const double> weights, bool correlation, vmcore::MatrixView out);

/// One pair of pairMatrix; the missing value when it cannot be computed.
double pairValue(std::span<const double> x, std::span<const double> y, const RowSelection& rows,
                 std::span<const double> weights, bool correlation);

}  // namespace numcore::association
