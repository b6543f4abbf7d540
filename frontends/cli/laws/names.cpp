#include "cli/laws/names.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

#include "cli/errors.hpp"
#include "cli/laws/choose.hpp"
#include "cli/words.hpp"
#include "numcore/law_codes.h"

namespace numcore::cli {

namespace {

/// Laws that are not offered, and what to take instead.
constexpr Alias kElsewhere[] = {
    {"geometric", "negative-binomial-1 with n = 1: the failures before the first success"},
    {"geom", "negative-binomial-1 with n = 1; scipy's geom counts the success too"},
    {"cauchy", "student with nu = 1, for (x - location)/scale"},
    {"rayleigh", "weibull with beta = 2 and gamma = scale sqrt(2)"},
    {"laplace", "exponential on each side: 1/2 of its upper tail"},
    {"gumbel_l", "gumbel of -x, the other tail"},
    {"weibull_max", "weibull of -x, the other tail"},
    {"lomax", "pareto of x + b"},
};

const char* nameOfCode(int code) {
    const numcore_law* row = numcore_law_of_code(code);
    return row == nullptr ? "" : row->name;
}

std::optional<NamedLaw> findCode(std::string_view name) {
    int code = 0;
    const auto [rest, status] = std::from_chars(name.data(), name.data() + name.size(), code);
    if (status != std::errc() || rest != name.data() + name.size()) return std::nullopt;
    for (const Law& law : laws()) {
        if (std::ranges::find(law.codes, code) != law.codes.end()) return NamedLaw{&law, code};
    }
    return std::nullopt;
}

/// Names under which a law is found, as they are compared.
void forEachName(const auto& visit) {
    for (const Law& law : laws()) {
        visit(law.name, law);
        for (const int code : law.codes) visit(nameOfCode(code), law);
        for (const Alias& alias : law.aliases) visit(alias.name, law);
    }
}

/// A law's own names.
std::optional<NamedLaw> findOwnName(std::string_view name) {
    const std::string plain = plainName(name);
    if (plain.empty()) return std::nullopt;
    for (const Law& law : laws()) {
        if (plain == plainName(law.name)) return NamedLaw{&law, std::nullopt};
        for (const Alias& alias : law.aliases) {
            if (plain == plainName(alias.name)) {
                return NamedLaw{&law, std::nullopt, alias.note == nullptr ? nullptr : &alias};
            }
        }
        for (const int code : law.codes) {
            if (plain == plainName(nameOfCode(code))) return NamedLaw{&law, code};
        }
    }
    return std::nullopt;
}

}  // namespace

std::string plainName(std::string_view name) {
    std::string out;
    for (const char c : lowerCase(name)) {
        if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) out += c;
    }
    return out;
}

std::string commandWord(std::string name) {
    std::ranges::replace(name, ' ', '-');
    return name;
}

std::vector<std::string> lawWords() {
    std::vector<std::string> words;
    for (const Law& law : laws()) words.push_back(commandWord(law.name));
    return words;
}

std::optional<NamedLaw> findLaw(std::string_view name) {
    if (const auto coded = findCode(name)) return coded;
    if (const auto own = findOwnName(name)) return own;
    const auto function = splitFunctionName(name);
    if (!function) return std::nullopt;
    auto found = findOwnName(function->law);
    if (!found) return std::nullopt;
    found->alias = function->difference;
    found->asked = function->asked;
    return found;
}

std::string unknownLaw(std::string_view name) {
    const std::string plain = plainName(name);
    for (const Alias& other : kElsewhere) {
        if (plain == plainName(other.name)) {
            return fmt::format("the law {} is not offered under this name; take {}", other.name, other.note);
        }
    }
    std::vector<std::pair<std::size_t, std::string>> similar;
    forEachName([&](std::string_view known, const Law& law) {
        const std::string word = plainName(known);
        std::size_t distance = editDistance(plain, word);
        // The start of a name counts as similar.
        if (plain.size() >= 3 && word.starts_with(plain)) distance = 1;
        const bool listed =
            std::ranges::any_of(similar, [&](const auto& entry) { return entry.second == law.name; });
        if (distance <= std::max<std::size_t>(1, plain.size() / 3) && !listed)
            similar.emplace_back(distance, law.name);
    });
    std::ranges::stable_sort(similar, {}, [](const auto& entry) { return entry.first; });
    std::string text = fmt::format("no law {}", quotedForMessage(name));
    constexpr std::size_t kMost = 3;
    for (std::size_t i = 0; i < std::min(similar.size(), kMost); ++i) {
        text += fmt::format("{}{}", i == 0 ? "; did you mean " : " or ", similar[i].second);
    }
    return text + (similar.empty() ? "" : "?") + "\nnumcore law list shows all laws";
}

NamedLaw lawNamed(std::string_view name) {
    if (const auto found = findLaw(name)) return *found;
    throw UsageError(unknownLaw(name));
}

}  // namespace numcore::cli
