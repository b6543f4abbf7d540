// Where the output goes.
#pragma once

#include <string>
#include <string_view>

namespace numcore::cli {

/// Writes to standard output. Throws DataError when that fails, OutputClosed when nobody reads any more.
void writeStandardOutput(std::string_view text);

/// Writes a file through a temporary one beside it, so that an existing file stays until the new one is
/// whole; devices and pipes are written directly. Throws DataError.
void writeFile(const std::string& path, std::string_view text);

}  // namespace numcore::cli
