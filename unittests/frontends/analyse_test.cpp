// The whole way from a file through the library to a report, held against R.

#include <gtest/gtest.h>

#include <map>
#include <tuple>

#include "cli/errors.hpp"
#include "cli/quantile.hpp"
#include "cli/run.hpp"
#include "numcore/api.h"
#include "reference_table.hpp"

namespace numcore::cli {
namespace {

using numcore::testing::agrees;
using numcore::testing::readTable;
using numcore::testing::Row;

constexpr double kTolerance = 1e-14;

double numberOf(const Cell& cell) {
    if (const auto* count = std::get_if<std::int64_t>(&cell)) return static_cast<double>(*count);
    const auto* number = std::get_if<double>(&cell);
    return number == nullptr ? NUMCORE_MISSING : *number;
}

Options optionsFor(const Row& row) {
    Options options;
    options.file = std::string(NUMCORE_DATA_DIR "/") + row.text("file");
    options.selection.by = row.text("by");
    options.selection.weights = row.text("weights");
    return options;
}

/// The row of a table that begins with these texts; null when there is none.
const std::vector<Cell>* findRow(const Report& report, const std::string& table,
                                 const std::vector<std::string>& keys) {
    for (const ReportTable& candidate : report.tables) {
        if (candidate.id != table) continue;
        for (const auto& row : candidate.rows) {
            bool same = true;
            for (std::size_t j = 0; j < keys.size(); ++j) same = same && row[j] == Cell(keys[j]);
            if (same) return &row;
        }
    }
    return nullptr;
}

/// Reports are made once per file, groups and weights.
class Analyse : public ::testing::Test {
  protected:
    const Report& reportFor(const Row& row) {
        const auto key = std::tuple(row.text("file"), row.text("by"), row.text("weights"));
        const auto found = reports_.find(key);
        return found != reports_.end() ? found->second : reports_[key] = analyse(optionsFor(row));
    }

  private:
    std::map<std::tuple<std::string, std::string, std::string>, Report> reports_;
};

TEST_F(Analyse, DescribesColumnsAsR) {
    for (const Row& row : readTable(NUMCORE_FRONTEND_REFERENCE_DIR "/describe.csv")) {
        std::vector<std::string> keys{row.text("column")};
        if (!row.text("by").empty()) keys.push_back(row.text("group"));
        const auto* cells = findRow(reportFor(row), "quantitative", keys);
        ASSERT_NE(cells, nullptr) << "line " << row.line();
        std::size_t j = keys.size();
        for (const char* name : {"n", "missing", "present", "minimum", "maximum", "mean", "sd"}) {
            EXPECT_TRUE(agrees(numberOf((*cells)[j]), row[name], kTolerance))
                << "line " << row.line() << " " << name << ": " << numberOf((*cells)[j]) << ", expected "
                << row[name];
            ++j;
        }
    }
}

TEST_F(Analyse, CountsCategoriesAsR) {
    for (const Row& row : readTable(NUMCORE_FRONTEND_REFERENCE_DIR "/categories.csv")) {
        const auto* cells = findRow(reportFor(row), "qualitative", {row.text("column"), row.text("category")});
        ASSERT_NE(cells, nullptr) << "line " << row.line();
        EXPECT_EQ(numberOf((*cells)[2]), row["count"]) << "line " << row.line();
        EXPECT_EQ(numberOf((*cells)[3]), row["frequency"]) << "line " << row.line();
        EXPECT_TRUE(agrees(numberOf((*cells)[4]), row["percentage"], kTolerance)) << "line " << row.line();
    }
}

TEST_F(Analyse, TakesQuantilesAsR) {
    for (const Row& row : readTable(NUMCORE_FRONTEND_REFERENCE_DIR "/quantiles.csv")) {
        Options options = optionsFor(row);
        options.command = Command::kQuantile;
        options.quantile.orders = {row["p"]};
        options.quantile.methods = parseMethods(row.text("method"));
        options.selection.columns = {row.text("column")};
        std::vector<std::string> keys{row.text("column")};
        if (!row.text("by").empty()) keys.push_back(row.text("group"));
        const Report report = analyse(options);
        const auto* cells = findRow(report, "quantiles", keys);
        ASSERT_NE(cells, nullptr) << "line " << row.line();
        EXPECT_TRUE(agrees(numberOf(cells->back()), row["expected"], kTolerance))
            << "line " << row.line() << ": " << numberOf(cells->back());
    }
}

TEST_F(Analyse, CountsRows) {
    Options options;
    options.file = NUMCORE_DATA_DIR "/airquality.csv";
    const Report all = analyse(options);
    EXPECT_EQ(all.rows.read, 153U);
    EXPECT_EQ(all.rows.withMissing, 42U);
    EXPECT_EQ(all.rows.missingCells, 44U);
    options.selection.by = "Ozone";
    options.selection.columns = {"Wind"};
    const Report grouped = analyse(options);
    EXPECT_EQ(grouped.rows.dropped, 37U);
    EXPECT_EQ(grouped.droppedWhy, "37 without a group");
    EXPECT_EQ(std::get<std::string>(grouped.tables[0].rows[0][1]), "1");
    EXPECT_EQ(std::get<std::string>(grouped.tables[0].rows[1][1]), "4") << "groups of numbers ascend by value";
}

TEST_F(Analyse, LeavesOutTextsWithTooManyCategories) {
    Options options;
    options.file = NUMCORE_DATA_DIR "/mtcars.csv";
    options.output.maxCategories = 31;
    EXPECT_EQ(analyse(options).notes.size(), 1U);
    EXPECT_EQ(analyse(options).tables.size(), 1U);
    options.output.maxCategories = 32;
    EXPECT_EQ(analyse(options).tables.at(1).rows.size(), 32U);
}

TEST_F(Analyse, RefusesWeightsThatAreNone) {
    Options options;
    options.file = NUMCORE_DATA_DIR "/quakes.csv";
    options.selection.weights = "lat";
    try {
        analyse(options);
        FAIL();
    } catch (const DataError& error) {
        EXPECT_NE(std::string(error.what()).find("quakes.csv:2: column 'lat': a weight of -20.42"),
                  std::string::npos)
            << error.what();
    }
    options.file = NUMCORE_DATA_DIR "/iris.csv";
    options.selection.weights = "Species";
    EXPECT_THROW(analyse(options), DataError);
}

}  // namespace
}  // namespace numcore::cli
