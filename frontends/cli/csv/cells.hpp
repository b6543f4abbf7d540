// What a cell means: a number, a missing cell, or a text.
#pragma once

#include <fast_float/fast_float.h>

#include <string>
#include <string_view>
#include <vector>

#include "cli/csv/settings.hpp"

namespace numcore::cli {

enum class CellKind { kNumber, kMissing, kText };

/// Reads cells under one layout. Words for missing cells that are numbers (-999) match by value.
class CellReader {
  public:
    CellReader(char decimalMark, const std::vector<std::string>& missingWords);

    /// Classifies the text of a field; value is set for a number. Numbers may have a sign, an exponent and
    /// blanks around them; inf, infinity and nan are numbers. Numbers too large for a double become infinite,
    /// and outOfRange is counted up.
    CellKind read(std::string_view text, double& value, std::size_t& outOfRange) const;

    /// True for texts that stand for a missing cell, and for no text at all.
    bool isMissingText(std::string_view text) const;
    /// True for a number that stands for a missing cell.
    bool isMissingValue(double value) const;

    const fast_float::parse_options& numberFormat() const { return format_; }

  private:
    fast_float::parse_options format_;
    std::vector<std::string> words_;
    std::vector<double> values_;
    bool nanIsMissing_ = false;
};

}  // namespace numcore::cli
