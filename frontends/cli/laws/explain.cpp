// The list of laws, and what there is to know about one.
#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "cli/laws/command.hpp"
#include "cli/laws/evaluate.hpp"
#include "cli/laws/names.hpp"
#include "numcore/api.h"
#include "numcore/law_codes.h"

namespace numcore::cli {

namespace {

/// One form of a law.
struct Form {
    const Law* law;
    int code;  // -1: none
    std::string name;
    std::size_t nParameters;
};

Form formOf(const Law& law, int code) {
    const numcore_law* row = numcore_law_of_code(code);
    return {&law, code, row->name, static_cast<std::size_t>(row->nParameters)};
}

std::vector<Form> allForms() {
    std::vector<Form> forms;
    for (const Law& law : laws()) {
        for (const int code : law.codes) forms.push_back(formOf(law, code));
    }
    std::ranges::sort(forms, {}, &Form::code);
    for (const Law& law : laws()) {
        if (!law.coded()) forms.push_back({&law, -1, law.name, law.parameters.size()});
    }
    return forms;
}

std::string symbolsOf(const Form& form) {
    std::string text;
    for (std::size_t i = 0; i < form.nParameters; ++i) {
        text += (i == 0 ? "" : ", ") + form.law->parameters[i].symbol;
    }
    return text;
}

/// "mean (any number), standard deviation (above 0)".
std::string meaningsOf(const Form& form) {
    std::string text;
    for (std::size_t i = 0; i < form.nParameters; ++i) {
        const Parameter& parameter = form.law->parameters[i];
        text +=
            fmt::format("{}{} ({})", i == 0 ? "" : "; ", parameter.meaning, describeDomain(parameter.domain));
    }
    return text;
}

/// Names of a parameter, and of what it is the inverse of: "scale theta, rate = 1/beta".
std::string otherNamesOf(const Parameter& parameter) {
    std::string names = parameter.otherNames;
    const std::string inverse = parameter.inverseNames;
    if (inverse.empty()) return names;
    return fmt::format("{}{}{} = 1/{}", names, names.empty() ? "" : ", ", inverse, parameter.symbol);
}

std::string aliasesOf(const Law& law) {
    std::string text;
    for (const Alias& alias : law.aliases) {
        if (plainName(law.name) == plainName(alias.name)) continue;
        text += (text.empty() ? "" : ", ") + std::string(alias.name);
    }
    return text;
}

std::string offeredBy(const Law& law) {
    return fmt::format("{}cdf quantile", hasDensity(law) ? "pdf " : "");
}

ReportTable parameterTable(const Law& law) {
    ReportTable table{"parameters",
                      "Parameters",
                      {{"symbol", "Symbol", ColumnKind::kText},
                       {"meaning", "Meaning", ColumnKind::kText},
                       {"domain", "Domain", ColumnKind::kText},
                       {"default", "Default", ColumnKind::kValue},
                       {"other_names", "Other names", ColumnKind::kText}},
                      {},
                      1,
                      {}};
    for (const Parameter& parameter : law.parameters) {
        const std::string otherNames = otherNamesOf(parameter);
        table.rows.push_back({parameter.symbol, std::string(parameter.meaning),
                              std::string(describeDomain(parameter.domain)),
                              parameter.optional ? Cell(parameter.fallback) : Cell(),
                              otherNames.empty() ? Cell() : Cell(otherNames)});
    }
    return table;
}

ReportTable propertyTable(const Law& law) {
    ReportTable table{"properties",
                      "Properties",
                      {{"property", "Property", ColumnKind::kText}, {"value", "Value", ColumnKind::kText}},
                      {},
                      1,
                      {}};
    const auto add = [&](const char* property, const std::string& value) {
        if (!value.empty()) table.rows.push_back({std::string(property), value});
    };
    for (const int code : law.codes) {
        const Form form = formOf(law, code);
        const std::string symbols = symbolsOf(form);
        add("code", fmt::format("{} {}{}", code, form.name, symbols.empty() ? "" : " (" + symbols + ")"));
    }
    add("other names", aliasesOf(law));
    add("kind", law.discrete ? "discrete, whole numbers" : "continuous");
    add("condition", law.order == nullptr ? "" : law.order);
    add("commands", offeredBy(law));
    add("functions", law.functions);
    add("mean", law.meanText == nullptr ? "" : law.meanText);
    add("variance", law.varianceText == nullptr ? "" : law.varianceText);
    add("upper tail", law.upperTail != nullptr ? "without loss of digits" : "1 - lower tail");
    add("quantile", hasQuantile(law) ? "" : "by halving on the distribution function");
    return table;
}

/// Moments and quartiles with the parameters given.
ReportTable valueTable(const ChosenLaw& chosen) {
    const Law& law = *chosen.law;
    const std::string where = chosen.nParameters == 0 ? chosen.name : chosen.parameterText();
    ReportTable table{"values",
                      "With " + where,
                      {{"quantity", "Quantity", ColumnKind::kText}, {"value", "Value", ColumnKind::kNumber}},
                      {},
                      1,
                      {}};
    const auto add = [&](const char* quantity, double value) {
        table.rows.push_back({std::string(quantity), cellOf(value)});
    };
    const Interval support = law.support(chosen.parameters);
    add("smallest value", support.lower);
    add("largest value", support.upper);
    if (law.mean != nullptr) add("mean", law.mean(chosen.parameters));
    if (law.variance != nullptr) {
        const double variance = law.variance(chosen.parameters);
        add("variance", variance);
        add("standard deviation", variance == NUMCORE_MISSING ? variance : std::sqrt(variance));
    }
    add("lower quartile", quantileAt(chosen, 0.25, Tail::kLower));
    add("median", quantileAt(chosen, 0.5, Tail::kLower));
    add("upper quartile", quantileAt(chosen, 0.75, Tail::kLower));
    return table;
}

ReportTable exampleTable(const Law& law) {
    const std::string word = commandWord(law.name);
    ReportTable table{"examples", "Examples", {{"command", "Command", ColumnKind::kText}}, {}, 0, {}};
    const auto add = [&](const char* command, const char* values) {
        table.rows.push_back({fmt::format("numcore {} {} {} {}", command, word, values, law.example)});
    };
    add("cdf", law.discrete ? "2,3" : "0.5,1.5");
    if (hasDensity(law)) add("pdf", law.discrete ? "0:5" : "0:1:0.25");
    add("quantile", "0.95");
    table.rows.push_back({fmt::format("numcore law {} {} --plot {}.svg", word, law.example, word)});
    return table;
}

bool choosable(const Law& law, const std::vector<std::string>& parameters) {
    const auto needed = [](const Parameter& parameter) { return !parameter.optional; };
    return !parameters.empty() || std::ranges::none_of(law.parameters, needed);
}

}  // namespace

ReportLaw subjectOf(const ChosenLaw& chosen) {
    ReportLaw subject{chosen.name, std::nullopt, {}, {}};
    if (chosen.law->coded()) subject.code = chosen.code;
    for (std::size_t i = 0; i < chosen.nParameters; ++i) {
        subject.parameters.emplace_back(chosen.law->parameters[i].symbol, chosen.parameters[i]);
    }
    return subject;
}

Report listLaws() {
    Report report;
    report.command = "law";
    report.title = "Probability laws";
    ReportTable table{"laws",
                      "Laws",
                      {{"name", "Name", ColumnKind::kText},
                       {"code", "Code", ColumnKind::kCount},
                       {"parameters", "Parameters", ColumnKind::kText},
                       {"commands", "Commands", ColumnKind::kText},
                       {"other_names", "Other names", ColumnKind::kText},
                       {"meaning", "Meaning and domain of the parameters", ColumnKind::kText}},
                      {},
                      1,
                      {}};
    for (const Form& form : allForms()) {
        // Other names mean the law, not one form.
        const bool first = !form.law->coded() || form.code == *std::ranges::min_element(form.law->codes);
        table.rows.push_back({form.name, form.code < 0 ? Cell() : Cell(std::int64_t{form.code}),
                              symbolsOf(form), offeredBy(*form.law),
                              first ? aliasesOf(*form.law) : std::string(), meaningsOf(form)});
    }
    report.tables.push_back(std::move(table));
    report.notes = {"numcore law NAME tells more about one of them"};
    return report;
}

Report explainLaw(const NamedLaw& named, const std::vector<std::string>& parameters) {
    const Law& law = *named.law;
    Report report;
    report.command = "law";
    report.title = law.name + " law";
    if (!law.parameters.empty()) report.tables.push_back(parameterTable(law));
    report.tables.push_back(propertyTable(law));
    if (choosable(law, parameters)) {
        const ChosenLaw chosen = chooseLaw(named, parameters);
        report.tables.push_back(valueTable(chosen));
        report.law = subjectOf(chosen);
    }
    report.tables.push_back(exampleTable(law));
    for (const Alias& alias : law.aliases) {
        if (alias.note != nullptr) report.notes.push_back(fmt::format("{}: {}", alias.name, alias.note));
    }
    report.notes.insert(report.notes.end(), law.notes.begin(), law.notes.end());
    return report;
}

}  // namespace numcore::cli
