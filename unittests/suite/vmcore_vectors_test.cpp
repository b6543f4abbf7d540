#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "reference_table.hpp"
#include "suite/vmcore.hpp"

namespace {

using namespace numcore::vmcore;
using numcore::testing::Row;
using Vector = std::vector<double>;
constexpr double kInf = std::numeric_limits<double>::infinity();
const double kNaN = std::nan("");

double call(const Row& row) {
    const Vector values = row.list("values");
    const Vector weights = row.list("weights");
    const std::string function = row.text("function");
    if (function == "quantile") return V_QuantileW2(values, weights, row["p"]);
    double mean, variance, skewness, kurtosis;
    V_MeanVarSkewPKurtP(values, weights, mean, variance, skewness, kurtosis);
    if (function == "skewness") return skewness;
    if (function == "kurtosis") return kurtosis;
    double sameMean, sameVariance;
    V_MeanVarW2(values, weights, sameMean, sameVariance);
    EXPECT_EQ(mean, sameMean);
    EXPECT_EQ(mean, V_MeanW2(values, weights));
    EXPECT_EQ(variance, sameVariance);
    return function == "mean" ? mean : variance;
}

TEST(Vectors, StatisticsMatchReference) {
    numcore::testing::expectTable("suite/vmcore.csv", call);
}

TEST(Vectors, MeanVarHonoursItsOptions) {
    const Vector data = {1.0, 100.0, kMissing, 2.0, 4.0, 50.0};
    const std::vector<std::int16_t> exclusion = {0, 1};  // not only -1 excludes
    const Vector weights = {0.5, 1.0, 1.0, 1.5, 2.0, 1.0};
    double mean, variance;
    V_MeanVar(data, 5, mean, variance, exclusion, weights, -1, -1);
    EXPECT_DOUBLE_EQ(mean, 2.875);
    EXPECT_DOUBLE_EQ(variance, (0.5 * 1.875 * 1.875 + 1.5 * 0.875 * 0.875 + 2.0 * 1.125 * 1.125) / 3.0);
    const double squares = variance * 3.0;
    V_MeanVar(data, 5, mean, variance, exclusion, weights, 0, -1);
    EXPECT_DOUBLE_EQ(variance, squares / (4.0 - 4.0 / 3.0));
    V_MeanVar(data, 5, mean, variance, exclusion, weights, -1, 1);  // 1 is not true
    EXPECT_EQ(mean, kMissing);
    EXPECT_EQ(variance, kMissing);
    V_MeanVar(data, 99, mean, variance, {}, {}, -1, -1);
    EXPECT_DOUBLE_EQ(mean, 31.4);
    V_MeanVar(data, -1, mean, variance, {}, {}, -1, -1);
    EXPECT_EQ(mean, kMissing);
    V_MeanVar(data, 1, mean, variance, {}, {}, 0, -1);
    EXPECT_EQ(variance, 0.0);
}

TEST(Vectors, MomentsOfNothingAndOfConstants) {
    double mean, variance, skewness, kurtosis;
    V_MeanVarSkewPKurtP({}, {}, mean, variance, skewness, kurtosis);
    for (const double x : {mean, variance, skewness, kurtosis}) EXPECT_EQ(x, kMissing);
    V_MeanVarSkewPKurtP(Vector(3, 0.1), {}, mean, variance, skewness, kurtosis);
    EXPECT_EQ(mean, 0.1);
    EXPECT_EQ(variance, 0.0);
    EXPECT_EQ(skewness, kMissing);
    EXPECT_EQ(kurtosis, kMissing);
}

TEST(Vectors, SmallReductions) {
    const Vector values = {1e16, 3.0, kMissing, -1e16, 0.5, kNaN};
    EXPECT_EQ(V_Sum2(std::span(values).first(5)), 3.5);
    EXPECT_EQ(V_Sum2({}), 0.0);
    EXPECT_EQ(V_Sum2(Vector{kInf, 1.0}), kInf);
    EXPECT_TRUE(std::isnan(V_Sum2(values)));
    EXPECT_EQ(V_Min(values), -1e16);
    EXPECT_EQ(V_Max(values), 1e16);
    EXPECT_EQ(V_Max({}), kMissing);
    EXPECT_EQ(V_NbMissing(values), 1);
    EXPECT_TRUE(V_Is01(Vector{0.0, 1.0, kMissing}));
    EXPECT_FALSE(V_Is01(Vector{0.5, std::nextafter(1.0, 2.0)}));
    EXPECT_FALSE(V_Is01(Vector{kNaN}));
    std::vector<std::int16_t> flags = {-1, 1, 0};
    InitVectorToFalse(flags);
    EXPECT_EQ(flags, std::vector<std::int16_t>(3, 0));
}

TEST(Vectors, QuantileWalksTheRunningWeight) {
    const Vector values = {2.0, 1.0, 3.0, 4.0};
    // An exact hit takes the mean with the next value in order, also when that one has no weight.
    EXPECT_EQ(V_QuantileW2(values, Vector{0.0, 2.0, 1.0, 1.0}, 0.5), 1.5);
    EXPECT_EQ(V_QuantileW2(values, Vector{0.0, 2.0, 1.0, 1.0}, 0.0), 1.0);
    EXPECT_EQ(V_QuantileW2(values, Vector{1.0, 1.0, 1.0, 0.0}, 1.0), 4.0);
    EXPECT_EQ(V_QuantileW2(values, Vector{0.0, 1.0, kNaN, -4.0}, 0.9), 1.0);
    EXPECT_EQ(V_QuantileW2(Vector{kNaN, 3.0, 1.0}, {}, 0.5), 3.0);
    EXPECT_EQ(V_QuantileW2(Vector{kMissing}, {}, 0.5), kMissing);
    EXPECT_EQ(V_QuantileW2(Vector{8.0}, Vector{0.0}, 0.5), 8.0);
    EXPECT_EQ(V_QuantileW2(values, {}, kNaN), kMissing);
}

TEST(Vectors, RanksShareTies) {
    Vector ranks(6);
    const Vector values = {10.0, 20.0, 10.0, 30.0, 20.0, 20.0};
    EXPECT_EQ(V_GetRanksTies(values, {}, ranks), (Vector{2.0, 3.0, 1.0}));
    EXPECT_EQ(ranks, (Vector{1.5, 4.0, 1.5, 6.0, 4.0, 4.0}));  // R: rank()

    // A weight of 2 is a row twice.
    Vector once(3), twice(5);
    const Vector sizes = V_GetRanksTies(Vector{5.0, 1.0, 5.0}, Vector{2.0, 2.0, 1.0}, once);
    EXPECT_EQ(sizes, V_GetRanksTies(Vector{5.0, 5.0, 1.0, 1.0, 5.0}, {}, twice));
    EXPECT_EQ(once, (Vector{twice[0], twice[2], twice[4]}));

    Vector special(6);
    EXPECT_EQ(V_GetRanksTies(Vector{kNaN, kInf, kMissing, kNaN, -0.0, 0.0}, {}, special),
              (Vector{2.0, 1.0, 2.0}));
    EXPECT_EQ(special, (Vector{4.5, 3.0, kMissing, 4.5, 1.5, 1.5}));
    Vector unweighted(2);
    EXPECT_EQ(V_GetRanksTies(Vector{3.0, 2.0}, Vector{1.0, 0.0}, unweighted), Vector{1.0});
    EXPECT_EQ(unweighted, (Vector{1.0, kMissing}));
}

TEST(Vectors, SortsPutNaNLast) {
    Vector values = {kNaN, 3.0, -kInf, kNaN, 3.0, kMissing, 0.5};
    Vector weights = {1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0};
    Vector alone = values;
    SortQ(values, weights);
    SortQVector(alone);
    for (const Vector& sorted : {values, alone}) {
        EXPECT_EQ((Vector(sorted.begin(), sorted.begin() + 5)), (Vector{-kInf, kMissing, 0.5, 3.0, 3.0}));
        EXPECT_TRUE(std::isnan(sorted[5]) && std::isnan(sorted[6]));
    }
    EXPECT_EQ(weights, (Vector{3.0, 6.0, 7.0, 2.0, 5.0, 1.0, 4.0}));
}

}  // namespace
