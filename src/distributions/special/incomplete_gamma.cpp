// Algorithm AS 239. Shea, B. L. (1988), Chi-squared and incomplete gamma integral, Appl. Statist. 37:466-473.
#include "distributions/special/incomplete_gamma.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

#include "distributions/special/beta_parts.hpp"
#include "numcore/special.h"
#include "suite/basecore.hpp"

namespace numcore::distributions {
namespace {

constexpr double kNormalStart = 1000.0;
constexpr double kLargePoint = 1e+8;
constexpr double kTolerance = 1e-14;
constexpr double kScale = 1e+37;
constexpr double kSmallestTail = 6.054601895401185885e-39;  // e^-88
constexpr int kMaxFractionSteps = 1000;                     // below 100 suffice everywhere in the domain
constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();

// Wilson and Hilferty: the cube root of a gamma variate is nearly normal.
double normalDeviate(double x, double a) {
    return 3.0 * basecore::sqr(a) * (std::cbrt(x / a) + 1.0 / (9.0 * a) - 1.0);
}

bool outsideDomain(double x, double a) {
    return !(x >= 0.0 && a > 0.0);
}

bool seriesApplies(double x, double a) {
    return x <= 1.0 || x < a;
}

// 1 + x / (a + 1) + x^2 / ((a + 1)(a + 2)) + ...
double pearsonSeries(double x, double a) {
    double sum = 1.0;
    double term = 1.0;
    do {
        a += 1.0;
        term *= x / a;
        sum += term;
    } while (term > kTolerance);
    return sum;
}

struct Convergent {
    double numerator;
    double denominator;
};

Convergent next(const Convergent& recent, const Convergent& older, double b, double a) {
    return {b * recent.numerator - a * older.numerator, b * recent.denominator - a * older.denominator};
}

// The difference of the two is at most the tolerance times the newer one, which is below 1 for x >= a, x > 1:
// the publication's min(tolerance, tolerance * value), without its division.
bool settled(const Convergent& newest, const Convergent& recent) {
    const double one = newest.numerator * recent.denominator;
    const double other = recent.numerator * newest.denominator;
    return std::abs(one - other) <= kTolerance * one;
}

// Legendre's continued fraction of e^x x^-a Gamma(a, x).
double legendreFraction(double x, double a) {
    double b = x + 2.0 - a;
    Convergent older = {1.0, x};
    Convergent recent = {x + 1.0, x * b};
    for (int step = 1; step <= kMaxFractionSteps; ++step) {
        b += 2.0;
        const Convergent newest = next(recent, older, b, step * (step + 1.0 - a));
        if (settled(newest, recent)) return newest.numerator / newest.denominator;
        older = recent;
        recent = newest;
        if (std::abs(newest.numerator) < kScale) continue;
        older = {older.numerator / kScale, older.denominator / kScale};
        recent = {recent.numerator / kScale, recent.denominator / kScale};
    }
    return recent.numerator / recent.denominator;
}

}  // namespace

double incompleteGamma(double x, double a) {
    if (x == 0.0) return 0.0;
    if (outsideDomain(x, a)) return kNotANumber;
    if (a > kNormalStart) return CDFNormalStd(normalDeviate(x, a));
    if (x > kLargePoint) return 1.0;
    const double factor = beta_parts::gammaFactor(a, x);
    if (seriesApplies(x, a)) {
        const double lower = factor * pearsonSeries(x, a);
        return lower < kSmallestTail ? 0.0 : std::min(lower, 1.0);  // roundings at tiny shapes
    }
    const double upper = a * factor * legendreFraction(x, a);
    return upper < kSmallestTail ? 1.0 : 1.0 - upper;
}

double incompleteGammaUpper(double x, double a) {
    if (outsideDomain(x, a)) return kNotANumber;
    if (x == 0.0) return 1.0;
    if (a > kNormalStart) return CDFNormalStd(-normalDeviate(x, a));
    if (x > kLargePoint) return 0.0;
    if (x <= 1.0 && a <= 1.0) return beta_parts::upperGammaNearZero(a, x, a * std::log(x));
    if (seriesApplies(x, a)) return 1.0 - incompleteGamma(x, a);
    return a * beta_parts::gammaFactor(a, x) * legendreFraction(x, a);
}

}  // namespace numcore::distributions

double IncompleteGamma(double x, double a) {
    return numcore::distributions::incompleteGamma(x, a);
}
