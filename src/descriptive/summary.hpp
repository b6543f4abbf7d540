// What the summaries of this subsystem share.
#pragma once

#include <array>
#include <cmath>
#include <string_view>
#include <vector>

#include "numcore/dataset.hpp"
#include "suite/vmcore.hpp"

namespace numcore::descriptive {

inline constexpr std::size_t kSummaryColumns = 7;

/// The seven cells of a summary table's row.
std::array<double, kSummaryColumns> summaryRow(const vmcore::Summary& summary);

/// Short codes of the seven columns; the caller has the texts.
inline std::vector<std::u16string_view> summaryColumnNames() {
    return {u"N", u"Missing", u"Present", u"Minimum", u"Maximum", u"Mean", u"Deviation"};
}

/// Gives a data set without a record text table 1 and numeric table 1 of the stated shape, and tells the shape
/// of a caller's; sets both flags and the row count.
void shapeResult(cST_DataSet& out, std::int32_t nRows, const std::vector<std::u16string_view>& textColumns,
                 const std::vector<std::u16string_view>& numericColumns);

}  // namespace numcore::descriptive
