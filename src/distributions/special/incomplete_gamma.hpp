// The incomplete gamma ratio that the gamma, Erlang, chi-square and Poisson laws share, so that all of them
// give the same bits.
#pragma once

namespace numcore::distributions {

/// `IncompleteGamma`: the lower ratio P(a, x).
double incompleteGamma(double x, double a);

/// The upper ratio Q(a, x) = 1 - P(a, x), with full relative accuracy where it is small; not cut off at
/// e^-88. Above a = 1000 the normal approximation of `IncompleteGamma`, 0 below 1e-16 there. NaN outside the
/// domain x >= 0, a > 0.
double incompleteGammaUpper(double x, double a);

}  // namespace numcore::distributions
