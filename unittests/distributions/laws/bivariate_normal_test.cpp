#include <gtest/gtest.h>

#include <cmath>

#include "numcore/markers.hpp"
#include "numcore/noncentral_laws.h"
#include "scalar_rows.hpp"

namespace {

using numcore::kMissing;

TEST(BivariateNormal, MatchesDirectIntegration) {
    numcore::testing::expectScalarRows("distributions/bivariate_normal.csv",
                                       {NUMCORE_SCALAR(CDFBiNormalStd), NUMCORE_SCALAR(PDFBiNormalStd)});
}

TEST(BivariateNormal, QuadrantsAddToTheMarginalLaw) {
    for (const double rho : {-0.99, -0.925, -0.3, 0.0, 0.6, 0.93, 1.0 - 0x1p-40}) {
        for (const double x : {-2.5, 0.0, 0.7}) {
            const double marginal = 0.5 * std::erfc(-x / std::sqrt(2.0));
            for (const double y : {-1.0, 0.25, 4.0})
                EXPECT_NEAR(CDFBiNormalStd(x, y, rho) + CDFBiNormalStd(x, -y, -rho), marginal, 1e-15)
                    << x << ' ' << y << ' ' << rho;
        }
    }
}

TEST(BivariateNormal, InfiniteLimits) {
    EXPECT_EQ(CDFBiNormalStd(-HUGE_VAL, HUGE_VAL, 0.5), 0.0);
    EXPECT_EQ(CDFBiNormalStd(HUGE_VAL, HUGE_VAL, -1.0), 1.0);
    EXPECT_DOUBLE_EQ(CDFBiNormalStd(HUGE_VAL, 0.0, 0.9), 0.5);
    EXPECT_EQ(CDFBiNormalStd(1e300, -1e300, 0.3), 0.0);
    EXPECT_EQ(CDFBiNormalStd(1e300, 1e300, -0.97), 1.0);
    EXPECT_EQ(CDFBiNormalStd(1e200, 1e200, 0.5), 1.0);
    EXPECT_EQ(PDFBiNormalStd(HUGE_VAL, -HUGE_VAL, 0.5), 0.0);
    EXPECT_EQ(PDFBiNormalStd(1e200, -1e200, -0.5), 0.0);
}

TEST(BivariateNormal, MarkerOutsideTheDomain) {
    for (const double rho : {1.0 + 0x1p-52, -2.0, HUGE_VAL, std::nan("")}) {
        EXPECT_EQ(CDFBiNormalStd(0.0, 0.0, rho), kMissing) << rho;
        EXPECT_EQ(PDFBiNormalStd(0.0, 0.0, rho), kMissing) << rho;
    }
    EXPECT_EQ(PDFBiNormalStd(0.0, 0.0, 1.0), kMissing);
    EXPECT_TRUE(std::isnan(CDFBiNormalStd(std::nan(""), 0.0, 0.0)));
    EXPECT_TRUE(std::isnan(PDFBiNormal(0.0, std::nan(""), 0.0, 0.0, 1.0, 1.0, 0.0)));
    EXPECT_EQ(PDFBiNormal(0.0, 0.0, HUGE_VAL, 0.0, 1.0, 1.0, 0.0), kMissing);
    for (const double sigma : {0.0, -1.0, HUGE_VAL, std::nan("")}) {
        EXPECT_EQ(PDFBiNormal(0.0, 0.0, 0.0, 0.0, sigma, 1.0, 0.0), kMissing) << sigma;
        EXPECT_EQ(PDFBiNormal(0.0, 0.0, 0.0, 0.0, 1.0, sigma, 0.0), kMissing) << sigma;
    }
}

}  // namespace
