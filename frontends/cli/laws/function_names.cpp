#include "cli/laws/function_names.hpp"

#include <algorithm>
#include <iterator>
#include <vector>

#include "cli/words.hpp"

namespace numcore::cli {

namespace {

constexpr Alias kOfR[] = {
    {"gamma", "R's second parameter is a rate: here a scale, 1/rate (or rate=)"},
    {"hyper", "R's parameters are marked, unmarked and draws: here population, marked and draws"},
};

constexpr Alias kOfSpreadsheets[] = {
    {"hypgeom", "a spreadsheet's parameters are draws, marked, population: here population, marked, draws"},
};

const Alias* differenceOf(std::string_view law, const auto& table) {
    const auto found = std::ranges::find(table, law, [](const Alias& entry) { return entry.name; });
    return found == std::end(table) ? nullptr : &*found;
}

std::optional<FunctionName> splitSpreadsheetName(const std::string& name) {
    std::vector<std::string> parts;
    for (std::size_t at = 0; at <= name.size();) {
        const std::size_t point = std::min(name.find('.', at), name.size());
        parts.push_back(name.substr(at, point - at));
        at = point + 1;
    }
    FunctionName out;
    if (parts.back() == "rt" || parts.back() == "2t") {
        out.asked.upper = parts.back() == "rt";
        out.asked.bothTails = !out.asked.upper;
        parts.pop_back();
    }
    if (parts.size() < 2) return std::nullopt;
    out.asked.quantile = parts.back() == "inv";
    out.asked.distribution = parts.back() == "dist";
    // An argument of DIST decides between the two; the tails' functions have none.
    out.asked.density = out.asked.distribution && !out.asked.upper && !out.asked.bothTails;
    if (!out.asked.quantile && !out.asked.distribution) return std::nullopt;
    parts.pop_back();
    const bool standard = parts.size() == 2 && parts.back() == "s";
    if (standard) parts.pop_back();
    if (parts.size() != 1) return std::nullopt;
    if (standard && parts[0] != "norm") return std::nullopt;
    out.law = standard ? "standard normal" : parts[0];
    out.difference = differenceOf(parts[0], kOfSpreadsheets);
    return out;
}

}  // namespace

std::optional<FunctionName> splitFunctionName(std::string_view name) {
    const std::string plain = lowerCase(name);
    if (plain.find('.') != std::string::npos) return splitSpreadsheetName(plain);
    if (plain.size() < 2) return std::nullopt;
    FunctionName out{plain.substr(1), {}, nullptr};
    out.asked.density = plain[0] == 'd';
    out.asked.distribution = plain[0] == 'p';
    out.asked.quantile = plain[0] == 'q';
    if (!out.asked.density && !out.asked.distribution && !out.asked.quantile) return std::nullopt;
    out.difference = differenceOf(out.law, kOfR);
    return out;
}

}  // namespace numcore::cli
