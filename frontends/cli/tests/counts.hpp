// Counts of successes in a column.
#pragma once

#include <string>
#include <vector>

#include "cli/report.hpp"
#include "cli/sample.hpp"
#include "cli/tests/proportions.hpp"

namespace numcore::cli {

/// What was counted: the column and the text that is a success.
struct CountedColumn {
    std::string column;
    std::string event;
    std::vector<CountSample> samples;
};

/// Counts the successes of the only column in each group, or of all rows; weights are counts of rows. Throws
/// DataError for more columns, for values that are not two when no event is named, and for counts that are not
/// whole.
CountedColumn countSuccesses(const Sample& sample, const TestRequest& request, Report& report);

}  // namespace numcore::cli
