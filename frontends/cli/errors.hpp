// What can go wrong, and the program's exit codes.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace numcore::cli {

enum ExitCode : int { kDone = 0, kWrongUsage = 1, kBadData = 2, kDoneWithWarnings = 3 };

/// The command line asks for something that does not exist.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// The input cannot be used, or the output not be written. The text says where and what to do.
struct DataError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Whoever read our output has gone: nothing to report.
struct OutputClosed : std::exception {};

/// "file:line: text" for messages about a place in a file.
std::string atLine(const std::string& file, std::size_t line, const std::string& text);

/// "1 row", "2 rows".
std::string counted(std::size_t n, std::string_view noun);

/// A cell's text for a message: control characters escaped, long texts cut, in single quotes.
std::string quotedForMessage(std::string_view text);

/// Text with control characters written as escapes, so that it cannot move a terminal's cursor.
std::string printable(std::string_view text);

}  // namespace numcore::cli
