#include "numcore/noncentral_laws.h"

#include <gtest/gtest.h>

#include <cmath>

#include "distributions/laws/noncentral.hpp"
#include "numcore/continuous_laws.h"
#include "numcore/markers.hpp"
#include "scalar_rows.hpp"

namespace {

namespace laws = numcore::distributions;
using numcore::kMissing;
using numcore::kOverflow;

double upperChiSq(double x, double nu, double lambda) {
    return laws::noncentralChiSquare(x, nu, lambda).upper;
}
double upperFisher(double x, double nu1, double nu2, double lambda) {
    return laws::noncentralFisher(x, nu1, nu2, lambda).upper;
}
double upperBeta(double x, double alpha, double beta, double lambda) {
    return laws::noncentralBeta(x, alpha, beta, lambda).upper;
}
double upperStudent(double x, double nu, double delta) {
    return laws::noncentralStudent(x, nu, delta).upper;
}

const numcore::testing::ScalarFunctions kFunctions = {
    NUMCORE_SCALAR(PDFStudentNC),    NUMCORE_SCALAR(CDFStudentNC),   NUMCORE_SCALAR(InvCDFStudentNC),
    NUMCORE_SCALAR(CDFchiSqNC),      NUMCORE_SCALAR(CDFFisherNC),    NUMCORE_SCALAR(CDFbetaNC),
    NUMCORE_SCALAR(PDFBiNormal),     NUMCORE_SCALAR(PDFBiNormalStd), NUMCORE_SCALAR(CDFBiNormalStd),
    {"upperchiSqNC", upperChiSq},    {"upperFisherNC", upperFisher}, {"upperbetaNC", upperBeta},
    {"upperStudentNC", upperStudent}};

TEST(NoncentralLaws, MatchReference) {
    numcore::testing::expectScalarRows("distributions/noncentral_laws.csv", kFunctions);
}

TEST(NoncentralLaws, BothTailsMatchArbitraryPrecision) {
    numcore::testing::expectScalarRows("distributions/noncentral_tails.csv", kFunctions);
}

TEST(NoncentralLaws, ZeroNoncentralityIsTheCentralLaw) {
    for (const double x : {1e-8, 0.125, 0.5, 0.875}) {
        EXPECT_NEAR(CDFbetaNC(x, 2.5, 4.0, 0.0) / CDFBeta(x, 2.5, 4.0, -1), 1.0, 1e-12) << x;
        EXPECT_NEAR(CDFchiSqNC(8.0 * x, 5.0, 0.0) / CDFChiSq(8.0 * x, 5.0), 1.0, 1e-12) << x;
        EXPECT_NEAR(CDFFisherNC(x, 4.0, 9.0, 0.0) / CDFFisher(x, 4.0, 9.0, -1), 1.0, 1e-12) << x;
        EXPECT_NEAR(CDFStudentNC(-8.0 * x, 7.0, 0.0) / CDFStudent(-8.0 * x, 7.0), 1.0, 1e-7) << x;
    }
}

// |T| <= t is T^2 <= t^2: the F law on 1 and nu degrees of freedom, across both ways of summation.
TEST(NoncentralLaws, StudentSquaredIsFisher) {
    for (const double nu : {1.0, 12.0, 400.0}) {
        for (const double delta : {0.5, 3.0, 25.0}) {
            for (const double t : {0.25, 2.0, 24.0}) {
                const double within = CDFStudentNC(t, nu, delta) - CDFStudentNC(-t, nu, delta);
                EXPECT_NEAR(within, CDFFisherNC(t * t, 1.0, nu, delta * delta), 1e-12)
                    << t << ' ' << nu << ' ' << delta;
            }
        }
    }
}

TEST(NoncentralLaws, StudentQuantileUndoesTheDistribution) {
    for (const double nu : {0.3, 1.0, 4.5, 60.0, 1e6}) {
        for (const double delta : {-6.0, 0.0, 0.75, 12.0}) {
            for (const double p : {1e-40, 1e-3, 0.25, 0.5, 0.9}) {
                const double t = InvCDFStudentNC(p, nu, delta);
                if (t == kMissing) continue;  // below -1e100
                EXPECT_NEAR(CDFStudentNC(t, nu, delta) / p, 1.0, 1e-9) << p << ' ' << nu << ' ' << delta;
            }
            const double distant = InvCDFStudentNC(1.0 - 0x1p-40, nu, delta);
            EXPECT_NEAR(upperStudent(distant, nu, delta) / 0x1p-40, 1.0, 1e-9) << nu << ' ' << delta;
        }
    }
}

TEST(NoncentralLaws, EndValuesAndMarkers) {
    EXPECT_EQ(CDFchiSqNC(-1.0, 3.0, 2.0), 0.0);
    EXPECT_EQ(CDFchiSqNC(HUGE_VAL, 3.0, 2.0), 1.0);
    EXPECT_EQ(CDFbetaNC(1.0, 3.0, 2.0, 5.0), 1.0);
    EXPECT_EQ(CDFFisherNC(1e300, 1e-3, 1e3, 1.0), 1.0);
    EXPECT_EQ(CDFStudentNC(-HUGE_VAL, 3.0, 2.0), 0.0);
    EXPECT_EQ(PDFStudentNC(-HUGE_VAL, 3.0, 2.0), 0.0);
    EXPECT_EQ(InvCDFStudentNC(1.0, 3.0, 2.0), kOverflow);
    EXPECT_EQ(InvCDFStudentNC(0.0, 3.0, 2.0), kMissing);
    EXPECT_EQ(InvCDFStudentNC(1.0 + 0x1p-52, 3.0, 2.0), kMissing);
    const double nan = std::nan("");
    for (const double bad : {nan, HUGE_VAL, -1.0}) {
        EXPECT_EQ(CDFchiSqNC(2.0, 3.0, bad), kMissing) << bad;
        EXPECT_EQ(CDFFisherNC(2.0, bad, 4.0, 1.0), kMissing) << bad;
        EXPECT_EQ(CDFbetaNC(0.5, 3.0, bad, 1.0), kMissing) << bad;
        EXPECT_EQ(CDFStudentNC(2.0, bad, 1.0), kMissing) << bad;
    }
    EXPECT_EQ(CDFStudentNC(2.0, 3.0, -HUGE_VAL), kMissing);
    EXPECT_EQ(CDFchiSqNC(2.0, 0.0, 1.0), kMissing);
    EXPECT_TRUE(std::isnan(CDFchiSqNC(nan, 3.0, 1.0)));
    EXPECT_TRUE(std::isnan(CDFStudentNC(nan, 3.0, 1.0)));
}

// Every combination of extremes ends, in a probability.
TEST(NoncentralLaws, ExtremeParametersEnd) {
    const auto isProbability = [](double p) { return p >= 0.0 && p <= 1.0; };
    for (const double a : {1e-12, 1.0, 1e5, 1e15, 1e50}) {
        for (const double b : {1e-12, 0.5, 1e9, 1e50}) {
            for (const double lambda : {0.0, 1e-300, 1e4, 1e16, 1e50}) {
                SCOPED_TRACE(testing::Message() << a << ' ' << b << ' ' << lambda);
                for (const double x : {5e-324, 1e-9, 0.5, 1.0 - 0x1p-53, 40.0, 1e300}) {
                    EXPECT_PRED1(isProbability, CDFchiSqNC(x, a, lambda)) << x;
                    EXPECT_PRED1(isProbability, CDFFisherNC(x, a, b, lambda)) << x;
                    EXPECT_PRED1(isProbability, CDFbetaNC(x, a, b, lambda)) << x;
                    EXPECT_PRED1(isProbability, CDFStudentNC(x, a, lambda)) << x;
                    EXPECT_PRED1(isProbability, CDFStudentNC(x, a, -lambda)) << x;
                }
                EXPECT_FALSE(std::isnan(InvCDFStudentNC(0.25, a, lambda)));
            }
        }
    }
}

}  // namespace
