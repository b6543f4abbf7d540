#include "numcore/containers.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <cstring>
#include <numeric>

namespace {

using numcore::CellVal;
using numcore::cST_MVect;
using numcore::matrix;
using numcore::matrix3D;
using numcore::u16string;

struct DestroyArray {
    void operator()(SAFEARRAY* array) const { SafeArrayDestroy(array); }
};
using ArrayPtr = std::unique_ptr<SAFEARRAY, DestroyArray>;

/// An array of doubles 0, 1, 2, ... with the stated counts, first dimension first.
ArrayPtr countingArray(std::initializer_list<std::uint32_t> counts) {
    std::vector<SAFEARRAYBOUND> bounds;
    std::uint32_t size = 1;
    for (const auto n : counts) {
        bounds.push_back({n, 1});
        size *= n;
    }
    ArrayPtr array(SafeArrayCreate(VT_R8, static_cast<std::uint32_t>(bounds.size()), bounds.data()));
    auto* cells = static_cast<double*>(array->pvData);
    std::iota(cells, cells + size, 0.0);
    return array;
}

TEST(Markers, AreTheStatedBits) {
    EXPECT_EQ(std::bit_cast<std::uint64_t>(NUMCORE_MISSING), 0xFFEFFFFFFFFFFFE2U);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(NUMCORE_OVERFLOW), 0x7FEFFFFFFFFFFFE2U);
}

TEST(Flags, OnlyMinusOneIsTrue) {
    EXPECT_TRUE(numcore::isTrue(-1));
    for (const std::int16_t flag : std::initializer_list<std::int16_t>{0, 1, 2, -2, 255})
        EXPECT_FALSE(numcore::isTrue(flag)) << flag;
}

TEST(Matrix, WrapsAnArrayInPlace) {
    const ArrayPtr vector = countingArray({5});
    matrix<double> column(vector.get());
    EXPECT_EQ(column.rows(), 5);
    EXPECT_EQ(column.columns(), 1);
    EXPECT_FALSE(column.owns());

    const ArrayPtr table = countingArray({3, 2});
    matrix<double> wrapped(table.get());
    EXPECT_EQ(wrapped.rows(), 3);
    EXPECT_EQ(wrapped.columns(), 2);
    EXPECT_EQ(wrapped(2, 2), 4.0);
    EXPECT_EQ(wrapped.at(1, 1), 4.0);
    wrapped(3, 1) = 77.0;
    EXPECT_EQ(static_cast<double*>(table->pvData)[2], 77.0);
}

TEST(Matrix, IndexPastTheEndIsTheSpareElement) {
    matrix<double> cells(2, 2, 5.0);
    EXPECT_EQ(cells(3, 1), -1.0);
    EXPECT_EQ(cells(0), -1.0);
    EXPECT_EQ(cells(5), -1.0);
    EXPECT_EQ(cells.at(0, 2), -1.0);
    cells(3, 1) = 9.0;
    for (const double cell : cells.span()) EXPECT_EQ(cell, 5.0);
    EXPECT_EQ(cells[1000], 9.0) << "the spare element keeps what was written there";

    // Kept: only upper bounds are tested, so row 0 is the end of the column before; never outside the storage.
    cells(2, 1) = 6.0;
    EXPECT_EQ(cells(0, 2), 6.0);
    EXPECT_EQ(cells(0, 1), 9.0);
    EXPECT_EQ(cells(INT32_MIN, INT32_MIN), 9.0);
}

TEST(Matrix, UnusableArraysAreEmpty) {
    ArrayPtr array = countingArray({2, 2, 2});
    EXPECT_EQ(matrix<double>(array.get()).size(), 0) << "three dimensions";
    array = countingArray({4});
    EXPECT_EQ(matrix<std::int32_t>(array.get()).size(), 0) << "another element size";
    EXPECT_EQ(matrix<double>(static_cast<SAFEARRAY*>(nullptr)).size(), 0);
    SAFEARRAY withoutData = *array;
    withoutData.pvData = nullptr;
    EXPECT_EQ(matrix<double>(&withoutData).size(), 0);
    SAFEARRAY tooLarge = *array;
    tooLarge.rgsabound[0].cElements = 0x80000000U;
    EXPECT_EQ(matrix<double>(&tooLarge).size(), 0);
    EXPECT_EQ(matrix<double>(-3, 2, 0.0).size(), 0);
    EXPECT_THROW(matrix<double>(INT32_MAX, 2, 0.0), std::bad_alloc);
}

TEST(Matrix, CopiesOrAdoptsPlainMemory) {
    double cells[] = {1.0, 2.0, 3.0, 4.0};
    matrix<double> copy(2, 2, cells, false);
    matrix<double> adopted(2, 2, cells, true);
    cells[0] = 10.0;
    EXPECT_EQ(copy(1, 1), 1.0);
    EXPECT_TRUE(copy.owns());
    EXPECT_EQ(adopted(1, 1), 10.0);
    EXPECT_FALSE(adopted.owns());
    EXPECT_EQ(matrix<double>(2, 2, nullptr, false).size(), 0);
}

TEST(Strings, LiveInTheCallersSlots) {
    ArrayPtr array(SafeArrayCreateVector(VT_BSTR, 0, 3));
    auto* slots = static_cast<BSTR*>(array->pvData);
    slots[0] = SysAllocString(reinterpret_cast<const OLECHAR*>(u"one"));
    matrix<u16string> texts(array.get());
    ASSERT_EQ(texts.size(), 3);
    EXPECT_EQ(texts(1), u"one");
    EXPECT_TRUE(texts(2).empty());
    texts(2) = u16string(u"two");
    EXPECT_EQ(SysStringLen(slots[1]), 3U);
    texts(1) = texts(2);
    EXPECT_EQ(texts(1), u"two");
    texts(1) = u16string();
    EXPECT_EQ(SysStringByteLen(slots[0]), 0U);
    EXPECT_TRUE(texts(4).empty()) << "the spare element";
}

TEST(Strings, MessageTableTakesNullAndEmptyEntries) {
    BSTR kept = SysAllocString(reinterpret_cast<const OLECHAR*>(u"message"));
    BSTR empty = SysAllocStringLen(nullptr, 0);
    char16_t* texts[] = {reinterpret_cast<char16_t*>(kept), nullptr, reinterpret_cast<char16_t*>(empty)};
    const matrix<u16string> messages(3, 1, texts);
    EXPECT_EQ(messages(1), u"message");
    EXPECT_TRUE(messages(2).empty());
    EXPECT_TRUE(messages(3).empty());
    SysFreeString(kept);
    SysFreeString(empty);
}

TEST(Cells, HoldNumbersAndTexts) {
    matrix<CellVal> cells(2, 1, CellVal());
    EXPECT_TRUE(cells(1).isEmpty());
    EXPECT_EQ(cells(1).number(), NUMCORE_MISSING);
    cells(1) = CellVal(u"text");
    cells(2) = cells(1);
    cells(1) = CellVal(2.5);
    EXPECT_EQ(cells(1).number(), 2.5);
    EXPECT_EQ(cells(2).text(), u"text");
    EXPECT_EQ(cells(3).number(), -1.0);
}

TEST(Matrix3D, ConvertsAThreeDimensionalArray) {
    const ArrayPtr array = countingArray({2, 3, 4});  // slices, rows, columns
    matrix3D<matrix<double>> cube(array.get());
    ASSERT_EQ(cube.count(), 2);
    for (int k = 1; k <= 2; ++k) {
        for (int i = 1; i <= 3; ++i) {
            for (int j = 1; j <= 4; ++j) EXPECT_EQ(cube(k, i, j), (k - 1) + 2.0 * ((i - 1) + 3.0 * (j - 1)));
        }
    }
    EXPECT_EQ(cube.getElement(1, 4), cube.vbget(2, 5));
    cube.vbset(1, 2, 99.0);
    EXPECT_EQ(cube(1, 2, 1), 99.0);
    EXPECT_EQ(cube(3, 1, 1), -1.0) << "no such slice";
    EXPECT_EQ(cube(1, 4, 1), -1.0) << "the slice's spare element";
    cube.setElement(7, 0, 1.0);

    const matrix3D<cST_MVect<double>> cut(array.get(), 2);
    ASSERT_EQ(cut.count(), 2);
    EXPECT_EQ(cut.slice(1)->column(3).size(), 2);
    EXPECT_EQ(cut.slice(1)->column(3)[1], 1 + 2.0 * (1 + 3.0 * 3));
}

TEST(Matrix3D, EmptyAndMoved) {
    for (const int n : {0, -3}) EXPECT_EQ(matrix3D<matrix<double>>(n).count(), 0);
    EXPECT_EQ(matrix3D<matrix<double>>(static_cast<SAFEARRAY*>(nullptr)).count(), 0);
    const ArrayPtr flat = countingArray({4});
    EXPECT_EQ(matrix3D<matrix<double>>(flat.get()).count(), 0);

    matrix3D<cST_MVect<double>> source(2, 1, 3, 0.5);
    matrix3D<cST_MVect<double>> target(1, 1, 1, 0.0);
    target = std::move(source);
    EXPECT_EQ(target.count(), 2);
    EXPECT_EQ(target(2, 1, 3), 0.5);
    target(2).column(0)[0] = 4.0;
    EXPECT_EQ(target.getElement(1, 0), 4.0);

    matrix3D<cST_MVect<std::int32_t>> pointers(2);
    EXPECT_EQ(pointers(1, 1, 1), -1) << "a slice that was never set";
    pointers.setSlice(0, std::make_unique<cST_MVect<std::int32_t>>(2, 2, 8));
    EXPECT_EQ(pointers(1, 2, 2), 8);

    const ArrayPtr first = countingArray({2, 2});
    SAFEARRAY* arrays[] = {first.get(), nullptr};
    matrix3D<matrix<double>> slices(2, arrays);
    slices(1, 2, 2) = 50.0;
    EXPECT_EQ(static_cast<double*>(first->pvData)[3], 50.0) << "slices work in place";
    EXPECT_EQ(slices(2, 1, 1), -1.0);
}

TEST(ColumnSet, WithoutColumnsIsEmpty) {
    ST_MVectDbl record{};
    record.nColumns = 4;
    record.nRows = 10;
    const cST_MVect<double> set(&record);
    EXPECT_EQ(set.columnCount(), 0);
    EXPECT_TRUE(set.data.empty());
    EXPECT_EQ(set.integers[0], 4);
    EXPECT_EQ(set.kind, 1);
    EXPECT_EQ(cST_MVect<u16string>().kind, 3);
    EXPECT_EQ(cST_MVect<CellVal>(static_cast<ST_MVectVar*>(nullptr)).kind, 4);
}

TEST(ColumnSet, HoldsColumnsAndAttributes) {
    cST_MVect<double> set(3, 2, 1.5);
    EXPECT_EQ(set.columnCount(), 2);
    EXPECT_EQ(set.data.size(), 2U);
    EXPECT_EQ(set.data[1][2], 1.5);
    set.setLength(1, 2);
    EXPECT_EQ(set.cells(1).size(), 2U);
    set.setLength(1, 1000);
    EXPECT_EQ(set.length(1), 3) << "never more than the cells";
    set.at(9, 9) = 3.0;
    EXPECT_EQ(set.at(0, 9), -1.0);
}

TEST(Automation, ArraysTellTheirShape) {
    SAFEARRAYBOUND bounds[] = {{3, 1}, {2, 0}};
    const ArrayPtr array(SafeArrayCreate(VT_R8, 2, bounds));
    EXPECT_EQ(array->rgsabound[0].cElements, 2U) << "the last dimension is stored first";
    decltype(SAFEARRAYBOUND::lLbound) bound = 0;
    EXPECT_EQ(SafeArrayGetUBound(array.get(), 1, &bound), S_OK);
    EXPECT_EQ(bound, 3);
    EXPECT_EQ(SafeArrayGetLBound(array.get(), 2, &bound), S_OK);
    EXPECT_EQ(bound, 0);
    VARTYPE type = 0;
    EXPECT_EQ(SafeArrayGetVartype(array.get(), &type), S_OK);
    EXPECT_EQ(type, VT_R8);
    void* data = nullptr;
    EXPECT_EQ(SafeArrayAccessData(array.get(), &data), S_OK);
    EXPECT_EQ(data, array->pvData);
    EXPECT_NE(SafeArrayDestroy(array.get()), S_OK) << "locked";
    EXPECT_EQ(SafeArrayUnaccessData(array.get()), S_OK);
}

TEST(Automation, StringsCarryTheirLength) {
    const char16_t text[] = u"a\0b";
    BSTR string = SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text), 3);
    EXPECT_EQ(SysStringLen(string), 3U);
    EXPECT_EQ(SysStringByteLen(string), 6U);
    EXPECT_EQ(SysReAllocStringLen(&string, reinterpret_cast<const OLECHAR*>(u"longer"), 6) != 0, true);
    EXPECT_EQ(SysStringLen(string), 6U);
    EXPECT_EQ(string[6], 0);
    SysFreeString(string);
    EXPECT_EQ(SysAllocString(nullptr), nullptr);
    EXPECT_EQ(SysStringByteLen(nullptr), 0U);
}

}  // namespace
