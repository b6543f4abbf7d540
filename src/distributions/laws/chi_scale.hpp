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

/// u at the nodes of one direction with e^u - 1 and e^u - 1 - u, by recurrences of positive terms.
class LogScaleNodes {
  public:
    explicit LogScaleNodes(double step)
        : step_(step), expm1Step_(std::expm1(step)), expm1MinusStep_(expm1Minus(step)) {}

    double growth() const { return expm1_; }                                     // e^u - 1
    double doubleExcess() const { return expm1_ * expm1_ + 2.0 * expm1Minus_; }  // e^2u - 1 - 2u
    double u() const { return u_; }
    void advance() {
        expm1Minus_ += expm1Minus_ * expm1Step_ + expm1MinusStep_ + u_ * expm1Step_;
        expm1_ += expm1_ * expm1Step_ + expm1Step_;
        u_ += step_;
    }

  private:
    double step_;
    double expm1Step_;
    double expm1MinusStep_;
    double u_ = 0.0;
    double expm1_ = 0.0;
    double expm1Minus_ = 0.0;
};

/// Average of function(s, growth, weight), growth = s / mode - 1, which tends to `limit` for s -> 0; the weight
/// is for what else the caller averages at the same nodes, whose limit is 0.
template <class Function>
double averageOverChiScale(const ChiScaleRule& rule, double limit, Function function) {
    constexpr int kMaxNodes = 5000;
    constexpr double kLargestSeries = 1.0;  // of the argument of weightsBelow
    const double nu = rule.nu;
    // Density of ln s: sqrt(nu / pi) e^(-error) exp(nu (ln s - (s^2 - 1) / 2)), about the mode.
    const double mode2 = rule.mode * rule.mode;
    const double mode2Minus1 = std::fma(rule.mode, rule.mode, -1.0);
    const double atMode = std::sqrt(nu / basecore::Pi()) * rule.step *
                          std::exp(0.5 * nu * log1pMinus(mode2Minus1, mode2) - stirlingError(0.5 * nu));
    if (!(atMode > 0.0)) return 0.0;
    const double linear = -nu * mode2Minus1;
    const double square = -0.5 * nu * mode2;
    double total = 0.0;
    LogScaleNodes right(rule.step);
    for (int i = 0; i < kMaxNodes; ++i, right.advance()) {
        const double s = rule.mode * (1.0 + right.growth());
        const double weight = atMode * std::exp(linear * right.u() + square * right.doubleExcess());
        const double term = weight * function(s, right.growth(), weight);
        total += term;
        if (term <= rule.negligible * total) break;
    }
    LogScaleNodes left(-rule.step);
    for (int i = 1; i < kMaxNodes; ++i) {
        left.advance();
        const double s = rule.mode * std::exp(left.u());
        const double weight = atMode * std::exp(linear * left.u() + square * left.doubleExcess());
        const double value = function(s, left.growth(), weight);
        total += weight * value;
        const double z = 0.5 * nu * s * s;
        if (weight * value <= rule.negligible * total) break;
        if (z < kLargestSeries && weight * std::abs(value - limit) < rule.negligible * total) {
            total += weight * limit * weightsBelow(nu, rule.step, z);
            break;
        }
    }
    return total;
}

}  // namespace numcore::distributions
