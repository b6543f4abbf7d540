#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "numcore/association.h"
#include "reference_table.hpp"

namespace {

using numcore::testing::agrees;
using numcore::testing::readDataColumn;

TEST(CronbachAlpha, MatchesReference) {
    for (const auto& row : numcore::testing::readTable("correlation/association/alpha.csv")) {
        const auto items = row.list("items");
        const double alpha = VB_CronbachAlpha(items.data(), static_cast<std::int32_t>(row["k"]),
                                              static_cast<std::int32_t>(row["kind"]));
        EXPECT_TRUE(agrees(alpha, row["alpha"], 1e-13)) << row.line() << ": " << alpha;
    }
}

// Of the iris flowers, as in the table, where the matrices were computed elsewhere.
TEST(CronbachAlpha, OfObservations) {
    std::vector<double> data;
    for (const char* column : {"Sepal.Length", "Petal.Length", "Petal.Width"}) {
        const auto cells = readDataColumn("iris.csv", column);
        data.insert(data.end(), cells.begin(), cells.end());
    }
    EXPECT_TRUE(agrees(VB_GetCronbachAlpha(data.data(), 150, 3, nullptr, 0), 0.8771447836441385, 1e-12));
    EXPECT_TRUE(agrees(GetCronbachAlpha(data.data(), 150, 3, nullptr, 100), 0.9581656088617135, 1e-12));
    data[10] = data[160] = NUMCORE_MISSING;
    std::vector<double> weights(150, 1.0);
    weights[10] = 0.0;
    const double incomplete = GetCronbachAlpha(data.data(), 150, 3, nullptr, 0);
    data[10] = data[160] = 5.0;
    EXPECT_TRUE(agrees(incomplete, GetCronbachAlpha(data.data(), 150, 3, weights.data(), 0), 1e-13));
}

TEST(CronbachAlpha, EndsWhereTheTotalVanishes) {
    const double opposite[] = {1, -1, -1, 1};
    EXPECT_EQ(CronbachAlpha(opposite, 2, 0), NUMCORE_MISSING) << "kept: ratio + 1 below 1e-12";
    const double nearly[] = {1, -1 + 1e-11, -1 + 1e-11, 1};
    EXPECT_LT(CronbachAlpha(nearly, 2, 0), -1e10);
    const double upperOnly[] = {1, NUMCORE_MISSING, 0.5, 1};
    EXPECT_TRUE(agrees(CronbachAlpha(upperOnly, 2, 100), 2.0 / 3.0, 1e-15)) << "below the diagonal is not read";
    const double missing[] = {1, 0.5, NUMCORE_MISSING, 1};
    EXPECT_EQ(CronbachAlpha(missing, 2, 100), NUMCORE_MISSING);
    for (const int k : {1, 0, -3}) {
        EXPECT_TRUE(std::isnan(CronbachAlpha(opposite, k, 0))) << "kept: " << k;
    }
    EXPECT_EQ(CronbachAlpha(nullptr, 2, 0), NUMCORE_MISSING);
    EXPECT_EQ(GetCronbachAlpha(opposite, 1, 2, nullptr, 100), NUMCORE_MISSING);
    const double flat[] = {5, 5, 5, 5, 5, 5};
    for (const int kind : {0, 100}) EXPECT_EQ(GetCronbachAlpha(flat, 3, 2, nullptr, kind), NUMCORE_MISSING);
    EXPECT_EQ(GetCronbachAlpha(opposite, 4, 1, nullptr, 0), NUMCORE_MISSING) << "of data there is no NaN";
}

}  // namespace
