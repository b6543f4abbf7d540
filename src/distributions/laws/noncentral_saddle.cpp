// Rice, S. O. (1980), Distribution of quadratic forms in normal random variables - evaluation by numerical
// integration, SIAM J. Sci. Statist. Comput. 1:438-448: the trapezoidal rule on a path through the saddle
// point. Here the path is a hyperbola, bent around the nearer singularity as the path of steepest descent is,
// and the pole at 0 is accounted for exactly: Hunter, D. B. and Regan, T. (1972), Math. Comp. 26:539-541.

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
constexpr double kLargestStep = 0.12;
constexpr double kLargestSineOfBend = 0.70710678118654752440;  // the bend is 45 degrees at most
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

// Path s + kappa (i cos(bend) sinh(v) - side sin(bend) (cosh(v) - 1)): side 1 bends it to the left.
struct Path {
    double side;
    double sine;
    double cosine;
    double kappa;

    Complex offset(double v) const {
        const double half = std::sinh(0.5 * v);
        return {-2.0 * side * kappa * sine * half * half, kappa * cosine * std::sinh(v)};
    }
    Complex derivative(double v) const {
        return {-side * kappa * sine * std::sinh(v), kappa * cosine * std::cosh(v)};
    }
};

// The two singularities lie at the same angle from the middle of the strip in v, up to the largest bend.
Path pathThrough(const Saddle& saddle) {
    const bool left = saddle.leftGap < saddle.rightGap;
    const double near = left ? saddle.leftGap : saddle.rightGap;
    const double far = left ? saddle.rightGap : saddle.leftGap;
    const double ratio = near / far;
    const double sine = std::min((1.0 - ratio) / (1.0 + ratio), kLargestSineOfBend);
    return {left ? 1.0 : -1.0, sine, std::sqrt((1.0 - sine) * (1.0 + sine)), near / (1.0 - sine)};
}

// K at the saddle plus offset, minus K at the saddle, where the linear terms cancel.
Complex cumulantDifference(const Saddle& saddle, Complex offset) {
    const Complex right = offset * (1.0 / saddle.rightGap);
    Complex difference = right * right * (saddle.tiltedMean() / (1.0 - right));
    difference = difference - log1pMinus(-right) * (0.5 * saddle.nu1);
    if (saddle.nu2 > 0.0)
        difference = difference - log1pMinus(offset * (1.0 / saddle.leftGap)) * (0.5 * saddle.nu2);
    return difference;
}

// Width of the integrand along the path, in v.
double widthInverse(const Saddle& saddle, const Path& path) {
    const double right = path.kappa / saddle.rightGap;
    const double left = path.kappa / saddle.leftGap;
    const double curvature =
        (2.0 * saddle.tiltedMean() + 0.5 * saddle.nu1) * right * right + 0.5 * saddle.nu2 * left * left;
    return path.cosine * std::sqrt(curvature);
}

// What the midpoint rule with step h misses by the pole at 0. Farther away than the exponent tells, the pole
// lies beyond the strip that governs the error of the rule.
double poleShare(const Saddle& saddle, const Path& path, double s, double h) {
    const double sine = path.sine + path.side * s / path.kappa;
    if (std::abs(sine) >= 1.0 || saddle.exponent < kFarPoleExponent) return 0.0;
    // asin(sine) - asin(path.sine) from the difference of the sines.
    const double middle = 0.5 * (std::asin(sine) + std::asin(path.sine));
    const double distance = 2.0 * std::asin(0.5 * std::abs(s) / path.kappa / std::cos(middle));
    return 1.0 / (1.0 + std::exp(2.0 * basecore::Pi() * distance / h));
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
    const double s = saddle.w * saddle.rightGap;
    const Path path = pathThrough(saddle);
    const double h = std::min(kStepOfWidth / widthInverse(saddle, path), kLargestStep);
    double sum = 0.0;
    for (int i = 0; i < kMaxNodes; ++i) {
        const double v = (i + 0.5) * h;
        const Complex offset = path.offset(v);
        const Complex difference = cumulantDifference(saddle, offset);
        const Complex measure = path.derivative(v) / (Complex{s, 0.0} + offset);
        const double size = std::exp(difference.re);
        sum += size * (measure.re * std::sin(difference.im) + measure.im * std::cos(difference.im));
        if (size * (std::abs(measure.re) + std::abs(measure.im)) < kNegligible * std::abs(sum)) break;
    }
    const double integral = std::exp(saddle.exponent) * h * sum / basecore::Pi();
    return (saddle.upperSide() ? integral : -integral) + poleShare(saddle, path, s, h);
}

}  // namespace numcore::distributions
