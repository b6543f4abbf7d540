// Guessing the layout of a file from its beginning.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cli/csv/settings.hpp"

namespace numcore::cli {

/// The layout of a file: what the options fix, and for the rest what fits its first records best.
///
/// The separator is the one of comma, semicolon, tab and bar that cuts the records most evenly and leaves the
/// most numbers; the decimal mark is a comma only when the separator is not and more cells become numbers
/// with it; an apostrophe quotes only when fields begin and end with one.
/// @param text the file from its header on
Dialect guessDialect(std::string_view text, const CsvOptions& options,
                     const std::vector<std::string>& missingWords);

/// '\n', or '\r' for texts that end their lines with nothing else.
char guessNewline(std::string_view text);

}  // namespace numcore::cli
