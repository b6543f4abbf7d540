// The exponential of a matrix by diagonal Pade approximants, and the degree that a norm needs.
//
// Higham (2005), The scaling and squaring method for the matrix exponential revisited, SIAM J. Matrix Anal.
// Appl. 26:1179-1193, section 2: coefficients, splitting into odd and even parts, limits (Table 2.3).
#pragma once

#include <cstdint>
#include <vector>

#include "numcore/containers.hpp"

namespace numcore::networks {

/// Coefficients b[0] to b[m] of the approximant of degree m, whole numbers with b[m] = 1.
std::vector<double> padeCoefficients(std::int32_t degree);

/// The lowest degree whose limit is at least the norm: 3, 5, 7, 9 or 13; 0 above the last limit.
std::int32_t padeDegree(double norm);

/// Largest column sum of absolute values; 0 without columns.
double oneNorm(const matrix<double>& a);

/// The odd part u and the even part v of the approximant's numerator: exp(a) is about (v + u) (v - u)^-1.
void padeParts(const matrix<double>& a, std::int32_t degree, matrix<double>& u, matrix<double>& v);

/// The approximant of a square matrix; without a degree of the table all zeros.
matrix<double> padeApproximant(const matrix<double>& a, std::int32_t degree);

}  // namespace numcore::networks
