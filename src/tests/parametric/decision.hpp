// From a statistic to its p-value, critical value and confidence limits.
#pragma once

#include <algorithm>
#include <cmath>

#include "numcore/markers.hpp"
#include "tests/alternative.hpp"

namespace numcore::tests {

/// The value as a result: markers instead of NaN and of what lies beyond them.
inline double asResult(double value) {
    if (std::isnan(value)) return kMissing;
    return std::clamp(value, kMissing, kOverflow);
}

/// What a test says of its statistic.
struct Decision {
    double pValue = kMissing;
    double critical = kMissing;
};

/// Confidence limits; an open one is a marker.
struct Limits {
    double lower = kMissing;
    double upper = kMissing;
};

/// Probability under the hypothesis of a statistic below and above the observed one.
struct Tails {
    double lower;
    double upper;
};

/// Order of the critical value; the upper one of two for a two-sided test.
constexpr double criticalOrder(double alpha, Alternative alternative) {
    switch (alternative) {
        case Alternative::kTwoSided:
            return 1.0 - alpha / 2.0;
        case Alternative::kLower:
            return alpha;
        default:
            return 1.0 - alpha;
    }
}

constexpr double pValueOf(Tails tails, Alternative alternative) {
    switch (alternative) {
        case Alternative::kTwoSided:
            return 2.0 * std::min(tails.lower, tails.upper);
        case Alternative::kLower:
            return tails.lower;
        default:
            return tails.upper;
    }
}

template <class Quantile>
Decision decide(Tails tails, double alpha, Alternative alternative, const Quantile& quantile) {
    return {asResult(pValueOf(tails, alternative)), asResult(quantile(criticalOrder(alpha, alternative)))};
}

/// Limits centre -+ |critical| standardError, missing without a critical value.
Limits limitsAround(double centre, double critical, double standardError, Alternative alternative);

/// Limits of a scale: value / upperQuantile and value / lowerQuantile, of which a one-sided test reads the
/// critical one only.
///
/// @param openLower  what stands for the open lower limit
Limits limitsOfScale(double value, double upperQuantile, double lowerQuantile, Alternative alternative,
                     double openLower);

}  // namespace numcore::tests
