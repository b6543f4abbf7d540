// Chi-square law.

#include <cmath>

#include "distributions/laws/checks.hpp"
#include "distributions/laws/chi_square_quantile.hpp"
#include "distributions/laws/gamma_density.hpp"
#include "distributions/special/incomplete_gamma.hpp"
#include "numcore/continuous_laws.h"

namespace {

using namespace numcore::distributions;
using numcore::kMissing;

constexpr double kSmallestP = 1e-100;
constexpr double kLargestP = 0.99999999999999;
constexpr double kSmallStart = 5e-7;

}  // namespace

double PDFChiSq(double x, double nu) {
    if (!isPositive(nu)) return kMissing;
    if (x < 0.0) return 0.0;
    return markInfinite(0.5 * gammaDensity(0.5 * x, 0.5 * nu));
}

double CDFChiSq(double x, double nu) {
    if (!isPositive(nu)) return kMissing;
    return x < 0.0 ? 0.0 : incompleteGamma(0.5 * x, 0.5 * nu);
}

double InvCDFChiSq(double p, double nu) {
    if (!isPositive(nu) || std::isnan(p)) return kMissing;
    if (p < kSmallestP) return 0.0;                // Kept: the publication ends at 2e-6
    if (p > kLargestP) return numcore::kOverflow;  // Kept: the publication ends at 0.999998
    const ChiSquareEquation equation(p, nu);
    const bool farBelow = equation.isFarBelow();
    const double start = farBelow ? equation.farBelowStart() : equation.start();
    if (farBelow && start < kSmallStart) return start;
    const double root = chiSquareRoot(equation, start);
    return std::isnan(root) ? kMissing : markInfinite(root);
}

double pValChiSq(double x, double nu) {
    if (!isPositive(nu)) return kMissing;
    return x < 0.0 ? 1.0 : incompleteGammaUpper(0.5 * x, 0.5 * nu);
}
