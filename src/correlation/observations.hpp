// The observations that a coefficient uses.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

#include "numcore/markers.hpp"

namespace numcore::correlation {

/// Weights and exclusion of the rows of a table; empty spans stand for unit weights and for no exclusion.
/// Cells beyond a shorter weight span are not used, those beyond a shorter exclusion span are.
struct Rows {
    std::span<const double> weights;
    std::span<const std::int16_t> exclusion;

    bool isExcluded(std::size_t i) const { return i < exclusion.size() && exclusion[i] != 0; }
    double weight(std::size_t i) const { return weights.empty() ? 1.0 : weights[i]; }
    /// Number of the first n rows that may be used.
    std::size_t bounded(std::size_t n) const { return weights.empty() ? n : std::min(n, weights.size()); }
};

/// Calls use(i) for each row that is not excluded and where both columns are present.
template <class Use>
void forEachPair(std::span<const double> x, std::span<const double> y, const Rows& rows, Use use) {
    const std::size_t n = rows.bounded(std::min(x.size(), y.size()));
    for (std::size_t i = 0; i < n; ++i) {
        if (!rows.isExcluded(i) && x[i] != kMissing && y[i] != kMissing) use(i);
    }
}

/// Code of an alternative. Kept: its meaning beyond the named codes differs between the families.
enum Alternative : std::int32_t {
    kNoPearsonPValue = -2,
    kLower = -1,
    kTwoSided = 0,
    kUpper = 1,
    kNoPValue = 2
};

/// What is known of one pair of columns.
struct Coefficient {
    double value = kMissing;
    double pValue = kMissing;
    std::int64_t nPairs = 0;
    double standardError = kMissing;  ///< where the method has one
    bool exact = false;               ///< the p-value comes from an exact law
    bool converged = true;
};

/// True when all present values are equal; with none too.
bool isConstant(std::span<const double> values);

/// A bit a cell, 1 where it is present.
std::vector<std::uint64_t> presenceBits(std::span<const double> cells);

}  // namespace numcore::correlation
