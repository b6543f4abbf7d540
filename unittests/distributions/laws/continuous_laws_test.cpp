#include "numcore/continuous_laws.h"

#include <gtest/gtest.h>

#include <cmath>

#include "numcore/closed_form_laws.h"
#include "numcore/markers.hpp"
#include "numcore/special.h"
#include "scalar_rows.hpp"

namespace {

using numcore::kMissing;
using numcore::kOverflow;

constexpr int16_t kLower = NUMCORE_TRUE;
constexpr int16_t kUpper = NUMCORE_FALSE;

const numcore::testing::ScalarFunctions kFunctions = {
    NUMCORE_SCALAR(PDFNormal),    NUMCORE_SCALAR(CDFNormal),       NUMCORE_SCALAR(PDFLogNormal),
    NUMCORE_SCALAR(CDFLogNormal), NUMCORE_SCALAR(InvCDFLogNormal), NUMCORE_SCALAR(PDFStudent),
    NUMCORE_SCALAR(CDFStudent),   NUMCORE_SCALAR(InvCDFStudent),   NUMCORE_SCALAR(PDFChiSq),
    NUMCORE_SCALAR(CDFChiSq),     NUMCORE_SCALAR(InvCDFChiSq),     NUMCORE_SCALAR(pValChiSq),
    NUMCORE_SCALAR(PDFFisher),    NUMCORE_SCALAR(CDFFisher),       NUMCORE_SCALAR(InvCDFFisher),
    NUMCORE_SCALAR(pValFisher),   NUMCORE_SCALAR(PDFBeta),         NUMCORE_SCALAR(CDFBeta),
    NUMCORE_SCALAR(InvCDFBeta),   NUMCORE_SCALAR(PDFBeta4),        NUMCORE_SCALAR(CDFBeta4),
    NUMCORE_SCALAR(InvCDFBeta4),  NUMCORE_SCALAR(PDFGamma3),       NUMCORE_SCALAR(CDFGamma3),
    NUMCORE_SCALAR(InvCDFGamma3), NUMCORE_SCALAR(PDFErlang),       NUMCORE_SCALAR(CDFErlang),
    NUMCORE_SCALAR(InvCDFErlang), NUMCORE_SCALAR(PDFPert),         NUMCORE_SCALAR(CDFPert),
    NUMCORE_SCALAR(InvCDFPert)};

void expectRelative(double got, double expected, double tolerance) {
    EXPECT_NEAR(got, expected, tolerance * std::abs(expected));
}

TEST(ContinuousLaws, MatchReference) {
    numcore::testing::expectScalarRows("distributions/continuous_laws.csv", kFunctions);
}

TEST(ContinuousLaws, AreAccurateFarOut) {
    numcore::testing::expectScalarRows("distributions/continuous_laws_far.csv", kFunctions);
}

TEST(ContinuousLaws, ShareOneIncompleteGamma) {
    for (const double k : {1.0, 2.0, 7.0, 60.0, 999.0, 1000.0, 1001.0, 4000.0}) {
        for (const double share : {0.1, 0.7, 0.99, 1.0, 1.01, 1.5, 4.0}) {
            const double x = share * k;
            const double expected = IncompleteGamma(x, k);
            EXPECT_EQ(CDFChiSq(2.0 * x, 2.0 * k), expected);
            EXPECT_EQ(CDFGamma3(x, k, 0.0, 0.0), expected);
            EXPECT_EQ(CDFGamma3(4.0 * x, k, 4.0, 0.0), expected);
            EXPECT_EQ(CDFErlang(2.0 * x, k, 0.5), k == 1.0 ? CDFExponential(x, 1.0) : expected);
            EXPECT_NEAR(pValChiSq(2.0 * x, 2.0 * k) + expected, 1.0, 1e-13);
        }
    }
}

TEST(ContinuousLaws, GammaFamilyAgrees) {
    for (const double x : {1e-9, 0.3, 1.0, 5.0, 40.0}) {
        expectRelative(CDFChiSq(x, 2.0), CDFExponential(x, 0.5), 1e-13);
        expectRelative(PDFChiSq(x, 2.0), PDFExponential(x, 0.5), 1e-14);
        expectRelative(pValChiSq(x, 1.0), derfc(std::sqrt(x / 2.0)), 1e-13);
        expectRelative(PDFErlang(x, 3.0, 2.0), PDFGamma3(x, 3.0, 0.5, 0.0), 1e-14);
        expectRelative(PDFErlang(x, 12.0, 0.25), PDFGamma3(x, 12.0, 4.0, 0.0), 1e-14);
    }
    EXPECT_EQ(PDFGamma3(3.5, 12.0, 4.0, 1.0), PDFGamma3(2.5, 12.0, 4.0, 0.0));
    for (const double p : {0.01, 0.4, 0.95}) {
        EXPECT_EQ(InvCDFGamma3(p, 3.5, 2.0, 0.0), InvCDFChiSq(p, 7.0));
        EXPECT_EQ(InvCDFErlang(p, 4.0, 0.5), InvCDFChiSq(p, 8.0));
        expectRelative(InvCDFChiSq(p, 2.0), InvCDFExponential(p, 0.5), 1e-8);
    }
}

TEST(ContinuousLaws, BetaFamilyAgrees) {
    for (const double nu : {0.7, 1.0, 4.0, 33.0, 1e5}) {
        for (const double t : {0.01, 0.6, 2.0, 9.0}) {
            expectRelative(CDFFisher(t * t, 1.0, nu, kUpper), 2.0 * CDFStudent(-t, nu), 1e-12);
            expectRelative(PDFFisher(t * t, 1.0, nu), PDFStudent(t, nu) / t, 1e-12);
            expectRelative(CDFFisher(t, 3.0, nu, kLower), CDFFisher(1.0 / t, nu, 3.0, kUpper), 1e-11);
        }
    }
    for (const double x : {0.125, 0.5, 0.875}) {
        EXPECT_EQ(CDFBeta(x, 2.5, 7.0, kLower), CDFBeta(1.0 - x, 7.0, 2.5, kUpper));
        expectRelative(PDFBeta(x, 2.5, 7.0), PDFBeta(1.0 - x, 7.0, 2.5), 1e-14);
        expectRelative(InvCDFBeta(x, 2.5, 7.0, kUpper), InvCDFBeta(1.0 - x, 2.5, 7.0, kLower), 2e-15);
        expectRelative(CDFBeta(x, 3.0, 1.0, kLower), x * x * x, 1e-14);
        EXPECT_EQ(CDFBeta4(8.0 * x - 3.0, 2.0, 3.0, -3.0, 5.0), CDFBeta(x, 2.0, 3.0, kLower));
        EXPECT_EQ(CDFPert(8.0 * x - 3.0, -3.0, 1.0, 5.0), CDFBeta(x, 3.0, 3.0, kLower));
        EXPECT_EQ(PDFPert(8.0 * x - 3.0, -3.0, 1.0, 5.0), PDFBeta(x, 3.0, 3.0) / 8.0);
        EXPECT_EQ(InvCDFPert(x, -3.0, 1.0, 5.0), -3.0 + 8.0 * InvCDFBeta(x, 3.0, 3.0, kLower));
    }
}

TEST(ContinuousLaws, TailsAddToOne) {
    for (const double x : {1e-12, 0.02, 0.3, 0.77, 0.999}) {
        for (const double a : {0.01, 0.5, 3.0, 250.0}) {
            EXPECT_DOUBLE_EQ(CDFBeta(x, a, 4.0, kLower) + CDFBeta(x, a, 4.0, kUpper), 1.0);
            EXPECT_DOUBLE_EQ(CDFFisher(x, a, 4.0, kLower) + CDFFisher(x, a, 4.0, kUpper), 1.0);
            EXPECT_DOUBLE_EQ(CDFStudent(x, a) + CDFStudent(-x, a), 1.0);
            EXPECT_EQ(pValFisher(x, a, 4.0), CDFFisher(x, a, 4.0, kUpper));
        }
    }
}

TEST(ContinuousLaws, NormalLawsKeepTheirFormulas) {
    EXPECT_EQ(PDFNormal(5.5, 2.0, -2.0), PDFNormalStd(1.75) / 2.0);
    EXPECT_EQ(CDFNormal(5.5, 2.0, -2.0), CDFNormalStd(-1.75));
    EXPECT_GT(PDFNormal(1e-200, 0.0, 1e-200), 1e199);  // the variance itself underflows
    EXPECT_EQ(CDFLogNormal(std::exp(-8.25), 0.0, 1.0), 0.0);
    EXPECT_GT(CDFLogNormal(std::exp(-8.2), 0.0, 1.0), 1e-16);
    EXPECT_EQ(InvCDFLogNormal(0.9, 1000.0, 1.0), kOverflow);
    EXPECT_EQ(InvCDFLogNormal(-0.1, 0.0, 1.0), kMissing);
}

TEST(ContinuousLaws, StudentIsDecidedByTheRoundedRatio) {
    EXPECT_EQ(CDFStudent(1e-9, 1.0), 0.5);
    EXPECT_EQ(CDFStudent(3.0, 1e20), 0.5);
    EXPECT_EQ(CDFStudent(1e200, 0.1), 1.0);
    EXPECT_EQ(CDFStudent(-1e200, 0.1), 0.0);
}

TEST(ContinuousLaws, StudentQuantileIsHillsExpansion) {
    EXPECT_EQ(InvCDFStudent(0.6, 1.0001e20), InvCDFNormalStd(0.6));
    EXPECT_NE(InvCDFStudent(0.6, 1e20), 0.0);
    // Not refined.
    EXPECT_GT(std::abs(CDFStudent(InvCDFStudent(0.8, 1.2), 1.2) - 0.8), 1e-3);
    EXPECT_GT(std::abs(CDFStudent(InvCDFStudent(0.7, 5.0), 5.0) - 0.7), 1e-9);
    EXPECT_EQ(InvCDFStudent(1.0, 5.0), kOverflow);
    EXPECT_EQ(InvCDFStudent(0.0, 5.0), kMissing);
    for (const double nu : {0.3, 0.5}) EXPECT_EQ(InvCDFStudent(0.9, nu), kMissing);  // it needs nu > 1/2
    for (const double nu : {1.0, 2.0, 2.05, 3.7, 12.0, 1e9}) {
        EXPECT_EQ(InvCDFStudent(0.125, nu), -InvCDFStudent(0.875, nu));
    }
}

TEST(ContinuousLaws, FisherKeepsItsEnds) {
    EXPECT_EQ(CDFFisher(-0.5, 2.0, 2.0, kLower), 0.0);
    EXPECT_EQ(CDFFisher(-1.5, 2.0, 2.0, kLower), 1.0);  // w is negative
    EXPECT_EQ(CDFFisher(-1.5, 2.0, 2.0, kUpper), 0.0);
    EXPECT_EQ(InvCDFFisher(0.0, 3.0, 5.0, kUpper), 0.0);
    EXPECT_EQ(InvCDFFisher(1.0, 3.0, 5.0, kLower), kOverflow);
    EXPECT_EQ(InvCDFFisher(1.0, 3.0, 5.0, kUpper), 0.0);
    EXPECT_EQ(PDFFisher(0.0, 1.0, 5.0), kOverflow);
    EXPECT_EQ(PDFFisher(0.0, 2.0, 5.0), 1.0);
    EXPECT_EQ(PDFFisher(0.0, 3.0, 5.0), 0.0);
}

TEST(ContinuousLaws, FisherQuantileChangesAtManyDegrees) {
    EXPECT_EQ(InvCDFFisher(0.75, 3.0, 400001.0, kLower), InvCDFChiSq(0.75, 3.0) / 3.0);
    EXPECT_EQ(InvCDFFisher(0.75, 400001.0, 3.0, kLower), 3.0 / InvCDFChiSq(0.25, 3.0));
    EXPECT_EQ(InvCDFFisher(0.75, 400001.0, 3.0, kUpper), 3.0 / InvCDFChiSq(0.75, 3.0));
    EXPECT_EQ(InvCDFFisher(0.75, 500001.0, 500000.0, kLower), InvCDFChiSq(0.75, 500001.0) / 500001.0);
    EXPECT_NE(InvCDFFisher(0.75, 3.0, 400000.0, kLower), InvCDFChiSq(0.75, 3.0) / 3.0);
    EXPECT_NE(InvCDFFisher(0.75, 400000.0, 3.0, kLower), 3.0 / InvCDFChiSq(0.25, 3.0));
    EXPECT_EQ(InvCDFFisher(1.0 - 0x1p-53, 3.0, 1e6, kLower), kOverflow);
    EXPECT_EQ(InvCDFFisher(1e-101, 1e6, 3.0, kUpper), kOverflow);  // the chi-square quantile is 0
}

TEST(ContinuousLaws, BetaKeepsItsEnds) {
    EXPECT_EQ(PDFBeta(-0.1, -1.0, 2.0), 0.0);  // the point is looked at before the shapes
    EXPECT_EQ(CDFBeta(-0.1, 2.0, 3.0, kUpper), 1.0);
    EXPECT_EQ(CDFBeta(1.1, 2.0, 3.0, kUpper), 0.0);
    EXPECT_EQ(InvCDFBeta(0.0, 2.0, 3.0, kUpper), 1.0);
    EXPECT_EQ(InvCDFBeta(1.0, 2.0, 3.0, kUpper), 0.0);
    EXPECT_EQ(CDFBeta(0.5, 0.0, 3.0, kLower), 1.0);
    EXPECT_EQ(CDFBeta(0.5, 3.0, 0.0, kLower), 0.0);
    EXPECT_EQ(CDFBeta(0.5, 0.0, 0.0, kLower), 0.0);
    EXPECT_EQ(CDFBeta(0.5, 0.0, 0.0, kUpper), 1.0);
    EXPECT_EQ(InvCDFBeta(0.5, 0.0, 3.0, kLower), kMissing);
    // Quantiles beyond the smallest double, and close to it, where the steps do not get far enough.
    EXPECT_LT(InvCDFBeta(0.01, 1e-3, 1.0, kLower), 1e-307);
    EXPECT_EQ(InvCDFBeta(0.01, 1.0, 1e-3, kUpper), 1.0);
    EXPECT_EQ(InvCDFBeta(2.9279177523485658e-08, 0.024673062443939582, 4235.75, kLower), kMissing);
}

TEST(ContinuousLaws, IntervalOfNoWidthIsAPoint) {
    EXPECT_EQ(PDFBeta4(2.0, 2.0, 3.0, 2.0, 2.0), kOverflow);
    EXPECT_EQ(PDFBeta4(2.5, 2.0, 3.0, 2.0, 2.0), 0.0);
    EXPECT_EQ(CDFBeta4(2.0, 2.0, 3.0, 2.0, 2.0), 1.0);
    EXPECT_EQ(CDFPert(1.5, 2.0, 2.0, 2.0), 0.0);
    EXPECT_EQ(InvCDFPert(0.3, 2.0, 2.0, 2.0), 2.0);
}

TEST(ContinuousLaws, GammaKeepsItsEnds) {
    EXPECT_EQ(PDFGamma3(1.0, 0.5, 1.0, 1.0), 0.0);  // the limit is infinite
    EXPECT_EQ(PDFErlang(0.0, 1.0, 3.0), 3.0);
    EXPECT_EQ(PDFChiSq(0.0, 1.0), kOverflow);
    EXPECT_EQ(PDFChiSq(0.0, 2.0), 0.5);
    EXPECT_EQ(CDFChiSq(-1.0, 3.0), 0.0);
    EXPECT_EQ(pValChiSq(-1.0, 3.0), 1.0);
    EXPECT_EQ(InvCDFGamma3(1.0 - 0x1p-50, 2.0, 3.0, 1.0), kOverflow);  // not scaled
    EXPECT_EQ(InvCDFErlang(1.0, 2.0, 3.0), kOverflow);
    EXPECT_EQ(InvCDFErlang(-0.5, 2.0, 3.0), kMissing);
    EXPECT_EQ(CDFErlang(1.5, 3.9, 1.0), CDFErlang(1.5, 3.0, 1.0));
    EXPECT_EQ(PDFErlang(1.5, 0.9, 1.0), kMissing);
}

}  // namespace
