// Which columns an analysis uses.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/csv/table.hpp"
#include "cli/options.hpp"

namespace numcore::cli {

/// Columns of a file by their place, from 0.
struct Selection {
    std::vector<std::size_t> analysed;  // in the order asked for
    std::vector<std::size_t> with;
    std::vector<std::size_t> partial;
    std::optional<std::size_t> weights;
    std::optional<std::size_t> by;
    std::vector<Want> wants;  // one per column of the file
};

/// Resolves one list of selectors: "Ozone,2,4-6,Wind-Temp,9-". A name goes before a number, a name that holds
/// a comma stands in double quotes. Throws UsageError for what is not there.
std::vector<std::size_t> resolveColumns(std::string_view list, const std::vector<std::string>& names);

/// Resolves the selectors of the command line. Without a list of columns all are analysed but those with
/// another part: weights, groups, the columns across and those held constant.
Selection selectColumns(const SelectionOptions& options, const std::vector<std::string>& names);

}  // namespace numcore::cli
