// Polychoric coefficients of all pairs of columns, as pearsonMatrix.
#pragma once

#include "correlation/pearson_matrix.hpp"

namespace numcore::correlation {

struct PolychoricOptions {
    std::int32_t alternative = kTwoSided;
    bool full = false;  ///< thresholds and coefficient together
};

void polychoricMatrix(const Table& first, const Table* second, const PolychoricOptions& options,
                      const Store& store);

}  // namespace numcore::correlation
