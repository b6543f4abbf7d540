// Powers of x and y over the complete beta function, without overflow or the cancellation of large logarithms.
#include <algorithm>
#include <cmath>

#include "distributions/special/beta_parts.hpp"

namespace numcore::distributions::beta_parts {
namespace {

constexpr double kInverseRootTwoPi = 0.398942280401433;
constexpr double kStirlingStart = 8.0;
constexpr double kLogSplit = 0.375;
constexpr double kNearMean = 0.6;

// factor * e^logarithm
struct Scaled {
    double factor;
    double logarithm;
};

// 1 / Gamma(x), 0 < x < 16.
double reciprocalGamma(double x) {
    double product = 1.0;
    for (; x > 3.0; x -= 2.0) product *= (x - 1.0) * (x - 2.0);
    if (x > 2.0) product *= --x;
    if (x < 0.5) return x * (1.0 + reciprocalGammaExcess(x));
    return (1.0 + reciprocalGammaExcess(x - 1.0)) / product;
}

// 1 / B(a, b) where one of the shapes is below 8.
Scaled inverseBeta(double a, double b) {
    const double smaller = std::min(a, b);
    const double larger = std::max(a, b);
    if (larger >= kStirlingStart) return {reciprocalGamma(smaller), -logGammaRatio(smaller, larger)};
    return {reciprocalGamma(smaller) / reciprocalGamma(smaller + larger) * reciprocalGamma(larger), 0.0};
}

// ln x, from the complement where that is the smaller one.
double logOf(double x, double complement) {
    return complement <= kLogSplit ? logOnePlus(-complement) : std::log(x);
}

// share * (u - ln(1 + u)) summed over both shapes: how far x^a y^b lies below its largest value, in logarithms.
double depthBelowPeak(double shape, double deviation, double x, double mean) {
    if (std::abs(deviation) <= kNearMean) return shape * argumentMinusLogOnePlus(deviation);
    return shape * (deviation - std::log(x / mean));
}

double factorOfLargeShapes(const Arguments& at, double shift) {
    const double h = std::min(at.a, at.b) / std::max(at.a, at.b);
    const double meanX = at.a > at.b ? 1.0 / (1.0 + h) : h / (1.0 + h);
    const double meanY = at.a > at.b ? h / (1.0 + h) : 1.0 / (1.0 + h);
    const double lambda = distanceFromMean(at);
    const double depth =
        depthBelowPeak(at.a, -lambda / at.a, at.x, meanX) + depthBelowPeak(at.b, lambda / at.b, at.y, meanY);
    return kInverseRootTwoPi * std::sqrt(at.b * meanX) *
           std::exp(shift - depth - stirlingCorrection(at.a, at.b));
}

}  // namespace

double distanceFromMean(const Arguments& at) {
    return at.a > at.b ? (at.a + at.b) * at.y - at.b : at.a - (at.a + at.b) * at.x;
}

double powerFactor(const Arguments& at, double shift) {
    if (at.x == 0.0 || at.y == 0.0) return 0.0;
    if (std::min(at.a, at.b) >= kStirlingStart) return factorOfLargeShapes(at, shift);
    const Scaled inverse = inverseBeta(at.a, at.b);
    const double logPowers = at.a * logOf(at.x, at.y) + at.b * logOf(at.y, at.x);
    return inverse.factor * std::exp(shift + logPowers + inverse.logarithm);
}

double gammaFactor(double a, double x) {
    if (a < kStirlingStart) return std::exp(a * std::log(x) - x) * reciprocalGamma(a + 1.0);
    const double depth = depthBelowPeak(a, (x - a) / a, x, a);
    return kInverseRootTwoPi / std::sqrt(a) * std::exp(-depth - stirlingCorrection(a));
}

double seriesFactor(const Arguments& at) {
    if (at.x == 0.0) return 0.0;
    if (std::min(at.a, at.b) >= kStirlingStart) {
        return powerFactor(at) * std::exp(-at.b * logOf(at.y, at.x)) / at.a;
    }
    const Scaled inverse = inverseBeta(at.a, at.b);
    return inverse.factor / at.a * std::exp(at.a * logOf(at.x, at.y) + inverse.logarithm);
}

}  // namespace numcore::distributions::beta_parts
