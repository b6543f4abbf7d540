#include "numcore/closed_form_laws.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "numcore/continuous_laws.h"
#include "numcore/markers.hpp"
#include "scalar_rows.hpp"

namespace {

using numcore::kMissing;
using numcore::kOverflow;

constexpr double kInfinite = std::numeric_limits<double>::infinity();

TEST(ClosedFormLaws, MatchReference) {
    numcore::testing::expectScalarRows("distributions/closed_form_laws.csv",
                                       {NUMCORE_SCALAR(PDFExponential),
                                        NUMCORE_SCALAR(CDFExponential),
                                        NUMCORE_SCALAR(InvCDFExponential),
                                        NUMCORE_SCALAR(PDFWeibull3),
                                        NUMCORE_SCALAR(CDFWeibull3),
                                        NUMCORE_SCALAR(InvCDFWeibull3),
                                        NUMCORE_SCALAR(PDFFisherTippett),
                                        NUMCORE_SCALAR(CDFFisherTippett),
                                        NUMCORE_SCALAR(InvCDFFisherTippett),
                                        NUMCORE_SCALAR(PDFGEV),
                                        NUMCORE_SCALAR(CDFGEV),
                                        NUMCORE_SCALAR(InvCDFGEV),
                                        NUMCORE_SCALAR(PDFLogistic),
                                        NUMCORE_SCALAR(CDFLogistic),
                                        NUMCORE_SCALAR(InvCDFLogistic),
                                        NUMCORE_SCALAR(PDFPareto),
                                        NUMCORE_SCALAR(CDFPareto),
                                        NUMCORE_SCALAR(InvCDFPareto),
                                        NUMCORE_SCALAR(PDFTriangular),
                                        NUMCORE_SCALAR(CDFTriangular),
                                        NUMCORE_SCALAR(InvCDFTriangular),
                                        NUMCORE_SCALAR(PDFTrapezoidal),
                                        NUMCORE_SCALAR(CDFTrapezoidal),
                                        NUMCORE_SCALAR(InvCDFTrapezoidal),
                                        NUMCORE_SCALAR(PDFUniform),
                                        NUMCORE_SCALAR(CDFUniform),
                                        NUMCORE_SCALAR(InvCDFUniform),
                                        NUMCORE_SCALAR(PDFArcsine),
                                        NUMCORE_SCALAR(CDFArcsine),
                                        NUMCORE_SCALAR(InvCDFArcsine),
                                        NUMCORE_SCALAR(PDFArcsineG),
                                        NUMCORE_SCALAR(CDFArcsineG),
                                        NUMCORE_SCALAR(InvCDFArcsineG)});
}

void expectRelative(double got, double expected, double tolerance) {
    EXPECT_NEAR(got, expected, tolerance * std::abs(expected));
}

TEST(ClosedFormLaws, ExponentialFamilyAgrees) {
    for (const double x : {1e-12, 0.3, 2.0, 40.0}) {
        expectRelative(CDFWeibull3(x, 1.0, 4.0, 0.0), CDFExponential(x, 0.25), 1e-14);
        expectRelative(PDFWeibull3(x, 1.0, 4.0, 0.0), PDFExponential(x, 0.25), 1e-14);
        EXPECT_EQ(CDFWeibull3(x, 2.5, 0.0, 0.0), CDFWeibull3(x, 2.5, 1.0, 0.0));
        EXPECT_EQ(PDFWeibull3(x, 2.5, 0.0, 0.0), PDFWeibull3(x, 2.5, 1.0, 0.0));
        // the logarithm of a Pareto variate is exponential
        expectRelative(CDFPareto(2.0 * std::exp(x), 3.0, 2.0), CDFExponential(x, 3.0), x < 1e-6 ? 1e-3 : 1e-14);
    }
    EXPECT_EQ(InvCDFWeibull3(0.5, 2.5, 0.0, 0.0), kMissing);
}

TEST(ClosedFormLaws, ArcsineIsABetaLaw) {
    for (const double a : {0.02, 0.3, 0.5, 0.8}) {
        for (const double x : {0x1p-30, 0.25, 0.5, 0.875}) {
            expectRelative(PDFArcsine(x, a), PDFBeta(x, 1.0 - a, a), 1e-13);
            expectRelative(CDFArcsine(x, a), CDFBeta(x, 1.0 - a, a, NUMCORE_TRUE), 1e-13);
            EXPECT_NEAR(CDFArcsine(x, a) + CDFArcsine(1.0 - x, 1.0 - a), 1.0, 1e-13);
            expectRelative(InvCDFArcsine(CDFArcsine(x, a), a), x, 1e-11);
            EXPECT_EQ(CDFArcsineG(2.0 + 4.0 * x, a, 2.0, 6.0), CDFArcsine((2.0 + 4.0 * x - 2.0) / 4.0, a));
        }
    }
    EXPECT_EQ(PDFArcsine(0.0, 0.3), kOverflow);
    EXPECT_EQ(PDFArcsineG(6.0, 0.3, 2.0, 6.0), kOverflow);
}

TEST(ClosedFormLaws, OneShapeInAnother) {
    for (const double x : {-0.5, 0.3, 1.0, 1.7, 2.5}) {
        EXPECT_NEAR(CDFTrapezoidal(x, 0.0, 1.0, 1.0, 2.0), CDFTriangular(x, 0.0, 1.0, 2.0), 1e-15);
        EXPECT_NEAR(PDFTrapezoidal(x, 0.0, 1.0, 1.0, 2.0), PDFTriangular(x, 0.0, 1.0, 2.0), 1e-15);
        EXPECT_EQ(CDFTrapezoidal(x, 0.0, 0.0, 2.0, 2.0), CDFUniform(x, 0.0, 2.0));
        EXPECT_NEAR(CDFLogistic(x, 0.3, 2.0) + CDFLogistic(0.6 - x, 0.3, 2.0), 1.0, 1e-15);
        expectRelative(CDFGEV(x, 1e-12, 2.0, 1.0), CDFFisherTippett(x, 2.0, 1.0), 1e-11);
        EXPECT_EQ(PDFGEV(x, 0.0, 2.0, 1.0), PDFFisherTippett(x, 2.0, 1.0));
    }
    EXPECT_EQ(PDFTriangular(3.0, 3.0, 3.0, 3.0), kOverflow);
    EXPECT_EQ(CDFTrapezoidal(3.0, 3.0, 3.0, 3.0, 3.0), 1.0);
    EXPECT_EQ(InvCDFTrapezoidal(0.4, 3.0, 3.0, 3.0, 3.0), 3.0);
}

TEST(ClosedFormLaws, ExponentialStopsAt700) {
    EXPECT_GT(PDFExponential(699.0, 1.0), 0.0);
    EXPECT_EQ(PDFExponential(350.0, 2.0), 0.0);
    EXPECT_EQ(CDFExponential(350.0, 2.0), 1.0);
    EXPECT_EQ(InvCDFExponential(1.0, 2.0), kOverflow);
}

TEST(ClosedFormLaws, GumbelIsOneFarBelow) {
    EXPECT_EQ(CDFFisherTippett(-708.9, 1.0, 0.0), 0.0);
    EXPECT_EQ(CDFFisherTippett(-709.0, 1.0, 0.0), 1.0);
    EXPECT_EQ(CDFFisherTippett(5.0 - 800.0 * 2.0, 2.0, 5.0), 1.0);
    EXPECT_EQ(CDFFisherTippett(-kInfinite, 1.0, 0.0), 1.0);
    EXPECT_EQ(PDFFisherTippett(-709.0, 1.0, 0.0), 0.0);
    EXPECT_EQ(CDFGEV(-709.0, 0.0, 1.0, 0.0), 1.0);
    EXPECT_EQ(CDFGEV(-709.0, 1e-9, 1.0, 0.0), 0.0);
}

TEST(ClosedFormLaws, ExtremeValueShapeHasItsOwnSign) {
    EXPECT_EQ(CDFGEV(5.1, 0.5, 2.0, 1.0), 1.0);  // k > 0: the upper bound 1 + 2 / 0.5
    EXPECT_EQ(PDFGEV(5.1, 0.5, 2.0, 1.0), 0.0);
    EXPECT_EQ(CDFGEV(-3.1, -0.5, 2.0, 1.0), 0.0);
    EXPECT_EQ(InvCDFGEV(1.0, 0.5, 2.0, 1.0), 5.0);
    EXPECT_EQ(InvCDFGEV(0.0, 0.5, 2.0, 1.0), kMissing);
    EXPECT_EQ(InvCDFGEV(1.0, -0.5, 2.0, 1.0), kOverflow);
    EXPECT_EQ(InvCDFGEV(0.0, -0.5, 2.0, 1.0), -3.0);
    // inside, the stated formula: the law with the other sign
    const double stated = 1.0 + 2.0 * (std::pow(-std::log(0.9), -0.5) - 1.0) / 0.5;
    expectRelative(InvCDFGEV(0.9, 0.5, 2.0, 1.0), stated, 1e-14);
    EXPECT_NEAR(CDFGEV(stated, -0.5, 2.0, 1.0), 0.9, 1e-15);
    EXPECT_EQ(CDFGEV(stated, 0.5, 2.0, 1.0), 1.0);
}

TEST(ClosedFormLaws, ParetoAndLogisticEnds) {
    EXPECT_EQ(CDFPareto(2.0, -1.0, 1.0), 0.0);
    EXPECT_EQ(CDFPareto(2.0, 1.0, kInfinite * 0.0), 0.0);
    EXPECT_EQ(PDFPareto(2.0, -1.0, 1.0), kMissing);
    EXPECT_EQ(InvCDFPareto(1.0, 2.0, 1.0), kOverflow);
    EXPECT_EQ(InvCDFPareto(0.5, 1e-5, 1.0), kOverflow);
    EXPECT_EQ(InvCDFLogistic(1.0, 3.0, 0.5), kOverflow);
    EXPECT_EQ(InvCDFLogistic(0.0, 3.0, 0.5), kMissing);
    EXPECT_LT(PDFLogistic(0.0, 0.0, -1.0), 0.0);  // not checked
    EXPECT_EQ(InvCDFUniform(0.5, 3.0, 3.0), kMissing);
}

TEST(ClosedFormLaws, QuantilesTakeHugeBounds) {
    expectRelative(InvCDFTrapezoidal(0.25, 0.0, 1e300, 1e300, 2e300), std::sqrt(0.5) * 1e300, 1e-15);
    expectRelative(InvCDFTrapezoidal(0.75, 0.0, 1e300, 1e300, 2e300), (2.0 - std::sqrt(0.5)) * 1e300, 1e-15);
    EXPECT_EQ(InvCDFUniform(0.5, 0.0, kInfinite), kOverflow);
    EXPECT_GE(CDFTrapezoidal(0.0, -4.0, -2.0, -2.0, kOverflow), 0.0);
}

}  // namespace
