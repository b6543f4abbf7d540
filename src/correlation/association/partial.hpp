// Partial correlation from correlations.
#pragma once

#include <cstdint>

#include "numcore/markers.hpp"
#include "suite/vmcore.hpp"

namespace numcore::association {

struct PartialResult {
    double rho = kMissing;
    double pValue = kMissing;
};

/// Which probability goes with a coefficient.
enum class PartialTail {
    kNone,
    kLower,
    kUpper,
    kTwoSided,
    kLowerByRows  ///< lower tail with the number of rows less 2 degrees of freedom, whatever is held constant
};

/// Correlation of x and y given z.
///
/// @param nRows  rows behind the three correlations
/// Kept: the probability is the lower tail of Student's law with nRows - 2 degrees of freedom, not a two-sided
/// value with nRows - 3; where z leaves nothing of x or y the coefficient is 0 and the probability 1.
PartialResult partialGivenOne(double rhoXY, double rhoYZ, double rhoXZ, double nRows);

/// Correlation of each pair of variables given all others.
///
/// @param correlations  p x p, complete and finite
/// @param nRows         rows behind it
/// @param rho, pValue   out, p x p; the diagonal gets 1 and 0
/// By the inverse; where linear relations among the variables leave none, by its limit: a pair of which a
/// variable is determined by the others gets 0 and 1 as partialGivenOne does.
void partialGivenOthers(vmcore::ConstMatrixView correlations, double nRows, PartialTail tail,
                        vmcore::MatrixView rho, vmcore::MatrixView pValue);

}  // namespace numcore::association
