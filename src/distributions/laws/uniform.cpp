// Uniform law on [a, b].

#include <cmath>

#include "distributions/laws/law_domain.hpp"
#include "numcore/closed_form_laws.h"

using namespace numcore;
using namespace numcore::distributions;

double PDFUniform(double x, double a, double b) {
    if (x >= a && x <= b) return markInfinite(1.0 / (b - a));
    return std::isnan(x) ? x : 0.0;
}

double CDFUniform(double x, double a, double b) {
    if (x <= a) return 0.0;
    return x >= b ? 1.0 : (x - a) / (b - a);
}

double InvCDFUniform(double p, double a, double b) {
    if (!(a < b) || !isProbability(p)) return kMissing;
    return markInfinite(a + p * (b - a));
}
