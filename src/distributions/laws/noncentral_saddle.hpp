// The saddle point of a noncentral tail and the tail as a contour integral through it.
#pragma once

#include "distributions/laws/noncentral_terms.hpp"

namespace numcore::distributions {

/// Saddle point s of K(s), the cumulant function of Z = X - c Y with X noncentral chi-square (nu1, lambda) and
/// Y chi-square (nu2) independent of it; P(Z > 0) is a tail of the noncentral F and beta laws. With a fixed
/// point in the place of c Y (nu2 = 0) it is that of the noncentral chi-square law.
struct Saddle {
    double nu1;
    double nu2;
    double lambda;
    double w;         // 2s / (1 - 2s): has the sign of s
    double p;         // 1 + w; the Poisson mean lambda/2 is tilted to p lambda/2
    double rightGap;  // from s to the singularity at 1/2
    double leftGap;   // from s to the singularity at -1/(2c); infinite when nu2 = 0
    double exponent;  // K(s) <= 0

    double tiltedMean() const { return 0.5 * lambda * p; }
    bool upperSide() const { return w >= 0.0; }
};

/// Smaller exponents mean a tail without a double.
inline constexpr double kVanishingExponent = -760.0;

/// x, nu > 0 and lambda >= 0, finite.
Saddle saddleOfChiSquare(double x, double nu, double lambda);

/// x in (0, 1), y = 1 - x; excess is nu2 x - (nu1 + lambda) y, which the caller may know without cancellation.
Saddle saddleOfBeta(double x, double y, double nu1, double nu2, double lambda, double excess);

/// P(Z > 0) when the saddle is on the upper side, otherwise P(Z <= 0).
double contourTail(const Saddle& saddle);

}  // namespace numcore::distributions
