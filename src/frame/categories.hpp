// Categories of text columns: the different non-empty texts, numbered.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string_view>
#include <vector>

#include "numcore/dataset.hpp"

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

/// Sets up the information of nVariables variables without categories or names; without arrays of the caller it
/// gets its own, with maxCategories rows.
void sizeQualiInfo(cST_QualiInfo& info, std::int32_t nVariables, std::int32_t nRows);

/// Counts and weighs the categories of each variable into information that was set up.
/// @param weights empty = unit weights
void fillQualiInfo(cST_QualiInfo& info, std::span<const double> weights,
                   const std::function<Categories(std::int32_t)>& categoriesOf);

}  // namespace numcore::frame
