#include <gtest/gtest.h>

#include <cmath>

#include "numcore/special.h"
#include "reference_table.hpp"

namespace {

TEST(NormalQuantile, MatchesReference) {
    numcore::testing::expectTable("distributions/normal_quantile.csv",
                                  [](const auto& row) { return InvCDFNormalStd(row["p"]); });
}

TEST(NormalQuantile, ZeroOutsideTheOpenInterval) {
    for (const double p : {-HUGE_VAL, -1.0, 0.0, 1.0, 2.0, HUGE_VAL}) EXPECT_EQ(InvCDFNormalStd(p), 0.0) << p;
    EXPECT_TRUE(std::isnan(InvCDFNormalStd(std::nan(""))));
}

}  // namespace
