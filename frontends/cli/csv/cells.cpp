#include "cli/csv/cells.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "cli/csv/fields.hpp"
#include "numcore/api.h"

namespace numcore::cli {

namespace {

std::string_view trim(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && (isBlank(text.back()) || text.back() == '\r')) text.remove_suffix(1);
    return text;
}

/// Reads the whole text as a number.
bool parseNumber(std::string_view text, const fast_float::parse_options& format, double& value,
                 std::size_t& outOfRange) {
    if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
    const char* end = text.data() + text.size();
    const auto result = fast_float::from_chars_advanced(text.data(), end, value, format);
    const bool inRange = result.ec != std::errc::result_out_of_range;
    if ((result.ec != std::errc() && inRange) || result.ptr != end) return false;
    // A finite decimal that came out infinite: "inf" itself has no digit.
    const bool overflow = std::isinf(value) && text.find_first_of("0123456789") != std::string_view::npos;
    if (!inRange || overflow) ++outOfRange;
    return true;
}

}  // namespace

CellReader::CellReader(char decimalMark, const std::vector<std::string>& missingWords)
    : format_(fast_float::chars_format::general, decimalMark), words_(missingWords) {
    for (const std::string& word : words_) {
        double value = 0.0;
        std::size_t ignored = 0;
        if (!parseNumber(trim(word), format_, value, ignored)) continue;
        if (std::isnan(value)) {
            nanIsMissing_ = true;
        } else {
            values_.push_back(value);
        }
    }
}

bool CellReader::isMissingText(std::string_view text) const {
    return text.empty() || std::ranges::find(words_, text) != words_.end();
}

bool CellReader::isMissingValue(double value) const {
    if (value == NUMCORE_MISSING) return true;
    if (std::isnan(value)) return nanIsMissing_;
    return !values_.empty() && std::ranges::find(values_, value) != values_.end();
}

CellKind CellReader::read(std::string_view text, double& value, std::size_t& outOfRange) const {
    text = trim(text);
    if (text.empty()) return CellKind::kMissing;
    if (parseNumber(text, format_, value, outOfRange)) {
        return isMissingValue(value) ? CellKind::kMissing : CellKind::kNumber;
    }
    return isMissingText(text) ? CellKind::kMissing : CellKind::kText;
}

}  // namespace numcore::cli
