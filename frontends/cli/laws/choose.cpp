#include "cli/laws/choose.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "cli/errors.hpp"
#include "cli/laws/names.hpp"
#include "cli/laws/values.hpp"
#include "cli/words.hpp"
#include "numcore/law_codes.h"

namespace numcore::cli {

namespace {

constexpr std::size_t kNowhere = std::size_t(-1);

std::string describeParameter(const Parameter& parameter) {
    return fmt::format("{} ({}, {})", parameter.symbol, parameter.meaning, describeDomain(parameter.domain));
}

std::string needs(const Law& law) {
    std::string text;
    for (const Parameter& parameter : law.parameters) {
        text += fmt::format("\n  {}{}", describeParameter(parameter),
                            parameter.optional ? fmt::format(", {} if not given", parameter.fallback) : "");
    }
    return text.empty() ? text : "; its parameters:" + text;
}

bool isOneOf(const std::string& name, const char* names) {
    return fmt::format(" {} ", names).find(fmt::format(" {} ", name)) != std::string::npos;
}

std::size_t findParameter(const Law& law, auto&& matches) {
    const auto found = std::ranges::find_if(law.parameters, matches);
    return found == law.parameters.end() ? kNowhere : static_cast<std::size_t>(found - law.parameters.begin());
}

/// The place of a parameter by its symbol or another name; letters' case counts only where it must (N, n).
std::size_t placeOf(std::string_view name, const Law& law) {
    const auto find = [&](auto&& matches) { return findParameter(law, matches); };
    const std::size_t exact = find([&](const Parameter& p) { return p.symbol == name; });
    if (exact != kNowhere) return exact;
    const std::string lower = lowerCase(name);
    const std::size_t other = find([&](const Parameter& p) { return isOneOf(lower, p.otherNames); });
    if (other != kNowhere) return other;
    return find([&](const Parameter& p) { return lowerCase(p.symbol) == lower; });
}

double parameterValue(const std::string& text, const std::string& word) {
    const auto value = parseNumber(text);
    if (!value) throw UsageError(fmt::format("{} is not a number", quotedForMessage(word)));
    return *value;
}

/// What the command line gives of each parameter.
struct Given {
    std::array<std::optional<double>, 4> values;

    void set(std::size_t place, double value, const Law& law) {
        if (values[place]) throw UsageError(fmt::format("{} is given twice", law.parameters[place].symbol));
        values[place] = value;
    }
    std::size_t last() const {
        std::size_t n = values.size();
        while (n > 0 && !values[n - 1]) --n;
        return n;
    }
};

Given readParameters(const Law& law, const std::vector<std::string>& words) {
    Given given;
    std::size_t nInOrder = 0;
    for (const std::string& word : words) {
        const std::size_t equals = word.find('=');
        if (equals == std::string::npos) {
            if (nInOrder == law.parameters.size()) {
                const std::string most = law.parameters.empty()
                                             ? "no parameters"
                                             : "at most " + counted(law.parameters.size(), "parameter");
                throw UsageError(
                    fmt::format("the {} law takes {}: LAW VALUES {}", law.name, most, parameterUsage(law)));
            }
            given.set(nInOrder++, parameterValue(word, word), law);
            continue;
        }
        const std::string name = word.substr(0, equals);
        const double value = parameterValue(word.substr(equals + 1), word);
        if (const std::size_t place = placeOf(name, law); place != kNowhere) {
            given.set(place, value, law);
            continue;
        }
        const std::string lower = lowerCase(name);
        const std::size_t inverse =
            findParameter(law, [&](const Parameter& p) { return isOneOf(lower, p.inverseNames); });
        if (inverse == kNowhere)
            throw UsageError(
                fmt::format("the {} law has no parameter {}{}", law.name, quotedForMessage(name), needs(law)));
        if (!(value > 0.0)) throw UsageError(fmt::format("{} is not possible: {} is above 0", word, name));
        given.set(inverse, 1.0 / value, law);
    }
    return given;
}

/// The number of parameters of a form.
std::size_t countOf(int code) {
    const numcore_law* row = numcore_law_of_code(code);
    return row == nullptr ? 0 : static_cast<std::size_t>(row->nParameters);
}

/// The first form that has the parameters given and those that must be.
void chooseForm(const NamedLaw& named, std::size_t nGiven, ChosenLaw& chosen) {
    const Law& law = *named.law;
    chosen.name = law.name;
    chosen.nParameters = law.parameters.size();
    if (!law.coded()) return;
    if (named.code) {
        chosen.code = *named.code;
        if (nGiven > countOf(chosen.code)) {
            throw UsageError(fmt::format("the {} law takes {} only", numcore_law_of_code(chosen.code)->name,
                                         counted(countOf(chosen.code), "parameter")));
        }
    } else {
        const auto fits = std::ranges::find_if(law.codes, [&](int code) { return countOf(code) >= nGiven; });
        chosen.code = *fits;
    }
    chosen.name = numcore_law_of_code(chosen.code)->name;
    chosen.nParameters = countOf(chosen.code);
}

void checkValues(const ChosenLaw& chosen) {
    const Law& law = *chosen.law;
    for (std::size_t i = 0; i < law.parameters.size(); ++i) {
        const Parameter& parameter = law.parameters[i];
        if (inDomain(chosen.parameters[i], parameter.domain)) continue;
        throw UsageError(fmt::format("{} = {} is not possible: the {} law needs {} (its {}) {}",
                                     parameter.symbol, chosen.parameters[i], law.name, parameter.symbol,
                                     parameter.meaning, describeDomain(parameter.domain)) +
                         (isTooLarge(chosen.parameters[i], parameter.domain) ? ", within 2147483647" : ""));
    }
    if (law.ordered != nullptr && !law.ordered(chosen.parameters)) {
        throw UsageError(fmt::format("the {} law needs {}; here {} (parameters in this order: {})", law.name,
                                     law.order, chosen.parameterText(), parameterUsage(law)));
    }
}

}  // namespace

std::string ChosenLaw::parameterText() const {
    std::string text;
    for (std::size_t i = 0; i < nParameters; ++i) {
        text += fmt::format("{}{} = {}", i == 0 ? "" : ", ", law->parameters[i].symbol, parameters[i]);
    }
    return text;
}

std::string parameterUsage(const Law& law) {
    std::string text;
    for (const Parameter& parameter : law.parameters) {
        text += fmt::format(fmt::runtime(parameter.optional ? "{}[{}]" : "{}{}"), text.empty() ? "" : " ",
                            parameter.symbol);
    }
    return text;
}

ChosenLaw chooseLaw(const NamedLaw& named, const std::vector<std::string>& parameters) {
    const Law& law = *named.law;
    const Given given = readParameters(law, parameters);
    ChosenLaw chosen;
    chosen.law = &law;
    for (std::size_t i = 0; i < law.parameters.size(); ++i) {
        const Parameter& parameter = law.parameters[i];
        if (!given.values[i] && !parameter.optional) {
            throw UsageError(fmt::format("the {} law needs {}{}", law.name, parameter.symbol, needs(law)));
        }
        chosen.parameters[i] = given.values[i].value_or(parameter.fallback);
    }
    chooseForm(named, given.last(), chosen);
    checkValues(chosen);
    if (named.alias != nullptr)
        chosen.notes.push_back(fmt::format("{}: {}", named.alias->name, named.alias->note));
    return chosen;
}

}  // namespace numcore::cli
