// Erlang law: the time to the k-th event of a Poisson process.

#include <cmath>

#include "distributions/laws/checks.hpp"
#include "distributions/laws/gamma_density.hpp"
#include "distributions/special/incomplete_gamma.hpp"
#include "numcore/closed_form_laws.h"
#include "numcore/continuous_laws.h"

namespace {

using namespace numcore::distributions;
using numcore::kMissing;

bool badParameters(double k, double lambda) {
    return !(k >= 1.0 && isPositive(k)) || !isPositive(lambda);
}

}  // namespace

double PDFErlang(double x, double k, double lambda) {
    if (badParameters(k, lambda) || x < 0.0) return kMissing;
    return markInfinite(lambda * gammaDensity(lambda * x, std::trunc(k)));
}

double CDFErlang(double x, double k, double lambda) {
    if (badParameters(k, lambda) || x < 0.0) return kMissing;
    const double nEvents = std::trunc(k);
    return nEvents == 1.0 ? CDFExponential(x, lambda) : incompleteGamma(lambda * x, nEvents);
}

double InvCDFErlang(double p, double k, double lambda) {
    if (!isProbability(p) || badParameters(k, lambda)) return kMissing;
    const double chiSquare = InvCDFChiSq(p, 2.0 * std::trunc(k));
    return isMarker(chiSquare) ? chiSquare : markInfinite(chiSquare / 2.0 / lambda);
}
