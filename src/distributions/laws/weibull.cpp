// Weibull law with shape, scale and location.

#include <cmath>

#include "distributions/laws/law_domain.hpp"
#include "numcore/closed_form_laws.h"

using namespace numcore;
using namespace numcore::distributions;

namespace {

bool outOfDomain(double beta, double gamma) {
    return !(beta > 0.0) || !(gamma >= 0.0);
}

// Kept: a missing scale means the standard law; the quantile does not read it so.
double scaleOrOne(double gamma) {
    return gamma == 0.0 ? 1.0 : gamma;
}

}  // namespace

double PDFWeibull3(double x, double beta, double gamma, double mu) {
    if (outOfDomain(beta, gamma)) return kMissing;
    if (x <= mu) return 0.0;
    const double scale = scaleOrOne(gamma);
    const double z = (x - mu) / scale;
    if (z == 0.0) return 0.0;  // a distance from mu that underflows
    const double power = std::pow(z, beta);
    const double tail = std::exp(-power);
    return tail == 0.0 ? 0.0 : markInfinite(beta / scale * (power / z) * tail);
}

double CDFWeibull3(double x, double beta, double gamma, double mu) {
    if (outOfDomain(beta, gamma)) return kMissing;
    if (x <= mu) return 0.0;
    return -std::expm1(-std::pow((x - mu) / scaleOrOne(gamma), beta));
}

double InvCDFWeibull3(double p, double beta, double gamma, double mu) {
    if (!(gamma > 0.0) || !(beta > 0.0) || !isProbability(p)) return kMissing;
    if (p == 1.0) return kOverflow;
    return markInfinite(mu + gamma * std::pow(-std::log1p(-p), 1.0 / beta));
}
