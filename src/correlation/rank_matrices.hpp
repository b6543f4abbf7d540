// Rank coefficients of all pairs of columns, as pearsonMatrix.
#pragma once

#include "correlation/kendall.hpp"
#include "correlation/pearson_matrix.hpp"

namespace numcore::correlation {

void spearmanMatrix(const Table& first, const Table* second, std::int32_t alternative, const Store& store);
void kendallMatrix(const Table& first, const Table* second, const KendallOptions& options, const Store& store);

}  // namespace numcore::correlation
