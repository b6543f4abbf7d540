// The quantile command.
#pragma once

#include <string>
#include <vector>

#include "cli/options.hpp"
#include "cli/report.hpp"
#include "cli/sample.hpp"

namespace numcore::cli {

/// A quantile method and what it is called.
struct QuantileMethod {
    int number;
    const char* name;
};

/// The six methods, by number.
const std::vector<QuantileMethod>& quantileMethods();

/// Methods from a list: numbers, names that other programs use, "all". Throws UsageError that lists the names.
std::vector<int> parseMethods(const std::string& list);

/// Orders from a list of numbers in [0, 1], or percentages such as 2.5%. Throws UsageError.
std::vector<double> parseOrders(const std::string& list);

/// Adds the table "quantiles": a row per variable, group and method, a column per order, three with limits.
/// The sample's columns are used up. Text columns are named in a note.
void quantiles(Sample sample, const QuantileRequest& request, Report& report);

}  // namespace numcore::cli
