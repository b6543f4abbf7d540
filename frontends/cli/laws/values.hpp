// Numbers of the command line.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace numcore::cli {

/// A decimal number with an optional sign, or inf; nothing for other texts and for nan.
std::optional<double> parseNumber(std::string_view text);

/// Values from a list of numbers, percentages (2.5%, where they are allowed) and ranges from:to:step, separated
/// by commas. The step is 1 when it is left out. Throws UsageError.
std::vector<double> parseValues(const std::string& list, bool percentages);

}  // namespace numcore::cli
