// The doors of the parametric tests as a foreign caller uses them: automation arrays and data sets.

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "caller/data_set.hpp"
#include "numcore/numcore.h"

namespace {

using numcore::caller::Array;
using numcore::caller::DataSet;
using numcore::caller::numericTable;
using numcore::caller::textTable;
using Values = std::vector<double>;

constexpr double kNone = NUMCORE_MISSING;
const Values kFirst = {0.7, -1.6, -0.2, -1.2, -0.1, 3.4, 3.7, 0.8, 0.0, 2.0};
const Values kSecond = {1.9, 0.8, 1.1, 0.1, -0.1, 4.4, 5.5, 1.6, 4.6, 3.4};

TEST(ParametricArrays, GiveWhatPlainArraysGive) {
    const Array x = Array::doubles(kFirst);
    const Array y = Array::doubles(kSecond);
    const Values ones(10, 1.0);
    const Array w = Array::doubles(ones);
    const Array shorter = Array::doubles(9);
    double plain = 0.0;
    double arrays = 0.0;
    const auto expectSame = [&](std::int32_t status) {
        EXPECT_EQ(status, 0);
        EXPECT_EQ(arrays, plain);
        arrays = plain = 7.0;
    };
    TTest2Samples(kFirst.data(), 10, kSecond.data(), nullptr, 0, 0.05, 0, -1, 0, 0, nullptr, nullptr, nullptr,
                  nullptr, &plain, nullptr, nullptr);
    expectSame(VB_TTest2Samples(x.get(), y.get(), nullptr, 0, 0.05, 0, -1, 0, 0, nullptr, nullptr, nullptr,
                                nullptr, &arrays, nullptr, nullptr));
    ZTest2Samples(kFirst.data(), 10, kSecond.data(), ones.data(), 0, 1, 2, -1, 0.05, 0, 0, nullptr, nullptr,
                  nullptr, &plain, nullptr, nullptr);
    expectSame(VB_ZTest2Samples(x.get(), y.get(), w.get(), 0, 1, 2, -1, 0.05, 0, 0, nullptr, nullptr, nullptr,
                                &arrays, nullptr, nullptr));
    FTest2Samples(kFirst.data(), 10, kSecond.data(), nullptr, 1, 0.05, 0, nullptr, nullptr, nullptr, nullptr,
                  nullptr, &plain, nullptr, nullptr);
    expectSame(VB_FTest2Samples(x.get(), y.get(), nullptr, 1, 0.05, 0, nullptr, nullptr, nullptr, nullptr,
                                nullptr, &arrays, nullptr, nullptr));
    LTest2Samples(kFirst.data(), 10, kSecond.data(), nullptr, 0.05, -1, nullptr, nullptr, nullptr, nullptr,
                  &plain);
    expectSame(
        VB_LTest2Samples(x.get(), y.get(), w.get(), 0.05, -1, nullptr, nullptr, nullptr, nullptr, &arrays));
    BTest2Samples(kFirst.data(), 10, kSecond.data(), nullptr, 0.05, nullptr, nullptr, nullptr, &plain);
    expectSame(VB_BTest2Samples(x.get(), y.get(), nullptr, 0.05, nullptr, nullptr, nullptr, &arrays));

    Values both = kFirst;
    both.insert(both.end(), kSecond.begin(), kSecond.end());
    const Array table = Array::matrix(10, 2);
    std::copy(both.begin(), both.end(), table.asDoubles().begin());
    LTest2Samples(kFirst.data(), 10, kSecond.data(), nullptr, 0.05, 0, nullptr, nullptr, nullptr, nullptr,
                  &plain);
    expectSame(VB_LTestKSamples(table.get(), w.get(), 0.05, 0, nullptr, nullptr, nullptr, nullptr, &arrays));
    BTest2Samples(kFirst.data(), 10, kSecond.data(), nullptr, 0.05, nullptr, nullptr, nullptr, &plain);
    expectSame(VB_BTestKSamples(table.get(), nullptr, 0.05, nullptr, nullptr, nullptr, &arrays));

    EXPECT_EQ(VB_BTestKSamples(table.get(), shorter.get(), 0.05, nullptr, nullptr, nullptr, &arrays), -2);
    EXPECT_EQ(arrays, kNone);
    EXPECT_EQ(VB_FTest2Samples(x.get(), shorter.get(), nullptr, 1, 0.05, 0, nullptr, nullptr, nullptr, nullptr,
                               nullptr, &arrays, nullptr, nullptr),
              -1);
    EXPECT_EQ(VB_TTest2Samples(nullptr, nullptr, nullptr, 0, 0.05, 0, -1, 0, 0, nullptr, nullptr, nullptr,
                               nullptr, nullptr, nullptr, nullptr),
              -1);
}

TEST(ParametricDataSets, GroupsAreColumns) {
    DataSet data;
    data.setNumeric1(numericTable({{u"x", kFirst}, {u"between", Values(10, 3.0)}, {u"y", kSecond}}));
    double expected = 0.0;
    double got = 0.0;
    double df = 0.0;
    BTest2Samples(kFirst.data(), 10, kSecond.data(), nullptr, 0.05, &expected, nullptr, nullptr, nullptr);
    EXPECT_EQ(Cpp_BTestKSamplesNew(&data.record(), 1, 3, 0.05, nullptr, &got, nullptr, &df, nullptr), 0);
    EXPECT_EQ(got, expected) << "the group without variance is left out";
    EXPECT_EQ(df, 1.0);
    EXPECT_EQ(
        Cpp_BTestKSamplesNew(&data.record(), INT32_MIN, INT32_MAX, 0.05, nullptr, &got, nullptr, &df, nullptr),
        0)
        << "cut to the table";
    EXPECT_EQ(got, expected);
    EXPECT_EQ(Cpp_BTestKSamplesNew(&data.record(), 1, 2, 0.05, nullptr, &got, nullptr, &df, nullptr), -2);
    EXPECT_EQ(df, kNone);
    EXPECT_EQ(Cpp_BTestKSamplesNew(nullptr, 1, 2, 0.05, nullptr, nullptr, nullptr, nullptr, nullptr), -2);

    LTest2Samples(kFirst.data(), 10, kSecond.data(), nullptr, 0.05, -1, &expected, nullptr, nullptr, nullptr,
                  nullptr);
    EXPECT_EQ(
        Cpp_LTest2SamplesNew(&data.record(), 1, 3, 0.05, -1, nullptr, &got, nullptr, nullptr, &df, nullptr), 0);
    EXPECT_EQ(got, expected);
    EXPECT_EQ(
        Cpp_LTestKSamplesNew(&data.record(), 1, 3, 0.05, -1, nullptr, &got, nullptr, nullptr, &df, nullptr), 0);
    EXPECT_EQ(df, 27.0);
    EXPECT_EQ(
        Cpp_LTest2SamplesNew(&data.record(), 1, 9, 0.05, -1, nullptr, &got, nullptr, nullptr, nullptr, nullptr),
        -2);
}

TEST(ParametricDataSets, WeightsAndMarkedRows) {
    DataSet data;
    data.setNumeric1(numericTable({{u"x", kFirst}, {u"y", kSecond}}));
    Values w(10, 1.0);
    w[9] = 0.0;
    data.setWeights(Array::doubles(w));
    double expected = 0.0;
    double got = 0.0;
    const auto statistic = [&] {
        Cpp_BTestKSamplesNew(&data.record(), 1, 2, 0.05, nullptr, &got, nullptr, nullptr, nullptr);
        return got;
    };
    BTest2Samples(kFirst.data(), 9, kSecond.data(), nullptr, 0.05, &expected, nullptr, nullptr, nullptr);
    EXPECT_EQ(statistic(), expected);
    Array marks = Array::shorts(10);
    marks.asShorts()[8] = NUMCORE_TRUE;
    data.setRowMarks(std::move(marks));
    BTest2Samples(kFirst.data(), 8, kSecond.data(), nullptr, 0.05, &expected, nullptr, nullptr, nullptr);
    EXPECT_EQ(statistic(), expected);
    data.setNumeric2(numericTable({{u"w", Values(10, 2.0)}}));
    EXPECT_NE(statistic(), expected) << "the weights of the groups' own";
}

struct TZ {
    explicit TZ(std::size_t nRows) : table(Array::matrix(nRows, NUMCORE_MEAN_COLUMNS)) {
        results.table = table.get();
    }
    double operator()(std::size_t row, int column) const {
        return table.at(row, static_cast<std::size_t>(column));
    }
    Array table;
    ST_TZResults results{};
};

ST_TZParam paramOf(std::int32_t test, std::int32_t design) {
    ST_TZParam param{};
    param.test = test;
    param.design = design;
    param.alpha = 0.05;
    return param;
}

TEST(TZCompute, TestsColumnsAloneInPairsAndByGroup) {
    DataSet data;
    Values x = kFirst;
    x.push_back(kNone);
    data.setNumeric1(numericTable({{u"x", x}, {u"constant", Values(11, 3.0)}}));
    TZ one(2);
    ST_TZParam param = paramOf(NUMCORE_MEAN_T, NUMCORE_MEAN_ONE_SAMPLE);
    EXPECT_EQ(Cpp_TZ_Compute(&data.record(), &param, &one.results), -2) << "the second column";
    EXPECT_EQ(one.results.nTests, 2);
    EXPECT_EQ(one(0, NUMCORE_MEAN_N1), 10.0);
    EXPECT_EQ(one(0, NUMCORE_MEAN_N2), kNone);
    EXPECT_NEAR(one(0, NUMCORE_MEAN_STATISTIC), 1.3257101407138212, 1e-12);
    EXPECT_EQ(one(0, NUMCORE_MEAN_STATUS), 0.0);
    EXPECT_EQ(one(1, NUMCORE_MEAN_STATUS), -2.0);

    data.setNumeric2(numericTable({{u"y", kSecond}}));
    TZ pairs(1);
    param.design = NUMCORE_MEAN_PAIRED;
    EXPECT_EQ(Cpp_TZ_Compute(&data.record(), &param, &pairs.results), 0);
    EXPECT_EQ(pairs.results.nTests, 1);
    EXPECT_NEAR(pairs(0, NUMCORE_MEAN_P), 0.002832890197384273, 1e-13);
    param.test = NUMCORE_MEAN_Z;
    EXPECT_EQ(Cpp_TZ_Compute(&data.record(), &param, &pairs.results), 0);
    EXPECT_NEAR(pairs(0, NUMCORE_MEAN_P), 4.862746583663555e-05, 1e-13);
    EXPECT_EQ(pairs(0, NUMCORE_MEAN_DF), kNone);

    TZ columns(1);
    param = paramOf(NUMCORE_MEAN_T, NUMCORE_MEAN_INDEPENDENT);
    param.equalVariances = NUMCORE_TRUE;
    EXPECT_EQ(Cpp_TZ_Compute(&data.record(), &param, &columns.results), 0);

    DataSet grouped;
    Values all = kFirst;
    all.insert(all.end(), kSecond.begin(), kSecond.end());
    all.push_back(100.0);
    std::vector<std::u16string> names(20, u"a");
    std::fill(names.begin() + 10, names.end(), u"b");
    names.emplace_back();
    grouped.setNumeric1(numericTable({{u"all", all}}));
    grouped.setStrings3(textTable({{u"group", names}}));
    TZ groups(1);
    param.byGroup = NUMCORE_TRUE;
    EXPECT_EQ(Cpp_TZ_Compute(&grouped.record(), &param, &groups.results), 0);
    for (int j = 0; j < NUMCORE_MEAN_COLUMNS; ++j) EXPECT_EQ(groups(0, j), columns(0, j)) << j;
    EXPECT_EQ(groups(0, NUMCORE_MEAN_DF), 18.0);
}

// Expected: sums over all 512 changes of sign in Python, as in reference/tests/resampling_exact.csv.
TEST(TZCompute, OneSampleResamples) {
    const Values x = {0.65, -0.14, -1.05, 0.37, 1.76, 2.4, 0.43, -1.63, 2.09};
    DataSet data;
    data.setNumeric1(numericTable({{u"x", x}, {u"again", x}}));
    TZ out(2);
    ResamplingOptions options{};
    options.useResampling = NUMCORE_TRUE;
    ST_TZParam param = paramOf(NUMCORE_MEAN_T, NUMCORE_MEAN_ONE_SAMPLE);
    param.resampling = &options;
    EXPECT_EQ(Cpp_TZ_Compute(&data.record(), &param, &out.results), 0);
    EXPECT_EQ(options.outcome, NUMCORE_RESAMPLED | NUMCORE_RESAMPLED_ALL);
    EXPECT_EQ(out(0, NUMCORE_MEAN_P), 138.0 / 512.0);
    EXPECT_NEAR(out(0, NUMCORE_MEAN_CRITICAL), 2.494530663333562, 1e-13);
    const double mean = out(0, NUMCORE_MEAN_DIFFERENCE);
    const double error = mean / out(0, NUMCORE_MEAN_STATISTIC);
    EXPECT_NEAR(out(0, NUMCORE_MEAN_LOWER), mean - 2.494530663333562 * error, 1e-12);
    EXPECT_NEAR(out(0, NUMCORE_MEAN_UPPER), mean + 2.494530663333562 * error, 1e-12);

    param.test = NUMCORE_MEAN_Z;
    param.alternative = 1;
    param.hypothesised = 0.2;
    param.givenVariances = NUMCORE_TRUE;
    param.variance1 = 2.25;
    EXPECT_EQ(Cpp_TZ_Compute(&data.record(), &param, &out.results), 0);
    EXPECT_EQ(out(0, NUMCORE_MEAN_P), 112.0 / 512.0);
    EXPECT_NEAR(out(0, NUMCORE_MEAN_CRITICAL), 1.4088888888888886, 1e-13);

    // One seed of chance for all columns; it comes back and the flag stays.
    options.method = NUMCORE_RESAMPLE_BOOTSTRAP;
    options.nResamples = 500;
    EXPECT_EQ(Cpp_TZ_Compute(&data.record(), &param, &out.results), 0);
    const double chance = out(0, NUMCORE_MEAN_CRITICAL);
    EXPECT_EQ(out(1, NUMCORE_MEAN_CRITICAL), chance);
    EXPECT_EQ(options.seedGiven, 0);
    options.seedGiven = NUMCORE_TRUE;
    EXPECT_EQ(Cpp_TZ_Compute(&data.record(), &param, &out.results), 0);
    EXPECT_EQ(out(0, NUMCORE_MEAN_CRITICAL), chance);
}

TEST(TZCompute, RefusesWhatItCannotTest) {
    DataSet data;
    TZ out(1);
    ST_TZParam param = paramOf(NUMCORE_MEAN_T, NUMCORE_MEAN_INDEPENDENT);
    EXPECT_EQ(Cpp_TZ_Compute(nullptr, &param, &out.results), -1);
    EXPECT_EQ(Cpp_TZ_Compute(&data.record(), nullptr, &out.results), -1);
    EXPECT_EQ(Cpp_TZ_Compute(&data.record(), &param, nullptr), -1);
    EXPECT_EQ(Cpp_TZ_Compute(&data.record(), &param, &out.results), -1) << "no columns";
    data.setNumeric1(numericTable({{u"x", kFirst}}));
    EXPECT_EQ(Cpp_TZ_Compute(&data.record(), &param, &out.results), -1) << "no second table";
    EXPECT_EQ(out.results.nTests, 0);
    param.byGroup = NUMCORE_TRUE;
    data.setStrings3(textTable({{u"group", std::vector<std::u16string>(10, u"only one")}}));
    EXPECT_EQ(Cpp_TZ_Compute(&data.record(), &param, &out.results), -1) << "one group";
    param.design = NUMCORE_MEAN_ONE_SAMPLE;
    out.results.table = nullptr;
    EXPECT_EQ(Cpp_TZ_Compute(&data.record(), &param, &out.results), 0) << "nowhere to write is no failure";
    EXPECT_EQ(out.results.nTests, 1);
}

}  // namespace
