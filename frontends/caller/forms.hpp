// The smaller records of the boundary with their arrays: summaries, categories, formats, messages, the host.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "caller/table.hpp"
#include "numcore/descriptive.h"

namespace numcore::caller {

/// Receives a descriptive table: a row per variable.
class DescStats {
  public:
    static constexpr std::size_t kNColumns = 7;

    explicit DescStats(std::size_t nRows)
        : labels_(Array::texts(nRows)), table_(Array::matrix(nRows, kNColumns)) {
        record_ = {labels_.get(), table_.get()};
    }
    ST_DescStats& record() { return record_; }
    const Array& labels() const { return labels_; }
    const Array& table() const { return table_; }

  private:
    Array labels_;
    Array table_;
    ST_DescStats record_{};
};

/// Receives categorical information. The number of categories can be asked for first; `allocate` then makes
/// room for them.
class QualiInfo {
  public:
    explicit QualiInfo(std::size_t nVariables);
    void allocate(std::size_t maxCategories);

    ST_QualiInfo& record() { return record_; }
    std::size_t nCategories(std::size_t variable) const;
    const TextTable& labels() const { return labels_; }
    const NumericTable& counts() const { return counts_; }
    const NumericTable& frequencies() const { return frequencies_; }

  private:
    Array nCategories_;
    Array names_;
    Array missing_;
    TextTable labels_;
    NumericTable counts_;
    NumericTable frequencies_;
    ST_QualiInfo record_{};
};

/// A formats record with room for nRows row values and nColumns column values.
class TableFormats {
  public:
    TableFormats(std::size_t nRows, std::size_t nColumns);
    ST_TableFormats& record() { return record_; }
    const Array& rowTable() const { return rowTable_; }
    const Array& columnTable() const { return columnTable_; }

  private:
    Array numberFormats_;
    Array formatKinds_;
    Array formatDigits_;
    Array columnTable_;
    Array rowTable_;
    ST_TableFormats record_{};
};

/// The caller's texts for a door: n of them, null at first.
class Messages {
  public:
    explicit Messages(std::size_t n) : texts_(Array::texts(n)) {}
    void set(std::size_t i, std::u16string_view text) { texts_.setText(i, text); }
    std::u16string_view get(std::size_t i) const { return texts_.text(i); }
    char16_t** data() { return reinterpret_cast<char16_t**>(texts_.asTexts().data()); }

  private:
    Array texts_;
};

/// The two host records.
class Host {
  public:
    explicit Host(std::u16string text = {}, std::int32_t flag = 0) : text_(std::move(text)) {
        system_.text = text_.c_str();
        host_.flag = flag;
    }
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;
    SystemInfo* system() { return &system_; }
    QUORIXInfo* host() { return &host_; }

  private:
    std::u16string text_;
    SystemInfo system_{};
    QUORIXInfo host_{};
};

}  // namespace numcore::caller
