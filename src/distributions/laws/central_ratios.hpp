// Incomplete gamma and beta ratios in units of their leading term: nothing underflows.
#pragma once

namespace numcore::distributions {

/// P(a, y) over y^a e^-y / Gamma(a + 1), and Q(a, y) over the same; for moderate a and y.
double gammaLowerRatio(double a, double y);
double gammaUpperRatio(double a, double y);

/// ln(Gamma(a + b) / (Gamma(a + 1) Gamma(b)) x^a y^b), the unit of the next two; y = 1 - x.
double logBetaUnit(double a, double b, double x, double y);
/// I_x(a, b) and 1 - I_x(a, b) over that unit.
double betaLowerRatio(double a, double b, double x, double y);
double betaUpperRatio(double a, double b, double x, double y);

}  // namespace numcore::distributions
