#include "numcore/discrete_laws.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "numcore/markers.hpp"
#include "numcore/special.h"
#include "scalar_rows.hpp"

namespace {

using numcore::kMissing;

constexpr uint32_t kNoCount = 0xFFFFFFFF;
constexpr uint32_t kUnbounded = 2147483647;
constexpr double kInfinite = std::numeric_limits<double>::infinity();

const numcore::testing::ScalarFunctions kFunctions = {
    NUMCORE_SCALAR(PDFUniformDisc),  NUMCORE_SCALAR(CDFUniformDisc),  NUMCORE_SCALAR(InvCDFUniformDisc),
    NUMCORE_SCALAR(PDFBernoulli),    NUMCORE_SCALAR(CDFBernoulli),    NUMCORE_SCALAR(InvCDFBernoulli),
    NUMCORE_SCALAR(PDFBinomial),     NUMCORE_SCALAR(CDFBinomial),     NUMCORE_SCALAR(InvCDFBinomial),
    NUMCORE_SCALAR(PDFBinomialNeg1), NUMCORE_SCALAR(CDFBinomialNeg1), NUMCORE_SCALAR(InvCDFBinomialNeg1),
    NUMCORE_SCALAR(PDFBinomialNeg2), NUMCORE_SCALAR(CDFBinomialNeg2), NUMCORE_SCALAR(InvCDFBinomialNeg2),
    NUMCORE_SCALAR(PDFPoisson),      NUMCORE_SCALAR(CDFPoisson),      NUMCORE_SCALAR(InvCDFPoisson),
    NUMCORE_SCALAR(PDFHyperG),       NUMCORE_SCALAR(CDFHyperG)};

void expectRelative(double got, double expected, double tolerance) {
    EXPECT_NEAR(got, expected, tolerance * std::abs(expected));
}

TEST(DiscreteLaws, MatchReference) {
    numcore::testing::expectScalarRows("distributions/discrete_laws.csv", kFunctions);
}

TEST(DiscreteLaws, AreAccurateFarOut) {
    numcore::testing::expectScalarRows("distributions/discrete_laws_far.csv", kFunctions);
}

TEST(DiscreteLaws, MassesAddUpToTheDistribution) {
    double sums[5] = {};
    for (double k = 0.0; k <= 400.0; k += 1.0) {
        const double masses[] = {PDFPoisson(k, 130.0), PDFBinomial(k, 400.0, 0.3),
                                 PDFBinomialNeg1(k, 40.0, 0.25), PDFBinomialNeg2(k, 0.7, 12.5),
                                 PDFHyperG(k, 2000.0, 400.0, 700.0)};
        const double reached[] = {CDFPoisson(static_cast<int32_t>(k), 130.0), CDFBinomial(k, 400.0, 0.3),
                                  CDFBinomialNeg1(k, 40.0, 0.25), CDFBinomialNeg2(k, 0.7, 12.5),
                                  CDFHyperG(k, 2000.0, 400.0, 700.0)};
        for (int i = 0; i < 5; ++i) EXPECT_NEAR(sums[i] += masses[i], reached[i], 1e-13) << i << " at " << k;
    }
    for (const double sum : sums) EXPECT_NEAR(sum, 1.0, 1e-13);
}

TEST(DiscreteLaws, OneLawInAnother) {
    for (const double p : {0.02, 0.3, 0.5, 0.85}) {
        EXPECT_EQ(PDFBinomial(0.0, 1.0, p), PDFBernoulli(0.0, p));
        EXPECT_EQ(PDFBinomial(1.0, 1.0, p), PDFBernoulli(1.0, p));
        EXPECT_EQ(CDFBinomial(0.0, 1.0, p), CDFBernoulli(0.0, p));
        for (const double k : {0.0, 1.0, 7.0, 150.0}) {
            expectRelative(PDFBinomialNeg1(k, 1.0, p), p * std::pow(1.0 - p, k), 1e-13);
            expectRelative(CDFBinomialNeg1(k, 1.0, p), -std::expm1((k + 1.0) * std::log1p(-p)), 1e-13);
            expectRelative(CDFBinomialNeg2(k, 9.0, (1.0 - p) / p), CDFBinomialNeg1(k, 9.0, p), 1e-12);
            expectRelative(PDFBinomialNeg2(k, 9.0, (1.0 - p) / p), PDFBinomialNeg1(k, 9.0, p), 1e-12);
            // at most k failures before success 9: at least 9 successes in k + 9 trials
            EXPECT_NEAR(CDFBinomialNeg1(k, 9.0, p), 1.0 - CDFBinomial(8.0, k + 9.0, p), 1e-14);
        }
    }
    for (const double x : {0.0, 3.0, 11.0, 30.0}) {
        expectRelative(PDFHyperG(x, 500.0, 60.0, 90.0), PDFHyperG(x, 500.0, 90.0, 60.0), 1e-14);
        expectRelative(CDFHyperG(x, 500.0, 60.0, 90.0), CDFHyperG(x, 500.0, 90.0, 60.0), 1e-14);
        EXPECT_NEAR(CDFHyperG(x, 500.0, 60.0, 90.0), 1.0 - CDFHyperG(59.0 - x, 500.0, 60.0, 410.0), 1e-14);
        expectRelative(PDFHyperG(x, 1e15, 3e14, 40.0), PDFBinomial(x, 40.0, 0.3), 1e-11);
        expectRelative(PDFBinomial(x, 1e12, 1e-11), PDFPoisson(x, 10.0), 1e-8);
        expectRelative(CDFBinomialNeg2(x, 1e12, 1e-11), CDFBinomial(x, 1e12, 1e-11), 1e-8);
    }
}

TEST(DiscreteLaws, DiscreteUniformFollowsItsFormulas) {
    EXPECT_EQ(InvCDFUniformDisc(1.0, 1.0, 6.0), 7.0);  // one past b
    EXPECT_EQ(InvCDFUniformDisc(0.0, 1.0, 6.0), 0.0);  // one before a
    EXPECT_EQ(InvCDFUniformDisc(0.5, 1.0, 6.0), 4.0);  // 3 reaches 1/2
    EXPECT_EQ(InvCDFUniformDisc(0.5, 3.0, 3.0), kMissing);
    EXPECT_EQ(PDFUniformDisc(2.5, 1.0, 6.0), 1.0 / 6.0);
    EXPECT_EQ(CDFUniformDisc(2.5, 1.0, 6.0), 2.5 / 6.0);
    EXPECT_EQ(CDFUniformDisc(4.4, 0.5, 4.5), 5.4 / 5.0);  // above 1

    const double weights[] = {0.2, 0.3, 0.4, 0.5};
    const auto weighted = [&](double p, double b) { return InvCDFUniformWDisc(p, weights, 4, 5.5, b); };
    EXPECT_EQ(weighted(0.0, 8.0), 5.0);
    EXPECT_EQ(weighted(0.5, 8.0), 6.0);
    EXPECT_EQ(weighted(0.51, 8.0), 7.0);
    EXPECT_EQ(weighted(5.0, 8.0), 8.0);  // the sum reaches 1
    EXPECT_EQ(weighted(0.95, 7.0), 0.0);
    EXPECT_EQ(weighted(0.1, 4.0), 0.0);
    EXPECT_EQ(weighted(std::nan(""), 8.0), 0.0);
    EXPECT_EQ(weighted(1.2, kInfinite), 8.0);
    EXPECT_EQ(InvCDFUniformWDisc(0.1, nullptr, 0, 1.0, 6.0), 0.0);
}

TEST(DiscreteLaws, CountsAreRoundedAwayFromZero) {
    EXPECT_EQ(CDFBinomial(2.5, 20.0, 0.3), CDFBinomial(3.0, 20.0, 0.3));
    EXPECT_EQ(CDFBinomial(2.4, 19.5, 0.3), CDFBinomial(2.0, 20.0, 0.3));
    EXPECT_EQ(CDFBinomial(-0.5, 20.0, 0.3), 0.0);
    EXPECT_EQ(CDFBinomial(-0.4, 20.0, 0.3), CDFBinomial(0.0, 20.0, 0.3));
    EXPECT_EQ(PDFBinomial(2.5, 20.0, 0.3), 0.0);
    EXPECT_EQ(CDFHyperG(2.9, 20.0, 8.0, 5.0), CDFHyperG(2.0, 20.0, 8.0, 5.0));
    EXPECT_EQ(CDFBinomialNeg1(2.9, 2.0, 0.4), CDFBinomialNeg1(2.0, 2.0, 0.4));
}

TEST(DiscreteLaws, BinomialEnds) {
    EXPECT_EQ(PDFBinomial(20.0, 20.0, 1.0 - 9e-13), 1.0);  // counts as 1, beyond it as well
    EXPECT_EQ(PDFBinomial(20.0, 20.0, 1.0 + 9e-13), 1.0);
    EXPECT_EQ(PDFBinomial(1.0, 20.0, -9e-13), 0.0);
    EXPECT_LT(PDFBinomial(20.0, 20.0, 1.0 - 2e-12), 1.0);
    EXPECT_EQ(CDFBinomial(0.0, 20.0, 0.0), 1.0);
    EXPECT_EQ(CDFBinomial(19.0, 20.0, 1.0), 0.0);
    EXPECT_EQ(CDFBinomial(20.0, 20.0, 1.0), 1.0);
    EXPECT_EQ(InvCDFBinomial(1.0, 20.0, 0.3), 20u);
    EXPECT_EQ(InvCDFBinomial(0.5, 0.0, 0.3), kNoCount);
    EXPECT_EQ(InvCDFBinomial(1.5, 20.0, 0.3), kNoCount);
    EXPECT_EQ(InvCDFBinomial(1.0, 1e10, 0.3), kNoCount);  // more than 32 bits
    EXPECT_EQ(InvCDFBinomial(0.5, 1e15, 0.5), kNoCount);
}

TEST(DiscreteLaws, NegativeBinomialEnds) {
    for (const double p : {0.0, 1.0, -0.5, 1.5}) {
        EXPECT_EQ(PDFBinomialNeg1(3.0, 2.0, p), kMissing);
        EXPECT_EQ(CDFBinomialNeg1(3.0, 2.0, p), kMissing);
        EXPECT_EQ(InvCDFBinomialNeg1(0.5, 2.0, p), kNoCount);
    }
    EXPECT_EQ(InvCDFBinomialNeg1(1.0, 2.0, 0.5), kUnbounded);
    EXPECT_EQ(InvCDFBinomialNeg1(1.1, 2.0, 0.5), kNoCount);
    EXPECT_EQ(InvCDFBinomialNeg1(0.5, 1e9, 1e-3), kNoCount);
    EXPECT_EQ(InvCDFBinomialNeg2(1.0, 2.5, 0.5), kUnbounded);
    EXPECT_EQ(CDFBinomialNeg1(1e6, 2.0, 0.5), 1.0);
    // at the step from products to logarithms
    const double ratio = PDFBinomialNeg1(60.0, 40.0, 0.4) / PDFBinomialNeg1(59.0, 40.0, 0.4);
    expectRelative(ratio, 99.0 * 0.6 / 60.0, 1e-12);
}

TEST(DiscreteLaws, PoissonIsAsStated) {
    EXPECT_EQ(CDFPoisson(0, 3.5), std::exp(-3.5));
    EXPECT_EQ(CDFPoisson(-1, 3.5), 0.0);
    EXPECT_EQ(CDFPoisson(std::numeric_limits<int32_t>::max(), 1e300), 0.0);
    for (const int32_t k : {1, 40, 999, 1000, 5000}) {
        EXPECT_EQ(CDFPoisson(k, 0.9 * k), 1.0 - IncompleteGamma(0.9 * k, k + 1.0));
    }
    EXPECT_EQ(InvCDFPoisson(1.0, 3.5), kUnbounded);
    EXPECT_EQ(InvCDFPoisson(std::exp(-3.5), 3.5), 0u);
    EXPECT_EQ(InvCDFPoisson(0.5, -1.0), kNoCount);
    EXPECT_EQ(InvCDFPoisson(std::nan(""), 3.5), kNoCount);
    EXPECT_EQ(InvCDFPoisson(0.5, 1e15), kNoCount);
}

}  // namespace
