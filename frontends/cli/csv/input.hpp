// The bytes of the input, and their encoding.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/csv/settings.hpp"
#include "cli/platform.hpp"
#include "cli/progress.hpp"

namespace numcore::cli {

/// Bytes of a file or a stream, mapped where possible. Views of the text stay valid as long as the object.
class Input {
  public:
    /// Reads a file; "-" is standard input. Throws DataError.
    static Input open(const std::string& file, Progress& progress);
    static Input fromBytes(std::string bytes);

    /// Finds the encoding (unless given), drops the byte order mark and turns the bytes into UTF-8.
    /// Adds a warning when the encoding had to be assumed.
    void decode(std::optional<Encoding> given, std::vector<std::string>& warnings);

    std::string_view text() const { return text_; }
    Encoding encoding() const { return encoding_; }
    bool hadByteOrderMark() const { return hadByteOrderMark_; }

  private:
    FileMapping mapping_;
    std::vector<char> bytes_;
    std::string_view text_;
    Encoding encoding_ = Encoding::kUtf8;
    bool hadByteOrderMark_ = false;
};

const char* encodingName(Encoding encoding);

}  // namespace numcore::cli
