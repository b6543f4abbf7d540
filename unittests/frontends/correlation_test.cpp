// The cor command: against R, its tables, its map, what it says about what it cannot do.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cli/correlation/compute.hpp"
#include "cli/correlation/map.hpp"
#include "cli/correlation/tables.hpp"
#include "cli/errors.hpp"
#include "cli/output/writers.hpp"
#include "cli/run.hpp"
#include "csv_support.hpp"
#include "numcore/api.h"
#include "picture_checks.hpp"
#include "reference_table.hpp"

namespace numcore::cli {
namespace {

using numcore::testing::agrees;
using numcore::testing::readTable;
using numcore::testing::Row;

constexpr double kMissing = NUMCORE_MISSING;

/// The options of a command line of cor, its output for machines.
Options correlationOptions(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"numcore", "cor"});
    arguments.insert(arguments.end(), {"--format", "json", "--quiet"});
    int exitCode = 0;
    return parseOptions(arguments, exitCode).value();
}

std::string dataFile(const std::string& name) {
    return std::string(NUMCORE_DATA_DIR "/") + name;
}

const ReportTable& tableNamed(const Report& report, const std::string& id) {
    for (const ReportTable& table : report.tables) {
        if (table.id == id) return table;
    }
    throw std::out_of_range(id);
}

/// The number in a column of a row; the missing value for no value.
double valueAt(const ReportTable& table, const std::vector<Cell>& row, const std::string& column) {
    for (std::size_t j = 0; j < table.columns.size(); ++j) {
        if (table.columns[j].id != column) continue;
        if (const auto* marked = std::get_if<Marked>(&row[j])) return marked->value;
        if (const auto* count = std::get_if<std::int64_t>(&row[j])) return static_cast<double>(*count);
        const auto* number = std::get_if<double>(&row[j]);
        return number == nullptr ? kMissing : *number;
    }
    throw std::out_of_range(column);
}

bool anyContains(const std::vector<std::string>& lines, const std::string& words) {
    return std::ranges::any_of(lines,
                               [&](const std::string& line) { return line.find(words) != std::string::npos; });
}

TEST(Cor, AgreesWithR) {
    for (const Row& row : readTable(NUMCORE_FRONTEND_REFERENCE_DIR "/correlations.csv")) {
        std::vector<std::string> arguments{dataFile(row.text("file")),
                                           "-m",
                                           row.text("method"),
                                           "-c",
                                           row.text("x"),
                                           "--with",
                                           row.text("y"),
                                           "--alternative",
                                           row.text("alternative")};
        if (row.has("by") && !row.text("by").empty())
            arguments.insert(arguments.end(), {"--by", row.text("by")});
        const Report report = analyse(correlationOptions(arguments));
        const ReportTable& pairs = tableNamed(report, "pairs");
        const auto found = std::ranges::find_if(pairs.rows, [&](const std::vector<Cell>& cells) {
            return row.text("group").empty() || cells[2] == Cell(row.text("group"));
        });
        ASSERT_NE(found, pairs.rows.end()) << "line " << row.line();
        for (const char* column : {"coefficient", "p", "lower", "upper", "n"}) {
            if (row.text(column).empty()) continue;
            const double got = valueAt(pairs, *found, column);
            // The library's p-values are differences from 1.
            EXPECT_TRUE(agrees(got, row[column], 1e-10, 1e-15))
                << "line " << row.line() << " " << column << ": " << got << ", expected " << row[column];
        }
    }
}

// Expected: R, cor of the residuals of lm on the columns held constant; p and limits with as many degrees of
// freedom less.
TEST(Cor, HoldsColumnsConstant) {
    const auto check = [](const std::string& heldConstant, double r, double p, double lower, double upper,
                          double n) {
        const Report report = analyse(
            correlationOptions({dataFile("airquality.csv"), "-c", "Ozone,Wind", "--partial", heldConstant}));
        const ReportTable& pairs = tableNamed(report, "pairs");
        ASSERT_EQ(pairs.rows.size(), 1U);
        const auto value = [&](const char* column) { return valueAt(pairs, pairs.rows[0], column); };
        EXPECT_TRUE(agrees(value("coefficient"), r, 1e-12)) << value("coefficient");
        EXPECT_TRUE(agrees(value("p"), p, 1e-9)) << value("p");
        EXPECT_TRUE(agrees(value("lower"), lower, 1e-11)) << value("lower");
        EXPECT_TRUE(agrees(value("upper"), upper, 1e-11)) << value("upper");
        EXPECT_EQ(value("n"), n);
    };
    check("Temp", -0.39763997435551274, 1.0800461096301552e-05, -0.54133475791272878, -0.23137649616901435,
          116);
    check("Temp,Solar.R", -0.44179523268185034, 1.5159344078320095e-06, -0.58156729134822749,
          -0.2766868654965754, 111);
    const Report greater =
        analyse(correlationOptions({dataFile("airquality.csv"), "-c", "Ozone", "--with", "Wind", "--partial",
                                    "Temp", "--alternative", "greater"}));
    const ReportTable& pairs = tableNamed(greater, "pairs");
    EXPECT_TRUE(agrees(valueAt(pairs, pairs.rows[0], "p"), 0.99999459976945193, 1e-12));
}

TEST(Cor, CountsRowsAsTheyAreUsed) {
    const std::vector<std::string> columns{dataFile("airquality.csv"), "-c", "Ozone-Temp"};
    const Report pairwise = analyse(correlationOptions(columns));
    EXPECT_EQ(pairwise.rows.used, 153U);
    EXPECT_EQ(pairwise.rows.missingCells, 44U);
    std::vector<std::string> arguments = columns;
    arguments.insert(arguments.end(), {"--missing", "listwise"});
    const Report listwise = analyse(correlationOptions(arguments));
    EXPECT_EQ(listwise.rows.used, 111U);
    EXPECT_EQ(listwise.droppedWhy, "42 with missing cells");
    const ReportTable& details = tableNamed(listwise, "analysis");
    EXPECT_EQ(valueAt(details, details.rows[0], "rowsExcluded"), 42.0);
    for (const auto& row : tableNamed(listwise, "pairs").rows)
        EXPECT_EQ(valueAt(tableNamed(listwise, "pairs"), row, "n"), 111.0);
    arguments.insert(arguments.end(), {"--partial", "Month"});
    EXPECT_EQ(analyse(correlationOptions(arguments)).rows.used, 111U);
}

// Expected: R, cov and var of the rows where both are present.
TEST(Cor, GivesCovariances) {
    const Report report =
        analyse(correlationOptions({dataFile("airquality.csv"), "-c", "Ozone,Wind", "--covariance"}));
    const ReportTable& pairs = tableNamed(report, "pairs");
    ASSERT_EQ(pairs.rows.size(), 3U) << "variances too";
    EXPECT_TRUE(agrees(valueAt(pairs, pairs.rows[0], "covariance"), 1088.2005247376312, 1e-13));
    EXPECT_TRUE(agrees(valueAt(pairs, pairs.rows[1], "covariance"), -70.938530734632693, 1e-13));
}

TEST(Cor, NamesWhatItLeavesOut) {
    const TemporaryFile file("a,b,c,w,t\n1,2,5,1,x\n2,1,5,1,y\n3,4,5,1,x\n");
    const Report report = analyse(correlationOptions({file.path(), "-c", "a,b,c,t", "-w", "w"}));
    EXPECT_TRUE(anyContains(report.notes, "'t' is left out: it holds texts"));
    EXPECT_TRUE(anyContains(report.notes, "'c' is constant: it has no correlation"));
    EXPECT_TRUE(anyContains(report.notes, "2 coefficients cannot be computed"));
    EXPECT_TRUE(anyContains(report.notes, "1 without limits"));
    EXPECT_TRUE(anyContains(report.notes, "p-values and limits count rows"));
    const TemporaryFile infinite("a,b,w\n1,2,1\n2,1,inf\n3,3,1\n");
    EXPECT_THROW(analyse(correlationOptions({infinite.path(), "-w", "w"})), DataError);
    EXPECT_TRUE(anyContains(analyse(correlationOptions({infinite.path()})).notes, "2 coefficients cannot"));
    const auto fails = [&](std::vector<std::string> arguments, const char* words) {
        arguments.insert(arguments.begin(), file.path());
        try {
            analyse(correlationOptions(arguments));
            ADD_FAILURE() << words;
        } catch (const std::runtime_error& error) {
            EXPECT_NE(std::string(error.what()).find(words), std::string::npos) << error.what();
        }
    };
    fails({"-c", "t"}, "no numeric column");
    fails({"-c", "a,t"}, "one numeric column only, 'a'");
    fails({"-c", "a,b", "--with", "t"}, "column 't' of --with holds texts");
    fails({"-c", "a,b", "--with", "z"}, "no column 'z'");
    fails({"-c", "a,b", "--with", "b"}, "column 'b' stands across (--with) and is analysed (--columns) too");
    fails({"-c", "a,b", "--partial", "w", "-w", "w"}, "column 'w' holds the weights and is held constant");
}

/// Two variables against two: coefficients that are strong, weak, missing; a p-value that underflows.
Correlations madeUp(bool rectangular) {
    Correlations found;
    found.rows = {"a", "b", "c"};
    found.columns = found.rows;
    found.rectangular = rectangular;
    const CorrelatedPair self{1.0, 0.0, 1.0, 1.0, 1.0, 20};
    const CorrelatedPair strong{-0.75, 0.0, 0.5625, -0.9, -0.5, 20};
    const CorrelatedPair weak{0.0001, 0.03, 1e-8, -0.4, 0.4, 19};
    const CorrelatedPair none{kMissing, kMissing, kMissing, kMissing, kMissing, 1};
    found.pairs = {self, strong, weak, strong, self, none, weak, none, self};
    return found;
}

TEST(CorTables, ShowTrianglesMarksAndRows) {
    const CorrelationRequest request;
    Report report;
    const std::vector<GroupedCorrelations> groups{{"", madeUp(false)}};
    addCoefficients(groups, request, "Pearson correlations", "", false, report);
    addMatrices(groups, request, "", false, report);
    report.notes.push_back(markLegend(request));
    EXPECT_EQ(writeText(report, {}),
              "\n\nPearson correlations\n"
              "           a      b      c\n"
              "--------------------------\n"
              "a   1.000\n"
              "b  -0.750***  1.000\n"
              "c   0.000*    .      1.000\n"
              "\np-values (two-sided)\n"
              "         a  b\n"
              "-------------\n"
              "b  <0.0001\n"
              "c   0.0300  .\n"
              "\nRows of each pair (n)\n"
              "    a   b   c\n"
              "-------------\n"
              "a  20\n"
              "b  20  20\n"
              "c  19   1  20\n"
              "\n. no value\n* p < 0.05, ** p < 0.01, *** p < 0.001 (two-sided)\n");
}

TEST(CorTables, ListEveryPairOfEveryGroup) {
    Report report;
    CorrelationRequest request;
    const std::vector<GroupedCorrelations> groups{{"f", madeUp(false)}, {"m", madeUp(false)}};
    addPairs(groups, request, "Pearson correlations", "sex", true, report);
    addDetails(groups, request, {}, report);
    EXPECT_EQ(writeDelimited(report, ',').substr(0, 140),
              "variable,with,group,coefficient,p,significant,squared,lower,upper,n\n"
              "a,b,f,-0.75,0,1,0.5625,-0.9,-0.5,20\n"
              "a,b,m,-0.75,0,1,0.5625,-0.9,-0.5,20\n")
        << "details are for JSON only";
    const auto json = nlohmann::json::parse(writeJson(report));
    EXPECT_EQ(json["tables"][0]["rows"].size(), 6U);
    EXPECT_EQ(json["tables"][0]["rows"][2]["coefficient"], 0.0001);
    EXPECT_TRUE(json["tables"][0]["rows"][4]["p"].is_null());
    EXPECT_EQ(json["tables"][1]["rows"][1]["group"], "m");
    EXPECT_EQ(json["tables"][1]["rows"][1]["notComputed"], 1);
    Report rectangle;
    addPairs({{"", madeUp(true)}}, request, "", "", true, rectangle);
    EXPECT_EQ(rectangle.tables[0].rows.size(), 9U);
    Report matrix;
    addCoefficients({{"", madeUp(false)}}, request, "", "", true, matrix);
    EXPECT_EQ(writeDelimited(matrix, ','), "variable,a,b,c\na,1,-0.75,0.0001\nb,-0.75,1,\nc,0.0001,,1\n");
}

TEST(CorTables, MarkTheLevelsBelowAlpha) {
    EXPECT_EQ(markLevels(0.05), (std::vector<double>{0.05, 0.01, 0.001}));
    EXPECT_EQ(markLevels(0.1), (std::vector<double>{0.1, 0.05, 0.01}));
    EXPECT_EQ(markLevels(0.0001), (std::vector<double>{0.0001}));
}

TEST(CorPValues, FollowTheSignOfTheCoefficient) {
    constexpr auto kGreater = Alternative::kGreater;
    EXPECT_EQ(studentPValue(0.3, 0.1, 30, Alternative::kTwoSided), 0.1);
    EXPECT_EQ(studentPValue(0.3, 0.1, 30, kGreater), 0.05);
    EXPECT_EQ(studentPValue(-0.3, 0.1, 30, kGreater), 0.95);
    EXPECT_EQ(studentPValue(-0.3, 0.1, 30, Alternative::kLess), 0.05);
    EXPECT_EQ(studentPValue(1.0, 1.0, 30, kGreater), 0.0) << "also where rounding brought it above 1";
    EXPECT_EQ(studentPValue(-1.0, 0.0, 30, kGreater), 1.0);
    EXPECT_EQ(studentPValue(1.0, 0.0, 2, Alternative::kTwoSided), kMissing) << "two rows always lie on a line";
    EXPECT_EQ(studentPValue(kMissing, 0.0, 30, kGreater), kMissing);
}

TEST(CorMap, ReadsInGrey) {
    constexpr const char* kHatch = "fill=\"url(#hatch)\"";
    constexpr std::size_t kInLegend = 2;
    const CorrelationRequest request;
    const std::string triangle = drawCorrelationMap({{"", madeUp(false)}}, request, "Title", "a<b.csv");
    EXPECT_NE(triangle.find("<title>Title: a&lt;b.csv</title>"), std::string::npos);
    EXPECT_EQ(countOf(triangle, kHatch), 1 + kInLegend) << "negative ones";
    EXPECT_EQ(countOf(triangle, ">-0.75</text>"), 1U);
    EXPECT_EQ(countOf(triangle, "class=\"cell-strong\" x"), 2U + 1U) << "significant ones and the legend";
    EXPECT_NE(triangle.find("class=\"negative\" fill-opacity=\"0.64\""), std::string::npos);
    EXPECT_EQ(countOf(triangle, ">–</text>"), 1U) << "no value";
    const std::string two = drawCorrelationMap({{"f", madeUp(true)}, {"m", madeUp(true)}}, request, "", "");
    EXPECT_EQ(countOf(two, kHatch), 4 + kInLegend);
    EXPECT_EQ(countOf(two, "<pattern "), 1U);
    Correlations longNames = madeUp(false);
    longNames.rows[1] = std::string(100, 'x');
    EXPECT_NE(drawCorrelationMap({{"", longNames}}, request, "", "").find("xxx…</text>"), std::string::npos);
}

}  // namespace
}  // namespace numcore::cli
