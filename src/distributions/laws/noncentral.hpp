// Both tails of the noncentral laws, each with relative accuracy where it is small. A missing marker in both
// tails answers parameters outside the domain.
#pragma once

#include "distributions/laws/noncentral_terms.hpp"

namespace numcore::distributions {

/// nu > 0 degrees of freedom, noncentrality lambda >= 0 (the sum of squared means).
Tails noncentralChiSquare(double x, double nu, double lambda);

/// X / (X + Y), X noncentral chi-square (2 alpha, lambda), Y chi-square (2 beta).
Tails noncentralBeta(double x, double alpha, double beta, double lambda);

/// (X / nu1) / (Y / nu2), X noncentral chi-square (nu1, lambda), Y chi-square (nu2).
Tails noncentralFisher(double x, double nu1, double nu2, double lambda);

/// (N + delta) / sqrt(Y / nu), Y chi-square (nu).
Tails noncentralStudent(double t, double nu, double delta);

/// Density of noncentralStudent; parameters in the domain.
double noncentralStudentDensity(double t, double nu, double delta);

/// Tails of the ratio of quadratic forms X / (X + Y) at x, for parameters in the domain, x and y = 1 - x both
/// in (0, 1); excess is nu2 x - (nu1 + lambda) y, which the caller may know without cancellation.
Tails noncentralBetaTails(double x, double y, double nu1, double nu2, double lambda, double excess);

}  // namespace numcore::distributions
