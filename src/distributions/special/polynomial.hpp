// Horner's rule for the coefficient tables of the published approximations.
#pragma once

#include <array>
#include <cstddef>

namespace numcore::distributions {

/// c[0] + c[1] x + c[2] x^2 + ...
template <std::size_t n>
constexpr double polynomial(const std::array<double, n>& coefficients, double x) {
    double value = coefficients[n - 1];
    for (std::size_t power = n - 1; power-- > 0;) value = value * x + coefficients[power];
    return value;
}

}  // namespace numcore::distributions
