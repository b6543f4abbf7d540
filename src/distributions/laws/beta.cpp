// Beta law on [0, 1].

#include "distributions/laws/beta_density.hpp"
#include "distributions/laws/beta_quantile.hpp"
#include "distributions/laws/checks.hpp"
#include "distributions/special/beta_ratio.hpp"
#include "numcore/continuous_laws.h"

namespace {

using namespace numcore::distributions;
using numcore::kMissing;

// The density at the end where it behaves like a power of the distance by shape - 1.
double limitAtEnd(double shape, double otherShape) {
    if (shape < 1.0) return numcore::kOverflow;
    return shape == 1.0 ? otherShape : 0.0;
}

// 0 is allowed: all of the probability at one end.
bool isShape(double parameter) {
    return parameter == 0.0 || isPositive(parameter);
}

}  // namespace

double PDFBeta(double x, double alpha, double beta) {
    if (x < 0.0 || x > 1.0) return 0.0;
    if (alpha == 1.0 && beta == 1.0) return 1.0;
    if (!isPositive(alpha) || !isPositive(beta)) return kMissing;
    if (x == 0.0) return limitAtEnd(alpha, beta);
    if (x == 1.0) return limitAtEnd(beta, alpha);
    const double y = 1.0 - x;
    return markInfinite(betaPowersOver(x * y, alpha, beta, x, y));
}

double CDFBeta(double x, double alpha, double beta, int16_t tail) {
    if (!isShape(alpha) || !isShape(beta)) return kMissing;
    const bool lowerTail = numcore::isTrue(tail);
    if (x <= 0.0) return lowerTail ? 0.0 : 1.0;
    if (x >= 1.0) return lowerTail ? 1.0 : 0.0;
    const BetaRatio ratio = betaRatio(alpha, beta, x, 1.0 - x);
    if (lowerTail) return ratio.lower;
    return ratio.error == 0 ? ratio.upper : 1.0;
}

double InvCDFBeta(double p, double alpha, double beta, int16_t tail) {
    if (!isShape(alpha) || !isShape(beta) || !isProbability(p)) return kMissing;
    const bool lowerTail = numcore::isTrue(tail);
    if (p == 0.0 || p == 1.0) return lowerTail ? p : 1.0 - p;
    if (alpha == 0.0 || beta == 0.0) return kMissing;
    const BetaQuantile quantile = betaQuantile(p, alpha, beta, lowerTail);
    return quantile.found ? quantile.x : kMissing;
}
