// Gumbel law (Fisher-Tippett type I, for maxima).

#include <cmath>

#include "distributions/laws/law_domain.hpp"
#include "numcore/closed_form_laws.h"

using namespace numcore;
using namespace numcore::distributions;

namespace {

// e^y overflows soon above; what the functions return from here on is part of their definition.
constexpr double kLargestExponent = 709.0;

}  // namespace

double PDFFisherTippett(double x, double beta, double mu) {
    if (!(beta > 0.0)) return kMissing;
    const double y = -(x - mu) / beta;
    return y >= kLargestExponent ? 0.0 : std::exp(y - std::exp(y)) / beta;
}

double CDFFisherTippett(double x, double beta, double mu) {
    if (!(beta > 0.0)) return kMissing;
    const double y = -(x - mu) / beta;
    if (y >= kLargestExponent) return 1.0;  // Kept: the limit is 0
    return std::exp(-std::exp(y));
}

double InvCDFFisherTippett(double p, double beta, double mu) {
    if (!(beta > 0.0) || !isProbability(p)) return kMissing;
    return markInfinite(mu - beta * std::log(-std::log(p)));
}
