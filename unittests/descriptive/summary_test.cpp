#include <gtest/gtest.h>

#include <cmath>

#include "numcore/descriptive.hpp"
#include "reference_table.hpp"

namespace {

using numcore::cST_DataSet;
using numcore::cST_MVect;
using numcore::cST_QualiInfo;
using numcore::matrix;
using numcore::u16string;
using numcore::testing::agrees;
using numcore::testing::Row;

void putColumn(cST_MVect<double>& table, const std::vector<double>& values) {
    table = cST_MVect<double>(static_cast<std::int32_t>(values.size()), 1, 0.0);
    std::copy(values.begin(), values.end(), table.data[0]);
}

void putTexts(cST_MVect<u16string>& table, const std::vector<std::u16string>& texts) {
    table = cST_MVect<u16string>(static_cast<std::int32_t>(texts.size()), 1, u16string());
    for (std::size_t i = 0; i < texts.size(); ++i) table.data[0][i] = u16string(texts[i]);
}

void putWeights(cST_DataSet& data, const std::vector<double>& values) {
    *data.weights =
        matrix<double>(static_cast<std::int32_t>(values.size()), 1, const_cast<double*>(values.data()), false);
    data.weightsPresent = NUMCORE_TRUE;
}

std::vector<double> only(const std::vector<double>& values, const std::vector<std::u16string>& texts,
                         const std::string& wanted) {
    std::vector<double> kept;
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (texts[i] == std::u16string(wanted.begin(), wanted.end())) kept.push_back(values[i]);
    }
    return kept;
}

TEST(Summary, MatchesReference) {
    for (const Row& row : numcore::testing::readTable("descriptive/describe.csv")) {
        const std::string file = row.text("dataset") + ".csv";
        auto values = numcore::testing::readDataColumn(file, row.text("column"));
        if (!row.text("where").empty()) {
            values = only(values, numcore::testing::readDataTexts(file, row.text("where")), row.text("is"));
        }
        cST_DataSet data;
        putColumn(*data.numeric1, values);
        if (!row.text("weights").empty()) {
            putWeights(data, numcore::testing::readDataColumn(file, row.text("weights")));
        }
        matrix<u16string> labels;
        matrix<double> table(1, 7, 0.0);
        numcore::ComputeQuantiStats_ST(data, labels, NUMCORE_FALSE, NUMCORE_FALSE, table);
        const std::vector<std::string> names = {"n",       "missing", "present",  "minimum",
                                                "maximum", "mean",    "deviation"};
        for (std::size_t c = 0; c < names.size(); ++c) {
            if (row.text(names[c]).empty()) continue;
            const double relative = c < 5 ? 0.0 : row[c == 6 ? "sd_tol" : "rel_tol"];
            const double got = table.at(0, static_cast<std::int32_t>(c));
            EXPECT_TRUE(agrees(got, row[names[c]], relative, c < 5 ? 0.0 : row["abs_tol"]))
                << "line " << row.line() << " " << names[c] << ": got " << got << ", expected "
                << row[names[c]];
        }
    }
}

TEST(Summary, ColumnsOfTwoTablesWithTheirWeights) {
    cST_DataSet data;
    *data.numeric1 = cST_MVect<double>(3, 3, 0.0);
    *data.numeric2 = cST_MVect<double>(3, 2, 0.0);
    for (int c = 0; c < 3; ++c) {
        for (int i = 0; i < 3; ++i) data.numeric1->at(i, c) = i + 1.0;
    }
    data.numeric2->at(0, 0) = 1.0;  // column 1 weighs row 1 only, column 2 row 3 only
    data.numeric2->at(2, 1) = 1.0;
    data.numeric2->labels[1] = u16string(u"w2");
    matrix<u16string> labels(5, 1, u16string());
    matrix<double> table(5, 7, 0.0);
    numcore::ComputeQuantiStats_ST(data, labels, NUMCORE_TRUE, NUMCORE_TRUE, table);
    EXPECT_EQ(table(1, 6), 1.0);
    EXPECT_EQ(table(2, 6), 3.0);
    EXPECT_EQ(table(3, 6), 1.0) << "weight columns are used in turn";
    EXPECT_EQ(table(3, 7), 0.0) << "one value has no spread";
    EXPECT_EQ(table(3, 5), 3.0) << "minimum and maximum are those of all present cells";
    EXPECT_DOUBLE_EQ(table(5, 6), 1.0 / 3.0) << "table 2 counts each row once";
    EXPECT_EQ(labels(5), u"w2");

    matrix<double> narrow(5, 4, 0.0);
    numcore::ComputeQuantiStats_ST(data, labels, 1, 1, narrow);
    EXPECT_EQ(narrow(4, 1), 0.0) << "a flag of 1 is false";
    EXPECT_EQ(narrow(1, 4), 1.0) << "columns that do not fit are dropped";
}

TEST(Summary, EmptyColumnsHaveMissingStatistics) {
    cST_DataSet data;
    putColumn(*data.numeric1, {NUMCORE_MISSING, NUMCORE_MISSING});
    matrix<u16string> labels;
    matrix<double> table(1, 7, 0.0);
    numcore::ComputeQuantiStats_ST(data, labels, 0, 0, table);
    EXPECT_EQ(table(1, 1), 2.0);
    EXPECT_EQ(table(1, 3), 0.0);
    for (int c = 4; c <= 7; ++c) EXPECT_EQ(table(1, c), NUMCORE_MISSING);
}

TEST(QualitativeSummary, MatchesReference) {
    for (const Row& row : numcore::testing::readTable("descriptive/qualitative.csv")) {
        const std::string file = row.text("dataset") + ".csv";
        const auto texts = numcore::testing::readDataTexts(file, row.text("column"));
        cST_DataSet data;
        data.nRows = static_cast<std::int32_t>(texts.size());
        putTexts(*data.strings1, texts);
        data.strings1Present = NUMCORE_TRUE;
        if (!row.text("weights").empty()) {
            putWeights(data, numcore::testing::readDataColumn(file, row.text("weights")));
        } else if (!row.text("weight_value").empty()) {
            putWeights(data, std::vector<double>(texts.size(), row["weight_value"]));
        }
        cST_QualiInfo info;
        numcore::cST_TableFormats formats;
        cST_DataSet out;
        numcore::GetQualiDataInfo_ST(data, info);
        numcore::ComputeQualiStats_ST(info, formats, out);
        EXPECT_EQ(info.totalWeight, row["total"]);
        EXPECT_EQ(out.nRows, data.nRows) << "the row count is that of the data";
        const std::string wanted = row.text("label");
        bool found = false;
        for (std::int32_t i = 0; i < info.nCategories(1); ++i) {
            if (out.strings1->column(1)[i] != std::u16string(wanted.begin(), wanted.end())) continue;
            found = true;
            EXPECT_EQ(out.numeric1->at(i, 0), row["count"]);
            EXPECT_TRUE(agrees(out.numeric1->at(i, 1), row["frequency"], 1e-14));
            EXPECT_TRUE(agrees(out.numeric1->at(i, 2), row["percentage"], 1e-14)) << wanted;
        }
        EXPECT_TRUE(found) << wanted;
    }
}

/// Two variables of three and one categories.
cST_QualiInfo twoVariables() {
    cST_QualiInfo info;
    info.nVariables = 2;
    info.nRows = 9;
    info.totalWeight = 8.0;
    info.nCategories = matrix<std::int32_t>(2, 1, 3);
    info.nCategories(2) = 1;
    info.names = matrix<u16string>(2, 1, u16string(u"size"));
    info.labels = cST_MVect<u16string>(3, 2, u16string(u"label"));
    info.counts = cST_MVect<double>(3, 2, 2.0);
    info.frequencies = cST_MVect<double>(3, 2, 2.0);
    return info;
}

TEST(QualitativeSummary, BlocksFollowOneAnother) {
    cST_QualiInfo info = twoVariables();
    numcore::cST_TableFormats formats;
    cST_DataSet out;
    numcore::ComputeQualiStats_ST(info, formats, out);
    EXPECT_EQ(formats.nBlocks, 2);
    EXPECT_EQ(formats.rowTable.length, 2);
    EXPECT_EQ(formats.rowTable.cells(1), 0);
    EXPECT_EQ(formats.rowTable.cells(2), 3);
    EXPECT_EQ(out.strings1->column(0)(1), u"size");
    EXPECT_TRUE(out.strings1->column(0)(2).empty()) << "the name stands on the first row of its block";
    EXPECT_EQ(out.numeric1->column(2)(4), 25.0);
    EXPECT_EQ(out.nRows, 9);

    cST_DataSet perVariable;
    info.frequencies.at(1, 0) = 4.0;
    numcore::ComputeQualiStats2_ST(info, perVariable);
    EXPECT_EQ(perVariable.nRows, 2);
    EXPECT_EQ(perVariable.numeric1->at(0, 0), 3.0);
    EXPECT_EQ(perVariable.numeric1->at(0, 3), 4.0);
    EXPECT_EQ(perVariable.numeric1->at(0, 4), 50.0);
    EXPECT_DOUBLE_EQ(perVariable.numeric1->at(0, 5), 1.5);  // shares 1/4, 1/2, 1/4
    EXPECT_EQ(perVariable.numeric1->at(1, 5), 0.0);
}

TEST(QualitativeSummary, AbsurdCountsAreBounded) {
    cST_QualiInfo info = twoVariables();
    info.nVariables = INT32_MAX;
    info.nCategories(1) = INT32_MAX;
    info.nCategories(2) = -5;
    numcore::cST_TableFormats formats;
    cST_DataSet out;
    numcore::ComputeQualiStats_ST(info, formats, out);
    EXPECT_EQ(out.numeric1->column(0).size(), 3);
    EXPECT_EQ(formats.nBlocks, 2);
}

TEST(SummaryByGroup, OrdersRowsEitherWay) {
    cST_DataSet data;
    *data.numeric1 = cST_MVect<double>(5, 2, 1.0);
    for (int i = 0; i < 5; ++i) data.numeric1->at(i, 0) = i;
    data.numeric1->labels[0] = u16string(u"v");
    putTexts(*data.strings3, {u"b", u"a", u"", u"b", u"a"});
    data.strings3Present = NUMCORE_TRUE;
    cST_DataSet out;
    EXPECT_EQ(numcore::GetStatsAndRestructure_ST(data, 1, NUMCORE_FALSE, out, u""), 4);
    EXPECT_EQ(out.strings1->column(1)(1), u"a");
    EXPECT_EQ(out.strings1->column(1)(2), u"b");
    EXPECT_EQ(out.numeric1->at(0, 5), 2.5);
    EXPECT_EQ(out.numeric1->at(1, 5), 1.5);
    EXPECT_EQ(numcore::GetStatsAndRestructure_ST(data, 1, NUMCORE_TRUE, out, u""), 4);
    EXPECT_EQ(out.strings1->column(1)(2), u"a");
    EXPECT_EQ(out.numeric1->at(2, 5), 1.5);
    EXPECT_EQ(numcore::GetStatsAndRestructure_ST(data, 2, NUMCORE_TRUE, out, u""), -1);
    data.strings3Present = NUMCORE_FALSE;
    EXPECT_EQ(numcore::GetStatsAndRestructure_ST(data, 1, NUMCORE_TRUE, out, u"all"), 2);
    EXPECT_EQ(out.strings1->column(1)(1), u"all");
}

}  // namespace
