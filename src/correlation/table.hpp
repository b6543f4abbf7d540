// The columns of a table, and the rows of them that take part.
#pragma once

#include <span>
#include <vector>

#include "correlation/observations.hpp"

namespace numcore::correlation {

/// Columns of a caller; cells beyond the end of a column are missing.
struct Table {
    std::vector<std::span<const double>> columns;
    std::size_t nRows = 0;
    Rows rows;
};

/// Columns and weights without the rows that do not take part; a copy only where rows are left out or a column
/// is short.
class SelectedColumns {
  public:
    /// withWeightOnly leaves out the rows of no weight too.
    SelectedColumns(const Table& table, bool withWeightOnly);

    std::size_t nRows() const { return nRows_; }
    std::size_t size() const { return columns_.size(); }
    std::span<const double> operator[](std::size_t c) const { return columns_[c]; }
    /// Empty for unit weights.
    std::span<const double> weights() const { return weights_; }

  private:
    std::size_t nRows_ = 0;
    std::vector<std::span<const double>> columns_;
    std::span<const double> weights_;
    std::vector<std::vector<double>> copies_;
    std::vector<double> weightCopy_;
};

/// Work, in cells, below which one thread does it all.
inline constexpr std::size_t kParallelFrom = 1U << 16;

}  // namespace numcore::correlation
