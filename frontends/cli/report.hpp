// The neutral result of an analysis: what every writer turns into its format.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace numcore::cli {

/// A probability too small to be told: people see "< 1e-16", machines 0.
struct Below {
    double bound;
    bool operator==(const Below&) const = default;
};

/// A number with a mark behind it for people: "0.348 ***". Machines see the number.
struct Marked {
    double value;
    std::string mark;
    bool operator==(const Marked&) const = default;
};

/// A cell: no value, a count, a number, a text, a bound, or a marked number.
using Cell = std::variant<std::monostate, std::int64_t, double, std::string, Below, Marked>;

/// The kind of a column decides how its numbers are shown to people.
enum class ColumnKind {
    kText,
    kCount,        // whole numbers as they are
    kValue,        // values of the data: shown in full when they are short
    kNumber,       // computed numbers
    kCoefficient,  // with as many decimals throughout: 0.500
    kProbability,  // the same, and a bound for what is smaller: <0.0001
};

struct ReportColumn {
    std::string id;     // name in machine formats: "mean"
    std::string title;  // header for people: "Mean"
    ColumnKind kind = ColumnKind::kNumber;
};

struct ReportTable {
    std::string id;
    std::string title;
    std::vector<ReportColumn> columns;
    std::vector<std::vector<Cell>> rows;
    std::size_t nKeys = 1;  // leading columns that name the row; repeated keys show once in text
    std::vector<std::string> notes;
    bool detail = false;  // how the results came about: for JSON only
};

struct RowCounts {
    std::size_t read = 0;
    std::size_t used = 0;
    std::size_t dropped = 0;
    std::size_t withMissing = 0;  // rows used that have a missing cell in an analysed column
    std::size_t missingCells = 0;
    std::size_t blankLines = 0;
};

/// A law with its parameters.
struct ReportLaw {
    std::string name;
    std::optional<int> code;
    std::vector<std::pair<std::string, double>> parameters;
    std::string tail;  // empty: none is asked for
};

struct Report {
    std::string command;
    std::string title;  // empty: that of the file and the settings
    std::string file;   // empty: none was read
    std::optional<ReportLaw> law;
    std::vector<std::pair<std::string, std::string>> layout;    // separator, encoding, ...: given or guessed
    std::vector<std::pair<std::string, std::string>> settings;  // weights, groups, method, ...
    RowCounts rows;
    std::string droppedWhy;
    std::vector<ReportTable> tables;
    std::vector<std::string> notes;
    std::vector<std::string> warnings;
};

/// A cell from a number of the library: its missing value is no value, its overflow marker infinite.
Cell cellOf(double value);
/// A cell from a whole number that the library gives as a double.
Cell countOf(double value);

}  // namespace numcore::cli
