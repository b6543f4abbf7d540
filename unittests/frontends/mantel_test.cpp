// The mantel command: reading distances, and the test.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cli/mantel/command.hpp"
#include "cli/mantel/distances.hpp"
#include "csv_support.hpp"
#include "numcore/api.h"

namespace numcore::cli {
namespace {

const char* const kNamed = "name,p,q,r,s\np,0,1,2,4\nq,1,0,3,5\nr,2,3,0,6\ns,4,5,6,0\n";

Distances read(const std::string& text, bool header = true) {
    const TemporaryFile file(text);
    Options options;
    options.csv.header = header;
    Report report;
    return readDistances(file.path(), options, report);
}

std::string failureOf(const std::string& text) {
    try {
        read(text);
    } catch (const DataError& error) {
        return error.what();
    }
    return {};
}

TEST(Distances, AreReadInEveryShape) {
    const Distances named = read(kNamed);
    EXPECT_EQ(named.names, (std::vector<std::string>{"p", "q", "r", "s"}));
    EXPECT_EQ(named.cells, (std::vector<double>{0, 1, 2, 4, 1, 0, 3, 5, 2, 3, 0, 6, 4, 5, 6, 0}));
    EXPECT_EQ(read("p,q,r,s\n0,1,2,4\n1,0,3,5\n2,3,0,6\n4,5,6,0\n").cells, named.cells) << "names on top only";
    EXPECT_EQ(read("0;1;2;4\n1;0;3;5\n2;3;0;6\n4;5;6;0\n", false).cells, named.cells) << "numbers alone";
    EXPECT_EQ(read("name,p,q,r,s\np,0,,,\nq,1,0,,\nr,2,3,0,\ns,4,5,6,0\n").cells, named.cells) << "lower half";
    EXPECT_EQ(read("name,p,q,r,s\np,0,1,2,4\nq,,0,3,5\nr,,,0,6\ns,,,,0\n").cells, named.cells) << "upper half";
    const Distances partly = read("name,p,q,r\np,0,,2\nq,,0,3\nr,2,3,0\n");
    EXPECT_EQ(partly.nMissing, 1U);
    EXPECT_EQ(partly.at(1, 0), NUMCORE_MISSING);
}

TEST(Distances, TellWhatIsWrong) {
    EXPECT_NE(failureOf("name,p,q\np,0,1\nq,2,0\n").find("not symmetric: 'q' to 'p' is 2, back it is 1"),
              std::string::npos);
    EXPECT_NE(failureOf("a,b,c,d\n1,2,3,4\n2,3,4,5\n").find("2 rows and 4 columns"), std::string::npos);
    EXPECT_NE(failureOf("0,1,2,4\n1,0,3,5\n2,3,0,6\n4,5,6,0\n").find("--no-header"), std::string::npos)
        << "the first row of distances is no header";
    EXPECT_NE(failureOf("name,p,q\np,0,x\nq,y,0\n").find("holds texts"), std::string::npos);
    EXPECT_NE(failureOf("name,p,p\np,0,1\np,1,0\n").find("two objects have the name 'p'"), std::string::npos);
}

TEST(Distances, AreMatchedByName) {
    const Distances first = read(kNamed);
    Distances other = read("name,s,p,q,r\ns,0,7,3,8\np,7,0,2,1\nq,3,2,0,4\nr,8,1,4,0\n");
    EXPECT_TRUE(matchObjects(first, other));
    EXPECT_EQ(other.cells, (std::vector<double>{0, 2, 1, 7, 2, 0, 4, 3, 1, 4, 0, 8, 7, 3, 8, 0}));
    EXPECT_FALSE(matchObjects(first, other));
    Distances strange = read("name,a,q,r,s\na,0,1,2,4\nq,1,0,3,5\nr,2,3,0,6\ns,4,5,6,0\n");
    EXPECT_THROW(matchObjects(first, strange), DataError);
    Distances small = read("name,p,q\np,0,1\nq,1,0\n");
    EXPECT_THROW(matchObjects(first, small), DataError);
}

// Expected: R, cor of the lower triangles over all 24 orders.
TEST(Mantel, TestsAllOrdersOfFewObjects) {
    const TemporaryFile first(kNamed);
    const TemporaryFile second("name,p,q,r,s\np,0,2,1,7\nq,2,0,4,3\nr,1,4,0,8\ns,7,3,8,0\n");
    Options options;
    options.mantel.files = {first.path(), second.path()};
    const Report report = testMatrices(options);
    const auto& row = report.tables.at(0).rows.at(0);
    ASSERT_EQ(row.size(), 6U) << "no seed: nothing is drawn";
    EXPECT_EQ(row[1], Cell(std::int64_t{6}));
    EXPECT_EQ(row[2], Cell(107.0));
    EXPECT_NEAR(std::get<double>(row[3]), 0.74802007205927046, 1e-14);
    EXPECT_NEAR(std::get<double>(row[4]), 2.0 / 24.0, 1e-15);
    options.mantel.nPermutations = 10;
    options.mantel.seed = 7;
    const auto drawn = testMatrices(options).tables.at(0).rows.at(0);
    EXPECT_EQ(drawn.at(6), Cell(std::int64_t{7}));
    EXPECT_EQ(drawn, testMatrices(options).tables.at(0).rows.at(0)) << "the seed repeats it";
}

}  // namespace
}  // namespace numcore::cli
