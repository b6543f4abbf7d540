#include "cli/report.hpp"

#include <cmath>
#include <limits>

#include "numcore/api.h"

namespace numcore::cli {

Cell cellOf(double value) {
    if (value == NUMCORE_MISSING) return {};
    if (value == NUMCORE_OVERFLOW) return std::numeric_limits<double>::infinity();
    return value;
}

Cell countOf(double value) {
    constexpr double kLargestExact = 9007199254740992.0;
    const bool whole = std::abs(value) <= kLargestExact && value == std::floor(value);
    if (!whole) return cellOf(value);
    return static_cast<std::int64_t>(value);
}

}  // namespace numcore::cli
