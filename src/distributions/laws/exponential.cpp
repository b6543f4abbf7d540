// Exponential law.

#include <cmath>

#include "distributions/laws/law_domain.hpp"
#include "numcore/closed_form_laws.h"

using namespace numcore;
using namespace numcore::distributions;

namespace {

// Kept: from here on the density is 0 and the distribution function 1, although e^-700 is not 0.
constexpr double kLargestProduct = 700.0;

bool outOfDomain(double x, double lambda) {
    return !(lambda > 0.0) || x < 0.0;
}

}  // namespace

double PDFExponential(double x, double lambda) {
    if (outOfDomain(x, lambda)) return kMissing;
    const double product = lambda * x;
    return product >= kLargestProduct ? 0.0 : lambda * std::exp(-product);
}

double CDFExponential(double x, double lambda) {
    if (outOfDomain(x, lambda)) return kMissing;
    const double product = lambda * x;
    return product >= kLargestProduct ? 1.0 : -std::expm1(-product);
}

double InvCDFExponential(double p, double lambda) {
    if (!(lambda > 0.0) || !isProbability(p)) return kMissing;
    return p == 1.0 ? kOverflow : markInfinite(-std::log1p(-p) / lambda);
}
