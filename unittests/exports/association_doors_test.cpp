// The doors through the shared library, with records and arrays of a foreign caller.

#include <gtest/gtest.h>

#include <cmath>

#include "caller/data_set.hpp"
#include "numcore/numcore.h"
#include "reference_table.hpp"

namespace {

using numcore::caller::Array;
using numcore::caller::DataSet;
using numcore::caller::numericTable;

constexpr double kNone = NUMCORE_MISSING;

TEST(RvCompute, TakesTheTwoNumericTables) {
    DataSet data;
    data.setNumeric1(numericTable({{u"a", {1, 2, 4, 3, 7, kNone}}, {u"b", {2, 1, 0, 5, 3, 4}}}));
    data.setNumeric2(numericTable({{u"c", {2, 1, 5, 3, 8, 9}}}));
    const double x[] = {1, 2, 4, 3, 7, 2, 1, 0, 5, 3};
    const double y[] = {2, 1, 5, 3, 8};
    const ST_RVOptions options{120, 0, NUMCORE_TRUE, NUMCORE_TRUE, 0};
    ST_RVResult whole;
    ST_RVResult plain;
    ASSERT_EQ(Cpp_RV_Compute(&data.record(), &options, &whole), 0);
    EXPECT_EQ(whole.rv, RVcoefficient(x, 5, 2, y, 1, nullptr, &options, &plain));
    EXPECT_EQ(whole.nUsed, 5);
    EXPECT_EQ(whole.nPermutations, 120);
    EXPECT_EQ(whole.pValue, plain.pValue);

    data.setWeights(Array::doubles(std::vector<double>{1.0, 2.0, 1.0, 1.0}));
    ASSERT_EQ(Cpp_RV_Compute(&data.record(), nullptr, &whole), 0);
    EXPECT_EQ(whole.nUsed, 4) << "the rows beyond the weights have none";
    EXPECT_EQ(whole.expected, kNone) << "unequal weights";
    EXPECT_EQ(whole.pValue, kNone);

    Array marks = Array::shorts(6);
    marks.asShorts()[0] = 1;
    marks.asShorts()[3] = NUMCORE_TRUE;
    data.setRowMarks(std::move(marks));
    ASSERT_EQ(Cpp_RV_Compute(&data.record(), nullptr, &whole), 0);
    EXPECT_EQ(whole.nUsed, 3) << "marked rows are left out";
}

TEST(RvCompute, RefusesTablesThatDoNotMatch) {
    DataSet data;
    ST_RVResult result;
    EXPECT_EQ(Cpp_RV_Compute(&data.record(), nullptr, &result), -1);
    data.setNumeric1(numericTable({{u"a", {1, 2, 4}}}));
    EXPECT_EQ(Cpp_RV_Compute(&data.record(), nullptr, &result), -1) << "no second table";
    data.setNumeric2(numericTable({{u"b", {1, 2}}}));
    EXPECT_EQ(Cpp_RV_Compute(&data.record(), nullptr, &result), -1) << "another height";
    data.setNumeric2(numericTable({{u"b", {5, 5, 5}}}));
    EXPECT_EQ(Cpp_RV_Compute(&data.record(), nullptr, &result), -2) << "no spread";
    EXPECT_EQ(result.rv, kNone);
    EXPECT_EQ(Cpp_RV_Compute(&data.record(), nullptr, nullptr), -1);
}

// Not chosen by the caller: the seed is reported, and gives the same p-value again.
TEST(PermutationSeeds, AreReportedWhenChosen) {
    std::vector<double> a(12 * 12);
    std::vector<double> b(12 * 12);
    for (std::size_t cell = 0; cell < a.size(); ++cell) {
        a[cell] = std::sin(static_cast<double>(cell));
        b[cell] = std::cos(static_cast<double>(cell * cell));
    }
    ST_MantelOptions options{200, 1, NUMCORE_FALSE, NUMCORE_FALSE, 0};
    ST_MantelResult first;
    ASSERT_EQ(RunMantelTest(a.data(), b.data(), 12, &options, &first), 0);
    options.seed = first.seed;
    options.seedGiven = NUMCORE_TRUE;
    ST_MantelResult again;
    ASSERT_EQ(RunMantelTest(a.data(), b.data(), 12, &options, &again), 0);
    EXPECT_EQ(first.pValue, again.pValue);
    EXPECT_GT(first.pValue, 0.0);
}

TEST(PartialDoors, TakeNullOutputs) {
    const double x[] = {1, 2, 3, 4, 6};
    const double y[] = {2, 1, 4, 3, 6};
    const double z[] = {1, 3, 2, 5, 4};
    EXPECT_TRUE(std::abs(Cpp_V_PartialCorrelation(x, 5, y, z, nullptr, nullptr)) < 1.0);
    EXPECT_GT(V_PolychoricRho(x, 5, y, nullptr, NUMCORE_POLYCHORIC_TWO_STEP, kNone, nullptr), 0.0);
    EXPECT_NE(BiserialCorrelation4(x, 5, z, nullptr, 0, nullptr), kNone);
}

}  // namespace
