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
    double flatBelow;   // u below which the averaged function is constant: the rest is a geometric series
    double negligible;  // share of the sum below which terms are dropped
};

/// Calls add(u, s, weight) at the nodes until the terms, whose sizes it returns, are negligible.
template <class Add>
void averageOverChiScale(const ChiScaleRule& rule, Add add) {
    constexpr int kMaxNodes = 5000;
    const double nu = rule.nu;
    // Density of ln s: sqrt(nu / pi) e^(-error) exp(nu (ln s - (s^2 - 1) / 2)), about the mode.
    const double mode2Minus1 = std::fma(rule.mode, rule.mode, -1.0);
    const double atMode = std::sqrt(nu / basecore::Pi()) *
                          std::exp(0.5 * nu * log1pMinus(mode2Minus1) - stirlingError(0.5 * nu)) * rule.step;
    const double halfMode2 = 0.5 * (1.0 + mode2Minus1);
    const auto weightAt = [&](double u) {
        return atMode * std::exp(-nu * (mode2Minus1 * u + halfMode2 * expm1Minus(2.0 * u)));
    };
    double total = 0.0;
    for (int i = 0; i < kMaxNodes; ++i) {
        const double u = i * rule.step;
        const double size = add(u, rule.mode * std::exp(u), weightAt(u));
        total += size;
        if (size < rule.negligible * total) break;
    }
    const double geometricRest = 1.0 / std::expm1(nu * rule.step);
    for (int i = 1; i < kMaxNodes; ++i) {
        const double u = -i * rule.step;
        const double weight = weightAt(u);
        const double s = rule.mode * std::exp(u);
        const double size = add(u, s, weight);
        total += size;
        if (size < rule.negligible * total) break;
        if (u < rule.flatBelow) {
            add(u, s, weight * geometricRest);
            break;
        }
    }
}

}  // namespace numcore::distributions
