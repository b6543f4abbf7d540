// The bytes of the input, and their encoding.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/csv/settings.hpp"
#include "cli/platform.hpp"
#include "cli/progress.hpp"

namespace numcore::cli {

/// Memory that grows without being cleared or copied where the system can help it.
class Bytes {
  public:
    void resize(std::size_t size);
    char* data() { return data_.get(); }
    std::size_t size() const { return size_; }

  private:
    struct Free {
        void operator()(char* data) const { std::free(data); }
    };
    std::unique_ptr<char, Free> data_;
    std::size_t size_ = 0;
};

/// Bytes of a file or a stream, mapped where possible. Views of the text stay valid as long as the object.
class Input {
  public:
    /// Reads a file; "-" is standard input. Throws DataError.
    static Input open(const std::string& file, Progress& progress);
    /// A copy of bytes that are at hand.
    static Input fromBytes(std::string_view bytes);

    /// Finds the encoding (unless given), drops the byte order mark and turns the bytes into UTF-8.
    /// Adds a warning when the encoding had to be assumed.
    void decode(std::optional<Encoding> given, std::vector<std::string>& warnings);

    std::string_view text() const { return text_; }
    Encoding encoding() const { return encoding_; }
    bool hadByteOrderMark() const { return hadByteOrderMark_; }

  private:
    FileMapping mapping_;
    Bytes bytes_;                  // what was read
    std::vector<char> converted_;  // what was not UTF-8
    std::string_view text_;
    Encoding encoding_ = Encoding::kUtf8;
    bool hadByteOrderMark_ = false;
};

const char* encodingName(Encoding encoding);

}  // namespace numcore::cli
