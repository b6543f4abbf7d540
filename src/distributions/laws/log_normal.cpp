// Log-normal law: the logarithm is normal.

#include <cmath>

#include "distributions/laws/checks.hpp"
#include "numcore/continuous_laws.h"
#include "numcore/special.h"

namespace {

using namespace numcore::distributions;
using numcore::kMissing;

constexpr double kInverseRootTwoPi = 0.39894228040143267794;

bool outsideDomain(double x, double sigma) {
    return x < 0.0 || !isPositive(sigma);
}

}  // namespace

double PDFLogNormal(double x, double mu, double sigma) {
    if (outsideDomain(x, sigma)) return kMissing;
    if (x == 0.0) return 0.0;
    const double z = (std::log(x) - mu) / sigma;
    return markInfinite(kInverseRootTwoPi * std::exp(-0.5 * z * z) / x / sigma);
}

double CDFLogNormal(double x, double mu, double sigma) {
    if (outsideDomain(x, sigma)) return kMissing;
    if (x == 0.0) return 0.0;
    return CDFNormalStd((std::log(x) - mu) / sigma);  // Kept: with its floor of 1e-16
}

double InvCDFLogNormal(double p, double mu, double sigma) {
    if (!isProbability(p) || !isPositive(sigma)) return kMissing;
    if (p == 0.0) return 0.0;
    if (p == 1.0) return numcore::kOverflow;
    return markInfinite(std::exp(mu + sigma * InvCDFNormalStd(p)));
}
