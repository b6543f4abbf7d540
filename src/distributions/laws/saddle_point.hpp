// Masses of the discrete laws with relative accuracy, whatever the size of the counts.
#pragma once

namespace numcore::distributions {

/// e^-mean mean^count / count! for a whole count >= 0, 0 < mean < infinity.
double poissonMass(double count, double mean);

/// Gamma(k + m + 1) / (Gamma(k + 1) Gamma(m + 1)) x^k y^m for k, m >= 0, x + y = 1.
///
/// @param excess  (k + m) x - k, which the caller knows without cancellation
double binomialMass(double k, double m, double x, double y, double excess);

/// Mass of `marked` marked items among `drawn` ones, of `totalMarked` among `total`, all within their bounds;
/// real arguments give the smooth curve through the masses.
double hypergeometricMass(double marked, double total, double totalMarked, double drawn);

}  // namespace numcore::distributions
