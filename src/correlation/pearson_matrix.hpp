// Coefficients of all pairs of columns of a table, or of the columns of one with those of another.
#pragma once

#include <functional>

#include "correlation/pearson.hpp"
#include "correlation/table.hpp"

namespace numcore::correlation {

/// Receives the result of columns i and j; called by several threads at once, for different pairs. Of one table
/// only pairs i <= j come.
using Store = std::function<void(std::size_t i, std::size_t j, const Coefficient& found)>;

/// @param second  null = the pairs of the first table; otherwise a table of the same rows, whose own weights
/// and
///                exclusion are not looked at
void pearsonMatrix(const Table& first, const Table* second, const PearsonOptions& options, const Store& store);

}  // namespace numcore::correlation
