// Generalised extreme value law; the shape enters as 1 - k z.

#include <cmath>

#include "distributions/laws/law_domain.hpp"
#include "numcore/closed_form_laws.h"

using namespace numcore;
using namespace numcore::distributions;

namespace {

// Below, ln(1 - k z) = -k z to the last bit, and dividing a denormal product by k would lose digits.
constexpr double kNegligibleProduct = 1e-17;

// ln(1 - k z) / k without cancellation next to k = 0.
double logPower(double k, double z) {
    const double product = k * z;
    return std::abs(product) < kNegligibleProduct ? -z : std::log1p(-product) / k;
}

// At or beyond the bound mu + beta / k, which is the upper one for k > 0.
bool beyondBound(double k, double z) {
    return k * z >= 1.0;
}

}  // namespace

double PDFGEV(double x, double k, double beta, double mu) {
    if (k == 0.0) return PDFFisherTippett(x, beta, mu);
    if (!(beta > 0.0)) return kMissing;
    const double z = (x - mu) / beta;
    if (beyondBound(k, z)) return 0.0;
    const double log = logPower(k, z);
    const double power = std::exp(log);
    return std::isinf(power) ? 0.0 : std::exp(log * (1.0 - k) - power) / beta;
}

double CDFGEV(double x, double k, double beta, double mu) {
    if (k == 0.0) return CDFFisherTippett(x, beta, mu);
    if (!(beta > 0.0)) return kMissing;
    const double z = (x - mu) / beta;
    if (beyondBound(k, z)) return k > 0.0 ? 1.0 : 0.0;
    return std::exp(-std::exp(logPower(k, z)));
}

double InvCDFGEV(double p, double k, double beta, double mu) {
    if (k == 0.0) return InvCDFFisherTippett(p, beta, mu);
    if (!(beta > 0.0) || !isProbability(p) || std::isnan(k)) return kMissing;
    if (p == 0.0) return k > 0.0 ? kMissing : markInfinite(mu + beta / k);
    if (p == 1.0) return k > 0.0 ? markInfinite(mu + beta / k) : kOverflow;
    // Kept: the inverse of the distribution function would be mu + beta (1 - (-ln p)^k) / k.
    return markInfinite(mu + beta * (std::expm1(-k * std::log(-std::log(p))) / k));
}
