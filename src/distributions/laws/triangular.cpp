// Triangular law on [a, b] with mode m.

#include <cmath>

#include "distributions/laws/law_domain.hpp"
#include "numcore/closed_form_laws.h"
#include "suite/basecore.hpp"

using namespace numcore;
using namespace numcore::distributions;

namespace {

bool inOrder(double a, double m, double b) {
    return a <= m && m <= b;
}

}  // namespace

double PDFTriangular(double x, double a, double m, double b) {
    if (!inOrder(a, m, b)) return kMissing;
    if (x < a || x > b) return 0.0;
    const double peak = 2.0 / (b - a);
    if (x == m) return markInfinite(peak);
    return x < m ? peak * ((x - a) / (m - a)) : peak * ((b - x) / (b - m));
}

double CDFTriangular(double x, double a, double m, double b) {
    if (!inOrder(a, m, b)) return kMissing;
    if (x >= b) return 1.0;  // first: where all three coincide, all of the mass is there
    if (x <= a) return 0.0;
    const double width = b - a;
    return x <= m ? (x - a) / width * ((x - a) / (m - a)) : 1.0 - (b - x) / width * ((b - x) / (b - m));
}

double InvCDFTriangular(double p, double a, double m, double b) {
    if (!inOrder(a, m, b) || !isProbability(p)) return kMissing;
    if (p == 0.0 || a == b) return markInfinite(a);
    if (p == 1.0) return markInfinite(b);
    const double width = b - a;
    const double belowMode = (m - a) / width;
    if (p <= belowMode) return markInfinite(a + width * basecore::sqr(p * belowMode));
    return markInfinite(b - width * basecore::sqr((1.0 - p) * ((b - m) / width)));
}
