// Generalised arcsine law: the beta law with shapes 1 - a and a, on [0, 1] or stretched to [c, d].

#include <algorithm>
#include <cmath>

#include "distributions/laws/law_domain.hpp"
#include "numcore/closed_form_laws.h"
#include "numcore/special.h"
#include "suite/basecore.hpp"

using namespace numcore;
using namespace numcore::distributions;

namespace {

constexpr double kHalfPi = 0.5 * basecore::Pi();
constexpr double kNegligible = 1e-17;  // below, 1 - x rounds to 1 and the start of the search is its end
constexpr double kStepTolerance = 4e-16;
constexpr int kMaxSteps = 30;  // five are usual

// 1 / B(a, 1 - a); the smaller shape keeps the digits of the sine.
double inverseBeta(double a) {
    return std::sin(basecore::Pi() * std::min(a, 1.0 - a)) / basecore::Pi();
}

// P(X <= x), 0 < x <= 1/2, for a = 1/2, and its inverse.
double classicalLowerTail(double x) {
    return std::asin(basecore::sqr(x)) / kHalfPi;
}
double classicalLowerQuantile(double p) {
    const double root = std::sin(kHalfPi * p);
    return root * root;
}

// The x <= 1/2 with I_x(shape, other) = p, the shapes adding to 1. Newton's method on ln I as a function of ln
// x, a convex function that is nearly a straight line; it starts from that line, on the side from which it
// descends to the root.
double lowerQuantile(double p, double shape, double other) {
    const double scale = inverseBeta(std::min(shape, other));
    double x = std::min(0.5, std::exp(std::log(p * shape / scale) / shape));
    for (int step = 0; step < kMaxSteps && x > kNegligible; ++step) {
        const double tail = IncompleteBetaR(x, shape, other);
        const double slope = scale * std::pow(x / (1.0 - x), shape) / tail;
        const double change = std::log(p / tail) / slope;
        x *= std::exp(change);
        if (!(std::abs(change) > kStepTolerance)) break;
    }
    return x;
}

double innerQuantile(double p, double a) {
    if (a == 0.5) return p <= 0.5 ? classicalLowerQuantile(p) : 1.0 - classicalLowerQuantile(1.0 - p);
    const bool inLowerHalf = p <= IncompleteBetaR(0.5, 1.0 - a, a);
    return inLowerHalf ? lowerQuantile(p, 1.0 - a, a) : 1.0 - lowerQuantile(1.0 - p, a, 1.0 - a);
}

bool outOfDomain(double a, double c, double d) {
    return !isInnerProbability(a) || !(c < d);
}

}  // namespace

double PDFArcsine(double x, double a) {
    if (!isInnerProbability(a)) return kMissing;
    if (x < 0.0 || x > 1.0) return 0.0;
    if (x == 0.0 || x == 1.0) return kOverflow;
    const double y = 1.0 - x;
    if (a == 0.5) return 1.0 / (basecore::Pi() * basecore::sqr(x * y));
    return inverseBeta(a) * std::pow(y / x, a) / y;
}

double CDFArcsine(double x, double a) {
    if (!isInnerProbability(a)) return kMissing;
    if (x <= 0.0) return 0.0;
    if (x >= 1.0) return 1.0;
    if (a == 0.5) return x <= 0.5 ? classicalLowerTail(x) : 1.0 - classicalLowerTail(1.0 - x);
    return std::isnan(x) ? x : IncompleteBetaR(x, 1.0 - a, a);
}

double InvCDFArcsine(double p, double a) {
    if (!isInnerProbability(a) || !isProbability(p)) return kMissing;
    return isInnerProbability(p) ? innerQuantile(p, a) : p;
}

double PDFArcsineG(double x, double a, double c, double d) {
    if (outOfDomain(a, c, d)) return kMissing;
    const double density = PDFArcsine((x - c) / (d - c), a);
    return density == kOverflow ? kOverflow : markInfinite(density / (d - c));
}

double CDFArcsineG(double x, double a, double c, double d) {
    return outOfDomain(a, c, d) ? kMissing : CDFArcsine((x - c) / (d - c), a);
}

double InvCDFArcsineG(double p, double a, double c, double d) {
    const double quantile = outOfDomain(a, c, d) ? kMissing : InvCDFArcsine(p, a);
    return quantile == kMissing ? kMissing : markInfinite(c + (d - c) * quantile);
}
