// Averages over s = sqrt(chi-square / nu), the scale under a t ratio and a studentized range.
#pragma once

#include <cmath>

#include "distributions/laws/noncentral_terms.hpp"
#include "suite/basecore.hpp"

namespace numcore::distributions {

/// How an average over s is taken: the trapezoidal rule in u = ln(s / mode), whose integrands are analytic and
/// decay exponentially on both sides, so that it converges exponentially.
struct ChiScaleRule {
    double nu;          // degrees of freedom, > 0
    double mode;        // about where the integrand is largest
    double step;        // in u
    double negligible;  // share of the sum below which terms are dropped
};

/// Sum of the weights below a node over the weight of that node: with z = nu s^2 / 2 there, the sum over i > 0
/// of exp(-nu i h + z (1 - exp(-2 i h))), by the series of exp(-z exp(-2 i h)).
inline double weightsBelow(double nu, double h, double z) {
    double power = std::exp(z);
    double sum = 0.0;
    for (int m = 0; m < 40; ++m) {
        const double term = power / std::expm1((nu + 2.0 * m) * h);
        sum += term;
        if (std::abs(term) < 1e-17 * sum) break;
        power *= -z / (m + 1);
    }
    return sum;
}

/// Average of function(u, s, weight), which tends to `limit` for s -> 0; the weight is for what else the caller
/// averages at the same nodes, whose limit is 0.
template <class Function>
double averageOverChiScale(const ChiScaleRule& rule, double limit, Function function) {
    constexpr int kMaxNodes = 5000;
    constexpr double kLargestSeries = 1.0;  // of the argument of weightsBelow
    const double nu = rule.nu;
    // Density of ln s: sqrt(nu / pi) e^(-error) exp(nu (ln s - (s^2 - 1) / 2)), about the mode.
    const double mode2 = rule.mode * rule.mode;
    const double mode2Minus1 = std::fma(rule.mode, rule.mode, -1.0);
    const double halfMode2 = 0.5 * mode2;
    const double atMode = std::sqrt(nu / basecore::Pi()) * rule.step *
                          std::exp(0.5 * nu * log1pMinus(mode2Minus1, mode2) - stirlingError(0.5 * nu));
    const auto weightAt = [&](double u) {
        return atMode * std::exp(-nu * (mode2Minus1 * u + halfMode2 * expm1Minus(2.0 * u)));
    };
    double total = 0.0;
    for (int i = 0; i < kMaxNodes; ++i) {
        const double u = i * rule.step;
        const double weight = weightAt(u);
        const double term = weight * function(u, rule.mode * std::exp(u), weight);
        total += term;
        if (term < rule.negligible * total) break;
    }
    for (int i = 1; i < kMaxNodes; ++i) {
        const double u = -i * rule.step;
        const double s = rule.mode * std::exp(u);
        const double weight = weightAt(u);
        const double value = function(u, s, weight);
        total += weight * value;
        const double z = 0.5 * nu * s * s;
        if (weight * value < rule.negligible * total) break;
        if (z < kLargestSeries && weight * std::abs(value - limit) < rule.negligible * total) {
            total += weight * limit * weightsBelow(nu, rule.step, z);
            break;
        }
    }
    return total;
}

}  // namespace numcore::distributions
