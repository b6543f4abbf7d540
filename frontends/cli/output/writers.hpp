// Turning a report into text: one function per format.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cli/options.hpp"
#include "cli/report.hpp"

namespace numcore::cli {

/// How numbers and tables look to people.
struct TextStyle {
    int digits = 6;            // significant digits of numbers
    bool digitsGiven = false;  // then values of the data are cut too
    int width = 0;             // columns of the page; 0: no limit
};

/// Aligned columns; a table wider than the page is cut into panels that repeat the key columns.
std::string writeText(const Report& report, const TextStyle& style);
std::string writeMarkdown(const Report& report, const TextStyle& style);
std::string writeHtml(const Report& report, const TextStyle& style);
/// Tables only, in full precision, separated by an empty line; a missing value is an empty cell.
std::string writeDelimited(const Report& report, char separator);
/// Everything, in full precision; a missing value is null, other non-finite numbers are texts.
std::string writeJson(const Report& report);

/// The format asked for, or that of the output file's ending.
Format formatOf(const OutputOptions& options);
/// CSV, TSV, JSON: exact numbers, nothing laid out for the eye.
bool isForMachines(Format format);

std::string render(const Report& report, Format format, const TextStyle& style);

/// What people must know besides the tables: rows used, dropped, missing; notes.
std::vector<std::string> footerLines(const Report& report);
/// The sentence about missing values, when a table has one.
std::string missingLegend(const Report& report, std::string_view sign);
/// Title line: the file and the settings.
std::string titleLine(const Report& report);

/// A number in full: as few digits as give the same double again.
std::string exactNumber(double value);
/// A number for people: fixed or scientific, without trailing zeros.
std::string readableNumber(double value, ColumnKind kind, const TextStyle& style);
/// A cell for people; empty for no value.
std::string readableCell(const Cell& cell, ColumnKind kind, const TextStyle& style);
/// A cell for machines; empty for no value.
std::string exactCell(const Cell& cell);

/// Columns that a text takes on a terminal: 2 for wide characters, 0 for combining marks.
int displayWidth(std::string_view utf8);

}  // namespace numcore::cli
