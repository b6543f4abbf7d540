// An owned data set record.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "caller/table.hpp"

namespace numcore::caller {

/// A data set with all its arrays. Each setter takes the data over, sets the flag and the counts that go with
/// it, and the number of rows of the set when it was still 0.
///
/// As an output form: give it empty tables of the size of the result; the library fills their cells, and
/// `record()` tells how many rows it used.
class DataSet {
  public:
    ST_DataSet& record() { return record_; }
    const ST_DataSet& record() const { return record_; }

    DataSet& setNumeric1(NumericTable table);
    DataSet& setNumeric2(NumericTable table);
    DataSet& setStrings1(TextTable table);
    DataSet& setStrings2(TextTable table);
    /// The grouping variables; groupColumn counts from 1.
    DataSet& setStrings3(TextTable table, std::int32_t groupColumn = 1);
    DataSet& setWeights(Array weights);
    DataSet& setWeights2(Array weights);
    /// Marks: -1 for a row to drop.
    DataSet& setRowMarks(Array marks);
    DataSet& setRowLabels(Array labels);
    DataSet& setNRows(std::size_t n);
    /// Arrays that receive each row's group and former place, n cells each.
    DataSet& setGroupArrays(std::size_t n);

    /// Tables as they were set; throws std::bad_optional_access when absent.
    NumericTable& numeric1() { return numeric1_.value(); }
    NumericTable& numeric2() { return numeric2_.value(); }
    TextTable& strings1() { return strings1_.value(); }
    TextTable& strings2() { return strings2_.value(); }
    TextTable& strings3() { return strings3_.value(); }
    const Array& weights() const { return weights_; }
    const Array& rowLabels() const { return rowLabels_; }
    const Array& groups() const { return groups_; }
    const Array& order() const { return order_; }

  private:
    void noteRows(std::int32_t n);

    ST_DataSet record_{};
    std::optional<NumericTable> numeric1_;
    std::optional<NumericTable> numeric2_;
    std::optional<TextTable> strings1_;
    std::optional<TextTable> strings2_;
    std::optional<TextTable> strings3_;
    Array weights_;
    Array weights2_;
    Array rowMarks_;
    Array rowLabels_;
    Array groups_;
    Array order_;
};

}  // namespace numcore::caller
