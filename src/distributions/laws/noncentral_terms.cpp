// Loader, C. (2000), Fast and accurate computation of binomial probabilities: each term is Stirling's
// formula times exp(-deviance), and the deviance is computed without cancellation.

#include "distributions/laws/noncentral_terms.hpp"

#include <array>
#include <cmath>

#include "numcore/special.h"
#include "suite/basecore.hpp"

namespace numcore::distributions {
namespace {

constexpr double kHalfLog2Pi = 0.91893853320467274178;
constexpr double kSeriesLimit = 0.3;     // of log1pMinus: |r| < 0.18, 12 terms in r^2 suffice
constexpr double kExpSeriesLimit = 0.5;  // of expm1Minus: 14 terms
constexpr double kStirlingStart = 10.0;  // GammaLnCorr starts here

constexpr int kLogTerms = 12;
constexpr int kExpTerms = 14;

// 1 / (2i + 3)
constexpr auto kOddReciprocals = [] {
    std::array<double, kLogTerms> table{};
    for (int i = 0; i < kLogTerms; ++i) table[static_cast<std::size_t>(i)] = 1.0 / (2 * i + 3);
    return table;
}();

// 1 / (i + 2)!
constexpr auto kInverseFactorials = [] {
    std::array<double, kExpTerms> table{};
    double factorial = 1.0;
    for (int i = 0; i < kExpTerms; ++i) {
        factorial *= i + 2;
        table[static_cast<std::size_t>(i)] = 1.0 / factorial;
    }
    return table;
}();

// k ln(k / mean) + mean - k, given mean - k.
double deviance(double k, double mean, double meanMinusK) {
    return -k * log1pMinus(meanMinusK / k, mean / k);
}

}  // namespace

double log1pMinus(double v) {
    if (!(std::abs(v) < kSeriesLimit)) return std::log1p(v) - v;
    const double r = v / (2.0 + v);  // ln(1 + v) = 2 artanh(r)
    const double r2 = r * r;
    double sum = 0.0;
    for (int i = kLogTerms; i-- > 0;) sum = sum * r2 + kOddReciprocals[static_cast<std::size_t>(i)];
    return r * (2.0 * r2 * sum - v);
}

double log1pMinus(double v, double onePlus) {
    return v < -0.5 ? std::log(onePlus) - v : log1pMinus(v);
}

Complex log1pMinus(Complex z) {
    const double size2 = z.re * z.re + z.im * z.im;
    if (!(size2 < kSeriesLimit * kSeriesLimit))
        return {0.5 * std::log1p(2.0 * z.re + size2) - z.re, std::atan2(z.im, 1.0 + z.re) - z.im};
    const Complex r = z / Complex{2.0 + z.re, z.im};
    const Complex r2 = r * r;
    Complex sum{0.0, 0.0};
    for (int i = kLogTerms; i-- > 0;) {
        sum = sum * r2;
        sum.re += kOddReciprocals[static_cast<std::size_t>(i)];
    }
    return r * (r2 * sum * 2.0 - z);
}

double expm1Minus(double u) {
    if (!(std::abs(u) < kExpSeriesLimit)) return std::expm1(u) - u;
    double sum = 0.0;
    for (int i = kExpTerms; i-- > 0;) sum = sum * u + kInverseFactorials[static_cast<std::size_t>(i)];
    return u * u * sum;
}

double stirlingError(double x) {
    // GammaLnCorr ends where 1 / (12 x) is far below the rounding of any use.
    if (x >= kStirlingStart) return x < 1e300 ? GammaLnCorr(x) : 0.0;
    return basecore::GammaLn(x + 1.0) - ((x + 0.5) * std::log(x) - x + kHalfLog2Pi);
}

double logPoissonTerm(double k, double m) {
    if (k == 0.0) return -m;
    return -stirlingError(k) - deviance(k, m, m - k) - kHalfLog2Pi - 0.5 * std::log(k);
}

double logBinomialTerm(double k, double m, double x, double y) {
    const double n = k + m;
    const double shift = m * x - k * y;  // n x - k
    const double corrections = stirlingError(n) - stirlingError(k) - stirlingError(m);
    return corrections - deviance(k, n * x, shift) - deviance(m, n * y, -shift) - kHalfLog2Pi +
           0.5 * std::log(n / k / m);
}

}  // namespace numcore::distributions
