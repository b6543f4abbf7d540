// Fisher's F law, through the beta law of w = nu2 / (nu1 x + nu2).

#include <cmath>

#include "distributions/laws/beta_density.hpp"
#include "distributions/laws/beta_quantile.hpp"
#include "distributions/laws/checks.hpp"
#include "distributions/special/beta_ratio.hpp"
#include "numcore/api.h"
#include "numcore/continuous_laws.h"

namespace {

using namespace numcore::distributions;
using numcore::kMissing;
using numcore::kOverflow;

constexpr double kChiSquareDegrees = 400000.0;  // Kept: above it no beta quantile

double densityAtZero(double nu1) {
    if (nu1 < 2.0) return kOverflow;
    return nu1 == 2.0 ? 1.0 : 0.0;
}

// A variance ratio whose denominator hardly varies.
double quantileOfManyNu2(double p, double nu1, bool lowerTail) {
    const double chiSquare = InvCDFChiSq(lowerTail ? p : 1.0 - p, nu1);
    return isMarker(chiSquare) ? chiSquare : chiSquare / nu1;
}

// One whose numerator hardly varies.
double quantileOfManyNu1(double p, double nu2, bool lowerTail) {
    const double chiSquare = InvCDFChiSq(lowerTail ? 1.0 - p : p, nu2);
    if (chiSquare == kOverflow) return 0.0;
    return chiSquare > 0.0 ? markInfinite(nu2 / chiSquare) : kOverflow;
}

}  // namespace

double PDFFisher(double x, double nu1, double nu2) {
    if (!isPositive(nu1) || !isPositive(nu2)) return kMissing;
    if (x < 0.0) return 0.0;
    if (x == 0.0) return densityAtZero(nu1);
    const double ratio = nu1 / nu2 * x;
    if (ratio == 0.0 || std::isinf(ratio)) return ratio == 0.0 ? densityAtZero(nu1) : 0.0;
    const double w = 1.0 / (ratio + 1.0);
    return markInfinite(betaPowersOver(x, 0.5 * nu1, 0.5 * nu2, ratio * w, w));
}

double CDFFisher(double x, double nu1, double nu2, int16_t tail) {
    if (!isPositive(nu1) || !isPositive(nu2)) return kMissing;
    const bool lowerTail = numcore::isTrue(tail);
    const double numerator = nu1 * x;
    const double w = nu2 / (numerator + nu2);
    // Kept: decided by the rounded w, which is negative for x < -nu2 / nu1 as well.
    if (w <= 0.0) return lowerTail ? 1.0 : 0.0;
    if (w >= 1.0) return lowerTail ? 0.0 : 1.0;
    const BetaRatio ratio = betaRatio(0.5 * nu2, 0.5 * nu1, w, numerator / (numerator + nu2));
    return lowerTail ? ratio.upper : ratio.lower;
}

double InvCDFFisher(double p, double nu1, double nu2, int16_t tail) {
    if (!isPositive(nu1) || !isPositive(nu2)) return kMissing;
    if (p <= 0.0) return 0.0;  // Kept: for the upper tail as well
    if (!isProbability(p)) return kMissing;
    const bool lowerTail = numcore::isTrue(tail);
    if (p == 1.0) return lowerTail ? kOverflow : 0.0;
    if (nu2 > kChiSquareDegrees) return quantileOfManyNu2(p, nu1, lowerTail);
    if (nu1 > kChiSquareDegrees) return quantileOfManyNu1(p, nu2, lowerTail);
    const BetaQuantile quantile = betaQuantile(p, 0.5 * nu2, 0.5 * nu1, !lowerTail);
    return quantile.found ? markInfinite(quantile.y / quantile.x * (nu2 / nu1)) : kMissing;
}

double pValFisher(double f, double nu1, double nu2) {
    return CDFFisher(f, nu1, nu2, NUMCORE_FALSE);
}
