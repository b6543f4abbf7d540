// Quantile of the chi-square law. Algorithm AS 91, Best, D. J. and Roberts, D. E. (1975), The percentage points
// of the chi-squared distribution, Appl. Statist. 24:385-388.
#pragma once

namespace numcore::distributions {

/// The equation P(nu / 2, x / 2) = p in x.
class ChiSquareEquation {
  public:
    /// @param p  probability, 0 < p < 1
    /// @param nu degrees of freedom, > 0
    ChiSquareEquation(double p, double nu);

    /// Where p is so small that the leading term of the distribution function alone may do.
    bool isFarBelow() const;
    /// The root of that leading term.
    double farBelowStart() const;
    /// The publication's starting value everywhere else.
    double start() const;
    /// The root by seven terms of the Taylor series about x.
    double corrected(double x) const;

  private:
    double fewDegreesStart() const;
    double wilsonHilfertyStart() const;

    double p_;
    double nu_;
    double shape_;      // nu / 2
    double power_;      // nu / 2 - 1
    double logGamma_;   // ln Gamma(nu / 2)
    double logFactor_;  // ln(Gamma(nu / 2) 2^(nu / 2))
};

/// Most corrections that are made.
inline constexpr int kMaxCorrections = 1000;
/// Relative change that ends the corrections when it is exceeded.
inline constexpr double kLargeChange = 5e-7;

/// The root of the equation from a starting value, as the stopping rule leaves it.
///
/// Kept: the publication iterates until the change is small; here the first correction that changes x by more
/// than kLargeChange is the last one, and smaller ones go on up to kMaxCorrections. Once the values repeat, the
/// one after kMaxCorrections is known and the rest is not computed.
double chiSquareRoot(const ChiSquareEquation& equation, double start);

}  // namespace numcore::distributions
