// The picture of a correlation matrix.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cli/correlation/tables.hpp"

namespace numcore::cli {

/// Most variables of a side that a map shows.
inline constexpr std::size_t kLargestMap = 150;

/// An SVG map: a cell per pair with its coefficient, the darker the stronger, negative ones hatched, so that it
/// reads in grey too; significant coefficients are bold. The triangle below the diagonal when the matrix is
/// symmetric; a map per group, one below the other.
std::string drawCorrelationMap(const std::vector<GroupedCorrelations>& groups,
                               const CorrelationRequest& request, std::string_view title,
                               std::string_view file);

}  // namespace numcore::cli
