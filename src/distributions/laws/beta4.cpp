// Beta law stretched to [c, d].

#include "distributions/laws/checks.hpp"
#include "numcore/api.h"
#include "numcore/continuous_laws.h"

namespace {

using namespace numcore::distributions;
using numcore::kMissing;
using numcore::kOverflow;

}  // namespace

double PDFBeta4(double x, double alpha, double beta, double c, double d) {
    const double width = d - c;
    if (width < 0.0) return kMissing;
    if (width == 0.0) return x == c ? kOverflow : 0.0;
    const double density = PDFBeta((x - c) / width, alpha, beta);
    return isMarker(density) ? density : markInfinite(density / width);
}

double CDFBeta4(double x, double alpha, double beta, double c, double d) {
    const double width = d - c;
    if (width < 0.0) return kMissing;
    if (width == 0.0) return x < c ? 0.0 : 1.0;
    return CDFBeta((x - c) / width, alpha, beta, NUMCORE_TRUE);
}

double InvCDFBeta4(double p, double alpha, double beta, double c, double d) {
    const double width = d - c;
    if (width < 0.0) return kMissing;
    const double quantile = InvCDFBeta(p, alpha, beta, NUMCORE_TRUE);
    return isMarker(quantile) ? quantile : markInfinite(c + width * quantile);
}
