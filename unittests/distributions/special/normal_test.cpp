#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "distributions/special/normal_quantile.hpp"
#include "distributions/special/normal_quantile_lanes.hpp"
#include "numcore/special.h"
#include "reference_table.hpp"
#include "suite/vmcore_kernels.hpp"

namespace {

TEST(NormalQuantile, MatchesReference) {
    numcore::testing::expectTable("distributions/normal_quantile.csv",
                                  [](const auto& row) { return InvCDFNormalStd(row["p"]); });
}

TEST(NormalQuantile, ZeroOutsideTheOpenInterval) {
    for (const double p : {-HUGE_VAL, -1.0, 0.0, 1.0, 2.0, HUGE_VAL}) EXPECT_EQ(InvCDFNormalStd(p), 0.0) << p;
    EXPECT_TRUE(std::isnan(InvCDFNormalStd(std::nan(""))));
}

// Body and tails mixed, with what is no probability in between.
std::vector<double> mixedProbabilities(std::size_t n) {
    const double odd[] = {0.0,    1.0,    -0.0,    -0.25,   1.5,   std::nan(""), HUGE_VAL, -HUGE_VAL,
                          5e-324, 1e-310, 1.3e-11, 1.4e-11, 0.075, 0.925,        0.5,      1.0 - 0x1p-53};
    std::mt19937_64 random(n);
    std::uniform_real_distribution<double> uniform(0.0, 1.0);
    std::vector<double> p(n);
    for (double& x : p) {
        x = uniform(random);
        if (x > 0.9) x = odd[random() % std::size(odd)];
        if (x < 0.1 && x > 0.05) x = std::pow(10.0, -320.0 * uniform(random));
    }
    return p;
}

TEST(NormalQuantile, ColumnsHaveTheBitsOfTheScalarFunction) {
    using namespace numcore::distributions;
    std::vector<NormalQuantileKernel> kernels = {baselineNormalQuantiles,
                                                 [](const double* p, std::size_t n, double* z) {
                                                     normalQuantiles({p, n}, {z, n});
                                                 }};
    if (numcore::vmcore::hasAvx2()) kernels.push_back(avx2NormalQuantiles);
    for (const std::size_t n : std::vector<std::size_t>{0, 1, 3, 4, 7, 511, 513, 1030, 40001}) {
        const std::vector<double> p = mixedProbabilities(n);
        std::vector<double> expected(n);
        for (std::size_t i = 0; i < n; ++i) expected[i] = InvCDFNormalStd(p[i]);
        for (const auto& kernel : kernels) {
            std::vector<double> inPlace = p;
            kernel(inPlace.data(), n, inPlace.data());
            // Bits, so that NaN equals itself.
            EXPECT_TRUE(n == 0 || std::memcmp(inPlace.data(), expected.data(), n * sizeof(double)) == 0) << n;
        }
    }
}

TEST(NormalQuantile, UndoesTheDistribution) {
    for (double z = -7.0; z < 7.0; z += 0.037) {
        const double lower = CDFNormalStd(-std::abs(z));
        EXPECT_NEAR(InvCDFNormalStd(lower), -std::abs(z), 2e-15 * (1.0 + std::abs(z))) << z;
    }
    for (const double p : {1e-300, 1e-20, 1.4e-11, 1.3e-11, 0.01}) {
        EXPECT_LT(InvCDFNormalStd(p), InvCDFNormalStd(p * 1.0000001));
    }
    EXPECT_LT(InvCDFNormalStd(5e-324), InvCDFNormalStd(1e-323));
    EXPECT_NEAR(InvCDFNormalStd(5e-324), -38.467405617144, 1e-9);
}

}  // namespace
