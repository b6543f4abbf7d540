// What a column of texts holds: numbers, whole numbers, dates, categories or free text.

#include <algorithm>
#include <array>

#include "frame/categories.hpp"
#include "numcore/dataset.hpp"

namespace numcore {
namespace {

bool isDigit(char16_t c) {
    return c >= u'0' && c <= u'9';
}

bool isBlank(char16_t c) {
    return c == u' ' || c == u'\t' || c == u'\u00A0';
}

std::u16string_view trimmed(std::u16string_view text) {
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    return text;
}

std::size_t takeDigits(std::u16string_view& text) {
    const auto end = std::find_if_not(text.begin(), text.end(), isDigit);
    const auto n = static_cast<std::size_t>(end - text.begin());
    text.remove_prefix(n);
    return n;
}

bool takeOneOf(std::u16string_view& text, std::u16string_view choices) {
    if (text.empty() || choices.find(text.front()) == std::u16string_view::npos) return false;
    text.remove_prefix(1);
    return true;
}

enum class NumberShape { None, Integer, Real };

/// Sign, digits with an optional decimal mark, optional exponent. A number without decimal mark and exponent is
/// an integer.
NumberShape numberShape(std::u16string_view text, char16_t decimalMark) {
    takeOneOf(text, u"+-");
    std::size_t nDigits = takeDigits(text);
    const bool hasMark = takeOneOf(text, std::u16string_view(&decimalMark, 1));
    if (hasMark) nDigits += takeDigits(text);
    if (nDigits == 0) return NumberShape::None;
    const bool hasExponent = takeOneOf(text, u"eE");
    if (hasExponent) {
        takeOneOf(text, u"+-");
        if (takeDigits(text) == 0) return NumberShape::None;
    }
    if (!text.empty()) return NumberShape::None;
    return hasMark || hasExponent ? NumberShape::Real : NumberShape::Integer;
}

/// Whole number at the start of the text, of at most 4 digits; -1 when there is none.
int takeSmallNumber(std::u16string_view& text, std::size_t& nDigits) {
    const std::u16string_view start = text;
    nDigits = takeDigits(text);
    if (nDigits == 0 || nDigits > 4) return -1;
    int value = 0;
    for (std::size_t i = 0; i < nDigits; ++i) value = value * 10 + (start[i] - u'0');
    return value;
}

/// Hours and minutes, optional seconds with fraction, optional zone sign Z.
bool isTime(std::u16string_view text) {
    constexpr std::array<int, 3> kLimits = {23, 59, 60};
    std::size_t nParts = 0;
    for (; nParts < kLimits.size(); ++nParts) {
        std::size_t nDigits = 0;
        const int value = takeSmallNumber(text, nDigits);
        if (value < 0 || nDigits > 2 || value > kLimits[nParts]) return false;
        if (!takeOneOf(text, u":")) {
            ++nParts;
            break;
        }
    }
    if (nParts == 3 && takeOneOf(text, u".,")) takeDigits(text);
    takeOneOf(text, u"Zz");
    return nParts >= 2 && text.empty();
}

bool isDayAndMonth(int day, int month) {
    return day >= 1 && day <= 31 && month >= 1 && month <= 12;
}

/// Three numbers with one separator: year first (4 digits), or day and month in either order before the year.
bool isDate(std::u16string_view text) {
    std::array<int, 3> parts{};
    std::array<std::size_t, 3> nDigits{};
    char16_t separator = u'\0';
    for (std::size_t i = 0; i < 3; ++i) {
        if (i > 0) {
            if (text.empty() || std::u16string_view(u"-/.").find(text.front()) == std::u16string_view::npos)
                return false;
            if (i == 2 && text.front() != separator) return false;
            separator = text.front();
            text.remove_prefix(1);
        }
        parts[i] = takeSmallNumber(text, nDigits[i]);
        if (parts[i] < 0) return false;
    }
    if (!text.empty()) {
        if (!takeOneOf(text, u" Tt") || !isTime(text)) return false;
    }
    if (nDigits[0] == 4) return nDigits[2] <= 2 && isDayAndMonth(parts[2], parts[1]);
    if (nDigits[0] > 2 || nDigits[1] > 2 || (nDigits[2] != 2 && nDigits[2] != 4)) return false;
    return isDayAndMonth(parts[0], parts[1]) || isDayAndMonth(parts[1], parts[0]);
}

struct Tally {
    std::int64_t nTexts = 0;
    std::int64_t nIntegers = 0;
    std::int64_t nNumbers = 0;
    std::int64_t nDates = 0;
};

Tally tally(std::span<const u16string> cells, char16_t decimalMark) {
    Tally found;
    for (const u16string& cell : cells) {
        const std::u16string_view text = trimmed(cell.view());
        if (text.empty()) continue;
        ++found.nTexts;
        const NumberShape shape = numberShape(text, decimalMark);
        found.nIntegers += shape == NumberShape::Integer ? 1 : 0;
        found.nNumbers += shape != NumberShape::None ? 1 : 0;
        found.nDates += isDate(text) || isTime(text) ? 1 : 0;
    }
    return found;
}

}  // namespace

ColumnKind GuessType_ST(const cST_MVect<u16string>& table, std::int32_t column, char16_t decimalMark,
                        double minShare) {
    if (column < 0 || column >= table.columnCount()) return {};
    const char16_t mark = decimalMark == u',' ? u',' : u'.';
    const double wanted = minShare > 0.0 && minShare <= 1.0 ? minShare : 1.0;
    const std::span<const u16string> cells = table.cells(column);
    const Tally found = tally(cells, mark);
    if (found.nTexts == 0) return {};
    const auto share = [&](std::int64_t n) {
        return static_cast<double>(n) / static_cast<double>(found.nTexts);
    };
    if (share(found.nIntegers) >= wanted) return {NUMCORE_COLUMN_INTEGER, share(found.nIntegers)};
    if (share(found.nNumbers) >= wanted) return {NUMCORE_COLUMN_NUMERIC, share(found.nNumbers)};
    if (share(found.nDates) >= wanted) return {NUMCORE_COLUMN_DATE, share(found.nDates)};
    const auto nDifferent = static_cast<std::int64_t>(frame::numberTexts(cells).labels.size());
    const bool repeats = nDifferent <= std::max<std::int64_t>(2, found.nTexts / 2);
    return {repeats ? NUMCORE_COLUMN_CATEGORICAL : NUMCORE_COLUMN_TEXT, 1.0};
}

}  // namespace numcore
