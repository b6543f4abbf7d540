// g++ 12 warns without cause where "literal" + std::to_string(...) of scalar_rows.hpp is inlined.
#pragma GCC diagnostic ignored "-Wrestrict"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "distributions/special/beta_ratio.hpp"
#include "distributions/special/incomplete_gamma.hpp"
#include "numcore/markers.hpp"
#include "numcore/special.h"
#include "numcore/special.hpp"
#include "scalar_rows.hpp"

namespace {

using numcore::kMissing;
using numcore::kOverflow;

TEST(Special, MatchesReference) {
    numcore::testing::expectScalarRows(
        "distributions/special.csv",
        {NUMCORE_SCALAR(IncompleteGamma), NUMCORE_SCALAR(IncompleteBetaR), NUMCORE_SCALAR(IncompleteBeta),
         NUMCORE_SCALAR(Betacf), NUMCORE_SCALAR(betaln), NUMCORE_SCALAR(GammaLnCorr),
         NUMCORE_SCALAR(chebyshev_eval), NUMCORE_SCALAR(derf), NUMCORE_SCALAR(derfc),
         NUMCORE_SCALAR(PDFNormalStd), NUMCORE_SCALAR(CDFNormalStd), NUMCORE_SCALAR(InvCDFNormalStd),
         NUMCORE_SCALAR(GammaF), NUMCORE_SCALAR(Digamma), NUMCORE_SCALAR(Trigamma), NUMCORE_SCALAR(RiemannZeta),
         NUMCORE_SCALAR(ArctanH)});
}

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr std::array<double, 29> kHostile = {0.0,    -0.0,    5e-324,    -5e-324,   2.2e-308,
                                             1e-300, -1e-300, 1e-20,     1e-10,     -1e-10,
                                             0.3,    0.5,     1.0,       -1.0,      1.5,
                                             2.0,    -2.5,    39.999,    170.5,     -1e3,
                                             1e3,    1e8,     3e9,       -3e9,      9007199254740993.,
                                             1e300,  -1e300,  kInfinity, -kInfinity};

// Any argument must lead to an end, within a time that no one notices.
TEST(Special, EveryCallEnds) {
    std::array<double, kHostile.size() + 3> points;
    std::copy(kHostile.begin(), kHostile.end(), points.begin());
    points[kHostile.size()] = std::nan("");
    points[kHostile.size() + 1] = kMissing;
    points[kHostile.size() + 2] = kOverflow;
    const auto start = std::chrono::steady_clock::now();
    double sink = 0.0;
    for (const double x : points) {
        for (const auto& function : {derf, derfc, PDFNormalStd, CDFNormalStd, InvCDFNormalStd, GammaF, Digamma,
                                     Trigamma, ArctanH, GammaLnCorr}) {
            sink += function(x);
        }
        for (const std::int32_t n : {INT32_MIN, -1, 0, 1, 15, 16, 1000, INT32_MAX})
            sink += chebyshev_eval(x, n);
        for (const double a : points) {
            sink += IncompleteGamma(x, a) + betaln(x, a) + RiemannZeta(x, a);
            sink += numcore::distributions::incompleteGammaUpper(x, a);
            for (const double b : points) {
                sink += IncompleteBetaR(x, a, b) + IncompleteBeta(x, a, b) + Betacf(x, a, b);
                sink += numcore::distributions::betaRatio(a, b, x, 1.0 - x).upper;
            }
        }
    }
    EXPECT_TRUE(std::isnan(sink));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

TEST(Special, NotANumberFlowsThrough) {
    const double nan = std::nan("");
    for (const auto& function : {derf, derfc, PDFNormalStd, CDFNormalStd, InvCDFNormalStd, GammaF, Digamma,
                                 Trigamma, ArctanH, GammaLnCorr}) {
        EXPECT_TRUE(std::isnan(function(nan)));
    }
    EXPECT_TRUE(std::isnan(betaln(nan, 3.0)) && std::isnan(betaln(3.0, nan)) && std::isnan(betaln(30.0, nan)));
    EXPECT_TRUE(std::isnan(chebyshev_eval(nan, 5)));
    EXPECT_TRUE(std::isnan(RiemannZeta(nan, 1e-3)) && std::isnan(RiemannZeta(2.0, nan)));
    EXPECT_EQ(Betacf(nan, 2.0, 3.0), 0.0);  // it never settles
}

TEST(NormalDistribution, FloorAndSymmetry) {
    EXPECT_EQ(CDFNormalStd(-9.0), 0.0);
    EXPECT_EQ(CDFNormalStd(-8.23), 0.0);
    EXPECT_GE(CDFNormalStd(-8.22), 1e-16);
    EXPECT_EQ(CDFNormalStd(-kInfinity), 0.0);
    EXPECT_EQ(CDFNormalStd(kInfinity), 1.0);
    for (double z = 0.0; z < 8.5; z += 0.01) EXPECT_NEAR(CDFNormalStd(z) + CDFNormalStd(-z), 1.0, 2e-16) << z;
    // The three approximations meet.
    for (const double end : {0.66291, 5.656854249492381}) {
        EXPECT_NEAR(CDFNormalStd(-end) / CDFNormalStd(-std::nextafter(end, 9.0)), 1.0, 1e-14) << end;
    }
}

TEST(ErrorFunction, AgreesWithItsComplementAndTheNormalLaw) {
    for (double x = -7.5; x < 7.5; x += 0.0173) {
        EXPECT_NEAR(derf(x) + derfc(x), 1.0, 1e-15) << x;
        EXPECT_NEAR(0.5 * derfc(-x), CDFNormalStd(x * std::sqrt(2.0)), 4e-16) << x;
    }
    EXPECT_EQ(derf(6.9), 1.0);
    EXPECT_EQ(derf(-kInfinity), -1.0);
    EXPECT_EQ(derfc(kInfinity), 0.0);
}

TEST(GammaFunction, RecurrenceReflectionAndPoles) {
    for (double x = -20.37; x < 169.0; x += 0.713) {
        EXPECT_NEAR(GammaF(x + 1.0) / (x * GammaF(x)), 1.0, 1e-13) << x;
    }
    // Close to a pole: Gamma(-1 + h) is -1/h to first order.
    EXPECT_NEAR(GammaF(-1.0 + 0x1p-30) * -0x1p-30, 1.0, 1e-8);
    EXPECT_EQ(GammaF(-1e15 - 0.5), 0.0);
    EXPECT_EQ(GammaF(-kInfinity), kOverflow);
    EXPECT_EQ(GammaF(5e-324), kOverflow);
    EXPECT_TRUE(std::isfinite(GammaF(-1e-308)));
}

TEST(DigammaAndTrigamma, SmallArgumentRulesAreKept) {
    EXPECT_EQ(Digamma(1e-5), -0.5772156649 - 1.0 / 1e-5);
    EXPECT_NE(Digamma(1.01e-5), -0.5772156649 - 1.0 / 1.01e-5);
    EXPECT_EQ(Trigamma(1e-4), 1.0 / (1e-4 * 1e-4));
    EXPECT_EQ(Trigamma(1.0 + 0.9e-12), Trigamma(1.0));
    EXPECT_NE(Trigamma(1.0 + 1.1e-12), Trigamma(1.0));
    EXPECT_EQ(Digamma(0.0), kMissing);
    EXPECT_EQ(Trigamma(-0.5), kMissing);
}

TEST(RiemannZetaSum, CountsTheLastTerm) {
    EXPECT_EQ(RiemannZeta(3.0, 1.0), 1.125);
    EXPECT_EQ(RiemannZeta(3.0, 0.125), 1.125);
    EXPECT_EQ(RiemannZeta(3.0, 0.1), 1.125 + 1.0 / 27.0);
}

TEST(RiemannZetaSum, LongSumsAreTheSumOfTheirTerms) {
    for (const auto& [s, last] : {std::pair(1.25, 200001), {2.0, 200001}, {3.5, 5001}}) {
        double sum = 0.0;
        for (int n = last; n >= 1; --n) sum += std::pow(n, -s);
        EXPECT_NEAR(RiemannZeta(s, std::pow(last - 0.5, -s)), sum, 2e-15 * sum) << s;
    }
}

TEST(RiemannZetaSum, EndsWhereTheSumDoesNotConverge) {
    EXPECT_EQ(RiemannZeta(1.0, 1e-3), kOverflow);
    EXPECT_EQ(RiemannZeta(-kInfinity, 1e-3), kOverflow);
    EXPECT_EQ(RiemannZeta(kInfinity, 0.0), 1.0);
    const double pi = std::acos(-1.0);
    EXPECT_NEAR(RiemannZeta(2.0, 0.0), pi * pi / 6.0, 2e-8);
    EXPECT_EQ(RiemannZeta(2.0, -1.0), RiemannZeta(2.0, 0.0));
    EXPECT_GT(RiemannZeta(1.0 + 1e-15, 0.0), 30.0);  // the harmonic sum up to some 1e14 terms
}

TEST(ContinuedFraction, GivesTheIncompleteBetaFunction) {
    for (const double a : {0.7, 3.0, 25.0}) {
        for (const double b : {0.5, 4.0, 60.0}) {
            const double x = 0.8 * (a + 1.0) / (a + b + 2.0);
            const double scale = std::exp(a * std::log(x) + b * std::log1p(-x) - betaln(a, b)) / a;
            EXPECT_NEAR(scale * Betacf(x, a, b) / IncompleteBetaR(x, a, b), 1.0, 3e-7) << a << ' ' << b;
        }
    }
}

TEST(LogBeta, BranchesMeetAndGammaCorrectionKeepsItsRange) {
    for (const double q : {0.5, 9.5, 300.0, 1e9}) {
        const double below = std::nextafter(10.0, 0.0);
        EXPECT_NEAR(betaln(below, q), betaln(10.0, q), 1e-12 * std::abs(betaln(10.0, q))) << q;
        EXPECT_EQ(betaln(3.3, q), betaln(q, 3.3));
    }
    EXPECT_EQ(GammaLnCorr(9.99), kMissing);
    EXPECT_EQ(GammaLnCorr(3.74519403096316e306), kMissing);
    EXPECT_EQ(GammaLnCorr(1e8), 1.0 / 12e8);
    EXPECT_EQ(chebyshev_eval(0.3, 15), chebyshev_eval(0.3, 1000));  // the series has no more terms
}

TEST(Polynomial, HornerFromAContainer) {
    numcore::cST_MVect<double> c(4, 1, 0.0);
    for (std::int32_t i = 0; i < 4; ++i) c.column(0)[i] = i + 1.0;
    EXPECT_EQ(numcore::Poly(c, 1, 7.0), 1.0);
    EXPECT_EQ(numcore::Poly(c, 2, 7.0), 15.0);
    EXPECT_EQ(numcore::Poly(c, 4, 10.0), 4321.0);
    EXPECT_EQ(numcore::Poly(c, 5, 10.0), 4321.0 - 10000.0);  // the spare element is -1
    EXPECT_EQ(numcore::Poly(c, 0, 10.0), 0.0);
    EXPECT_EQ(numcore::Poly(numcore::cST_MVect<double>(), 2, 10.0), -11.0);
}

TEST(PadeCoefficients, AreThoseInPrint) {
    double c[14];
    EXPECT_EQ(GetPadeCoefficients(3, c), 4);
    EXPECT_EQ(std::vector<double>(c, c + 4), (std::vector<double>{120, 60, 12, 1}));
    EXPECT_EQ(GetPadeCoefficients(5, c), 6);
    EXPECT_EQ(std::vector<double>(c, c + 6), (std::vector<double>{30240, 15120, 3360, 420, 30, 1}));
    EXPECT_EQ(GetPadeCoefficients(13, c), 14);
    EXPECT_EQ(c[0], 64764752532480000.0);
    EXPECT_EQ(c[12], 182.0);
    EXPECT_EQ(c[13], 1.0);
    for (const std::int32_t degree : {INT32_MIN, 0, 14, INT32_MAX})
        EXPECT_EQ(GetPadeCoefficients(degree, c), 0);
    EXPECT_EQ(GetPadeCoefficients(3, nullptr), 0);
}

TEST(PadeCoefficients, ApproximateTheExponentialFunction) {
    for (std::int32_t degree = 3; degree <= 13; ++degree) {
        double c[14];
        GetPadeCoefficients(degree, c);
        double above = 0.0;
        double below = 0.0;
        for (std::int32_t power = degree; power >= 0; --power) {
            above = above * 0.125 + c[power];
            below = below * -0.125 + c[power];
        }
        EXPECT_NEAR(above / below, std::exp(0.125), degree == 3 ? 1e-11 : 1e-15) << degree;
    }
}

}  // namespace
