// Cutting records into fields: the one place that knows quotes, separators and line ends.
#pragma once

#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "cli/csv/settings.hpp"

namespace numcore::cli {

/// One field as it stands in the text.
struct Field {
    std::string_view text;  // between the quotes, or without blanks around it
    bool quoted = false;
    bool doubled = false;   // holds doubled quotes
    bool open = false;      // the closing quote is missing
    bool trailing = false;  // something follows the closing quote
};

inline bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

/// First separator, line end or end of text at or after a position.
inline const char* findDelimiter(const char* at, const char* end, const Dialect& dialect) {
    while (at != end && *at != dialect.separator && *at != dialect.newline) ++at;
    return at;
}

/// Reads the field that starts at a position, up to end at most.
///
/// A quote opens a field only at its beginning (blanks may come before it); inside, a doubled quote is a
/// quote. Returns where the field's delimiter stands: a separator, a line end, or end.
const char* scanField(const char* at, const char* end, const Dialect& dialect, Field& field);

/// The field's text with doubled quotes made single.
std::string unquoted(const Field& field, char quote);

/// True when the line that starts at a position holds blanks only; next is set behind its end.
bool isBlankLine(const char* at, const char* end, const Dialect& dialect, const char*& next);

/// Position behind the record that starts at a position.
const char* skipRecord(const char* at, const char* end, const Dialect& dialect);

/// Fields of the record that starts at a position; returns the position behind it.
const char* readRecord(const char* at, const char* end, const Dialect& dialect, std::vector<Field>& fields);

}  // namespace numcore::cli
