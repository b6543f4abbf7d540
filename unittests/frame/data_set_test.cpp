#include "numcore/dataset.hpp"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using numcore::cST_DataSet;
using numcore::cST_MVect;
using numcore::cST_QualiInfo;
using numcore::cST_Vect;
using numcore::matrix;
using numcore::u16string;

cST_MVect<double> numbers(std::initializer_list<std::vector<double>> columns) {
    const auto nRows = static_cast<std::int32_t>(columns.begin()->size());
    cST_MVect<double> table(nRows, static_cast<std::int32_t>(columns.size()), 0.0);
    std::int32_t c = 0;
    for (const auto& column : columns) {
        for (std::int32_t i = 0; i < nRows; ++i) table.at(i, c) = column[static_cast<std::size_t>(i)];
        ++c;
    }
    return table;
}

cST_MVect<u16string> texts(std::initializer_list<std::vector<const char16_t*>> columns) {
    const auto nRows = static_cast<std::int32_t>(columns.begin()->size());
    cST_MVect<u16string> table(nRows, static_cast<std::int32_t>(columns.size()), u16string());
    std::int32_t c = 0;
    for (const auto& column : columns) {
        for (std::int32_t i = 0; i < nRows; ++i)
            table.at(i, c) = u16string(column[static_cast<std::size_t>(i)]);
        ++c;
    }
    return table;
}

std::vector<double> columnOf(const cST_MVect<double>& table, std::int32_t c) {
    return {table.column(c).span().begin(), table.column(c).span().end()};
}

std::vector<std::u16string> textsOf(const cST_MVect<u16string>& table, std::int32_t c) {
    std::vector<std::u16string> found;
    for (const u16string& text : table.column(c).span()) found.push_back(text.str());
    return found;
}

template <class T>
void fill(matrix<T>& cells, std::initializer_list<T> values) {
    cells = matrix<T>(static_cast<std::int32_t>(values.size()), 1, T());
    std::copy(values.begin(), values.end(), cells.data());
}

/// Four rows with every kind of table.
cST_DataSet sample() {
    cST_DataSet data;
    data.nRows = 4;
    *data.numeric1 = numbers({{1, 2, 3, 4}, {10, 20, 30, 40}});
    data.numeric1->labels[0] = u16string(u"first");
    data.numeric1Present = NUMCORE_TRUE;
    *data.strings1 = texts({{u"a", u"b", u"", u"a"}});
    data.strings1Present = NUMCORE_TRUE;
    *data.strings3 = texts({{u"s", u"t", u"u", u"v"}, {u"y", u"", u"x", u"y"}});
    data.strings3Present = NUMCORE_TRUE;
    fill(*data.weights, {1.0, 2.0, 3.0, 4.0});
    data.weightsPresent = NUMCORE_TRUE;
    fill<std::int16_t>(*data.rowMarks, {0, -1, 1, -1});
    return data;
}

TEST(DataSet, NullRecordsAndNullPointersAreEmpty) {
    const cST_DataSet none(nullptr);
    EXPECT_EQ(none.nRows, 0);
    EXPECT_EQ(none.numeric1->columnCount(), 0);
    ST_DataSet record{};
    record.nRows = 9;
    record.nNumericTables = 3;  // with a null list
    record.nStringTables = -1;
    const cST_DataSet empty(&record);
    EXPECT_EQ(empty.nRows, 9);
    EXPECT_TRUE(empty.text1.empty());
    EXPECT_TRUE(empty.numericTables.tables.empty());
    EXPECT_EQ(empty.rowMarks->size(), 0);
    EXPECT_FALSE(empty.isMarked(0));
}

TEST(DataSet, ConvertsTextsFlagsAndLists) {
    ST_DataSet record{};
    ST_MVectDbl tables[2]{};
    tables[1].nRows = 12;
    record.text1 = u"Sheet1!A1";
    record.text8 = u"last";
    record.numeric2Present.value = 1;
    record.numericTables = tables;
    record.nNumericTables = 2;
    record.formats.decimals = 4;
    cST_DataSet data(&record);
    EXPECT_EQ(data.text1, u"Sheet1!A1");
    EXPECT_EQ(data.text8, u"last");
    EXPECT_EQ(data.numeric2Present, 1);
    ASSERT_EQ(data.numericTables.count, 2);
    EXPECT_EQ(data.numericTables.tables[1]->rowCount(), 12);
    EXPECT_EQ(data.formats.decimals, 4);
    data.nRows = 5;
    data.weightsPresent = NUMCORE_TRUE;
    data.numericTables.tables[0]->setShape(3, 2);
    data.writeBack();
    EXPECT_EQ(record.nRows, 5);
    EXPECT_EQ(record.weightsPresent, NUMCORE_TRUE);
    EXPECT_EQ(tables[0].nCells, 3);
}

TEST(Duplicate, CopiesABlockOfRows) {
    cST_DataSet source = sample();
    cST_DataSet copy;
    numcore::Duplicate_STDataset(source, copy, NUMCORE_TRUE, 2, 2, 99);
    EXPECT_EQ(columnOf(*copy.numeric1, 1), (std::vector<double>{20, 30, 40}));
    EXPECT_EQ(copy.numeric1->label(0), u"first");
    EXPECT_EQ(textsOf(*copy.strings1, 0), (std::vector<std::u16string>{u"b", u"", u"a"}));
    EXPECT_EQ(copy.strings3->columnCount(), 1);
    EXPECT_EQ(textsOf(*copy.strings3, 0), (std::vector<std::u16string>{u"", u"x", u"y"}));
    EXPECT_EQ((*copy.weights)(1), 2.0);
    EXPECT_EQ(copy.rowMarksPresent, 0) << "the source does not say that rows are marked";

    source.rowMarksPresent = NUMCORE_TRUE;
    cST_DataSet first;
    numcore::Duplicate_STDataset(source, first, NUMCORE_FALSE, 1, 0, 1);
    EXPECT_EQ(columnOf(*first.numeric1, 0), (std::vector<double>{1}));
    EXPECT_TRUE(first.numeric1->label(0).empty());
    EXPECT_EQ(first.rowMarksPresent, 0) << "row 1 is not marked";
    cST_DataSet second;
    numcore::Duplicate_STDataset(source, second, NUMCORE_FALSE, 1, 2, 3);
    EXPECT_EQ(second.rowMarksPresent, NUMCORE_TRUE);
}

TEST(Duplicate, AFlagOfOneLeavesItsTableOut) {
    cST_DataSet source = sample();
    source.numeric1Present = 1;
    source.weightsPresent = NUMCORE_FALSE;
    *source.weights = matrix<double>();
    cST_DataSet copy;
    numcore::Duplicate_STDataset(source, copy, NUMCORE_FALSE, 1, 1, 4);
    EXPECT_EQ(copy.numeric1Present, 0);
    EXPECT_EQ(copy.numeric1->columnCount(), 0);
    // Kept: the destination has weights even when the source has none; each row counts once.
    EXPECT_EQ(copy.weightsPresent, NUMCORE_TRUE);
    EXPECT_EQ((*copy.weights)(4), 1.0);
}

TEST(Duplicate, OddRowsCopyNothing) {
    cST_DataSet source = sample();
    for (const auto& [first, last] :
         {std::pair{5, 9}, {3, 2}, {1, INT32_MIN}, {INT32_MAX, INT32_MAX}, {1, -1}}) {
        cST_DataSet copy;
        numcore::Duplicate_STDataset(source, copy, NUMCORE_TRUE, -7, first, last);
        EXPECT_EQ(copy.weights->size(), 0);
    }
}

TEST(RemoveRows, DropsMarkedRowsEverywhere) {
    cST_DataSet data = sample();
    data.numeric1->setLength(0, 3);
    numcore::RemoveRowsMissingSTDataSet(data);
    EXPECT_EQ(columnOf(*data.numeric1, 1), (std::vector<double>{10, 30, NUMCORE_MISSING, NUMCORE_MISSING}));
    EXPECT_EQ(data.numeric1->length(0), 2) << "row 4 was outside the column's own length";
    EXPECT_EQ(data.numeric1->length(1), 2);
    EXPECT_EQ(textsOf(*data.strings1, 0), (std::vector<std::u16string>{u"a", u"", u"", u""}));
    EXPECT_EQ((*data.weights)(2), 3.0);
    EXPECT_EQ((*data.weights)(3), 0.0);
    EXPECT_EQ(data.nRows, 4) << "the caller sets the row count";
}

TEST(RemoveRows, LeavesAbsentTablesAlone) {
    cST_DataSet data = sample();
    data.strings1Present = 1;
    numcore::RemoveRowsMissingSTDataSet(data);
    EXPECT_EQ(textsOf(*data.strings1, 0), (std::vector<std::u16string>{u"a", u"b", u"", u"a"}));
}

TEST(ExtractRows, TakesRowsInTheOrderOfTheList) {
    cST_DataSet source = sample();
    cST_Vect<std::int32_t> rows = {4, 1, 9, 1};
    cST_Vect<std::int32_t>* lists[] = {&rows};
    cST_DataSet cut;
    EXPECT_EQ(numcore::ExtractRowsIntoNewTable_ST(source, lists, cut), 4);
    EXPECT_EQ(columnOf(*cut.numeric1, 0), (std::vector<double>{4, 1, NUMCORE_MISSING, 1}));
    EXPECT_EQ((*cut.weights)(3), 0.0) << "a row that does not exist weighs nothing";
    EXPECT_EQ(cut.nRows, 4);
    lists[0] = nullptr;
    EXPECT_EQ(numcore::ExtractRowsIntoNewTable_ST(source, lists, cut), 0);
    EXPECT_EQ(numcore::ExtractRowsIntoNewTable_ST(source, nullptr, cut), 0);
}

TEST(Formats, ResetAndSized) {
    numcore::cST_TableFormats formats;
    formats.columnWidth = 3.0;
    numcore::Init_TableFormats2(formats, 7, 9, 4, 0, NUMCORE_TRUE, 2);
    EXPECT_EQ(formats.columnWidth, -1.0);
    EXPECT_EQ(formats.textFormat, u"@");
    EXPECT_EQ(formats.showRowLabels, 65535);
    EXPECT_EQ(formats.layout, 1);
    EXPECT_EQ(formats.highlight, 9);
    EXPECT_EQ(formats.boldHeader, 7);
    EXPECT_EQ(formats.numberFormats.length, 1) << "at least one column";
    EXPECT_EQ(formats.numberFormats.cells(1), u"General");
    EXPECT_EQ(formats.formatKinds.cells(1), 3);
    EXPECT_EQ(formats.formatDigits.cells(1), 2);
    EXPECT_EQ(formats.columnTable.length, 0);
    EXPECT_EQ(formats.rowTable.length, 4);
    numcore::Init_TableFormats2(formats, 0, 0, 0, 3, 1, 2);
    EXPECT_EQ(formats.numberFormats.length, 0) << "a flag of 1 is false";
    EXPECT_EQ(formats.columnTable.length, 3);
    EXPECT_EQ(formats.rowTable.length, 0);
}

TEST(Categories, CountsAndFrequencies) {
    cST_DataSet data = sample();
    cST_QualiInfo info;
    EXPECT_EQ(numcore::GetQualiDataInfo_ST(data, info), 0);
    EXPECT_EQ(info.maxCategories, 2);
    EXPECT_EQ(info.totalWeight, 10.0) << "rows without a text count too";
    EXPECT_EQ(info.labels.column(0)(1), u"a");
    EXPECT_EQ(info.counts.column(0)(1), 2.0);
    EXPECT_EQ(info.frequencies.column(0)(1), 5.0);
    EXPECT_EQ(info.nMissing, 1);
    EXPECT_EQ(info.missing(1), 3.0);

    data.weightsPresent = 1;  // false
    EXPECT_EQ(numcore::GetQualiDataInfo_ST(data, info), 0);
    EXPECT_EQ(info.totalWeight, 4.0);

    cST_QualiInfo given;
    fill(given.nCategories, {3, 8, 5});
    numcore::GetMaxCat_ST(cST_MVect<u16string>(), 2, given);
    EXPECT_EQ(given.maxCategories, 8);
    numcore::GetMaxCat_ST(cST_MVect<u16string>(), 1, given);
    EXPECT_EQ(given.maxCategories, 3) << "only the first n variables";
}

TEST(GuessTypes, TellsKindsApart) {
    struct Case {
        std::vector<const char16_t*> cells;
        std::int32_t kind;
        double share;
    };
    const std::vector<Case> cases = {
        {{u"1", u"-20", u"", u"+3"}, NUMCORE_COLUMN_INTEGER, 1.0},
        {{u"1", u"2.5", u"1e-3", u".5"}, NUMCORE_COLUMN_NUMERIC, 1.0},
        {{u" 1 ", u"2", u"3", u"x"}, NUMCORE_COLUMN_INTEGER, 0.75},
        {{u"2024-02-29", u"31/12/99", u"1.2.2020", u"2024-02-29T10:30"}, NUMCORE_COLUMN_DATE, 1.0},
        {{u"10:30", u"23:59:59.5", u"0:00", u""}, NUMCORE_COLUMN_DATE, 1.0},
        {{u"red", u"blue", u"red", u"blue"}, NUMCORE_COLUMN_CATEGORICAL, 1.0},
        {{u"one", u"two", u"three", u"four"}, NUMCORE_COLUMN_TEXT, 1.0},
        {{u"2024-13-40", u"99:99", u"1-2/3", u"1.2.3.4"}, NUMCORE_COLUMN_TEXT, 1.0},
        {{u"e5", u".", u"-", u"1e"}, NUMCORE_COLUMN_TEXT, 1.0},
        {{u"", u"", u" ", u""}, NUMCORE_COLUMN_EMPTY, NUMCORE_MISSING},
    };
    for (const auto& [cells, kind, share] : cases) {
        const auto found = numcore::GuessType_ST(texts({cells}), 0, u'.', 0.7);
        EXPECT_EQ(found.kind, kind) << std::string(cells[0], cells[0] + std::u16string_view(cells[0]).size());
        EXPECT_EQ(found.share, share);
    }
    const auto comma = texts({{u"1,5", u"2,5"}});
    EXPECT_EQ(numcore::GuessType_ST(comma, 0, u',', 1.0).kind, NUMCORE_COLUMN_NUMERIC);
    EXPECT_EQ(numcore::GuessType_ST(comma, 0, u'.', std::nan("")).kind, NUMCORE_COLUMN_CATEGORICAL);
    EXPECT_EQ(numcore::GuessType_ST(comma, 5, u'.', 1.0).kind, NUMCORE_COLUMN_EMPTY);
}

TEST(SortByGroup, IsStableWithMissingGroupsLast) {
    cST_DataSet data = sample();
    *data.groups = matrix<std::int32_t>(4, 1, 0);
    *data.order = matrix<std::int32_t>(4, 1, 0);
    EXPECT_EQ(numcore::SortSTDataSetByGroup_ST(data, 2), 2);
    EXPECT_EQ(columnOf(*data.numeric1, 0), (std::vector<double>{3, 1, 4, 2}));
    EXPECT_EQ(textsOf(*data.strings3, 1), (std::vector<std::u16string>{u"x", u"y", u"y", u""}));
    EXPECT_EQ((*data.order)(1), 3);
    EXPECT_EQ((*data.groups)(1), 1);
    EXPECT_EQ((*data.groups)(4), 0);
    EXPECT_EQ((*data.rowMarks)(4), -1) << "marks move with their rows";
    EXPECT_EQ(numcore::SortSTDataSetByGroup_ST(data, 3), -1);
    EXPECT_EQ(numcore::SortSTDataSetByGroup_ST(data, 0), -1);
}

TEST(ReStructure, WideToLongAndBack) {
    cST_DataSet wide = sample();
    wide.numeric1->labels[1] = u16string(u"second");
    wide.numeric1->at(2, 1) = NUMCORE_MISSING;
    cST_DataSet tall;
    EXPECT_EQ(numcore::ReStructureData_ST(wide, tall, 0), 8);
    EXPECT_EQ(tall.strings1->column(0)(2), u"second");
    EXPECT_EQ(tall.strings1->column(1)(3), u"2");
    EXPECT_EQ(tall.numeric1->column(0)(3), 2.0);
    EXPECT_EQ((*tall.weights)(8), 4.0);
    cST_DataSet back;
    EXPECT_EQ(numcore::ReStructureData_ST(tall, back, 1), 4);
    for (const int c : {0, 1}) EXPECT_EQ(columnOf(*back.numeric1, c), columnOf(*wide.numeric1, c));
    EXPECT_EQ(back.numeric1->label(0), u"first");
    EXPECT_EQ((*back.rowLabels)(4), u"4");

    EXPECT_EQ(numcore::ReStructureData_ST(wide, back, 2), -1);
    wide.numeric1Present = 1;
    EXPECT_EQ(numcore::ReStructureData_ST(wide, back, 0), -1);
}

}  // namespace
