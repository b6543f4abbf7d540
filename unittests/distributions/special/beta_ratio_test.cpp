#include "distributions/special/beta_ratio.hpp"

#include <gtest/gtest.h>

#include <cmath>

#include "numcore/special.h"
#include "reference_table.hpp"

namespace {

using numcore::distributions::BetaRatio;
using numcore::distributions::betaRatio;

TEST(BetaRatio, BothTailsMatchReference) {
    numcore::testing::expectTable("distributions/beta_ratio.csv", [](const auto& row) {
        const BetaRatio ratio = betaRatio(row["a"], row["b"], row["x"], 1.0 - row["x"]);
        EXPECT_EQ(ratio.error, 0);
        return row["tail"] == 0.0 ? ratio.lower : ratio.upper;
    });
}

// The recurrence in a, (DLMF 8.17.20), ties points on both sides of every threshold of the choice of expansion.
TEST(BetaRatio, ExpansionsAgreeOnTheRecurrence) {
    for (const double a : {1e-3, 0.19, 0.5, 1.0, 6.5, 14.8, 25.0, 99.5, 400.0}) {
        for (const double b : {1e-3, 0.21, 0.95, 1.0, 1.5, 7.9, 15.5, 39.5, 40.0, 101.0, 2e4}) {
            for (const double position : {0.02, 0.3, 0.8, 0.97, 1.0, 1.03, 1.2}) {
                const double x = position * (a + 0.5) / (a + b + 1.0);
                const double y = 1.0 - x;
                if (x >= 1.0) continue;
                const BetaRatio here = betaRatio(a, b, x, y);
                const BetaRatio next = betaRatio(a + 1.0, b, x, y);
                const double step = std::exp(a * std::log(x) + b * std::log1p(-x) - betaln(a, b)) / a;
                EXPECT_NEAR(next.lower + step, here.lower, 1e-11 * here.lower) << a << ' ' << b << ' ' << x;
                EXPECT_NEAR(here.lower + here.upper, 1.0, 3e-16) << a << ' ' << b << ' ' << x;
                const BetaRatio mirrored = betaRatio(b, a, y, x);
                EXPECT_NEAR(mirrored.upper, here.lower, 2e-14 * here.lower) << a << ' ' << b << ' ' << x;
            }
        }
    }
}

TEST(BetaRatio, ErrorsAreThosePublished) {
    const auto error = [](double a, double b, double x, double y) {
        const BetaRatio ratio = betaRatio(a, b, x, y);
        EXPECT_TRUE(ratio.error == 0 || (ratio.lower == 0.0 && ratio.upper == 0.0));
        return ratio.error;
    };
    EXPECT_EQ(error(-1.0, 2.0, 0.5, 0.5), 1);
    EXPECT_EQ(error(0.0, 0.0, 0.5, 0.5), 2);
    EXPECT_EQ(error(1.0, 2.0, -0.5, 1.5), 3);
    EXPECT_EQ(error(1.0, 2.0, 0.5, 1.5), 4);
    EXPECT_EQ(error(1.0, 2.0, 0.5, 0.5 + 8e-16), 5);
    EXPECT_EQ(error(1.0, 2.0, 0.5, 0.5 + 5e-16), 0);
    EXPECT_EQ(error(0.0, 2.0, 0.0, 1.0), 6);
    EXPECT_EQ(error(2.0, 0.0, 1.0, 0.0), 7);
    EXPECT_EQ(IncompleteBetaR(0.5, -1.0, 2.0), 0.0);
    EXPECT_EQ(IncompleteBetaR(1.5, 1.0, 2.0), 0.0);
}

TEST(BetaRatio, EndsOfTheDomain) {
    EXPECT_EQ(IncompleteBetaR(0.0, 2.0, 3.0), 0.0);
    EXPECT_EQ(IncompleteBetaR(1.0, 2.0, 3.0), 1.0);
    EXPECT_EQ(IncompleteBetaR(0.5, 0.0, 3.0), 1.0);
    EXPECT_EQ(IncompleteBetaR(0.5, 2.0, 0.0), 0.0);
    EXPECT_EQ(IncompleteBetaR(0.5, HUGE_VAL, 3.0), 0.0);
    EXPECT_EQ(IncompleteBetaR(0.5, 2.0, HUGE_VAL), 1.0);
    EXPECT_EQ(IncompleteBetaR(0.5, 1e-300, 3e-300), 0.75);
    EXPECT_TRUE(std::isnan(IncompleteBetaR(0.5, HUGE_VAL, HUGE_VAL)));
    EXPECT_TRUE(std::isnan(IncompleteBetaR(std::nan(""), 2.0, 3.0)));
    EXPECT_TRUE(std::isnan(IncompleteBetaR(0.5, std::nan(""), 3.0)));
}

}  // namespace
