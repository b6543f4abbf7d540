// Pareto law of the first kind.

#include <cmath>

#include "distributions/laws/law_domain.hpp"
#include "numcore/closed_form_laws.h"

using namespace numcore;
using namespace numcore::distributions;

namespace {

bool outOfDomain(double a, double b) {
    return !(a > 0.0) || !(b > 0.0);
}

// ln(b / x) for x > b; close to b the difference is exact while the quotient is rounded.
double logRatio(double x, double b) {
    return x < 2.0 * b ? std::log1p((b - x) / x) : std::log(b / x);
}

}  // namespace

double PDFPareto(double x, double a, double b) {
    if (outOfDomain(a, b)) return kMissing;
    return x < b ? 0.0 : markInfinite(a / x * std::pow(b / x, a));
}

double CDFPareto(double x, double a, double b) {
    if (outOfDomain(a, b)) return 0.0;  // Kept: not the missing value as everywhere else
    return x <= b ? 0.0 : -std::expm1(a * logRatio(x, b));
}

double InvCDFPareto(double p, double a, double b) {
    if (outOfDomain(a, b) || !isProbability(p)) return kMissing;
    return p == 1.0 ? kOverflow : markInfinite(b * std::exp(-std::log1p(-p) / a));
}
