// Noncentral Student law. A tail on the side of the noncentrality is a mixture of incomplete beta ratios -
// Benton, D. and Krishnamoorthy, K. (2003), Comput. Statist. Data Anal. 43:249-267 - or, where many terms
// matter, that of the noncentral F law of t^2. The other tail, where the mixture alternates, and the density
// are averages over the chi-square scale.

#include <algorithm>
#include <cmath>

#include "distributions/laws/chi_scale.hpp"
#include "distributions/laws/noncentral.hpp"
#include "distributions/laws/noncentral_mixture.hpp"
#include "distributions/laws/noncentral_saddle.hpp"
#include "distributions/laws/normal_tail.hpp"
#include "numcore/markers.hpp"
#include "numcore/noncentral_laws.h"

namespace numcore::distributions {
namespace {

constexpr double kContourMean = 150.0;    // tilted Poisson mean from which the contour integral is faster
constexpr double kComplementLimit = 0.9;  // a larger tail leaves too little of its complement
constexpr double kLargestPoint = 1e100;   // |t| beyond is moved here: its square must be finite
constexpr double kLargestParameter = 1e50;
constexpr double kLeastParameter = 1e-12;  // of nu

// Trapezoidal rule over ln s: in units of the width of the integrand, and the limit set by its strip.
constexpr double kStepOfWidth = 0.4;
constexpr double kLargestStep = 0.1;
constexpr double kNegligible = 1e-17;

bool inDomain(double nu, double delta) {
    return nu >= kLeastParameter && nu <= kLargestParameter && std::abs(delta) <= kLargestParameter;
}

double stepFor(double curvature) {
    return std::min(kStepOfWidth / std::sqrt(curvature), kLargestStep);
}

// P(N - distance > t s) for t > 0, distance >= 0: an average of normal tails.
double oppositeTail(double t, double nu, double distance) {
    // Normal hazard about z + 1/2: a quadratic for the mode.
    const double slope = distance + 0.5;
    const double halfLinear = t * slope;
    const double mode =
        2.0 * nu / (halfLinear + std::hypot(halfLinear, 2.0 * std::sqrt(nu) * std::hypot(t, std::sqrt(nu))));
    const double scaled = t * mode;
    const double curvature = 2.0 * nu * mode * mode + scaled * scaled + slope * scaled;
    const double start = std::fma(t, mode, distance);
    const double tail = averageOverChiScale(
        {nu, mode, stepFor(curvature), kNegligible}, normalUpperTail(distance),
        [&](double, double growth, double) { return normalUpperTail(start + scaled * growth); });
    return std::min(tail, 1.0);
}

Tails fromUpper(double sum) {
    const double upper = std::clamp(sum, 0.0, 1.0);
    return {1.0 - upper, upper};
}
Tails fromLower(double sum) {
    const double lower = std::clamp(sum, 0.0, 1.0);
    return {lower, 1.0 - lower};
}

// Even and odd part of the mixture, t > 0 and delta >= 0.
struct StudentMixture {
    Mixture even;
    Mixture odd;
    double belowZero;  // P(T <= 0)

    double upper(double mean) const { return 0.5 * (mixtureUpper(even, mean) + oddPart(mixtureUpper, mean)); }
    double lower(double mean) const {
        return belowZero + 0.5 * (mixtureLower(even, mean) + oddPart(mixtureLower, mean));
    }
    double wholeUpper() const { return 0.5 * (mixtureWholeUpper(even) + oddPart(mixtureWholeUpper)); }
    double wholeLower() const {
        return belowZero + 0.5 * (mixtureWholeLower(even) + oddPart(mixtureWholeLower));
    }

  private:
    template <class Sum, class... Mean>
    double oddPart(Sum sum, Mean... mean) const {
        return odd.halfLambda > 0.0 ? sum(odd, mean...) : 0.0;
    }
};

Tails sameSideTails(double t, double nu, double delta) {
    const double radius = std::hypot(t, std::sqrt(nu));
    const double sine = t / radius;
    const double cosine = std::sqrt(nu) / radius;
    const double x = sine * sine;
    const double y = cosine * cosine;
    const double belowZero = normalUpperTail(delta);
    if (!(x > 0.0)) return fromLower(belowZero);
    const double lambda = delta * delta;
    const double excess = y * ((t - delta) * (t + delta) - 1.0);
    const Saddle saddle = saddleOfBeta(x, y, 1.0, nu, lambda, excess);
    const double mean = saddle.tiltedMean();
    if (mean > kContourMean) {
        // P(T < -t) is far below the rounding of P(T > t) here.
        const double tail = contourTail(saddle);
        return saddle.upperSide() ? fromUpper(tail) : fromLower(belowZero + tail);
    }
    if (!(saddle.exponent > kVanishingExponent))
        return saddle.upperSide() ? fromUpper(0.0) : fromLower(belowZero);
    const double half = 0.5 * lambda;
    const StudentMixture mixture = {
        {half, 0.0, 0.5, 0.5 * nu, x, y}, {half, 0.5, 1.0, 0.5 * nu, x, y}, belowZero};
    if (saddle.upperSide()) {
        const double upper = mixture.upper(mean);
        return upper < kComplementLimit ? fromUpper(upper) : fromLower(mixture.wholeLower());
    }
    const double lower = mixture.lower(mean);
    return lower < kComplementLimit ? fromLower(lower) : fromUpper(mixture.wholeUpper());
}

}  // namespace

Tails noncentralStudent(double t, double nu, double delta) {
    if (!inDomain(nu, delta)) return {kMissing, kMissing};
    if (std::isnan(t)) return {t, t};
    if (t < 0.0) {
        const Tails mirrored = noncentralStudent(-t, nu, -delta);
        return {mirrored.upper, mirrored.lower};
    }
    if (t == 0.0) return {normalUpperTail(delta), normalLowerTail(delta)};
    if (std::isinf(t)) return {1.0, 0.0};
    const double point = std::min(t, kLargestPoint);
    return delta < 0.0 ? fromUpper(oppositeTail(point, nu, -delta)) : sameSideTails(point, nu, delta);
}

double noncentralStudentDensity(double t, double nu, double delta) {
    if (!inDomain(nu, delta)) return kMissing;
    if (std::isnan(t)) return t;
    if (std::abs(t) > kLargestPoint) return 0.0;
    // The density of t given s is s phi(t s - delta); the mode solves a quadratic.
    const double radius = std::hypot(t, std::sqrt(nu));
    const double linear = t / radius * delta;
    const double root = std::hypot(linear, 2.0 * std::sqrt(nu + 1.0));
    const double mode = (linear > 0.0 ? 0.5 * (linear + root) : 2.0 * (nu + 1.0) / (root - linear)) / radius;
    const double scaled = t * mode;
    const double reach = radius * mode;
    const double start = std::fma(t, mode, -delta);
    return averageOverChiScale(
        {nu, mode, stepFor(2.0 * reach * reach - linear * reach), kNegligible}, 0.0,
        [&](double s, double growth, double) { return s * normalDensity(start + scaled * growth); });
}

}  // namespace numcore::distributions

double CDFStudentNC(double x, double nu, double delta) {
    return numcore::distributions::noncentralStudent(x, nu, delta).lower;
}

double PDFStudentNC(double x, double nu, double delta) {
    return numcore::distributions::noncentralStudentDensity(x, nu, delta);
}
