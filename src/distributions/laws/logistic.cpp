// Logistic law.

#include <cmath>

#include "distributions/laws/law_domain.hpp"
#include "numcore/closed_form_laws.h"

using namespace numcore;
using namespace numcore::distributions;

// Both functions use e^-|z|, which cannot overflow; the density is even and the distribution function its odd
// counterpart.
double PDFLogistic(double x, double mu, double s) {
    const double e = std::exp(-std::abs((x - mu) / s));
    return e / ((1.0 + e) * (1.0 + e) * s);
}

double CDFLogistic(double x, double mu, double s) {
    const double z = (x - mu) / s;
    const double e = std::exp(-std::abs(z));
    return (z < 0.0 ? e : 1.0) / (1.0 + e);
}

double InvCDFLogistic(double p, double mu, double s) {
    if (!isProbability(p)) return kMissing;
    return markInfinite(mu + s * std::log(p / (1.0 - p)));
}
