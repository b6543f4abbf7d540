// Rice, S. O. (1980), Distribution of quadratic forms in normal random variables - evaluation by numerical
// integration, SIAM J. Sci. Statist. Comput. 1:438-448: the trapezoidal rule on a path through the saddle
// point. Here the path is s + i kappa sinh(v), which turns an algebraic decay into an exponential one, and the
// pole at 0 is accounted for exactly: Hunter, D. B. and Regan, T. (1972), Math. Comp. 26:539-541.

#include "distributions/laws/noncentral_saddle.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

#include "suite/basecore.hpp"

namespace numcore::distributions {
namespace {

// Steps of the rule: in units of the width of the integrand where it is nearly normal, and at most the second,
// where the nearest singularities limit the convergence.
constexpr double kStepOfWidth = 0.5;
constexpr double kLargestStep = 0.13;
constexpr double kNegligible = 1e-18;
constexpr double kFarPoleExponent = -50.0;
constexpr int kMaxNodes = 4000;

// x - nu - lambda with one rounding of the exact value.
double excessOver(double x, double nu, double lambda) {
    const double difference = x - lambda;
    const double back = difference - x;
    const double lost = (x - (difference - back)) - (lambda + back);
    return (difference - nu) + lost;
}

// Logarithm of |integrand| and its phase, relative to the saddle point, at distance t along the imaginary axis.
struct Integrand {
    double logSize;
    double phase;
};

Integrand integrandAt(const Saddle& saddle, double t) {
    const double b = t / saddle.rightGap;
    const double b2 = b * b;
    const double tilted = saddle.tiltedMean();
    double logSize = -tilted * b2 / (1.0 + b2) - 0.25 * saddle.nu1 * std::log1p(b2);
    double phase = -tilted * b * b2 / (1.0 + b2) - 0.5 * saddle.nu1 * minusArcTangent(b);
    if (saddle.nu2 > 0.0) {
        const double e = t / saddle.leftGap;
        logSize -= 0.25 * saddle.nu2 * std::log1p(e * e);
        phase += 0.5 * saddle.nu2 * minusArcTangent(e);
    }
    return {logSize, phase};
}

// K''(s) kappa^2
double squaredWidth(const Saddle& saddle, double kappa) {
    const double right = kappa / saddle.rightGap;
    const double left = kappa / saddle.leftGap;
    return (2.0 * saddle.tiltedMean() + 0.5 * saddle.nu1) * right * right + 0.5 * saddle.nu2 * left * left;
}

// What the midpoint rule with step h misses by the pole that lies at distance ratio (in units of kappa). Farther
// away than the exponent tells, the pole lies beyond the strip that governs the error of the rule.
double poleShare(double ratio, double h, double exponent) {
    if (ratio >= 1.0 || exponent < kFarPoleExponent) return 0.0;
    return 1.0 / (1.0 + std::exp(2.0 * basecore::Pi() * std::asin(ratio) / h));
}

}  // namespace

Saddle saddleOfChiSquare(double x, double nu, double lambda) {
    const double root = std::hypot(nu, 2.0 * std::sqrt(lambda) * std::sqrt(x));
    Saddle saddle{};
    saddle.nu1 = nu;
    saddle.lambda = lambda;
    saddle.w = 2.0 * excessOver(x, nu, lambda) / (2.0 * lambda + nu + root);
    saddle.p = 2.0 * x / (nu + root);
    saddle.rightGap = 0.5 / saddle.p;
    saddle.leftGap = std::numeric_limits<double>::infinity();
    // K(s) after the terms that cancel at the saddle are taken out; both that are left are negative.
    saddle.exponent = -0.5 * lambda * saddle.w * saddle.w + 0.5 * nu * log1pMinus(saddle.w, saddle.p);
    return saddle;
}

Saddle saddleOfBeta(double x, double y, double nu1, double nu2, double lambda, double excess) {
    const double linear = nu1 - lambda * x;
    const double root = std::hypot(linear, 2.0 * std::sqrt(lambda) * std::sqrt(x * (nu1 + nu2)));
    Saddle saddle{};
    saddle.nu1 = nu1;
    saddle.nu2 = nu2;
    saddle.lambda = lambda;
    saddle.w = 2.0 * excess / (lambda * (1.0 + y) + nu1 + root);
    saddle.p = linear > 0.0 ? 2.0 * x * (nu1 + nu2) / (linear + root) : 0.5 * (root - linear) / lambda;
    const double q = x * nu2 / (lambda * saddle.p + nu1);  // y + w
    saddle.rightGap = 0.5 / saddle.p;
    saddle.leftGap = 0.5 * q / (x * saddle.p);
    saddle.exponent = -0.5 * lambda * saddle.w * saddle.w + 0.5 * nu1 * log1pMinus(saddle.w, saddle.p) +
                      0.5 * nu2 * log1pMinus(-x * saddle.w / q, y * saddle.p / q);
    return saddle;
}

double contourTail(const Saddle& saddle) {
    if (!(saddle.exponent > kVanishingExponent)) return 0.0;
    const double s = std::abs(saddle.w) * saddle.rightGap;
    const double turn = saddle.upperSide() ? 1.0 : -1.0;
    const double kappa = std::min(saddle.rightGap, saddle.leftGap);
    const double h = std::min(kStepOfWidth / std::sqrt(squaredWidth(saddle, kappa)), kLargestStep);
    double sum = 0.0;
    for (int i = 0; i < kMaxNodes; ++i) {
        const double sinh = std::sinh((i + 0.5) * h);
        const double t = kappa * sinh;
        const auto [logSize, phase] = integrandAt(saddle, t);
        const double size = std::exp(logSize) * kappa * std::sqrt(1.0 + sinh * sinh) / (s * s + t * t);
        sum += size * (s * std::cos(phase) + turn * t * std::sin(phase));
        if (size * std::hypot(s, t) < kNegligible * std::abs(sum)) break;
    }
    const double integral = h * sum / basecore::Pi();
    return std::exp(saddle.exponent) * integral + poleShare(s / kappa, h, saddle.exponent);
}

}  // namespace numcore::distributions
