// Categories of text columns: the different non-empty texts, numbered.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "numcore/containers.hpp"

namespace numcore::frame {

/// The categories of a column in ascending order of code units, and the category of each row.
struct Categories {
    std::vector<std::u16string_view> labels;
    std::vector<std::int32_t> ofRow;  // from 0; -1 for an empty text
};

/// The views in the result look at the cells given, which must outlive them.
Categories findCategories(std::span<const u16string> cells);

/// Numbers texts in order of first appearance, without the last sort.
Categories numberTexts(std::span<const u16string> cells);

}  // namespace numcore::frame
