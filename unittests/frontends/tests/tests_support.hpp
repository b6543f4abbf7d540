// Command lines of the parametric tests, and what their reports hold.
#pragma once

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "cli/run.hpp"
#include "numcore/api.h"

namespace numcore::cli {

/// The options of a command line in words, lists written a:b, with its output for machines.
inline Options testOptions(const std::string& command, const std::string& file, const std::string& words) {
    std::vector<std::string> arguments{"numcore", command};
    if (!file.empty()) arguments.push_back(file);
    std::istringstream in(words);
    for (std::string word; in >> word;) {
        std::ranges::replace(word, ':', ',');
        arguments.push_back(word);
    }
    arguments.insert(arguments.end(), {"--format", "json", "--quiet"});
    int exitCode = 0;
    return parseOptions(arguments, exitCode).value();
}

inline std::string dataFile(const std::string& name) {
    return name.empty() ? name : std::string(NUMCORE_DATA_DIR "/") + name;
}

inline Report testReport(const std::string& command, const std::string& file, const std::string& words) {
    return analyse(testOptions(command, file, words));
}

inline const ReportTable& tableOf(const Report& report, const std::string& id) {
    return *std::ranges::find(report.tables, id, &ReportTable::id);
}

/// A cell by its column; no value when there is no such column.
inline Cell cellAt(const ReportTable& table, std::size_t row, const std::string& column) {
    const auto found = std::ranges::find(table.columns, column, &ReportColumn::id);
    if (found == table.columns.end()) return {};
    return table.rows.at(row).at(static_cast<std::size_t>(found - table.columns.begin()));
}

/// A number by its column; the missing value for no value.
inline double numberAt(const ReportTable& table, std::size_t row, const std::string& column) {
    const Cell cell = cellAt(table, row, column);
    if (const auto* count = std::get_if<std::int64_t>(&cell)) return static_cast<double>(*count);
    const auto* number = std::get_if<double>(&cell);
    return number == nullptr ? NUMCORE_MISSING : *number;
}

inline bool noted(const Report& report, const std::string& words) {
    return std::ranges::any_of(report.notes,
                               [&](const std::string& note) { return note.find(words) != std::string::npos; });
}

/// The message of what a command line throws; empty when it throws nothing.
template <class Error>
std::string refusal(const std::string& command, const std::string& file, const std::string& words) {
    try {
        testReport(command, file, words);
    } catch (const Error& error) {
        return error.what();
    }
    return {};
}

}  // namespace numcore::cli
