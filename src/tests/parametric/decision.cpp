#include "tests/parametric/decision.hpp"

namespace numcore::tests {
namespace {

double quotient(double value, double quantile) {
    return quantile == kMissing || value == kMissing ? kMissing : asResult(value / quantile);
}

}  // namespace

Limits limitsAround(double centre, double critical, double standardError, Alternative alternative) {
    const bool upperOpen = alternative == Alternative::kUpper;
    if (critical == kMissing) return {kMissing, upperOpen ? kOverflow : kMissing};
    // An infinite critical value leaves both ends open, however small the error.
    const double half = std::abs(critical) < kOverflow ? std::abs(critical) * standardError : HUGE_VAL;
    return {alternative == Alternative::kLower ? kMissing : asResult(centre - half),
            upperOpen ? kOverflow : asResult(centre + half)};
}

Limits limitsOfScale(double value, double upperQuantile, double lowerQuantile, Alternative alternative,
                     double openLower) {
    switch (alternative) {
        case Alternative::kTwoSided:
            return {quotient(value, upperQuantile), quotient(value, lowerQuantile)};
        case Alternative::kLower:
            return {openLower, quotient(value, lowerQuantile)};
        default:
            return {quotient(value, upperQuantile), kOverflow};
    }
}

}  // namespace numcore::tests
