// Tables of expected values: comma-separated files under unittests/reference, each with its source in
// comment lines, read by table-driven tests.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace numcore::testing {

/// One row: cells by column name.
class Row {
  public:
    Row(std::map<std::string, std::string> cells, int line) : cells_(std::move(cells)), line_(line) {}

    /// The cell as a number: decimal or "MISSING", "OVERFLOW", "UINT_BAD", "NAN", "INF", "-INF". Fails the test
    /// when absent.
    double operator[](const std::string& column) const;
    /// The cell as text; empty when absent.
    std::string text(const std::string& column) const;
    /// The cell as a list of numbers separated by ':'.
    std::vector<double> list(const std::string& column) const;
    bool has(const std::string& column) const;
    int line() const { return line_; }

  private:
    std::map<std::string, std::string> cells_;
    int line_;
};

/// Rows of a file under unittests/reference ("descriptive/quantile.csv") or, with an absolute path, anywhere.
/// Lines that start with '#' are comments; the first other line is the header.
std::vector<Row> readTable(const std::string& file);

/// Cells of a named column of a data file ("airquality.csv") as numbers; an empty cell is the missing value.
std::vector<double> readDataColumn(const std::string& file, const std::string& column);
/// The same as texts.
std::vector<std::u16string> readDataTexts(const std::string& file, const std::string& column);

/// True when got is expected within max(relative * |expected|, absolute); markers, NaN and infinities only
/// equal themselves.
bool agrees(double got, double expected, double relative, double absolute = 0.0);

/// Calls compute for each row and compares with column "expected" within columns "rel_tol" and "abs_tol".
/// Reports inputs, got, expected and the error in units of 2^-52 for each failure.
void expectTable(const std::string& file, const std::function<double(const Row&)>& compute);

}  // namespace numcore::testing
