// Evaluation of the coefficient tables of the published approximations.
#pragma once

#include <array>
#include <cstddef>

namespace numcore::distributions {

/// c[first] + c[first + 2] x + c[first + 4] x^2 + ... by Horner's rule.
template <std::size_t n>
constexpr double everyOther(const std::array<double, n>& coefficients, std::size_t first, double x) {
    std::size_t power = n - 1 - (n - 1 - first) % 2;
    double value = coefficients[power];
    for (; power > first; power -= 2) value = value * x + coefficients[power - 2];
    return value;
}

/// c[0] + c[1] x + c[2] x^2 + ...; even and odd powers apart, so that a processor works on both at a time.
template <std::size_t n>
constexpr double polynomial(const std::array<double, n>& coefficients, double x) {
    static_assert(n >= 2);
    return everyOther(coefficients, 0, x * x) + x * everyOther(coefficients, 1, x * x);
}

}  // namespace numcore::distributions
