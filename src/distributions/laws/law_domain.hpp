// Domain checks and end values that the laws share.
#pragma once

#include <limits>

#include "numcore/markers.hpp"

namespace numcore::distributions {

/// p in [0, 1]; false for NaN.
constexpr bool isProbability(double p) {
    return p >= 0.0 && p <= 1.0;
}

/// p strictly between 0 and 1; false for NaN.
constexpr bool isInnerProbability(double p) {
    return p > 0.0 && p < 1.0;
}

/// The value, or a marker where it is infinite: the overflow marker above, the missing value below. NaN stays.
constexpr double markInfinite(double value) {
    if (value > std::numeric_limits<double>::max()) return kOverflow;
    return value < std::numeric_limits<double>::lowest() ? kMissing : value;
}

}  // namespace numcore::distributions
