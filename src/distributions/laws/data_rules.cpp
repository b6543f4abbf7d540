#include "distributions/laws/data_rules.hpp"

#include <algorithm>
#include <cmath>

#include "numcore/markers.hpp"
#include "suite/vmcore.hpp"

namespace numcore::distributions {

namespace {

bool obeys(double value, NumcoreDataRule rule) {
    if (!std::isfinite(value)) return false;
    const bool whole = value == std::trunc(value);
    switch (rule) {
        case NUMCORE_DATA_NUMBERS:
            return true;
        case NUMCORE_DATA_UNIT_INTERVAL:
            return value >= 0.0 && value <= 1.0;
        case NUMCORE_DATA_NON_NEGATIVE:
            return value >= 0.0;
        case NUMCORE_DATA_POSITIVE:
            return value > 0.0;
        case NUMCORE_DATA_WHOLE:
            return whole;
        case NUMCORE_DATA_COUNTS:
            return whole && value >= 0.0;
        case NUMCORE_DATA_ZERO_OR_ONE:
            return value == 0.0 || value == 1.0;
    }
    return false;
}

/// Position of the first cell that breaks the rule; the number of cells when none does.
std::size_t firstThatBreaks(NumcoreDataRule rule, std::span<const double> cells) {
    const auto found = std::ranges::find_if(
        cells, [rule](double cell) { return !vmcore::IsMissingValue(cell) && !obeys(cell, rule); });
    return static_cast<std::size_t>(found - cells.begin());
}

}  // namespace

ST_DistribCheck checkData(NumcoreDataRule rule, std::span<const double> cells, std::size_t nRows,
                          std::span<const std::int16_t> exempt) {
    const std::size_t nColumns = nRows == 0 ? 0 : cells.size() / nRows;
    for (std::size_t c = 0; c < nColumns; ++c) {
        if (c < exempt.size() && isTrue(exempt[c])) continue;
        const std::size_t row = firstThatBreaks(rule, cells.subspan(c * nRows, nRows));
        if (row < nRows) return {rule, static_cast<std::int32_t>(c + 1), static_cast<std::int32_t>(row + 1)};
    }
    return {rule, 0, 0};
}

}  // namespace numcore::distributions
