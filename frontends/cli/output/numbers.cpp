#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "cli/output/writers.hpp"

namespace numcore::cli {

namespace {

constexpr int kValueDigits = 10;    // values of the data with no more digits are shown in full
constexpr int kFewestDecimals = 2;  // large numbers keep them: 1000000.25 is not cut to 1000000
constexpr int kSmallestFixed = -5;  // decimal exponents that are written without one
constexpr int kLargestFixed = 14;
constexpr int kCoefficientDecimals = 3;
constexpr int kProbabilityDecimals = 4;

std::string withoutTrailingZeros(std::string text) {
    if (text.find('.') == std::string::npos) return text;
    while (text.back() == '0') text.pop_back();
    if (text.back() == '.') text.pop_back();
    return text;
}

/// At least `digits` significant digits, and `decimals` of them behind the point.
std::string significant(double value, int digits, int fewestDecimals) {
    if (!std::isfinite(value)) return exactNumber(value);
    const std::string scientific = fmt::format("{:.{}e}", value, digits - 1);
    const std::size_t mark = scientific.find('e');
    const int exponent = std::atoi(scientific.c_str() + mark + 1);
    if (value != 0.0 && (exponent < kSmallestFixed || exponent > kLargestFixed)) {
        return withoutTrailingZeros(scientific.substr(0, mark)) + fmt::format("e{:+03d}", exponent);
    }
    const int decimals = std::max(digits - 1 - exponent, fewestDecimals);
    const std::string text = withoutTrailingZeros(fmt::format("{:.{}f}", value, decimals));
    return text == "-0" ? "0" : text;
}

std::string fixedDecimals(double value, int decimals) {
    if (!std::isfinite(value)) return exactNumber(value);
    std::string text = fmt::format("{:.{}f}", value, decimals);
    const bool zero = text.find_first_not_of("-0.") == std::string::npos;
    return zero && text.front() == '-' ? text.substr(1) : text;
}

/// A probability that decimals would turn into 0 is shown as smaller than the least they can tell.
std::string probability(double value, int decimals) {
    const double least = std::pow(10.0, -decimals);
    return value < least ? fmt::format("<{:.{}f}", least, decimals) : fixedDecimals(value, decimals);
}

}  // namespace

std::string exactNumber(double value) {
    // The sign of a NaN says nothing.
    return std::isnan(value) ? "nan" : fmt::format("{}", value);
}

std::string readableNumber(double value, ColumnKind kind, const TextStyle& style) {
    if (kind == ColumnKind::kCoefficient)
        return fixedDecimals(value, style.digitsGiven ? style.digits : kCoefficientDecimals);
    if (kind == ColumnKind::kProbability)
        return probability(value, style.digitsGiven ? style.digits : kProbabilityDecimals);
    if (kind == ColumnKind::kValue && !style.digitsGiven) {
        std::string text = significant(value, kValueDigits, 0);
        if (std::strtod(text.c_str(), nullptr) == value) return text;
    }
    return significant(value, style.digits, style.digitsGiven ? 0 : kFewestDecimals);
}

std::string readableCell(const Cell& cell, ColumnKind kind, const TextStyle& style) {
    if (const auto* text = std::get_if<std::string>(&cell)) return *text;
    if (const auto* count = std::get_if<std::int64_t>(&cell)) return std::to_string(*count);
    if (const auto* number = std::get_if<double>(&cell)) return readableNumber(*number, kind, style);
    if (const auto* below = std::get_if<Below>(&cell)) return fmt::format("< {}", below->bound);
    if (const auto* marked = std::get_if<Marked>(&cell))
        return readableNumber(marked->value, kind, style) + marked->mark;
    return {};
}

std::string exactCell(const Cell& cell) {
    if (const auto* number = std::get_if<double>(&cell)) return exactNumber(*number);
    if (std::holds_alternative<Below>(cell)) return "0";
    if (const auto* marked = std::get_if<Marked>(&cell)) return exactNumber(marked->value);
    return readableCell(cell, ColumnKind::kText, {});
}

}  // namespace numcore::cli
