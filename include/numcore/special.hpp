// The special function that takes a container; `numcore/special.h` has the others.
#pragma once

#include <cstdint>

#include "numcore/containers.hpp"
#include "numcore/special.h"

namespace numcore {

/// Polynomial c[0] + c[1] x + ... + c[n-1] x^(n-1) by Horner's rule.
///
/// @param coefficients  the first column holds c; a coefficient beyond its length reads the container's spare
///                      element
/// @param n             number of coefficients; 0 for n < 1
///
/// Algorithm AS 181.2, Royston (1982), Applied Statistics 31:176-180.
NUMCORE_API double Poly(const cST_MVect<double>& coefficients, std::int32_t n, double x);

}  // namespace numcore
