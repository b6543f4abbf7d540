#include "cli/laws/values.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>

#include "cli/errors.hpp"
#include "cli/words.hpp"

namespace numcore::cli {

namespace {

constexpr std::size_t kMostValues = 10'000'000;

double numberOrThrow(std::string_view text, std::string_view word, bool percentages) {
    const bool percent = percentages && text.ends_with('%');
    if (percent) text.remove_suffix(1);
    const auto value = parseNumber(text);
    if (!value) {
        throw UsageError(fmt::format("{} is not a value: a number, a list 1,2.5,4, or a range from:to:step",
                                     quotedForMessage(word)));
    }
    return percent ? *value / 100.0 : *value;
}

/// Decimals of a number's text; nothing when it is not in plain notation.
std::optional<int> decimalsOf(std::string_view text) {
    if (text.find_first_of("eE%") != std::string_view::npos) return std::nullopt;
    const std::size_t point = text.find('.');
    return point == std::string_view::npos ? 0 : static_cast<int>(text.size() - point - 1);
}

void addRange(const std::string& word, bool percentages, std::vector<double>& out) {
    const std::size_t first = word.find(':');
    const std::size_t second = std::min(word.find(':', first + 1), word.size());
    const std::string fromText = word.substr(0, first);
    const std::string toText = word.substr(first + 1, second - first - 1);
    const std::string stepText = second < word.size() ? word.substr(second + 1) : "1";
    const double from = numberOrThrow(fromText, word, percentages);
    const double to = numberOrThrow(toText, word, percentages);
    const double step = numberOrThrow(stepText, word, percentages);
    const double last = std::floor((to - from) / step + 1e-9);
    if (!std::isfinite(last) || last < 0.0) {
        throw UsageError(fmt::format("{} is not a range: the step must lead from {} to {}",
                                     quotedForMessage(word), fromText, toText));
    }
    if (last + static_cast<double>(out.size()) >= static_cast<double>(kMostValues)) {
        throw UsageError(fmt::format("{} has more than {} values", quotedForMessage(word), kMostValues));
    }
    const auto fromDecimals = decimalsOf(fromText);
    const auto stepDecimals = decimalsOf(stepText);
    for (double i = 0.0; i <= last; ++i) {
        double value = from + i * step;
        // 0:1:0.1 holds 0.3 itself, not the sum of three rounded steps.
        if (fromDecimals && stepDecimals) {
            value = std::strtod(fmt::format("{:.{}f}", value, std::max(*fromDecimals, *stepDecimals)).c_str(),
                                nullptr);
        }
        out.push_back(value == 0.0 ? 0.0 : value);
    }
}

}  // namespace

std::optional<double> parseNumber(std::string_view text) {
    if (text.starts_with('+')) text.remove_prefix(1);
    double value = 0.0;
    const auto [rest, status] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (status != std::errc() || rest != text.data() + text.size() || std::isnan(value)) return std::nullopt;
    return value;
}

std::vector<double> parseValues(const std::string& list, bool percentages) {
    std::vector<double> values;
    for (const std::string& word : splitList(list)) {
        if (word.find(':') != std::string::npos) {
            addRange(word, percentages, values);
        } else {
            values.push_back(numberOrThrow(word, word, percentages));
        }
    }
    return values;
}

}  // namespace numcore::cli
