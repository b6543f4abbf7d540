// Noncentral chi-square, F and beta laws: a Poisson mixture where few terms matter, a contour integral through
// the saddle point otherwise. Either gives the smaller tail by positive terms; the other is its complement.

#include <algorithm>
#include <cmath>

#include "distributions/laws/noncentral.hpp"
#include "distributions/laws/noncentral_mixture.hpp"
#include "distributions/laws/noncentral_saddle.hpp"
#include "numcore/markers.hpp"
#include "numcore/noncentral_laws.h"

namespace numcore::distributions {
namespace {

// Tilted Poisson means and first shapes from which the contour integral is the faster way.
constexpr double kContourMean = 150.0;
constexpr double kContourShape = 150.0;

// A tail above this leaves too little of its complement; that is then summed for itself.
constexpr double kComplementLimit = 0.9;

// Squares and products of two must be finite, and not 0.
constexpr double kLeastParameter = 1e-12;
constexpr double kLargestParameter = 1e100;

constexpr Tails kNoTails = {kMissing, kMissing};

bool inDomain(double degreesOfFreedom, double lambda) {
    return degreesOfFreedom >= kLeastParameter && degreesOfFreedom <= kLargestParameter && lambda >= 0.0 &&
           lambda <= kLargestParameter;
}

Tails fromOne(double sum, bool upper) {
    const double tail = std::clamp(sum, 0.0, 1.0);
    return upper ? Tails{1.0 - tail, tail} : Tails{tail, 1.0 - tail};
}

Tails mixtureTails(const Mixture& mixture, const Saddle& saddle) {
    if (!(saddle.exponent > kVanishingExponent)) return fromOne(0.0, saddle.upperSide());
    const bool upper = saddle.upperSide();
    const double mean = saddle.tiltedMean();
    const double tail = upper ? mixtureUpper(mixture, mean) : mixtureLower(mixture, mean);
    if (tail < kComplementLimit) return fromOne(tail, upper);
    const double other = std::clamp(upper ? mixtureWholeLower(mixture) : mixtureWholeUpper(mixture), 0.0, 1.0);
    return upper ? Tails{other, std::min(tail, 1.0)} : Tails{std::min(tail, 1.0), other};
}

// a b - c d with one rounding of each product made good.
double differenceOfProducts(double a, double b, double c, double d) {
    const double cd = c * d;
    const double lost = std::fma(-c, d, cd);
    return std::fma(a, b, -cd) + lost;
}

}  // namespace

Tails noncentralBetaTails(double x, double y, double nu1, double nu2, double lambda, double excess) {
    const Saddle saddle = saddleOfBeta(x, y, nu1, nu2, lambda, excess);
    const double mean = saddle.tiltedMean();
    const double alpha = 0.5 * nu1;
    const double beta = 0.5 * nu2;
    if (mean > kContourMean || std::min(alpha + mean, beta) > kContourShape)
        return fromOne(contourTail(saddle), saddle.upperSide());
    return mixtureTails({0.5 * lambda, 0.0, alpha, beta, x, y}, saddle);
}

Tails noncentralChiSquare(double x, double nu, double lambda) {
    if (!inDomain(nu, lambda)) return kNoTails;
    if (std::isnan(x)) return {x, x};
    if (x <= 0.0) return {0.0, 1.0};
    if (std::isinf(x)) return {1.0, 0.0};
    const Saddle saddle = saddleOfChiSquare(x, nu, lambda);
    if (0.5 * nu + saddle.tiltedMean() > kContourShape) return fromOne(contourTail(saddle), saddle.upperSide());
    return mixtureTails({0.5 * lambda, 0.0, 0.5 * nu, HUGE_VAL, 0.5 * x, 0.0}, saddle);
}

Tails noncentralBeta(double x, double alpha, double beta, double lambda) {
    if (!inDomain(2.0 * alpha, lambda) || !inDomain(2.0 * beta, lambda)) return kNoTails;
    if (std::isnan(x)) return {x, x};
    if (x <= 0.0) return {0.0, 1.0};
    if (x >= 1.0) return {1.0, 0.0};
    const double nu1 = 2.0 * alpha;
    const double nu2 = 2.0 * beta;
    const double y = 1.0 - x;
    const double lostY = (1.0 - y) - x;
    const double excess = differenceOfProducts(nu2, x, nu1 + lambda, y) - (nu1 + lambda) * lostY;
    return noncentralBetaTails(x, y, nu1, nu2, lambda, excess);
}

Tails noncentralFisher(double x, double nu1, double nu2, double lambda) {
    if (!inDomain(nu1, lambda) || !inDomain(nu2, lambda)) return kNoTails;
    if (std::isnan(x)) return {x, x};
    if (x <= 0.0) return {0.0, 1.0};
    if (std::isinf(x)) return {1.0, 0.0};
    // x nu1 / (x nu1 + nu2) and its complement, neither by subtraction.
    const double ratio = x / nu2 * nu1;
    const double y = 1.0 / (1.0 + ratio);
    const double share = ratio < 1.0 ? ratio * y : 1.0 / (1.0 + 1.0 / ratio);
    if (!(share > 0.0)) return {0.0, 1.0};
    if (!(y > 0.0)) return {1.0, 0.0};
    const double excess = (std::fma(x, nu1, -nu1) - lambda) * y;
    return noncentralBetaTails(share, y, nu1, nu2, lambda, excess);
}

}  // namespace numcore::distributions

double CDFchiSqNC(double x, double nu, double lambda) {
    return numcore::distributions::noncentralChiSquare(x, nu, lambda).lower;
}

double CDFFisherNC(double x, double nu1, double nu2, double lambda) {
    return numcore::distributions::noncentralFisher(x, nu1, nu2, lambda).lower;
}

double CDFbetaNC(double x, double alpha, double beta, double lambda) {
    return numcore::distributions::noncentralBeta(x, alpha, beta, lambda).lower;
}
