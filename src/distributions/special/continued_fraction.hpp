// Forward evaluation of a continued fraction.
#pragma once

#include <cmath>

namespace numcore::distributions {

/// Successive convergents of a1 / (b1 + a2 / (b2 + ...)): numerators and denominators by their recurrence, at a
/// common scale that starts with a denominator of 1, and without a division in each step.
class Convergents {
  public:
    Convergents(double a1, double b1) : numerator_(a1 / b1), olderDenominator_(1.0 / b1) {}

    /// Takes in the next pair. True when that changed the value by at most tolerance, relatively.
    bool advance(double a, double b, double tolerance) {
        const double numerator = b * numerator_ + a * olderNumerator_;
        const double denominator = b * denominator_ + a * olderDenominator_;
        const double now = numerator * denominator_;
        const double before = numerator_ * denominator;
        olderNumerator_ = numerator_;
        olderDenominator_ = denominator_;
        numerator_ = numerator;
        denominator_ = denominator;
        if (std::abs(now - before) <= tolerance * std::abs(now)) return true;
        if (std::abs(denominator) > kLargestScale) rescale();
        return false;
    }

    double value() const { return numerator_ / denominator_; }

  private:
    static constexpr double kLargestScale = 0x1p+200;

    void rescale() {
        const double scale = 1.0 / denominator_;
        olderNumerator_ *= scale;
        olderDenominator_ *= scale;
        numerator_ *= scale;
        denominator_ = 1.0;
    }

    double numerator_;
    double denominator_ = 1.0;
    double olderNumerator_ = 0.0;
    double olderDenominator_;
};

}  // namespace numcore::distributions
