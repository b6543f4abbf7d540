// How a file of separated values is to be read.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace numcore::cli {

enum class Encoding { kUtf8, kUtf16Le, kUtf16Be, kLatin1, kWindows1252 };

/// What the user fixed; everything else is guessed from the file.
struct CsvOptions {
    std::optional<char> separator;
    std::optional<char> decimalMark;
    std::optional<char> quote;  // '\0': no quoting
    std::optional<Encoding> encoding;
    std::vector<std::string> missingWords;  // besides the empty cell
    bool standardMissingWords = true;       // those below too
    std::size_t skip = 0;                   // lines before the header
    bool header = true;
    bool fillRagged = false;
};

/// The layout of a file: given or guessed.
struct Dialect {
    char separator = ',';
    char decimalMark = '.';
    char quote = '"';  // '\0': none
    char newline = '\n';
};

/// Words that usually stand for a missing cell.
inline constexpr const char* kMissingWords[] = {"NA",   "N/A",  "n/a", "#N/A", "NaN", "nan",
                                                "NULL", "null", ".",   "?",    "-",   "--"};

}  // namespace numcore::cli
