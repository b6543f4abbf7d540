// From records to typed columns, and what is said about files that cannot be read.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cmath>

#include "csv_support.hpp"
#include "numcore/api.h"

namespace numcore::cli {
namespace {

using Numbers = std::vector<double>;
using Texts = std::vector<std::string>;
using namespace std::string_literals;

constexpr double kMissing = NUMCORE_MISSING;

TEST(CsvLoad, GivesNumbersAndTextsWithTheirMissingCells) {
    const auto read = readText("x,name,\"y\"\n1,a,\"2.5\"\nNA,,\" 3 \"\n-.5,\"b \"\"c\"\"\",\n\n   \n4,NA,?\n");
    EXPECT_EQ(read.file.names(), (Texts{"x", "name", "y"}));
    EXPECT_EQ(read.data.nRows, 4U);
    EXPECT_EQ(read.data.nBlankLines, 2U);
    EXPECT_EQ(numbers(read.data.columns[0]), (Numbers{1, kMissing, -0.5, 4}));
    EXPECT_EQ(texts(read.data.columns[1]), (Texts{"a", "", "b \"c\"", ""}));
    EXPECT_EQ(numbers(read.data.columns[2]), (Numbers{2.5, 3, kMissing, kMissing}));
    EXPECT_EQ(read.data.columns[1].nMissing, 2U);
    EXPECT_TRUE(read.warnings.empty());
}

TEST(CsvLoad, ReadsTheSameTableInEveryDress) {
    const std::string plain = "a,b\n1.5,x\n-2,y\n";
    CsvOptions skip;
    skip.skip = 2;
    const std::pair<std::string, CsvOptions> dresses[] = {
        {plain, {}},
        {"a,b\r\n1.5,x\r\n-2,y", {}},
        {"a,b\r1.5,x\r-2,y\r", {}},
        {"\xEF\xBB\xBF" + plain, {}},
        {"a;b\n1,5;x\n-2,0;y\n", {}},
        {"a\tb\n1.5\tx\n-2\ty\n", {}},
        {"\"a\",\"b\"\n\"1.5\",\"x\"\n\"-2\",\"y\"\n", {}},
        {"made by hand\n,,,\n" + plain, skip},
        {"\xFF\xFE"s + "a\0,\0b\0\n\0001\0.\0005\0,\0x\0\n\0-\0002\0,\0y\0\n\0"s, {}},
    };
    for (const auto& [text, options] : dresses) {
        const auto read = readText(text, options);
        EXPECT_EQ(read.file.names(), (Texts{"a", "b"})) << text;
        EXPECT_EQ(numbers(read.data.columns[0]), (Numbers{1.5, -2})) << text;
        EXPECT_EQ(texts(read.data.columns[1]), (Texts{"x", "y"})) << text;
    }
}

TEST(CsvLoad, NamesColumns) {
    const auto read = readText("a,a,,a_2\n1,2,3,4\n");
    EXPECT_EQ(read.file.names(), (Texts{"a", "a_3", "column3", "a_2"}));
    EXPECT_EQ(read.warnings.size(), 1U);
    CsvOptions noHeader;
    noHeader.header = false;
    EXPECT_EQ(readText("1,x\n2,y\n", noHeader).file.names(), (Texts{"column1", "column2"}));
    EXPECT_EQ(readText("1,2\n3,4\n").warnings.size(), 1U) << "a header of numbers";
    EXPECT_EQ(readText("x,y\nr1,1,2\nr2,3,4\n").file.names(), (Texts{"row", "x", "y"}));
}

// The kind follows from the whole column, also where its beginning misleads.
TEST(CsvLoad, DecidesAboutTheKindOfAColumn) {
    std::string lateText = "v\n";
    std::string lateNumbers = "v\n";
    std::string few = "v\n";
    for (int i = 0; i < 1500; ++i) {
        lateText += "1\n";
        lateNumbers += i == 7 ? "oops\n" : "NA\n";
        few += i == 1400 ? "oops\n" : "1\n";
    }
    for (int i = 0; i < 1500; ++i) {
        lateText += "word\n";
        lateNumbers += "3\n";
    }
    EXPECT_EQ(texts(readText(lateText).data.columns[0]).back(), "word");
    EXPECT_EQ(
        failure(few),
        "t.csv:1402: column 1 'v': 'oops' is not a number, 1499 of the other 1499 cells are; correct it, mark "
        "it as missing with --missing 'oops', or take the column as text with --text 'v'");
    EXPECT_EQ(failure(lateNumbers).substr(0, 9), "t.csv:9: ") << "one text before 1500 numbers";
    CsvOptions missing;
    missing.missingWords = {"oops"};
    EXPECT_EQ(readText(few, missing).data.columns[0].nMissing, 1U);
    EXPECT_EQ(texts(readText(few, {}, Want::kTexts).data.columns[0]).size(), 1500U);
    EXPECT_EQ(readText("v\nNA\nNA\n").data.columns[0].kind, Target::kNumbers) << "nothing but missing cells";
}

TEST(CsvLoad, SaysWhereAndWhatIsWrong) {
    const std::pair<std::string, const char*> cases[] = {
        {"", "t.csv: the file is empty"},
        {"\n \n", "t.csv: the file holds blank lines only"},
        {"a,b\n", "t.csv: the file has a header but no row of data"},
        {"a,b\n1,2\n\n3\n", "t.csv:4: 1 field, the header has 2; complete the row"},
        {"a,b\n1,\"x\ny\"\n1,2,3\n", "t.csv:4: 3 fields, the header has 2; put fields that hold a ','"},
        {"a,b\n1,\"x\n2,y\n", "t.csv:2: column 2 'b': the quote \" that opens here is never closed"},
        {"a,\"b\n1,x\n2,y\n", "t.csv:1: column 2: the quote"},
        {"a,b\n1,\"x\"y\n", "t.csv:2: column 2 'b': text behind the closing quote"},
        {"a,b\n1,x\n2,x\0y\n"s, "t.csv:3: column 2 'b': a zero byte"},
    };
    for (const auto& [text, message] : cases) EXPECT_EQ(failure(text).find(message), 0U) << failure(text);
}

TEST(CsvLoad, FillsShortRowsOnlyWhenAsked) {
    CsvOptions fill;
    fill.fillRagged = true;
    const auto read = readText("a,b,c\n1,x,2\n3\n4,y,5,,\n", fill);
    EXPECT_EQ(numbers(read.data.columns[2]), (Numbers{2, kMissing, 5}));
    EXPECT_EQ(texts(read.data.columns[1]), (Texts{"x", "", "y"}));
    EXPECT_EQ(read.warnings.size(), 1U);
    EXPECT_EQ(failure("a,b\n1,2\n3,4,5\n", fill).substr(0, 8), "t.csv:3:") << "no cell is dropped silently";
}

TEST(CsvLoad, ReportsNumbersBeyondTheRange) {
    const auto read = readText("x\n1\n1e999\n-1e400\n1e-999\n");
    EXPECT_EQ(numbers(read.data.columns[0]), (Numbers{1, HUGE_VAL, -HUGE_VAL, 0}));
    ASSERT_EQ(read.warnings.size(), 1U);
    EXPECT_EQ(read.warnings[0].substr(0, 7), "line 3:");
}

// Several megabytes are read in pieces by several threads: every cell must come to its place.
TEST(CsvLoad, PutsEveryRowOfALargeFileInItsPlace) {
    constexpr int kRows = 200'000;
    for (const bool quotes : {false, true}) {
        std::string text = "i,name,half\n";
        std::size_t nBlank = 0;
        for (int i = 0; i < kRows; ++i) {
            text += fmt::format(fmt::runtime(quotes ? "{0},\"n\n\"\"{0}\",{0}.5\n" : "{0},n{0},{0}.5\n"), i);
            if (i % 1000 == 999) {
                text += "\n";
                ++nBlank;
            }
        }
        const auto read = readText(text);
        ASSERT_EQ(read.data.nRows, static_cast<std::size_t>(kRows));
        EXPECT_EQ(read.data.nBlankLines, nBlank);
        const auto index = read.data.columns[0].numbers.asDoubles();
        const auto half = read.data.columns[2].numbers.asDoubles();
        ASSERT_EQ(index.size(), static_cast<std::size_t>(kRows));
        int nWrong = 0;
        for (int i = 0; i < kRows; ++i) {
            const auto at = static_cast<std::size_t>(i);
            const std::string name = (quotes ? "n\n\"" : "n") + std::to_string(i);
            nWrong += index[at] != i || half[at] != i + 0.5 || read.data.columns[1].texts[at] != name;
        }
        EXPECT_EQ(nWrong, 0);
        // Each thousand rows have a blank line, each row with quotes two lines.
        EXPECT_EQ(read.file.lineOfRow(150'000), (quotes ? 300'000U : 150'000U) + 150U + 2U);
        text += "1,2\n";
        EXPECT_NE(failure(text).find(":" + std::to_string((quotes ? 2 : 1) * kRows + 202) + ": 2 fields"),
                  std::string::npos);
    }
}

}  // namespace
}  // namespace numcore::cli
