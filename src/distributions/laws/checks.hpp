// Checks that the continuous laws share, beside those of every law.
#pragma once

#include <limits>

#include "distributions/laws/law_domain.hpp"
#include "numcore/markers.hpp"

namespace numcore::distributions {

/// Greater than 0 and finite; false for NaN.
constexpr bool isPositive(double parameter) {
    return parameter > 0.0 && parameter <= std::numeric_limits<double>::max();
}

constexpr bool isMarker(double value) {
    return value == kMissing || value == kOverflow;
}

}  // namespace numcore::distributions
