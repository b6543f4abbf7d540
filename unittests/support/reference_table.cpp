#include "reference_table.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <sstream>

#include "numcore/api.h"

namespace numcore::testing {
namespace {

std::vector<std::string> split(const std::string& line, char separator) {
    std::vector<std::string> cells;
    std::string cell;
    std::istringstream in(line);
    while (std::getline(in, cell, separator)) cells.push_back(cell);
    if (!line.empty() && line.back() == separator) cells.emplace_back();
    return cells;
}

double number(const std::string& text) {
    if (text == "MISSING" || text.empty()) return NUMCORE_MISSING;
    if (text == "OVERFLOW") return NUMCORE_OVERFLOW;
    if (text == "UINT_BAD") return 4294967295.0;
    if (text == "NAN") return std::nan("");
    if (text == "INF") return HUGE_VAL;
    if (text == "-INF") return -HUGE_VAL;
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    if (*end != '\0') ADD_FAILURE() << "not a number in a reference table: " << text;
    return value;
}

std::string digits(double value) {
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%.17g", value);
    return buffer;
}

}  // namespace

double Row::operator[](const std::string& column) const {
    if (!has(column)) ADD_FAILURE() << "no column " << column << " in line " << line_;
    return number(text(column));
}

std::string Row::text(const std::string& column) const {
    const auto found = cells_.find(column);
    return found == cells_.end() ? std::string() : found->second;
}

std::vector<double> Row::list(const std::string& column) const {
    std::vector<double> values;
    for (const auto& cell : split(text(column), ':')) values.push_back(number(cell));
    return values;
}

bool Row::has(const std::string& column) const {
    return cells_.contains(column);
}

std::vector<Row> readTable(const std::string& file) {
    const std::string path = file.front() == '/' ? file : std::string(NUMCORE_REFERENCE_DIR "/") + file;
    std::ifstream in(path);
    if (!in) ADD_FAILURE() << "cannot open " << path;
    std::vector<Row> rows;
    std::vector<std::string> header;
    std::string line;
    for (int iLine = 1; std::getline(in, line); ++iLine) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.empty() || line.front() == '#') continue;
        const auto cells = split(line, ',');
        if (header.empty()) {
            header = cells;
            continue;
        }
        std::map<std::string, std::string> named;
        for (std::size_t i = 0; i < header.size(); ++i) named[header[i]] = i < cells.size() ? cells[i] : "";
        rows.emplace_back(std::move(named), iLine);
    }
    if (rows.empty()) ADD_FAILURE() << "no rows in " << path;
    return rows;
}

std::vector<double> readDataColumn(const std::string& file, const std::string& column) {
    std::vector<double> cells;
    for (const auto& row : readTable(std::string(NUMCORE_DATA_DIR "/") + file)) cells.push_back(row[column]);
    return cells;
}

std::vector<std::u16string> readDataTexts(const std::string& file, const std::string& column) {
    std::vector<std::u16string> cells;
    for (const auto& row : readTable(std::string(NUMCORE_DATA_DIR "/") + file)) {
        const std::string text = row.text(column);
        cells.emplace_back(text.begin(), text.end());
    }
    return cells;
}

bool agrees(double got, double expected, double relative, double absolute) {
    if (std::isnan(expected)) return std::isnan(got);
    if (std::isinf(expected) || expected == NUMCORE_MISSING || expected == NUMCORE_OVERFLOW)
        return got == expected;
    return std::abs(got - expected) <= std::max(relative * std::abs(expected), absolute);
}

void expectTable(const std::string& file, const std::function<double(const Row&)>& compute) {
    for (const auto& row : readTable(file)) {
        const double expected = row["expected"];
        const double got = compute(row);
        EXPECT_TRUE(agrees(got, expected, row["rel_tol"], row["abs_tol"]))
            << file << ":" << row.line() << " got " << digits(got) << ", expected " << digits(expected)
            << ", error " << digits(std::abs(got - expected) / (std::abs(expected) * 0x1p-52)) << " x 2^-52";
    }
}

}  // namespace numcore::testing
