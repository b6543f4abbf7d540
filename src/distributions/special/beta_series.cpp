// Power series and recurrences of the incomplete beta ratio.
#include <algorithm>
#include <cmath>

#include "distributions/special/beta_parts.hpp"

namespace numcore::distributions::beta_parts {
namespace {

constexpr double kEuler = 0.577215664901533;
constexpr double kPowerMatters = 1e-3 * kEpsilon;
constexpr double kSeriesMatters = 0.1 * kEpsilon;
constexpr double kLargeB = 2e-2 / kEpsilon;
constexpr double kTinyATolerance = 5.0 * kEpsilon;
constexpr double kStepRatio = 1.1;
constexpr double kNoPeak = 1e-4;
constexpr double kScaledBelow = 1e-250;
constexpr double kLargestExponent = 708.0;  // e to this power and its reciprocal are normal numbers
constexpr int kMaxTerms = 1000;             // the series below end within some hundred

// How many of the n - 1 ratios of successive terms of the sum over steps are above 1.
int nRisingTerms(const Arguments& at, int n) {
    if (at.b <= 1.0) return 0;
    if (at.y <= kNoPeak) return n - 1;
    const double peak = (at.b - 1.0) * at.x / at.y - at.a;
    if (!(peak >= 1.0)) return 0;
    return peak < n - 1 ? static_cast<int>(peak) : n - 1;
}

}  // namespace

// 1 / B(a, b) is b (1 + O(b)).
double seriesForTinyB(const Arguments& at) {
    const double power = at.a > kPowerMatters ? std::exp(at.a * std::log(at.x)) : 1.0;
    const double tolerance = kEpsilon / at.a;
    double term = at.x;
    double sum = 0.0;
    for (int n = 1; n < kMaxTerms; ++n) {
        const double step = term / (at.a + n);
        sum += step;
        if (step <= tolerance) break;
        term *= at.x;
    }
    return at.b / at.a * power * (1.0 + at.a * sum);
}

// First order in a: -a (ln x + psi(b) + Euler's constant + the sum of (1-b)(2-b)...(n-b) / n! x^n / n).
double upperForTinyA(const Arguments& at) {
    const double bx = at.b * at.x;
    double term = at.x - bx;
    const double start = at.b <= kLargeB ? std::log(at.x) + psi(at.b) + kEuler + term
                                         : std::log(bx) + kEuler + term;  // psi(b) is ln b
    const double tolerance = kTinyATolerance * std::abs(start);
    double sum = 0.0;
    for (int n = 2; n < kMaxTerms; ++n) {
        term *= at.x - bx / n;
        const double step = term / n;
        sum += step;
        if (std::abs(step) <= tolerance) break;
    }
    return -at.a * (start + sum);
}

double powerSeries(const Arguments& at) {
    const double factor = seriesFactor(at);
    if (factor == 0.0 || at.a <= kSeriesMatters) return factor;
    const double tolerance = kEpsilon / at.a;
    double coefficient = 1.0;  // (1-b)(2-b)...(n-b) x^n / n!
    double sum = 0.0;
    for (int n = 1; n < kMaxTerms; ++n) {
        const double shape = at.a + n;
        const double inverse = 1.0 / (n * shape);
        coefficient *= (n - at.b) * at.x * (shape * inverse);
        const double step = coefficient * (n * inverse);
        sum += step;
        if (std::abs(step) <= tolerance) break;
    }
    return factor * (1.0 + at.a * sum);
}

double differenceOverSteps(const Arguments& at, int n) {
    const double sumOfShapes = at.a + at.b;
    double factor = powerFactor(at) / at.a;
    // It may underflow where the sum does not.
    const bool scaled =
        factor < kScaledBelow && n > 1 && at.a >= 1.0 && sumOfShapes >= kStepRatio * (at.a + 1.0);
    if (scaled) factor = powerFactor(at, kLargestExponent) / at.a;
    if (n == 1 || factor == 0.0) return factor;
    double term = scaled ? std::exp(-kLargestExponent) : 1.0;
    double sum = term;
    const int nRising = nRisingTerms(at, n);
    for (int i = 0; i < n - 1; ++i) {
        term *= (sumOfShapes + i) / (at.a + 1.0 + i) * at.x;
        sum += term;
        if (i >= nRising && term <= kEpsilon * sum) break;
    }
    return factor * sum;
}

}  // namespace numcore::distributions::beta_parts
