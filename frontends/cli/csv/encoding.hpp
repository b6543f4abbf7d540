// Guessing and converting text encodings.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "cli/csv/settings.hpp"

namespace numcore::cli {

struct EncodingGuess {
    Encoding encoding = Encoding::kUtf8;
    std::size_t markLength = 0;  // bytes of the byte order mark
    bool assumed = false;        // neither a mark nor the bytes prove it
};

/// The encoding from the byte order mark, from where the zero bytes of the beginning stand (UTF-16), else
/// UTF-8 when all bytes are well formed, else Windows-1252.
EncodingGuess guessEncoding(std::string_view bytes);

/// Length of the byte order mark of an encoding at the beginning; 0 when there is none.
std::size_t byteOrderMark(std::string_view bytes, Encoding encoding);

/// Position of the first byte that is not well-formed UTF-8; the size when all is well.
std::size_t firstBadUtf8(std::string_view bytes);

/// Converts to UTF-8. Halves of surrogate pairs become U+FFFD, an odd last byte is dropped.
std::vector<char> convertToUtf8(std::string_view bytes, Encoding encoding);

}  // namespace numcore::cli
