// Building blocks of the noncentral laws: terms of Poisson and binomial type with relative accuracy.
#pragma once

namespace numcore::distributions {

/// Both tails of a law.
struct Tails {
    double lower = 0.0;  // P(X <= x)
    double upper = 0.0;  // P(X > x)
};

/// ln(1 + v) - v with relative accuracy, v > -1. The second form takes 1 + v where the caller knows it better.
double log1pMinus(double v);
double log1pMinus(double v, double onePlus);

/// b - atan(b) with relative accuracy next to 0.
double minusArcTangent(double b);

/// e^u - 1 - u with relative accuracy next to 0.
double expm1Minus(double u);

/// ln Gamma(x + 1) - [(x + 1/2) ln x - x + ln(2 pi) / 2], x > 0: what Stirling's formula leaves.
double stirlingError(double x);

/// ln(e^-m m^k / Gamma(k + 1)) for real k >= 0, m > 0.
double logPoissonTerm(double k, double m);

/// ln(Gamma(k + m + 1) / (Gamma(k + 1) Gamma(m + 1)) x^k y^m) for real k, m > 0, x + y = 1.
double logBinomialTerm(double k, double m, double x, double y);

}  // namespace numcore::distributions
