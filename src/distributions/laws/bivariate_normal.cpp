// Bivariate normal law. Genz, A. (2004), Numerical computation of rectangular bivariate and trivariate normal
// and t probabilities, Statistics and Computing 14:251-260, which refines Drezner, Z. and Wesolowsky, G. O.
// (1990), J. Statist. Comput. Simul. 35:101-107.

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

#include "distributions/laws/normal_tail.hpp"
#include "numcore/markers.hpp"
#include "numcore/noncentral_laws.h"
#include "suite/basecore.hpp"

namespace {

using numcore::kMissing;
using numcore::basecore::Pi;
using numcore::distributions::kInverseSqrt2Pi;
using numcore::distributions::normalLowerTail;
using numcore::distributions::normalUpperTail;

struct GaussNode {
    double node;
    double weight;
};

// Positive halves of the Gauss-Legendre rules with 6, 12 and 20 points (make_bivariate_normal.py prints them).
constexpr std::array<GaussNode, 3> kRule6 = {{{0.93246951420315203, 0.17132449237917035},
                                              {0.66120938646626451, 0.36076157304813861},
                                              {0.23861918608319691, 0.46791393457269105}}};
constexpr std::array<GaussNode, 6> kRule12 = {{{0.98156063424671925, 0.047175336386511827},
                                               {0.90411725637047486, 0.10693932599531843},
                                               {0.76990267419430469, 0.16007832854334623},
                                               {0.58731795428661745, 0.20316742672306592},
                                               {0.36783149899818019, 0.23349253653835481},
                                               {0.12523340851146892, 0.24914704581340279}}};
constexpr std::array<GaussNode, 10> kRule20 = {{{0.99312859918509492, 0.017614007139152118},
                                                {0.96397192727791379, 0.040601429800386941},
                                                {0.91223442825132591, 0.062672048334109064},
                                                {0.83911697182221882, 0.083276741576704749},
                                                {0.74633190646015079, 0.10193011981724044},
                                                {0.63605368072651503, 0.11819453196151842},
                                                {0.5108670019508271, 0.13168863844917663},
                                                {0.37370608871541956, 0.14209610931838205},
                                                {0.22778585114164508, 0.14917298647260375},
                                                {0.076526521133497334, 0.15275338713072585}}};

// Correlations below which the shorter rules reach 1e-16, and from which the integral starts at |rho| = 1.
constexpr double kRule6Limit = 0.3;
constexpr double kRule12Limit = 0.75;
constexpr double kNearOne = 0.925;

// What lies beyond has no double: limits are moved here, infinite ones too.
constexpr double kBeyondMass = 40.0;
constexpr double kNegligibleExponent = -100.0;

std::span<const GaussNode> ruleFor(double correlation) {
    if (correlation < kRule6Limit) return kRule6;
    if (correlation < kRule12Limit) return kRule12;
    return kRule20;
}

template <class Integrand>
double integrateFromZero(double end, std::span<const GaussNode> rule, Integrand integrand) {
    const double half = 0.5 * end;
    double sum = 0.0;
    for (const auto& [node, weight] : rule)
        sum += weight * (integrand(half * (1.0 - node)) + integrand(half * (1.0 + node)));
    return half * sum;
}

// P(X > h, Y > k) from independence: the derivative in the correlation, integrated over its arc sine.
double orthantFromIndependence(double h, double k, double rho) {
    const double halfSquares = 0.5 * (h * h + k * k);
    const double product = h * k;
    const double excess = integrateFromZero(std::asin(rho), ruleFor(std::abs(rho)), [&](double angle) {
        const double sine = std::sin(angle);
        return std::exp((sine * product - halfSquares) / (1.0 - sine * sine));
    });
    return normalUpperTail(h) * normalUpperTail(k) + excess / (2.0 * Pi());
}

// P(X > h, Y > k) for Y = X (sign 1) or Y = -X (sign -1).
double orthantAtOne(double h, double k, double sign) {
    if (sign > 0.0) return normalUpperTail(std::max(h, k));
    if (h >= -k) return 0.0;
    return h < 0.0 ? normalUpperTail(k) - normalLowerTail(h) : normalUpperTail(h) - normalLowerTail(k);
}

// The change of P(X > h, Y > k) between correlation rho and its sign: the integral over x from 0 to
// sqrt(1 - rho^2) of exp(-b^2 / 2x^2) q(x), q(x) = exp(-g / (1 + r)) / r, r = sqrt(1 - x^2). Its first three
// terms in x^2 are integrated in closed form, the remainder, flat at 0, by the rule. With g = sign h k and
// b = |h - sign k|.
double changeToOne(double h, double k, double rho, double sign) {
    const double g = sign * h * k;
    const double b = std::abs(h - sign * k);
    const double end2 = (1.0 - rho) * (1.0 + rho);
    const double end = std::sqrt(end2);
    const double exponent = -0.5 * (b * b / end2 + g);
    if (!(exponent > kNegligibleExponent)) return 0.0;

    const double c2 = (4.0 - g) / 8.0;
    const double c4 = c2 * (12.0 - g) / 16.0;
    const double edge = std::exp(exponent);
    const double moment0 = end * edge - b * normalLowerTail(-b / end) * std::exp(-0.5 * g) / kInverseSqrt2Pi;
    const double moment2 = (end * end2 * edge - b * b * moment0) / 3.0;
    const double moment4 = (end * end2 * end2 * edge - b * b * moment2) / 5.0;

    const double remainder = integrateFromZero(end, kRule20, [&](double x) {
        const double x2 = x * x;
        const double r = std::sqrt(1.0 - x2);
        // exp(-g / (1 + r)) = exp(-g / 2) exp(-g x^2 / (2 (1 + r)^2))
        const double common = -0.5 * (b * b / x2 + g);
        if (!(common > kNegligibleExponent)) return 0.0;
        const double full = std::exp(-0.5 * g * x2 / ((1.0 + r) * (1.0 + r))) / r;
        return std::exp(common) * (full - (1.0 + x2 * (c2 + c4 * x2)));
    });
    return (moment0 + c2 * moment2 + c4 * moment4 + remainder) / (2.0 * Pi());
}

double orthant(double h, double k, double rho) {
    if (std::abs(rho) < kNearOne) return orthantFromIndependence(h, k, rho);
    const double sign = rho > 0.0 ? 1.0 : -1.0;
    const double limit = orthantAtOne(h, k, sign);
    return std::abs(rho) == 1.0 ? limit : limit - sign * changeToOne(h, k, rho, sign);
}

}  // namespace

double PDFBiNormalStd(double x, double y, double rho) {
    if (!(std::abs(rho) < 1.0)) return kMissing;
    if (std::isnan(x) || std::isnan(y)) return x + y;
    if (std::isinf(x) || std::isinf(y)) return 0.0;
    // x^2 - 2 rho x y + y^2 by its distance from the diagonal, towards which the mass moves as |rho| -> 1.
    const double sign = rho < 0.0 ? -1.0 : 1.0;
    const double oneMinus = 1.0 - std::abs(rho);
    const double onePlus = 1.0 + std::abs(rho);
    const double across = x - sign * y;
    const double exponent = -0.5 * (across * (across / (oneMinus * onePlus)) + 2.0 * sign * x * y / onePlus);
    const double scale = 2.0 * Pi() * std::sqrt(oneMinus * onePlus);
    return std::isnan(exponent) ? 0.0 : std::exp(exponent) / scale;
}

double PDFBiNormal(double x, double y, double mu1, double mu2, double sigma1, double sigma2, double rho) {
    if (!(sigma1 > 0.0 && sigma2 > 0.0) || std::isinf(sigma1) || std::isinf(sigma2)) return kMissing;
    if (!std::isfinite(mu1) || !std::isfinite(mu2)) return kMissing;
    const double density = PDFBiNormalStd((x - mu1) / sigma1, (y - mu2) / sigma2, rho);
    return density == kMissing ? kMissing : density / sigma1 / sigma2;
}

double CDFBiNormalStd(double x, double y, double rho) {
    if (!(std::abs(rho) <= 1.0)) return kMissing;
    if (std::isnan(x) || std::isnan(y)) return x + y;
    const double h = -std::clamp(x, -kBeyondMass, kBeyondMass);
    const double k = -std::clamp(y, -kBeyondMass, kBeyondMass);
    return std::clamp(orthant(h, k, rho), 0.0, 1.0);
}
