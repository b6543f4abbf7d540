// The pieces that the expansions of the incomplete beta ratio are built from; a and b are its shapes, y is 1 -
// x. ACM TOMS Algorithm 708, Didonato, A. R. and Morris, A. H. (1992), ACM Trans. Math. Softw. 18:360-373.
#pragma once

#include <array>
#include <cstddef>

namespace numcore::distributions::beta_parts {

struct Arguments {
    double a;
    double b;
    double x;
    double y;

    Arguments swapped() const { return {b, a, y, x}; }
};

constexpr double kEpsilon = 1e-15;  // max(machine epsilon, 1e-15)

// Elementary functions and pieces of the gamma function (beta_parts.cpp).

/// ln(1 + x), x > -1.
double logOnePlus(double x);
/// x - ln(1 + x), x > -1.
double argumentMinusLogOnePlus(double x);
/// e^(x^2) erfc(x), x >= 0.
double scaledErfc(double x);
/// The logarithmic derivative of the gamma function, x > 0.
double psi(double x);
/// 1 / Gamma(1 + x) - 1, -1/2 <= x <= 3/2.
double reciprocalGammaExcess(double x);
/// Delta(a), the correction of Stirling's formula of ln Gamma(a); a >= 8.
double stirlingCorrection(double a);
/// Delta(a) + Delta(b) - Delta(a + b); a, b >= 8.
double stirlingCorrection(double a, double b);
/// ln(Gamma(b) / Gamma(a + b)), b >= 8.
double logGammaRatio(double a, double b);
/// Q(a, x), the upper incomplete gamma ratio, 0 < a <= 1 and x about 1 at most; the caller knows a ln x.
double upperGammaNearZero(double a, double x, double logPower);
/// Q(a, x) Gamma(a) e^x x^-a, 0 < a <= 1.
double scaledUpperGamma(double a, double x);

// Factors in front of the expansions (beta_factors.cpp).

/// e^shift x^a y^b / B(a, b).
double powerFactor(const Arguments& at, double shift = 0.0);
/// x^a / (a B(a, b)).
double seriesFactor(const Arguments& at);
/// x^a e^-x / Gamma(a + 1), the same for the incomplete gamma ratio.
double gammaFactor(double a, double x);
/// a - (a + b) x = (a + b) y - b from whichever of the two loses less.
double distanceFromMean(const Arguments& at);

// Expansions (beta_series.cpp, beta_fraction.cpp, beta_asymptotic.cpp): I_x(a, b) unless another is told.

/// Publication's FPSER: b < min(epsilon, epsilon a), x <= 1/2.
double seriesForTinyB(const Arguments& at);
/// APSER: 1 - I_x(a, b), a <= min(epsilon, epsilon b), b x <= 1, x <= 1/2.
double upperForTinyA(const Arguments& at);
/// BPSER: b <= 1 or b x <= 0.7.
double powerSeries(const Arguments& at);
/// BUP: I_x(a, b) - I_x(a + n, b), n >= 1.
double differenceOverSteps(const Arguments& at, int n);
/// BFRAC: a, b > 1 and x below the mean a / (a + b), which lies lambda / (a + b) away.
double continuedFraction(const Arguments& at, double lambda);
/// BGRAT: base + I_x(a, b), a >= 15 and b <= 1; it need only be accurate beside base.
double gammaExpansion(const Arguments& at, double base);
/// BASYM: a, b >= 15, lambda as above and not negative.
double errorFunctionExpansion(const Arguments& at, double lambda);

/// Coefficients of (1 + c[1] s + c[2] s^2 + ...)^power up to c.size() - 1, extended by one: power[n] from those
/// below. Miller's recurrence.
template <std::size_t size>
double coefficientOfPower(const std::array<double, size>& c, const std::array<double, size>& below,
                          std::size_t n, double power) {
    double sum = 0.0;
    const auto order = static_cast<double>(n);
    for (std::size_t i = 1; i <= n; ++i) {
        sum += (static_cast<double>(i) * (power + 1.0) - order) * c[i] * below[n - i];
    }
    return sum / order;
}

}  // namespace numcore::distributions::beta_parts
