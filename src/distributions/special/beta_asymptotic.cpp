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

// Coefficients of sinh(s) / s in s^2.
constexpr auto kSinhSeries = [] {
    std::array<double, kGammaTerms + 1> c = {1.0};
    for (std::size_t n = 1; n < c.size(); ++n) c[n] = c[n - 1] / static_cast<double>(2 * n * (2 * n + 1));
    return c;
}();

using Series = std::array<double, kErrorTerms + 2>;

// The exponent of the integrand, at t from the mean, is t^2 (1/a + 1/b) / 2 near it. With s = t over the
// smaller shape and v its true value on the same scale, s ds/dv = v (1 - skew s - h s^2), where h is the ratio
// of the smaller shape to the larger one and skew is +-(1 - h). Term by term that gives s as a series in v, and
// v / s, which the integrand is multiplied by, as ds/dv + skew v + h v s. The publication inverts the series of
// the logarithm instead, in n^3 operations.
class DistanceSeries {
  public:
    DistanceSeries(double h, double skew) : h_(h), skew_(skew) {}

    /// Coefficient n of v / s; n from 1, one after the other.
    double next(std::size_t n) {
        const double order = static_cast<double>(n + 2);
        halfSquare_[n] = -(skew_ * s_[n - 1] + (n >= 2 ? 2.0 * h_ * halfSquare_[n - 2] : 0.0)) / order;
        double products = n % 2 == 0 ? 0.5 * s_[n / 2] * s_[n / 2] : 0.0;  // half of all, which come in pairs
        for (std::size_t i = 1; 2 * i < n; ++i) products += s_[i] * s_[n - i];
        s_[n] = halfSquare_[n] - products;
        return static_cast<double>(n + 1) * s_[n] + (n == 1 ? skew_ : h_ * s_[n - 2]);
    }

  private:
    double h_;
    double skew_;
    Series s_ = {1.0};           // s / v
    Series halfSquare_ = {0.5};  // s^2 / (2 v^2)
};

}  // namespace

// With s = e^-t in the integral and T = a + (b - 1) / 2 it becomes that of e^(-T t) t^(b-1) times the power b -
// 1 of sinh(t/2) / (t/2). That power as a series in t^2 gives incomplete gamma functions of z = -T ln x.
double gammaExpansion(const Arguments& at, double base) {
    const double logX = at.y > kLogSplit ? std::log(at.x) : logOnePlus(-at.y);
    const double order = at.a + 0.5 * (at.b - 1.0);
    const double z = -order * logX;
    if (!(at.b * z > 0.0)) return base;
    // Gamma(a + b) / (Gamma(a) Gamma(b)) (z / T)^b e^-z
    const double factor = at.b * (1.0 + reciprocalGammaExcess(at.b)) *
                          std::exp(at.b * std::log(-logX) - z - logGammaRatio(at.b, at.a));
    if (factor == 0.0) return base;

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
        raised[n] = coefficientOfPower(kSinhSeries, raised, n, at.b - 1.0);
        const double step = raised[n] * integral;
        sum += step;
        if (!(sum > 0.0)) return base;
        if (std::abs(step) <= kGammaTolerance * (sum + others)) break;
    }
    return base + factor * sum;
}

// I = e^-Delta / sqrt(pi) times the sum of d_n (sqrt(2) w)^n and the integral of u^n e^(-u^2) from z on: d_n
// are the coefficients of v / s, w = 1 / sqrt(a + a^2 / b) for the smaller shape a, z^2 the exponent at x.
double errorFunctionExpansion(const Arguments& at, double lambda) {
    const double exponent =
        at.a * argumentMinusLogOnePlus(-lambda / at.a) + at.b * argumentMinusLogOnePlus(lambda / at.b);
    const double decay = std::exp(-exponent);
    if (decay == 0.0) return 0.0;
    const double smaller = std::min(at.a, at.b);
    const double h = smaller / std::max(at.a, at.b);
    const double width = 1.0 / std::sqrt(smaller * (1.0 + h));
    DistanceSeries series(h, at.a > at.b ? h - 1.0 : 1.0 - h);

    const double z = std::sqrt(exponent);
    const double twice = exponent + exponent;
    // 2^(n/2) e^(z^2) times the integrals of even and odd n, and the term that their recurrence adds
    double even = kHalfRootPi * scaledErfc(z);
    double odd = 0.70710678118654752440;
    double evenAdded = z;
    double oddAdded = odd * twice;
    double widthPower = width;
    double sum = even + series.next(1) * widthPower * odd;
    for (std::size_t n = 2; n <= kErrorTerms; n += 2) {
        even = evenAdded + static_cast<double>(n - 1) * even;
        odd = oddAdded + static_cast<double>(n) * odd;
        evenAdded *= twice;
        oddAdded *= twice;
        widthPower *= width;
        const double evenStep = series.next(n) * widthPower * even;
        widthPower *= width;
        const double oddStep = series.next(n + 1) * widthPower * odd;
        sum += evenStep + oddStep;
        if (std::abs(evenStep) + std::abs(oddStep) <= kErrorTolerance * sum) break;
    }
    return kInverseRootPi * decay * std::exp(-stirlingCorrection(at.a, at.b)) * sum;
}

}  // namespace numcore::distributions::beta_parts
