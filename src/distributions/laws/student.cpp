// Student law. Quantile: CACM Algorithm 396, Hill, G. W. (1970), Student's t-quantiles, Comm. ACM 13:619-620.

#include <algorithm>
#include <array>
#include <cmath>

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
    return HillExpansion(twoSided, nu).quantile();
}

// P(|T| > |x|) / 2
double tailArea(double x, double nu) {
    const double square = x * x;
    const double w = nu / (square + nu);
    if (w <= 0.0) return 0.0;
    if (w >= 1.0) return 0.5;
    return 0.5 * betaRatio(0.5 * nu, 0.5, w, square / (square + nu)).lower;
}

}  // namespace

double PDFStudent(double x, double nu) {
    if (!isPositive(nu)) return kMissing;
    return std::exp(-betaln(0.5, 0.5 * nu) - 0.5 * std::log(nu) - 0.5 * (nu + 1.0) * logOnePlusRatio(x, nu));
}

double CDFStudent(double x, double nu) {
    if (!isPositive(nu)) return kMissing;
    const double tail = tailArea(x, nu);
    return x < 0.0 ? tail : 1.0 - tail;
}

double InvCDFStudent(double p, double nu) {
    if (!(nu > 0.0) || !isProbability(p)) return kMissing;
    if (p == 0.0) return -kOverflow;  // the bits of the missing value
    if (p == 1.0) return kOverflow;
    if (nu > kNormalDegrees) return InvCDFNormalStd(p);
    const double size = upperQuantile(2.0 * std::min(p, 1.0 - p), nu);
    if (std::isnan(size)) return kMissing;
    return p < 0.5 ? -markInfinite(size) : markInfinite(size);
}
