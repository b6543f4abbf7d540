// Cronbach's alpha. Cronbach, L. J. (1951), Coefficient alpha and the internal structure of tests,
// Psychometrika 16:297-334.
#pragma once

#include "suite/vmcore.hpp"

namespace numcore::association {

/// What a matrix of items holds.
enum class ItemMatrix { kCovariance, kCorrelation };

/// Alpha of k items; NaN for fewer than two, the missing value when a cell of the diagonal or above is missing.
double cronbachAlpha(vmcore::ConstMatrixView items, ItemMatrix kind);

}  // namespace numcore::association
