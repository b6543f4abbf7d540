#include "distributions/laws/chi_square_quantile.hpp"

#include <gtest/gtest.h>

#include <cmath>

#include "numcore/continuous_laws.h"
#include "numcore/markers.hpp"

namespace {

using numcore::kMissing;
using numcore::kOverflow;
using numcore::distributions::ChiSquareEquation;

double startOf(const ChiSquareEquation& equation) {
    return equation.isFarBelow() ? equation.farBelowStart() : equation.start();
}

struct Corrections {
    double value;
    int number;
};

// The stopping rule as it is told, without looking for repeated values.
Corrections allCorrections(const ChiSquareEquation& equation) {
    double x = startOf(equation);
    for (int i = 1; i <= 1000; ++i) {
        const double before = x;
        x = equation.corrected(before);
        if (std::abs(before / x - 1.0) > 5e-7) return {x, i};
    }
    return {x, 1000};
}

TEST(ChiSquareQuantile, EqualsThatOfAThousandCorrections) {
    int nInFull = 0;
    for (const double nu : {0.02, 0.3, 0.32, 0.7, 1.0, 2.0, 2.5, 4.0, 9.0, 23.0, 80.0, 351.0, 1000.0, 1877.0,
                            2001.0, 5277.8, 1e5, 1e7}) {
        for (const double p :
             {1e-99, 1e-30, 1e-7, 0.001, 0.0527186, 0.2, 0.5, 0.77, 0.9606, 0.99, 0.99999, 0.99999999999}) {
            const ChiSquareEquation equation(p, nu);
            if (equation.isFarBelow() && equation.farBelowStart() < 5e-7) continue;
            const Corrections all = allCorrections(equation);
            const double expected = std::isinf(all.value) ? kOverflow : all.value;
            const double got = InvCDFChiSq(p, nu);
            EXPECT_TRUE(got == expected || (std::isnan(expected) && got == kMissing))
                << "p " << p << " nu " << nu << ": " << got << ", all corrections " << expected;
            nInFull += all.number == 1000 ? 1 : 0;
        }
    }
    EXPECT_GT(nInFull, 20);  // enough of the grid takes the way that is cut short
}

TEST(ChiSquareQuantile, StopsAfterTheFirstLargeCorrection) {
    for (const double nu : {1.0, 3.0, 30.0}) {
        const ChiSquareEquation equation(0.01, nu);
        EXPECT_EQ(InvCDFChiSq(0.01, nu), equation.corrected(startOf(equation)));
    }
    // One correction does not do far out.
    EXPECT_GT(std::abs(CDFChiSq(InvCDFChiSq(1e-8, 30.0), 30.0) / 1e-8 - 1.0), 0.05);
}

TEST(ChiSquareQuantile, StartsByTheLeadingTermFarBelow) {
    EXPECT_TRUE(ChiSquareEquation(0.19, 2.0).isFarBelow());
    EXPECT_FALSE(ChiSquareEquation(0.2, 2.0).isFarBelow());
    EXPECT_EQ(InvCDFChiSq(1e-20, 3.0), ChiSquareEquation(1e-20, 3.0).farBelowStart());
}

TEST(ChiSquareQuantile, EndsAtFixedProbabilities) {
    EXPECT_EQ(InvCDFChiSq(std::nextafter(1e-100, 0.0), 300.0), 0.0);
    EXPECT_NE(InvCDFChiSq(1e-100, 300.0), 0.0);
    EXPECT_LT(InvCDFChiSq(0.99999999999999, 3.0), 100.0);
    EXPECT_EQ(InvCDFChiSq(std::nextafter(0.99999999999999, 1.0), 3.0), kOverflow);
    EXPECT_EQ(InvCDFChiSq(std::nan(""), 3.0), kMissing);
}

}  // namespace
