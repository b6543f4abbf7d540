#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <limits>
#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/errors.hpp"
#include "cli/output/sink.hpp"
#include "cli/output/writers.hpp"

namespace numcore::cli {
namespace {

Report sampleReport() {
    Report report;
    report.file = "a<b>.csv";
    report.command = "describe";
    report.layout = {{"decimal mark", "."}};
    report.rows = {4, 4, 0, 1, 1, 0};
    ReportTable table{"t", "Title", {}, {}, 1, {}};
    table.columns = {{"name", "Name", ColumnKind::kText},
                     {"n", "N", ColumnKind::kCount},
                     {"value", "Value", ColumnKind::kNumber}};
    table.rows = {{"x", std::int64_t{4}, 1.0 / 3.0},
                  {"x", std::int64_t{12}, 1234567.125},
                  {"東京", std::int64_t{1}, Cell()},
                  {"a,\"b\"\n|", std::int64_t{0}, std::numeric_limits<double>::infinity()}};
    report.tables.push_back(std::move(table));
    return report;
}

TEST(Numbers, AreReadableOrExact) {
    const TextStyle six;
    const TextStyle three{3, true, 0};
    struct Case {
        double value;
        const char* computed;
        const char* data;
        const char* cut;
    };
    const Case cases[] = {
        {42.12931034482759, "42.1293", "42.1293", "42.1"},
        {0.1, "0.1", "0.1", "0.1"},
        {-0.0, "0", "0", "0"},
        {1000000.2, "1000000.2", "1000000.2", "1000000"},
        {299.852400, "299.852", "299.8524", "300"},
        {999999.9, "999999.9", "999999.9", "1000000"},
        {1e15, "1e+15", "1e+15", "1e+15"},
        {1.5e-7, "1.5e-07", "1.5e-07", "1.5e-07"},
        {0.00001234567, "0.0000123457", "0.00001234567", "0.0000123"},
        {-std::numeric_limits<double>::infinity(), "-inf", "-inf", "-inf"},
        {-std::nan(""), "nan", "nan", "nan"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(readableNumber(c.value, ColumnKind::kNumber, six), c.computed);
        EXPECT_EQ(readableNumber(c.value, ColumnKind::kValue, six), c.data);
        EXPECT_EQ(readableNumber(c.value, ColumnKind::kValue, three), c.cut);
    }
    for (const double value : {1.0 / 3.0, 0.1, 5e-324, 1.7976931348623157e308, 123456789012345680.0}) {
        EXPECT_EQ(std::strtod(exactNumber(value).c_str(), nullptr), value);
    }
}

TEST(TextOutput, AlignsDecimalPointsAndWideCharacters) {
    EXPECT_EQ(writeText(sampleReport(), {}),
              "a<b>.csv\n\n"
              "Title\n"
              "Name       N           Value\n"
              "----------------------------\n"
              "x          4        0.333333\n"
              "          12  1234567.12\n"
              "東京       1        .\n"
              "a,\"b\"\\n|   0      inf\n\n"
              ". no value\n"
              "4 rows read, 4 used, none dropped; 1 row with missing cells (1 cell)\n");
}

TEST(TextOutput, CutsWideTablesIntoPanels) {
    Report report = sampleReport();
    TextStyle style;
    style.width = 20;
    const std::string text = writeText(report, style);
    std::istringstream lines(text);
    std::string line;
    int nHeaders = 0;
    while (std::getline(lines, line)) nHeaders += line.starts_with("Name");
    EXPECT_EQ(nHeaders, 2);
    EXPECT_NE(text.find("Value"), std::string::npos);
}

TEST(MachineOutput, QuotesAndKeepsFullPrecision) {
    EXPECT_EQ(writeDelimited(sampleReport(), ','),
              "name,n,value\nx,4,0.3333333333333333\nx,12,1234567.125\n東京,1,\n\"a,\"\"b\"\"\n|\",0,inf\n");
    const auto json = nlohmann::json::parse(writeJson(sampleReport()));
    const auto& rows = json["tables"][0]["rows"];
    EXPECT_EQ(rows[0]["value"].get<double>(), 1.0 / 3.0);
    EXPECT_TRUE(rows[2]["value"].is_null());
    EXPECT_EQ(rows[3]["value"], "Infinity");
    EXPECT_EQ(rows[3]["name"], "a,\"b\"\n|");
    EXPECT_EQ(json["layout"]["decimalMark"], ".");
    EXPECT_EQ(json["rows"]["withMissing"], 1);
}

TEST(MarkupOutput, EscapesWhatHasAMeaning) {
    const std::string markdown = writeMarkdown(sampleReport(), {});
    EXPECT_NE(markdown.find("| a,\"b\"\\\\n\\| | 0 | inf |"), std::string::npos) << markdown;
    EXPECT_NE(markdown.find("| :--- | ---: | ---: |"), std::string::npos);
    const std::string html = writeHtml(sampleReport(), {});
    EXPECT_NE(html.find("<h1>a&lt;b&gt;.csv</h1>"), std::string::npos);
    EXPECT_EQ(html.find("<b>"), std::string::npos);
}

TEST(Messages, CannotMoveTheCursor) {
    EXPECT_EQ(printable("a\x1b[2J\r\n\t\x7f\xC2\x9B"), "a\\x1b[2J\\r\\n\\t\\x7f\\x9b");
    EXPECT_EQ(displayWidth("東京e\u0301"), 5);
}

TEST(Sink, ReplacesAFileOnlyAsAWhole) {
    namespace fs = std::filesystem;
    const fs::path folder = fs::temp_directory_path() / "numcore_sink_test";
    fs::create_directories(folder);
    const fs::path file = folder / "out.txt";
    const auto content = [&file] {
        std::ifstream in(file, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    };
    writeFile(file.string(), "one\n");
    writeFile(file.string(), "two\n");
    EXPECT_EQ(content(), "two\n");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), fs::directory_iterator()), 1)
        << "no temporary file stays";
    EXPECT_THROW(writeFile((folder / "no" / "such.txt").string(), "x"), DataError);
    fs::remove_all(folder);
}

}  // namespace
}  // namespace numcore::cli
