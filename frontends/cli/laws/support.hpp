// Small pieces that the rows of the laws share.
#pragma once

#include <limits>

#include "cli/laws/law.hpp"
#include "numcore/api.h"

namespace numcore::cli {

inline constexpr double kInfinite = std::numeric_limits<double>::infinity();

/// What a probability that came out as 0 is below, unless a law says more.
inline constexpr double kSmallestProbability = 1e-300;

inline Interval wholeLine(const Values& /*parameters*/) {
    return {-kInfinite, kInfinite};
}

inline Interval halfLine(const Values& /*parameters*/) {
    return {0.0, kInfinite};
}

/// The value of the mirrored law; a marker stays itself.
inline double negated(double value) {
    return value == NUMCORE_MISSING || value == NUMCORE_OVERFLOW ? value : -value;
}

}  // namespace numcore::cli
