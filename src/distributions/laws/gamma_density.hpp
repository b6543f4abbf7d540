// The density that the gamma, chi-square and Erlang laws share.
#pragma once

namespace numcore::distributions {

/// Density z^(k-1) e^-z / Gamma(k) of the standard gamma law.
///
/// @param z point, >= 0
/// @param k shape, > 0 and finite
/// @return the density to some 1e-15 relative, times the size of its logarithm; infinite at 0 for k < 1
///
/// From k = 10 on the powers are taken about the mode, so that no large logarithms cancel.
double gammaDensity(double z, double k);

}  // namespace numcore::distributions
