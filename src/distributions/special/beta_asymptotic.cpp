// Asymptotic expansions of the incomplete beta ratio: in incomplete gamma functions for one large shape, in
// error functions for two.
#include <algorithm>
#include <array>
#include <cmath>

#include "distributions/special/beta_parts.hpp"

namespace numcore::distributions::beta_parts {
namespace {

constexpr double kLogSplit = 0.375;
constexpr std::size_t kGammaTerms = 30;
constexpr double kGammaTolerance = 15.0 * kEpsilon;
constexpr std::size_t kErrorTerms = 20;
constexpr double kErrorTolerance = 100.0 * kEpsilon;
constexpr double kHalfRootPi = 0.88622692545275801365;
constexpr double kInverseRootPi = 0.56418958354775628695;

using Series = std::array<double, kErrorTerms + 2>;

// With t the distance from the mean, the exponent is u^2 = t^2 (1/a + 1/b) / 2 (1 + c_1 s + c_2 s^2 + ...),
// s = t over the smaller shape; h is the ratio of the smaller shape to the larger one, sign -1 when a is the
// larger.
Series exponentSeries(double h, double sign) {
    Series c = {1.0};
    double evenPower = 1.0;  // h^(n - 1), n odd
    double oddSum = 1.0;     // (1 - h^(n + 1)) / (1 - h^2)
    for (std::size_t n = 1; n < c.size(); n += 2) {
        c[n] = sign * 2.0 * (1.0 - h) * oddSum / static_cast<double>(n + 2);
        evenPower *= h * h;
        oddSum += evenPower;
        if (n + 1 < c.size()) c[n + 1] = 2.0 * (1.0 + h * evenPower) / ((1.0 + h) * static_cast<double>(n + 3));
    }
    return c;
}

// Coefficient n of s / v as a series in v = s sqrt(1 + c_1 s + ...): Lagrange's inversion.
double inverseCoefficient(const Series& c, std::size_t n) {
    const double power = -0.5 * static_cast<double>(n + 1);
    Series raised = {1.0};
    for (std::size_t m = 1; m <= n; ++m) raised[m] = coefficientOfPower(c, raised, m, power);
    return raised[n] / static_cast<double>(n + 1);
}

// Coefficient n of the reciprocal of a series, from those below.
double reciprocalCoefficient(const Series& series, const Series& below, std::size_t n) {
    double sum = 0.0;
    for (std::size_t i = 1; i <= n; ++i) sum += series[i] * below[n - i];
    return -sum;
}

}  // namespace

// With s = e^-t in the integral and T = a + (b - 1) / 2 it becomes that of
// e^(-T t) t^(b-1) (sinh(t/2) / (t/2))^(b-1), the last factor as a series: incomplete gamma functions of z = -T
// ln x.
double gammaExpansion(const Arguments& at, double base) {
    const double logX = at.y > kLogSplit ? std::log(at.x) : logOnePlus(-at.y);
    const double order = at.a + 0.5 * (at.b - 1.0);
    const double z = -order * logX;
    if (!(at.b * z > 0.0)) return base;
    // Gamma(a + b) / (Gamma(a) Gamma(b)) (z / T)^b e^-z
    const double factor = at.b * (1.0 + reciprocalGammaExcess(at.b)) *
                          std::exp(at.b * std::log(-logX) - z - logGammaRatio(at.b, at.a));
    if (factor == 0.0) return base;

    std::array<double, kGammaTerms + 1> sinhSeries = {1.0};
    std::array<double, kGammaTerms + 1> raised = {1.0};
    const double scale = 0.25 / (order * order);
    const double square = 0.25 * logX * logX;
    const double others = base / factor;
    double power = 1.0;
    double integral = scaledUpperGamma(at.b, z);
    double sum = integral;
    for (std::size_t n = 1; n <= kGammaTerms; ++n) {
        const double twice = 2.0 * static_cast<double>(n);
        const double shape = at.b + (twice - 2.0);
        integral = (shape * (shape + 1.0) * integral + (z + shape + 1.0) * power) * scale;
        power *= square;
        sinhSeries[n] = sinhSeries[n - 1] / (twice * (twice + 1.0));
        raised[n] = coefficientOfPower(sinhSeries, raised, n, at.b - 1.0);
        const double step = raised[n] * integral;
        sum += step;
        if (!(sum > 0.0)) return base;
        if (std::abs(step) <= kGammaTolerance * (sum + others)) break;
    }
    return base + factor * sum;
}

// I = e^-Delta / sqrt(pi) * sum of d_n (sqrt(2) w)^n times the integral of u^n e^(-u^2) from z on, where d is
// the reciprocal of the inverted series, w = sqrt(1/a + 1/b) at the scale of the smaller shape and z^2 the
// exponent at x.
double errorFunctionExpansion(const Arguments& at, double lambda) {
    const double exponent =
        at.a * argumentMinusLogOnePlus(-lambda / at.a) + at.b * argumentMinusLogOnePlus(lambda / at.b);
    const double decay = std::exp(-exponent);
    if (decay == 0.0) return 0.0;
    const double smaller = std::min(at.a, at.b);
    const double h = smaller / std::max(at.a, at.b);
    const double width = 1.0 / std::sqrt(smaller * (1.0 + h));
    const Series c = exponentSeries(h, at.a > at.b ? -1.0 : 1.0);
    Series inverted = {1.0};
    Series d = {1.0};

    const double z = std::sqrt(exponent);
    const double twice = exponent + exponent;
    // 2^(n/2) e^(z^2) times the integrals of even and odd n, and the term that their recurrence adds
    double even = kHalfRootPi * scaledErfc(z);
    double odd = 0.70710678118654752440;
    double evenAdded = z;
    double oddAdded = odd * twice;
    double widthPower = width;
    inverted[1] = inverseCoefficient(c, 1);
    d[1] = reciprocalCoefficient(inverted, d, 1);
    double sum = even + d[1] * widthPower * odd;
    for (std::size_t n = 2; n <= kErrorTerms; n += 2) {
        for (std::size_t i = n; i <= n + 1; ++i) {
            inverted[i] = inverseCoefficient(c, i);
            d[i] = reciprocalCoefficient(inverted, d, i);
        }
        even = evenAdded + static_cast<double>(n - 1) * even;
        odd = oddAdded + static_cast<double>(n) * odd;
        evenAdded *= twice;
        oddAdded *= twice;
        widthPower *= width;
        const double evenStep = d[n] * widthPower * even;
        widthPower *= width;
        const double oddStep = d[n + 1] * widthPower * odd;
        sum += evenStep + oddStep;
        if (std::abs(evenStep) + std::abs(oddStep) <= kErrorTolerance * sum) break;
    }
    return kInverseRootPi * decay * std::exp(-stirlingCorrection(at.a, at.b)) * sum;
}

}  // namespace numcore::distributions::beta_parts
