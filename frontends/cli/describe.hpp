// The describe command: summaries of numbers, counts of categories.
#pragma once

#include <cstddef>

#include "cli/report.hpp"
#include "cli/sample.hpp"

namespace numcore::cli {

/// Adds the tables "quantitative" and "qualitative" to the report, as far as the sample has such columns.
///
/// Text columns with more than maxCategories different texts are named in a note instead. The sample's columns
/// are used up.
void describe(Sample sample, std::size_t maxCategories, Report& report);

}  // namespace numcore::cli
