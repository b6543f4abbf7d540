// Noncentral tails as Poisson mixtures of incomplete gamma or beta ratios.
#pragma once

#include <limits>

#include "distributions/laws/noncentral_terms.hpp"

namespace numcore::distributions {

/// Weights w_j = e^-m m^(j + offset) / Gamma(j + offset + 1), m = halfLambda, on the central ratios with first
/// shape a + j: I_x(a + j, b), or P(a + j, x) when b is infinite.
struct Mixture {
    double halfLambda;
    double offset;  // 0, or 1/2 for the odd part of the noncentral Student law
    double a;
    double b;
    double x;
    double y;  // 1 - x; not read when b is infinite
};

/// Sum of w_j times the lower ratio, respectively 1 minus it, j = 0, 1, ...; the terms that matter lie about
/// the mean of the Poisson law that the exponential tilting of the sum gives. Every addition is of positive
/// numbers.
double mixtureLower(const Mixture& mixture, double tiltedMean);
double mixtureUpper(const Mixture& mixture, double tiltedMean);

/// The same without regard to a mean, for a tail opposite to the one that is small by its position.
double mixtureWholeLower(const Mixture& mixture);
double mixtureWholeUpper(const Mixture& mixture);

}  // namespace numcore::distributions
