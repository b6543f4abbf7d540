#include "cli/csv/fields.hpp"

#include <cstddef>

namespace numcore::cli {

namespace {

std::string_view between(const char* begin, const char* end) {
    return {begin, static_cast<std::size_t>(end - begin)};
}

std::string_view trimmed(const char* begin, const char* end) {
    while (begin != end && isBlank(*begin)) ++begin;
    while (begin != end && (isBlank(end[-1]) || end[-1] == '\r')) --end;
    return between(begin, end);
}

const char* findByte(const char* at, const char* end, char byte) {
    const void* found = at == end ? nullptr : std::memchr(at, byte, static_cast<std::size_t>(end - at));
    return found == nullptr ? end : static_cast<const char*>(found);
}

/// The closing quote of a field whose text starts at a position; end when there is none.
const char* closingQuote(const char* at, const char* end, char quote, bool& doubled) {
    for (;;) {
        at = findByte(at, end, quote);
        if (at == end || at + 1 == end || at[1] != quote) return at;
        doubled = true;
        at += 2;
    }
}

}  // namespace

const char* scanField(const char* at, const char* end, const Dialect& dialect, Field& field) {
    const char* start = at;
    while (start != end && isBlank(*start) && *start != dialect.separator) ++start;
    if (dialect.quote == '\0' || start == end || *start != dialect.quote) {
        const char* stop = findDelimiter(start, end, dialect);
        field = {};
        field.text = trimmed(start, stop);
        return stop;
    }
    field = {};
    field.quoted = true;
    const char* close = closingQuote(start + 1, end, dialect.quote, field.doubled);
    field.text = between(start + 1, close);
    field.open = close == end;
    if (field.open) return end;
    const char* stop = findDelimiter(close + 1, end, dialect);
    field.trailing = !trimmed(close + 1, stop).empty();
    return stop;
}

std::string unquoted(const Field& field, char quote) {
    std::string out;
    out.reserve(field.text.size());
    for (std::size_t i = 0; i < field.text.size(); ++i) {
        out.push_back(field.text[i]);
        if (field.doubled && field.text[i] == quote) ++i;
    }
    return out;
}

bool isBlankLine(const char* at, const char* end, const Dialect& dialect, const char*& next) {
    while (at != end && (isBlank(*at) || *at == '\r') && *at != dialect.separator && *at != dialect.newline)
        ++at;
    if (at != end && *at != dialect.newline) return false;
    next = at == end ? end : at + 1;
    return true;
}

// Looks at quotes and line ends only, where `scanField` looks at every byte.
const char* skipRecord(const char* at, const char* end, const Dialect& dialect) {
    const char* seen = at;  // the record's start, or behind a quote
    for (;;) {
        const char* newline = findByte(seen, end, dialect.newline);
        const char* quote = dialect.quote == '\0' ? newline : findByte(seen, newline, dialect.quote);
        if (quote == newline) return newline == end ? end : newline + 1;
        const char* before = quote;
        while (before != seen && isBlank(before[-1]) && before[-1] != dialect.separator) --before;
        const bool opens = before == at || (before != seen && before[-1] == dialect.separator);
        seen = quote + 1;
        if (!opens) continue;
        bool doubled = false;
        const char* close = closingQuote(seen, end, dialect.quote, doubled);
        if (close == end) return end;
        seen = close + 1;
    }
}

const char* readRecord(const char* at, const char* end, const Dialect& dialect, std::vector<Field>& fields) {
    fields.clear();
    for (;;) {
        at = scanField(at, end, dialect, fields.emplace_back());
        if (at == end) return end;
        if (*at++ == dialect.newline) return at;
    }
}

}  // namespace numcore::cli
