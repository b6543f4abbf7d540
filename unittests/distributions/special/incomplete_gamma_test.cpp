#include "distributions/special/incomplete_gamma.hpp"

#include <gtest/gtest.h>

#include <cmath>

#include "numcore/special.h"

namespace {

using numcore::distributions::incompleteGammaUpper;

TEST(IncompleteGamma, TailsAddToOne) {
    for (const double a : {1e-6, 0.3, 1.0, 2.5, 40.0, 999.0, 1500.0}) {
        for (const double ratio : {1e-3, 0.5, 0.99, 1.0, 1.3, 4.0}) {
            const double x = a * ratio;
            EXPECT_NEAR(IncompleteGamma(x, a) + incompleteGammaUpper(x, a), 1.0, 1e-12) << x << ' ' << a;
        }
    }
}

TEST(IncompleteGamma, UpperTailKeepsItsDigits) {
    // Q(1, x) = e^-x; Q(a, x) for a close to 0 is a E1(x), E1(1/2) from Abramowitz and Stegun, table 5.1.
    for (const double x : {0.5, 3.0, 40.0, 600.0}) {
        EXPECT_NEAR(incompleteGammaUpper(x, 1.0) / std::exp(-x), 1.0, 1e-13) << x;
    }
    EXPECT_NEAR(incompleteGammaUpper(0.5, 1e-12) / 1e-12, 0.5597735948, 1e-10);
    EXPECT_EQ(incompleteGammaUpper(0.0, 2.0), 1.0);
    EXPECT_EQ(incompleteGammaUpper(HUGE_VAL, 2.0), 0.0);
}

TEST(IncompleteGamma, CutOffsAreKept) {
    EXPECT_EQ(IncompleteGamma(1e-30, 1.5), 0.0);  // about 1e-45: the logarithm is below -88
    EXPECT_GT(incompleteGammaUpper(200.0, 3.0), 0.0);
    EXPECT_EQ(IncompleteGamma(200.0, 3.0), 1.0);
    EXPECT_EQ(IncompleteGamma(std::nextafter(1e8, 2e8), 1000.0), 1.0);
    EXPECT_NE(IncompleteGamma(1000.0, 1000.0), IncompleteGamma(1000.0, std::nextafter(1000.0, 2000.0)));
}

TEST(IncompleteGamma, NotANumberOutsideItsDomain) {
    const double nan = std::nan("");
    EXPECT_EQ(IncompleteGamma(0.0, -1.0), 0.0);
    EXPECT_TRUE(std::isnan(IncompleteGamma(0.5, -1.0)));  // the series would divide by 0 and never end
    EXPECT_TRUE(std::isnan(IncompleteGamma(2.0, -3.0)));
    EXPECT_TRUE(std::isnan(IncompleteGamma(-2.0, 3.0)));
    EXPECT_TRUE(std::isnan(IncompleteGamma(nan, 3.0)));  // the fraction would never settle
    EXPECT_TRUE(std::isnan(IncompleteGamma(2.0, nan)));
    EXPECT_EQ(IncompleteGamma(HUGE_VAL, 3.0), 1.0);
    EXPECT_EQ(IncompleteGamma(3.0, HUGE_VAL), 0.0);
}

}  // namespace
