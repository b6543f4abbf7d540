// The range of k independent standard normal variables.
#pragma once

#include <array>

namespace numcore::distributions {

struct RangeTails {
    double lower = 0.0;    // P(range <= w)
    double upper = 0.0;    // P(range > w)
    double density = 0.0;  // derivative of lower
};

/// Both tails with relative accuracy, for one k and many w.
class NormalRange {
  public:
    /// k >= 2, whole or not.
    explicit NormalRange(double k);

    /// The density of the upper part is 0 unless asked for.
    RangeTails at(double w, bool withDensity) const;
    /// About the median.
    double middle() const { return middle_; }

  private:
    RangeTails lowerPart(double w) const;
    RangeTails upperPart(double w, bool withDensity) const;
    double power(double base, double exponent) const;
    std::array<double, 3> powers(std::array<double, 3> bases) const;

    double k_;
    bool whole_;
    double middle_;
    double upperStart_;
    double middleStep_;
};

}  // namespace numcore::distributions
