// Owned column sets: tables of numbers, integers and texts as the library takes them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "caller/array.hpp"

namespace numcore::caller {

/// A column set with its arrays: cells, labels and each column's own length.
///
/// Record is ST_MVectDbl (cells are doubles, zero at first), ST_MVectLng (32-bit integers, zero at first) or
/// ST_MVectStr (texts, null at first).
/// A table can be moved: the record points to arrays that stay where they are.
template <class Record>
class Table {
  public:
    /// Columns of equal length, to be filled through `column`.
    Table(std::size_t nColumns, std::size_t nRows);
    /// Columns made elsewhere; each one's own length counts, the longest gives the number of rows.
    explicit Table(std::vector<Array> columns);

    Record& record() { return record_; }
    const Record& record() const { return record_; }
    std::size_t nColumns() const { return cells_.size(); }
    std::size_t nRows() const { return static_cast<std::size_t>(record_.nRows); }

    /// Cells of a column, to be read or filled in place.
    Array& column(std::size_t j) { return cells_.at(j); }
    const Array& column(std::size_t j) const { return cells_.at(j); }

    void setLabel(std::size_t j, std::u16string_view label) { labels_.setText(j, label); }
    void setLabels(const std::vector<std::u16string>& labels);
    std::u16string_view label(std::size_t j) const { return labels_.text(j); }
    /// The column's own length, at most the length of its array.
    void setLength(std::size_t j, std::size_t n);

  private:
    Record record_{};
    std::vector<Array> cells_;
    Array columns_;
    Array labels_;
    Array lengths_;
};

using NumericTable = Table<ST_MVectDbl>;
using IntegerTable = Table<ST_MVectLng>;
using TextTable = Table<ST_MVectStr>;

extern template class Table<ST_MVectDbl>;
extern template class Table<ST_MVectLng>;
extern template class Table<ST_MVectStr>;

/// Tables from values: a label and the cells of each column. For tests and small callers.
NumericTable numericTable(const std::vector<std::pair<std::u16string, std::vector<double>>>& columns);
TextTable textTable(const std::vector<std::pair<std::u16string, std::vector<std::u16string>>>& columns);

}  // namespace numcore::caller
