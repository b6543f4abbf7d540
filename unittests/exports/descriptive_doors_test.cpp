// The doors as a foreign caller uses them: records in, arrays written in place, through the shared library.

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "caller/data_set.hpp"
#include "caller/forms.hpp"
#include "numcore/numcore.h"
#include "reference_table.hpp"

namespace {

using numcore::caller::Array;
using numcore::caller::DataSet;
using numcore::caller::DescStats;
using numcore::caller::Host;
using numcore::caller::Messages;
using numcore::caller::numericTable;
using numcore::caller::QualiInfo;
using numcore::caller::TableFormats;
using numcore::caller::textTable;

constexpr double kNone = NUMCORE_MISSING;

DataSet airquality() {
    std::vector<std::pair<std::u16string, std::vector<double>>> columns;
    for (const char* name : {"Ozone", "Solar.R", "Wind", "Temp"}) {
        columns.emplace_back(std::u16string(name, name + std::strlen(name)),
                             numcore::testing::readDataColumn("airquality.csv", name));
    }
    DataSet data;
    data.setNumeric1(numericTable(columns));
    return data;
}

DataSet smallSet() {
    DataSet data;
    data.setNumeric1(numericTable({{u"x", {4.0, 2.0, kNone, 8.0}}, {u"y", {1.0, 1.0, 1.0, 3.0}}}));
    data.setStrings1(textTable({{u"colour", {u"red", u"blue", u"", u"red"}}}));
    data.setStrings3(textTable({{u"g", {u"b", u"a", u"b", u""}}}));
    return data;
}

TEST(GetDescriptive, FillsTheCallersArrays) {
    DataSet data = airquality();
    DescStats out(4);
    Host host(u"host");
    Cpp_GetDescriptive_ST(&data.record(), NUMCORE_FALSE, &out.record(), host.system());
    EXPECT_EQ(out.labels().text(1), u"Solar.R");
    // R 4.2.2: mean(Ozone, na.rm = TRUE), sd(Ozone, na.rm = TRUE).
    const double ozone[] = {153.0, 37.0, 116.0, 1.0, 168.0, 42.12931034482759, 32.98788451443395};
    for (std::size_t c = 0; c < 7; ++c) {
        EXPECT_TRUE(numcore::testing::agrees(out.table().at(0, c), ozone[c], 1e-15)) << c;
    }
}

TEST(GetDescriptive, TakesFlagsWeightsAndShortArraysAsTheyAre) {
    DataSet data = smallSet();
    data.setWeights(Array::doubles(std::vector<double>{1.0, 2.0, 5.0}));
    DescStats out(2);
    Cpp_GetDescriptive_ST(&data.record(), NUMCORE_FALSE, &out.record(), nullptr);
    EXPECT_DOUBLE_EQ(out.table().at(0, 5), 8.0 / 3.0) << "the fourth row has no weight";
    EXPECT_EQ(out.table().at(0, 4), 8.0);
    data.record().weightsPresent = 1;
    Cpp_GetDescriptive_ST(&data.record(), NUMCORE_FALSE, &out.record(), nullptr);
    EXPECT_DOUBLE_EQ(out.table().at(0, 5), 14.0 / 3.0) << "a flag of 1 is false";

    DescStats one(1);
    Cpp_GetDescriptive_ST(&data.record(), NUMCORE_FALSE, &one.record(), nullptr);
    EXPECT_EQ(one.table().at(0, 0), 4.0) << "rows that do not fit are dropped";
    DescStats two(2);
    Cpp_ComputeQuantiStats_ST(&data.record(), &two.record(), NUMCORE_TRUE, NUMCORE_FALSE, nullptr);
    EXPECT_EQ(two.table().at(1, 5), 1.5);
}

TEST(GetDescriptive, LooksOnlyAtAColumnsOwnLength) {
    DataSet data = smallSet();
    data.numeric1().setLength(0, 2);
    DescStats out(2);
    Cpp_GetDescriptive_ST(&data.record(), NUMCORE_FALSE, &out.record(), nullptr);
    EXPECT_EQ(out.table().at(0, 0), 2.0);
    EXPECT_EQ(out.table().at(0, 4), 4.0);
}

TEST(QualitativeDoors, GoFromCountsToTheTable) {
    DataSet data = smallSet();
    data.setWeights(Array::doubles(std::vector<double>{1.0, 2.0, 3.0, 4.0}));
    QualiInfo info(1);
    Cpp_GetMaxCat_ST(&data.record().strings1, 1, &info.record());
    EXPECT_EQ(info.record().maxCategories, 2);
    info.allocate(2);
    EXPECT_EQ(Cpp_GetQualiDataInfo_ST(&data.record(), &info.record()), 0);
    EXPECT_EQ(info.record().totalWeight, 10.0);

    DataSet out;
    out.setStrings1(numcore::caller::TextTable(2, 2));
    out.setNumeric1(numcore::caller::NumericTable(3, 2));
    TableFormats formats(1, 1);
    Cpp_ComputeQualiStats_ST(&info.record(), &formats.record(), &out.record());
    EXPECT_EQ(out.strings1().column(0).text(0), u"colour");
    EXPECT_EQ(out.strings1().column(1).text(0), u"blue");
    EXPECT_EQ(out.strings1().column(1).text(1), u"red");
    EXPECT_EQ(out.numeric1().column(1).at(1), 5.0);
    EXPECT_EQ(out.numeric1().column(2).at(1), 50.0);
    EXPECT_EQ(formats.record().nBlocks, 1);
    EXPECT_EQ(out.record().nRows, 4);
}

TEST(QualitativeDoors, SayWhatDidNotFit) {
    DataSet data = smallSet();
    QualiInfo info(1);
    info.allocate(1);
    EXPECT_EQ(Cpp_GetQualiDataInfo_ST(&data.record(), &info.record()), -1);
    EXPECT_EQ(info.record().nDropped, 1);
    EXPECT_EQ(info.record().maxCategories, 2);
    EXPECT_EQ(info.nCategories(0), 1U);
}

TEST(QuantileDoors, TableWithLimits) {
    DataSet data = airquality();
    const ST_QuantileOptions options = {NUMCORE_QUANTILE_LINEAR, 0,         NUMCORE_TRUE,
                                        NUMCORE_FALSE,           {0, 0, 0}, 0.95};
    const double p[] = {0.5, 0.9};
    const Array table = Array::matrix(4, 6);
    const Array labels = Array::texts(4);
    EXPECT_EQ(Cpp_GetQuantileTable(&data.record(), p, 2, &options, table.get(), labels.get()), 0);
    EXPECT_EQ(table.at(0, 0), 31.5);  // R: quantile(Ozone, 0.5)
    EXPECT_EQ(table.at(0, 3), 87.0);
    // R: sort(Ozone)[c(qbinom(.025, 116, .5), 117 - qbinom(.025, 116, .5))]
    EXPECT_EQ(table.at(0, 1), 23.0);
    EXPECT_EQ(table.at(0, 2), 39.0);
    EXPECT_EQ(labels.text(3), u"Temp");

    auto ozone = numcore::testing::readDataColumn("airquality.csv", "Ozone");
    double lower = 0.0;
    double upper = 0.0;
    const auto n = static_cast<std::int32_t>(ozone.size());
    EXPECT_EQ(Cpp_QuantileOpt(ozone.data(), n, nullptr, &options, 0.5, &lower, &upper), 31.5);
    EXPECT_EQ(lower, 23.0);
    EXPECT_EQ(upper, 39.0);
    EXPECT_EQ(Cpp_QuantileOpt(ozone.data(), n, nullptr, nullptr, 0.5, &lower, nullptr), 31.5);
    EXPECT_EQ(lower, kNone) << "limits were not asked for";
}

TEST(UnivariateDoor, FillsAColumnPerVariable) {
    DataSet data = smallSet();
    const Array table = Array::matrix(NUMCORE_UNI_N_STATISTICS, 2);
    EXPECT_EQ(Cpp_UNI_Compute_Stats(&data.record(), NUMCORE_QUANTILE_LINEAR, table.get(), nullptr), 0);
    EXPECT_EQ(table.at(NUMCORE_UNI_COUNT, 1), 4.0);
    EXPECT_EQ(table.at(NUMCORE_UNI_MEDIAN, 0), 4.0);
    EXPECT_EQ(table.at(NUMCORE_UNI_SUM, 0), 14.0);
}

TEST(StatsByGroup, NamesTheGroupOfAllRowsByMessage) {
    DataSet data;
    data.setNumeric1(numericTable({{u"x", {1.0, 3.0}}}));
    DataSet out;
    out.setStrings1(numcore::caller::TextTable(2, 1));
    out.setNumeric1(numcore::caller::NumericTable(7, 1));
    Messages messages(7779);
    messages.set(0, u"all rows");
    Host host;
    EXPECT_EQ(Cpp_GetStatsAndRestructure2_ST(&data.record(), 1, NUMCORE_FALSE, &out.record(), messages.data(),
                                             host.system(), host.host()),
              1);
    EXPECT_EQ(out.strings1().column(1).text(0), u"all rows");
    EXPECT_EQ(out.numeric1().column(5).at(0), 2.0);
    EXPECT_EQ(out.record().nRows, 1);
}

TEST(DataSetDoors, DuplicateWritesIntoTheDestination) {
    DataSet source = smallSet();
    DataSet copy;
    copy.setNumeric1(numcore::caller::NumericTable(2, 2));
    copy.setWeights(Array::doubles(2));
    copy.record().numeric1Present.value = NUMCORE_FALSE;
    copy.record().weightsPresent = NUMCORE_FALSE;
    Cpp_Duplicate_STDataset(&source.record(), &copy.record(), NUMCORE_TRUE, 1, 3, 4);
    EXPECT_EQ(copy.record().numeric1Present.value, NUMCORE_TRUE);
    EXPECT_EQ(copy.record().weightsPresent, NUMCORE_TRUE);
    EXPECT_EQ(copy.record().strings1Present.value, NUMCORE_TRUE);
    EXPECT_EQ(copy.numeric1().column(0).at(1), 8.0);
    EXPECT_EQ(copy.numeric1().label(1), u"y");
    EXPECT_EQ(copy.weights().at(1), 1.0);
}

TEST(DataSetDoors, ExtractSortGuessAndReshape) {
    DataSet source = smallSet();
    DataSet cut;
    cut.setNumeric1(numcore::caller::NumericTable(2, 3));
    const std::int32_t rows[] = {4, 1, 100};
    EXPECT_EQ(Cpp_ExtractRowsIntoNewTable_ST(&source.record(), rows, 3, &cut.record()), 3);
    EXPECT_EQ(cut.record().nRows, 3);
    EXPECT_EQ(cut.numeric1().column(0).at(0), 8.0);
    EXPECT_EQ(cut.numeric1().column(0).at(2), kNone);

    std::int32_t kind = -1;
    double share = 0.0;
    EXPECT_EQ(Cpp_GuessTypes_ST(&source.record().strings1, u'.', 0.9, &kind, &share, 5), 1);
    EXPECT_EQ(kind, NUMCORE_COLUMN_CATEGORICAL);

    DataSet tall;
    tall.setStrings1(numcore::caller::TextTable(2, 8));
    tall.setNumeric1(numcore::caller::NumericTable(1, 8));
    EXPECT_EQ(Cpp_ReStructureData(&source.record(), &tall.record(), 0), 8);
    EXPECT_EQ(tall.record().nRows, 8);
    EXPECT_EQ(tall.strings1().column(0).text(7), u"y");
    EXPECT_EQ(tall.numeric1().column(0).at(7), 3.0);

    source.setGroupArrays(4);
    EXPECT_EQ(Cpp_SortSTDataSetByGroup_ST(&source.record(), 1), 2);
    EXPECT_EQ(source.record().nGroups, 2);
    EXPECT_EQ(source.numeric1().column(0).at(0), 2.0);
    EXPECT_EQ(source.numeric1().column(0).at(3), 8.0);
    EXPECT_EQ(source.strings1().column(0).text(0), u"blue");
}

TEST(DataSetDoors, FormatsAreReset) {
    TableFormats formats(2, 2);
    formats.record().decimals = 9;
    formats.record().nRowTable = 2;
    Cpp_Init_TableFormats(&formats.record());
    EXPECT_EQ(formats.record().decimals, -1);
    EXPECT_EQ(formats.record().columnWidth, -1.0);
    EXPECT_EQ(formats.record().textFormat[0], u'@');
    EXPECT_EQ(formats.record().textFormat[1], u'\0');
    EXPECT_EQ(formats.record().nRowTable, 0);
    EXPECT_NE(formats.record().rowTable, nullptr) << "the arrays stay the caller's";
}

TEST(Doors, NullPointersEverywhere) {
    ST_DataSet empty{};
    ST_QualiInfo info{};
    ST_DescStats none{};
    double x = 1.0;
    for (ST_DataSet* data : {static_cast<ST_DataSet*>(nullptr), &empty}) {
        Cpp_GetDescriptive_ST(data, NUMCORE_TRUE, nullptr, nullptr);
        Cpp_GetDescriptive_ST(data, NUMCORE_TRUE, &none, nullptr);
        Cpp_ComputeQuantiStats_ST(data, &none, NUMCORE_TRUE, NUMCORE_TRUE, nullptr);
        Cpp_ComputeQualiStats_ST(nullptr, nullptr, data);
        Cpp_ComputeQualiStats_ST(&info, nullptr, data);
        EXPECT_EQ(Cpp_GetQualiDataInfo_ST(data, nullptr), 0);
        EXPECT_EQ(Cpp_GetQualiDataInfo_ST(data, &info), 0);
        Cpp_Duplicate_STDataset(data, nullptr, 0, 0, 0, 0);
        Cpp_Duplicate_STDataset(nullptr, data, 0, 0, 0, 0);
        Cpp_Duplicate_STDataset(&empty, data, NUMCORE_TRUE, 1, 1, INT32_MAX);
        EXPECT_EQ(Cpp_ExtractRowsIntoNewTable_ST(data, nullptr, 3, data), 0);
        EXPECT_LE(Cpp_ReStructureData(data, data, 0), 0);
        EXPECT_EQ(Cpp_SortSTDataSetByGroup_ST(data, 1), -1);
        EXPECT_EQ(Cpp_GetQuantileTable(data, nullptr, 1, nullptr, nullptr, nullptr), -1);
        EXPECT_EQ(Cpp_GetQuantileTable(data, &x, 1, nullptr, nullptr, nullptr), data == nullptr ? -1 : 0);
        EXPECT_EQ(Cpp_UNI_Compute_Stats(data, 5, nullptr, nullptr), data == nullptr ? -1 : 0);
        EXPECT_EQ(Cpp_GetStatsAndRestructure2_ST(data, 1, 0, nullptr, nullptr, nullptr, nullptr), -1);
    }
    Cpp_Init_TableFormats(nullptr);
    Cpp_GetMaxCat_ST(nullptr, 5, nullptr);
    Cpp_GetMaxCat_ST(nullptr, 5, &info);
    EXPECT_EQ(Cpp_GuessTypes_ST(nullptr, u'.', 1.0, nullptr, nullptr, 3), 0);
    EXPECT_STREQ(numcore_version(), NUMCORE_VERSION);
}

}  // namespace
