// Cross table of two ordinal variables: what polychoric and polyserial estimates start from.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace numcore::association {

/// More distinct values than this in one variable are no ordinal scale; the table is not built.
inline constexpr std::size_t kMaxCategories = 200;

/// Weights of the pairs of categories; category i of a variable is its i-th smallest value.
struct OrdinalTable {
    std::int32_t nRows = 0;
    std::int32_t nColumns = 0;
    std::vector<double> counts;  ///< nRows x nColumns, column-major
    double total = 0.0;

    double at(std::int32_t i, std::int32_t j) const {
        return counts[static_cast<std::size_t>(j) * static_cast<std::size_t>(nRows) +
                      static_cast<std::size_t>(i)];
    }
};

/// True when the cell can be put into an order: neither missing nor NaN.
bool isCategory(double cell);

/// Distinct values of x over the rows where use(row) holds, ascending; of more than kMaxCategories only the
/// first kMaxCategories + 1 that occur.
std::vector<double> categoriesOf(std::span<const double> x, const std::vector<bool>& use);

/// True when the number of categories makes an ordinal scale.
constexpr bool isScale(std::size_t nCategories) {
    return nCategories >= 1 && nCategories <= kMaxCategories;
}

/// Category of a value, from 0; the value must be one of them.
std::int32_t categoryOf(double value, std::span<const double> categories);

/// Cross table over the rows that are not excluded, whose weight exceeds the double epsilon and where both
/// cells are present.
///
/// @param exclusion  0 = use the row; empty uses every row
/// @param weights    frequencies; empty = 1 each
/// @return without counts when no row is left or a variable has more than kMaxCategories values; the numbers of
/// categories tell which
OrdinalTable tabulate(std::span<const double> x, std::span<const double> y,
                      std::span<const std::int16_t> exclusion, std::span<const double> weights);

/// Weight of each row, and of each column, of the table.
std::vector<double> rowTotals(const OrdinalTable& table);
std::vector<double> columnTotals(const OrdinalTable& table);

/// Normal quantiles of the running shares of k categories: k - 1 thresholds, ascending.
std::vector<double> thresholdsOf(std::span<const double> totals);

/// Pearson coefficient of the category numbers; 0 when a variable is constant.
double pearsonOfCodes(const OrdinalTable& table);

}  // namespace numcore::association
