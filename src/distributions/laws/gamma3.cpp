// Gamma law with scale and location.

#include "distributions/laws/checks.hpp"
#include "distributions/laws/gamma_density.hpp"
#include "distributions/special/incomplete_gamma.hpp"
#include "numcore/continuous_laws.h"

namespace {

using namespace numcore::distributions;
using numcore::kMissing;

bool outsideDomain(double x, double k, double beta, double mu) {
    return x < mu || !isPositive(k) || !(beta == 0.0 || isPositive(beta));
}

double standardised(double x, double beta, double mu) {
    return beta == 0.0 ? x - mu : (x - mu) / beta;  // Kept: scale 0 stands for a missing one, that is 1
}

}  // namespace

double PDFGamma3(double x, double k, double beta, double mu) {
    if (outsideDomain(x, k, beta, mu)) return kMissing;
    if (x == mu) return 0.0;  // Kept: for shapes up to 1 as well
    const double density = gammaDensity(standardised(x, beta, mu), k);
    return markInfinite(beta == 0.0 ? density : density / beta);
}

double CDFGamma3(double x, double k, double beta, double mu) {
    if (outsideDomain(x, k, beta, mu)) return kMissing;
    if (x <= mu) return 0.0;
    return incompleteGamma(standardised(x, beta, mu), k);
}

double InvCDFGamma3(double p, double k, double beta, double mu) {
    if (!isProbability(p) || !isPositive(k) || !isPositive(beta)) return kMissing;
    const double chiSquare = InvCDFChiSq(p, 2.0 * k);
    return isMarker(chiSquare) ? chiSquare : markInfinite(mu + beta * chiSquare / 2.0);
}
