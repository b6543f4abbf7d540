// The range of k independent standard normal variables.
#pragma once

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

    RangeTails at(double w) const;
    /// About the median: above it the upper tail is the one that is integrated.
    double middle() const { return middle_; }

  private:
    RangeTails lowerPart(double w) const;
    RangeTails upperPart(double w) const;
    double power(double base, double exponent) const;
    double powerDifference(double base, double reduction) const;

    double k_;
    bool whole_;
    double middle_;
    double middleStep_;
};

}  // namespace numcore::distributions
