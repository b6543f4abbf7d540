// Tails of the standard normal law with relative accuracy as far as doubles reach.
#pragma once

#include <cmath>

namespace numcore::distributions {

inline constexpr double kInverseSqrt2 = 0.70710678118654752440;
inline constexpr double kInverseSqrt2Pi = 0.39894228040143267794;

/// P(N > z). CDFNormalStd is no substitute: it is 0 below 1e-16.
inline double normalUpperTail(double z) {
    return 0.5 * std::erfc(z * kInverseSqrt2);
}
/// P(N <= z).
inline double normalLowerTail(double z) {
    return 0.5 * std::erfc(-z * kInverseSqrt2);
}
inline double normalDensity(double z) {
    return kInverseSqrt2Pi * std::exp(-0.5 * z * z);
}

}  // namespace numcore::distributions
