#include "descriptive/quantile.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>

#include "numcore/descriptive.hpp"
#include "reference_table.hpp"

namespace {

using numcore::matrix;
using numcore::descriptive::quantile;
using numcore::testing::Row;

std::vector<double> valuesOf(const Row& row) {
    if (!row.text("values").empty()) return row.list("values");
    return numcore::testing::readDataColumn(row.text("dataset") + ".csv", row.text("column"));
}

std::vector<double> weightsOf(const Row& row, std::size_t n) {
    if (!row.text("weights").empty()) {
        return numcore::testing::readDataColumn(row.text("dataset") + ".csv", row.text("weights"));
    }
    auto weights = row.list("weight_values");
    if (weights.size() == 1) weights.resize(n, weights[0]);
    return weights;
}

TEST(Quantile, MatchesReference) {
    numcore::testing::expectTable("descriptive/quantile.csv", [](const Row& row) {
        auto values = valuesOf(row);
        auto weights = weightsOf(row, values.size());
        const auto n = static_cast<std::int32_t>(values.size());
        const auto method = static_cast<std::int32_t>(row["method"]);
        const std::int16_t weighted = weights.empty() ? NUMCORE_FALSE : NUMCORE_TRUE;
        return Cpp_V_QuantileMethod(values.data(), n, nullptr, weighted, weights.data(), method, row["p"]);
    });
}

TEST(Quantile, AnswersBeforeTheMethodIsLookedAt) {
    double one[] = {NUMCORE_MISSING, 7.0, NUMCORE_MISSING};
    double some[] = {3.0, NUMCORE_MISSING, 1.0, 2.0};
    for (const int method : {-1, 0, 1, 2, 3, 4, 5, 6, 99}) {
        EXPECT_EQ(Cpp_V_QuantileMethod2(one, 3, method, 0.3), 7.0);
        EXPECT_EQ(Cpp_V_QuantileMethod2(some, 4, method, 0.0), 1.0);
        EXPECT_EQ(Cpp_V_QuantileMethod2(some, 4, method, 1.0), 3.0);
    }
    EXPECT_EQ(Cpp_V_QuantileMethod2(some, 4, 6, 0.5), 0.0) << "an unknown method";
}

TEST(Quantile, BadInputGivesTheMissingValue) {
    double cells[] = {1.0, 2.0};
    double missing[] = {NUMCORE_MISSING, NUMCORE_MISSING};
    EXPECT_EQ(Cpp_V_QuantileMethod2(nullptr, 5, 5, 0.5), NUMCORE_MISSING);
    EXPECT_EQ(Cpp_V_QuantileMethod2(cells, 0, 5, 0.5), NUMCORE_MISSING);
    EXPECT_EQ(Cpp_V_QuantileMethod2(cells, -1, 5, 0.5), NUMCORE_MISSING);
    EXPECT_EQ(Cpp_V_QuantileMethod2(missing, 2, 5, 0.5), NUMCORE_MISSING);
    EXPECT_EQ(Cpp_V_QuantileMethod(cells, 2, nullptr, NUMCORE_TRUE, nullptr, 5, 0.5), NUMCORE_MISSING);
    for (const double p : {-0.1, 1.1, std::nan("")}) {
        EXPECT_EQ(Cpp_V_QuantileMethod2(cells, 2, 5, p), NUMCORE_MISSING);
        EXPECT_EQ(Cpp_V_QuantileMethod(cells, 2, nullptr, NUMCORE_TRUE, cells, 5, p), NUMCORE_MISSING);
    }
}

TEST(Quantile, NanSortsLastAndInfinitiesStay) {
    const double inf = HUGE_VAL;
    const std::vector<double> cells = {std::nan(""), 1.0, -inf, inf, -inf};
    EXPECT_EQ(quantile(cells, 5, 0.0), -inf);
    EXPECT_EQ(quantile(cells, 5, 0.125), -inf) << "between equal infinities";
    EXPECT_EQ(quantile(cells, 5, 0.5), 1.0);
    EXPECT_EQ(quantile(cells, 5, 0.75), inf);
    EXPECT_TRUE(std::isnan(quantile(cells, 5, 1.0)));
}

TEST(Quantile, LiesBetweenItsNeighboursForEveryOrder) {
    std::mt19937_64 random(20);
    std::vector<double> cells(5000);
    for (double& cell : cells) cell = std::round(std::normal_distribution<>(0.0, 50.0)(random));
    std::vector<double> sorted = cells;
    std::sort(sorted.begin(), sorted.end());
    const auto m = static_cast<double>(cells.size());
    for (int method = 0; method <= 5; ++method) {
        double previous = sorted.front();
        for (double p = 0.0; p <= 1.0; p += 0.013) {
            const double q = quantile(cells, method, p);
            const auto k = static_cast<std::size_t>(std::floor(m * p));
            EXPECT_GE(q, sorted[k == 0 ? 0 : k - 1]);
            EXPECT_LE(q, sorted[std::min(k + 1, cells.size() - 1)]);
            EXPECT_GE(q, previous) << "monotone in p";
            previous = q;
        }
    }
}

TEST(Quantile, UnitWeightsGiveMethodFour) {
    std::vector<double> cells = {5.0, 3.0, NUMCORE_MISSING, 9.0, 1.0, 3.0, 8.0};
    std::vector<double> weights(cells.size(), 1.0);
    for (double p = 0.0; p <= 1.0; p += 1.0 / 24.0) {
        EXPECT_EQ(numcore::descriptive::weightedQuantile(cells, weights, p), quantile(cells, 4, p)) << p;
    }
}

TEST(QuantileLimits, RanksMatchTheBinomialLaw) {
    for (const auto& row : numcore::testing::readTable("descriptive/limit_ranks.csv")) {
        const auto m = static_cast<std::int64_t>(row["m"]);
        const auto exact = numcore::descriptive::exactLimitRanks(m, row["p"], row["level"]);
        EXPECT_EQ(exact.lower, row["lower"]) << "line " << row.line();
        EXPECT_EQ(exact.upper, row["upper"]) << "line " << row.line();
        const auto large = numcore::descriptive::largeSampleLimitRanks(m, row["p"], row["level"]);
        EXPECT_EQ(large.lower, row["large_lower"]) << "line " << row.line();
        EXPECT_EQ(large.upper, row["large_upper"]) << "line " << row.line();
    }
}

TEST(QuantileLimits, AreOrderStatisticsOrMissing) {
    std::vector<double> cells(16);
    std::iota(cells.begin(), cells.end(), 1.0);
    std::shuffle(cells.begin(), cells.end(), std::mt19937(3));
    cells.push_back(NUMCORE_MISSING);
    const matrix<double> x(17, 1, cells.data(), true);
    const auto limits = numcore::V_ConfQuantilesNonParam1(&x, 17, 0.5, 0.95);
    EXPECT_EQ(limits.lower, 4.0);
    EXPECT_EQ(limits.upper, 13.0);
    const auto open = numcore::V_ConfQuantilesNonParam1(&x, 17, 0.01, 0.95);
    EXPECT_EQ(open.lower, NUMCORE_MISSING) << "no value lies low enough";
    EXPECT_NE(open.upper, NUMCORE_MISSING);
    for (const double bad : {0.0, 1.0, -1.0, std::nan("")}) {
        EXPECT_EQ(numcore::V_ConfQuantilesNonParam1(&x, 17, bad, 0.95).upper, NUMCORE_MISSING);
        EXPECT_EQ(numcore::V_ConfQuantilesLargeSample(&x, 17, 0.5, bad).lower, NUMCORE_MISSING);
    }
    EXPECT_EQ(numcore::V_ConfQuantilesLargeSample(nullptr, 3, 0.5, 0.9).lower, NUMCORE_MISSING);
}

TEST(InterQuartile, IsTheDifferenceOfTwoQuantiles) {
    double cells[] = {1.0, 2.0, 3.0, 4.0};
    matrix<double> x(4, 1, cells, true);
    EXPECT_EQ(numcore::V_InterQuartileMethod(&x, 4, NUMCORE_FALSE, nullptr, 5), 1.5);  // R: IQR(1:4)
    EXPECT_EQ(numcore::V_InterQuartileMethod(&x, 0, NUMCORE_FALSE, nullptr, 5), NUMCORE_MISSING);
}

}  // namespace
