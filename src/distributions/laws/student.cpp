// Student law. Quantile: CACM Algorithm 396, Hill, G. W. (1970), Student's t-quantiles, Comm. ACM 13:619-620.

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "distributions/laws/checks.hpp"
#include "distributions/special/beta_ratio.hpp"
#include "distributions/special/polynomial.hpp"
#include "numcore/continuous_laws.h"
#include "numcore/special.h"
#include "suite/basecore.hpp"

namespace {

using namespace numcore::distributions;
using numcore::kMissing;
using numcore::kOverflow;
using numcore::basecore::Pi;

constexpr double kSquareDominates = 1e16;  // 1 is lost beside x^2 / nu
constexpr double kNormalDegrees = 1e20;
constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

// ln(Gamma(q + 1/2) / (Gamma(q) sqrt(q))) in q^-1, q^-3, ...: Abramowitz and Stegun (1964), 6.1.41.
constexpr std::array<double, 7> kHalfStep = {-1.0 / 8.0,        1.0 / 192.0,     -1.0 / 640.0,
                                             17.0 / 14336.0,    -31.0 / 18432.0, 691.0 / 180224.0,
                                             -5461.0 / 425984.0};
constexpr double kHalfStepStart = 10.0;
constexpr double kInverseRootTwoPi = 0.39894228040143267794;

// Hill's constants, by power where there are several.
constexpr double kShift = 0.5;
constexpr double kB = 48.0;
constexpr std::array<double, 4> kC = {96.36, -16.0, -98.0, 20700.0};  // the last one over b
constexpr std::array<double, 3> kD = {1.0, -3.0, 94.5};
constexpr double kTailSplit = 0.05;
constexpr double kFewDegrees = 5.0;
constexpr double kFewDegreesFactor = 0.3;
constexpr double kFewDegreesShift = 4.5;
constexpr double kFewDegreesX = 0.6;
constexpr std::array<double, 4> kCOfX = {0.0, -2.0, -7.0, -5.0};
constexpr double kCOfXByD = 0.05;
constexpr std::array<double, 4> kY = {94.5, 36.0, 6.3, 0.4};
constexpr double kYOffset = 3.0;
constexpr double kShortExponential = 0.002;
constexpr double kTailD = 0.089;
constexpr double kTailC = 0.822;
constexpr double kNearlyTwo = 2.1;

// ln(1 + x^2 / nu)
double logOnePlusRatio(double x, double nu) {
    const double ratio = x / nu * x;
    if (!(ratio > kSquareDominates)) return std::log1p(ratio);
    return 2.0 * std::log(std::abs(x)) - std::log(nu);
}

// factor * e^logarithm
struct Scaled {
    double factor;
    double logarithm;
};

// Gamma(q + 1/2) / (Gamma(q) sqrt(2 pi q)): the height of the density at q = nu / 2.
Scaled heightAt(double q) {
    double numerator = 1.0;
    double denominator = 1.0;
    double shifted = q;
    for (; shifted < kHalfStepStart; shifted += 1.0) {
        numerator *= shifted;
        denominator *= shifted + 0.5;
    }
    const double inverse = 1.0 / shifted;
    const double series = inverse * polynomial(kHalfStep, inverse * inverse);
    if (shifted == q) return {kInverseRootTwoPi, series};
    return {kInverseRootTwoPi * (std::sqrt(shifted) / std::sqrt(q)) * (numerator / denominator), series};
}

// e^y - 1
double exponentialMinusOne(double y) {
    return y > kShortExponential ? std::exp(y) - 1.0 : 0.5 * y * y + y;
}

// The quantile of Hill's expansion, at two-sided probability P.
class HillExpansion {
  public:
    HillExpansion(double twoSided, double n) : p_(twoSided), n_(n), a_(1.0 / (n - kShift)), b_(kB / (a_ * a_)) {
        c_ = ((kC[3] * a_ / b_ + kC[2]) * a_ + kC[1]) * a_ + kC[0];
        d_ = ((kD[2] / (b_ + c_) + kD[1]) / b_ + kD[0]) * std::sqrt(a_ * 0.5 * Pi()) * n;
    }

    double quantile() const {
        const double y = std::pow(d_ * p_, 2.0 / n_);
        const bool central = (n_ < kNearlyTwo && p_ > 0.5) || y > a_ + kTailSplit;
        return std::sqrt(n_ * (central ? normalBased() : tailSeries(y)));
    }

  private:
    // Kept: no refinement beyond the published expansion.
    double normalBased() const {
        const double x = InvCDFNormalStd(0.5 * p_);
        double c = c_;
        if (n_ < kFewDegrees) c += kFewDegreesFactor * (n_ - kFewDegreesShift) * (x + kFewDegreesX);
        c += kCOfXByD * d_ * (x * x) * (x * x) + polynomial(kCOfX, x) + b_;
        const double square = x * x;
        const double t = ((polynomial(kY, square) / c - square - kYOffset) / b_ + 1.0) * x;
        return exponentialMinusOne(a_ * t * t);
    }

    double tailSeries(double y) const {
        const double inner = ((n_ + 6.0) / (n_ * y) - kTailD * d_ - kTailC) * (n_ + 2.0) * 3.0;
        return ((1.0 / inner + 0.5 / (n_ + 4.0)) * y - 1.0) * (n_ + 1.0) / (n_ + 2.0) + 1.0 / y;
    }

    double p_;
    double n_;
    double a_;
    double b_;
    double c_;
    double d_;
};

double upperQuantile(double twoSided, double nu) {
    if (nu == 1.0) return 1.0 / std::tan(0.5 * Pi() * twoSided);
    if (nu == 2.0) return std::sqrt(2.0 / (twoSided * (2.0 - twoSided)) - 2.0);
    return nu > kShift ? HillExpansion(twoSided, nu).quantile() : kNoNumber;
}

// P(|T| > |x|) / 2
double tailArea(double x, double nu) {
    const double square = x * x;
    const double w = nu / (square + nu);
    // Kept: decided by the rounded w.
    if (w <= 0.0) return 0.0;
    if (w >= 1.0) return 0.5;
    return 0.5 * betaRatio(0.5 * nu, 0.5, w, square / (square + nu)).lower;
}

}  // namespace

double PDFStudent(double x, double nu) {
    if (!isPositive(nu)) return kMissing;
    const Scaled height = heightAt(0.5 * nu);
    return height.factor * std::exp(height.logarithm - 0.5 * (nu + 1.0) * logOnePlusRatio(x, nu));
}

double CDFStudent(double x, double nu) {
    if (!isPositive(nu)) return kMissing;
    const double tail = tailArea(x, nu);
    return x < 0.0 ? tail : 1.0 - tail;
}

double InvCDFStudent(double p, double nu) {
    if (!(nu > 0.0) || !isProbability(p)) return kMissing;
    if (p == 0.0) return -kOverflow;  // that is the missing value
    if (p == 1.0) return kOverflow;
    if (nu > kNormalDegrees) return InvCDFNormalStd(p);
    const double size = upperQuantile(2.0 * std::min(p, 1.0 - p), nu);
    if (std::isnan(size)) return kMissing;
    return p < 0.5 ? -markInfinite(size) : markInfinite(size);
}
