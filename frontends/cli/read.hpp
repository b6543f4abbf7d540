// The columns of a file that an analysis asks for.
#pragma once

#include <vector>

#include "cli/csv/table.hpp"
#include "cli/options.hpp"
#include "cli/report.hpp"
#include "cli/sample.hpp"

namespace numcore::cli {

/// A sample with the file that its texts are views of.
struct ReadSample {
    CsvFile file;
    std::vector<TextStore> stores;
    Sample sample;
};

/// Reads the file and the columns that the options name; notes the layout, row counts and warnings.
ReadSample readSample(const Options& options, Report& report);

}  // namespace numcore::cli
