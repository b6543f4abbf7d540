#include "numcore/empirical.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <vector>

#include "numcore/special.h"

namespace {

using numcore::BuildCDFEmpirical;
using numcore::EmpDist;
using numcore::InvCDFEmpirical;
using numcore::kMissing;
using numcore::matrix;
using numcore::SearchForProbInEmpCDF;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

using Rows = std::vector<std::pair<double, double>>;

matrix<double> column(std::vector<double> cells) {
    return matrix<double>(static_cast<std::int32_t>(cells.size()), 1, cells.data(), false);
}

matrix<double> tableOf(const std::vector<double>& values, const std::vector<double>& weights,
                       std::int16_t sort = NUMCORE_TRUE) {
    matrix<double> table;
    std::int32_t nRows = -1;
    BuildCDFEmpirical(column(values), static_cast<std::int32_t>(values.size()), column(weights), sort, table,
                      nRows);
    EXPECT_EQ(nRows, table.rows());
    return table;
}

Rows rowsOf(const matrix<double>& table) {
    Rows rows;
    for (std::int32_t i = 0; i < table.rows(); ++i) rows.emplace_back(table.at(i, 0), table.at(i, 1));
    return rows;
}

TEST(BuildCDFEmpirical, StepsAtDifferentValues) {
    const Rows expected = {{1.0, 0.0}, {1.0, 2.0 / 3.0}, {2.0, 2.0 / 3.0}, {2.0, 1.0}};
    EXPECT_EQ(rowsOf(tableOf({1.0, 1.0, 2.0}, {1.0, 1.0, 1.0})), expected);
    EXPECT_EQ(rowsOf(tableOf({2.0, 1.0, 1.0}, {})), expected) << "sorted, unit weights";
    EXPECT_EQ(rowsOf(tableOf({2.0, 1.0}, {0.5, 1.0})), expected) << "weights go along";
    EXPECT_EQ(rowsOf(tableOf({7.0}, {3.0})), (Rows{{7.0, 0.0}, {7.0, 1.0}}));
    EXPECT_EQ(rowsOf(tableOf({2.0, 1.0}, {1.0, 3.0}, 1)),
              (Rows{{2.0, 0.0}, {2.0, 0.25}, {1.0, 0.25}, {1.0, 1.0}}))
        << "a flag of 1 does not sort";
}

TEST(BuildCDFEmpirical, KeepsItsTieRuleAndObservationsWithoutWeight) {
    EXPECT_EQ(rowsOf(tableOf({1e-300, 2e-300, 1e-17}, {})), (Rows{{1e-300, 0.0}, {1e-17, 1.0}}));
    EXPECT_EQ(tableOf({0.0, 2.220446049250313e-16}, {}).rows(), 2);
    EXPECT_EQ(tableOf({0.0, 2.3e-16}, {}).rows(), 4);
    EXPECT_EQ(rowsOf(tableOf({1.0, 2.0, 3.0}, {1.0, 0.0, 1.0})),
              (Rows{{1.0, 0.0}, {1.0, 0.5}, {2.0, 0.5}, {2.0, 0.5}, {3.0, 0.5}, {3.0, 1.0}}));
}

TEST(BuildCDFEmpirical, LeavesOutWhatHoldsNothing) {
    const Rows one = {{4.0, 0.0}, {4.0, 1.0}};
    EXPECT_EQ(rowsOf(tableOf({kMissing, 4.0, kNaN}, {})), one);
    EXPECT_EQ(rowsOf(tableOf({5.0, 4.0, 6.0}, {kMissing, 1.0})), one) << "a missing and an absent weight";
    EXPECT_EQ(tableOf({}, {}).rows(), 0);
    EXPECT_EQ(tableOf({kMissing}, {}).rows(), 0);
    for (const double weight : {0.0, -1.0, kNaN, kInfinity})
        EXPECT_EQ(tableOf({1.0, 2.0}, {weight, 0.0}).rows(), 0) << weight;
    EXPECT_EQ(rowsOf(tableOf({-kInfinity, kInfinity, kInfinity}, {})),
              (Rows{{-kInfinity, 0.0}, {-kInfinity, 1.0 / 3.0}, {kInfinity, 1.0 / 3.0}, {kInfinity, 1.0}}));
}

TEST(BuildCDFEmpirical, WritesWhatFitsTheTable) {
    matrix<double> small(3, 2, -7.0);
    std::int32_t nRows = 0;
    BuildCDFEmpirical(column({1.0, 2.0}), 9, column({}), NUMCORE_TRUE, small, nRows);
    EXPECT_EQ(nRows, 3) << "no more observations than there are, no more rows than fit";
    EXPECT_EQ(rowsOf(small), (Rows{{1.0, 0.0}, {1.0, 0.5}, {2.0, 0.5}}));
    matrix<double> large(5, 2, -7.0);
    BuildCDFEmpirical(column({1.0, 2.0}), 1, column({}), NUMCORE_TRUE, large, nRows);
    EXPECT_EQ(nRows, 2);
    EXPECT_EQ(large.at(2, 0), -7.0);
    BuildCDFEmpirical(column({1.0, 2.0}), -1, column({}), NUMCORE_TRUE, large, nRows);
    EXPECT_EQ(nRows, 0);
}

TEST(StepTable, QuantileIsTheFirstStepThatReachesTheProbability) {
    const matrix<double> table = tableOf({1.0, 1.0, 2.0, 5.0}, {});
    const std::int32_t n = table.rows();
    const std::array<std::pair<double, double>, 9> expected = {{{-1.0, 1.0},
                                                                {0.0, 1.0},
                                                                {0.5, 1.0},
                                                                {std::nextafter(0.5, 1.0), 2.0},
                                                                {0.75, 2.0},
                                                                {0.76, 5.0},
                                                                {1.0, 5.0},
                                                                {1.0001, 0.0},
                                                                {kNaN, 0.0}}};
    for (const auto& [p, value] : expected) EXPECT_EQ(InvCDFEmpirical(p, table, n), value) << p;
    for (const std::int32_t nRows : {-1, 0, 1}) EXPECT_EQ(InvCDFEmpirical(0.5, table, nRows), 0.0) << nRows;
    EXPECT_EQ(InvCDFEmpirical(0.9, table, 4), 0.0) << "past the rows looked at";
    EXPECT_EQ(InvCDFEmpirical(0.9, table, 1000000), 5.0) << "never more rows than there are";
    EXPECT_EQ(InvCDFEmpirical(0.5, matrix<double>(4, 1, 1.0), 4), 0.0) << "a table without a second column";
}

TEST(StepTable, ProbabilityIsTheShareUpToTheValue) {
    const matrix<double> table = tableOf({1.0, 1.0, 2.0, 5.0}, {});
    const std::int32_t n = table.rows();
    const std::array<std::pair<double, double>, 9> expected = {{{-kInfinity, 0.0},
                                                                {0.999, 0.0},
                                                                {1.0, 0.5},
                                                                {1.999, 0.5},
                                                                {2.0, 0.75},
                                                                {4.999, 0.75},
                                                                {5.0, 1.0},
                                                                {kInfinity, 1.0},
                                                                {kNaN, kMissing}}};
    for (const auto& [x, p] : expected) EXPECT_EQ(SearchForProbInEmpCDF(x, table, n), p) << x;
    EXPECT_EQ(SearchForProbInEmpCDF(kMissing, table, n), kMissing);
    for (const std::int32_t nRows : {-1, 0, 1})
        EXPECT_EQ(SearchForProbInEmpCDF(1.0, table, nRows), kMissing) << nRows;
}

TEST(StepTable, PlainArraysReadAsContainersDo) {
    const std::vector<double> values = {3.0, 1.0, 3.0, 2.0};
    std::vector<double> table(16, -7.0);
    std::int32_t nRows = 0;
    VB_BuildCDFEmpirical(values.data(), 4, nullptr, NUMCORE_TRUE, table.data(), &nRows);
    EXPECT_EQ(nRows, 6);
    EXPECT_EQ(table, (std::vector<double>{1, 1, 2, 2, 3, 3, 3, 3, 0, 0.25, 0.25, 0.5, 0.5, 1, 1, 1}));
    for (const double p : {0.0, 0.25, 0.3, 0.5, 0.9, 1.0, 1.5}) {
        EXPECT_EQ(VB_InvCDFEmpirical(p, table.data(), 8), InvCDFEmpirical(p, tableOf(values, {}), 6)) << p;
    }
    for (const double x : {0.0, 1.0, 2.5, 3.0})
        EXPECT_EQ(Cpp_GetProbaVal(x, table.data(), 8), SearchForProbInEmpCDF(x, tableOf(values, {}), 6)) << x;
}

TEST(EmpDist, ReadsTheSortedSample) {
    EmpDist sample;
    for (const double x : {4.0, 1.0, kMissing, 3.0, 1.0}) EXPECT_EQ(sample.insert(x), 0);
    EXPECT_EQ(sample.DoSort(), 0);
    EXPECT_EQ(sample.CDF(0.9), 0.0);
    EXPECT_EQ(sample.CDF(1.0), 0.5);
    EXPECT_EQ(sample.CDF(3.5), 0.75);
    EXPECT_EQ(sample.CDF(kNaN), kMissing);
    EXPECT_EQ(sample.InvCDF(0.0), 1.0);
    EXPECT_EQ(sample.InvCDF(0.5), 3.0);
    EXPECT_EQ(sample.InvCDF(0.75), 4.0);
    EXPECT_EQ(sample.InvCDF(1.0), 4.0);
    for (const double p : {1.5, -0.1, kNaN}) EXPECT_EQ(sample.InvCDF(p), -1.0) << p;
    EXPECT_EQ(sample.biasCorr(3.0), InvCDFNormalStd(0.75));
}

TEST(EmpDist, DescribesTheSample) {
    EmpDist sample;
    EXPECT_EQ(sample.getDescMu(), kMissing);
    EXPECT_EQ(sample.getDescSigma(), kMissing);
    EXPECT_EQ(sample.CDF(1.0), kMissing);
    EXPECT_EQ(sample.InvCDF(0.5), kMissing);
    EXPECT_EQ(sample.biasCorr(0.5), kMissing);
    sample.insert(2.0);
    EXPECT_EQ(sample.getDescSigma(), 0.0) << "a single value";
    EXPECT_EQ(sample.accelerator(), kMissing);
    for (const double x : {3.0, 5.0, 9.0, 14.0}) sample.insert(x);
    // R 4.2.2: x <- c(2, 3, 5, 9, 14); mean(x); sd(x); d <- mean(x) - x; sum(d^3) / (6 * sum(d^2)^1.5)
    EXPECT_DOUBLE_EQ(sample.getDescMu(), 6.6);
    EXPECT_NEAR(sample.getDescSigma(), 4.9295030175464953, 1e-14);
    EXPECT_NEAR(sample.accelerator(), -0.047125344263323633, 1e-16);
}

}  // namespace
