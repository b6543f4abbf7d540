#include "numcore/studentized_range.h"

#include <gtest/gtest.h>

#include <cmath>

#include "distributions/laws/studentized_range.hpp"
#include "numcore/continuous_laws.h"
#include "numcore/markers.hpp"
#include "numcore/noncentral_laws.h"
#include "scalar_rows.hpp"

namespace {

using numcore::kMissing;
using numcore::kOverflow;
using numcore::distributions::studentizedRange;

double uppertukey(double q, double ranges, double k, double df) {
    return studentizedRange(q, ranges, k, df).upper;
}

const numcore::testing::ScalarFunctions kFunctions = {NUMCORE_SCALAR(ptukey), NUMCORE_SCALAR(qtukey),
                                                      NUMCORE_SCALAR(uppertukey)};

TEST(StudentizedRange, MatchesReference) {
    numcore::testing::expectScalarRows("distributions/studentized_range.csv", kFunctions);
}

TEST(StudentizedRange, BothTailsMatchDirectIntegration) {
    numcore::testing::expectScalarRows("distributions/studentized_range_tails.csv", kFunctions);
}

// Two means: the range is sqrt(2) |t|.
TEST(StudentizedRange, OfTwoMeansIsStudents) {
    for (const double df : {0.5, 1.0, 2.0, 7.0, 90.0, 1e5, 1e12}) {
        for (const double t : {1e-5, 0.3, 1.7, 6.0, 40.0, 1e4}) {
            const double q = std::sqrt(2.0) * t;
            const double upper = 2.0 * CDFStudentNC(-t, df, 0.0);
            if (upper < 1e-300) continue;
            EXPECT_NEAR(uppertukey(q, 1.0, 2.0, df) / upper, 1.0, 1e-10) << t << ' ' << df;
        }
    }
}

// The largest of several ranges of normal variables, and what s of many degrees of freedom tends to.
TEST(StudentizedRange, RangesMultiplyAndDegreesOfFreedomConverge) {
    for (const double q : {1.0, 3.5, 6.0}) {
        const double one = ptukey(q, 1.0, 4.0, HUGE_VAL);
        EXPECT_NEAR(ptukey(q, 5.0, 4.0, HUGE_VAL), std::pow(one, 5.0), 1e-12) << q;
        EXPECT_NEAR(ptukey(q, 1.0, 4.0, 1e13), one, 1e-11) << q;
    }
}

TEST(StudentizedRange, QuantileUndoesTheDistribution) {
    for (const double df : {0.6, 1.0, 2.0, 11.0, 500.0, HUGE_VAL}) {
        for (const double k : {2.0, 3.0, 9.5, 120.0}) {
            for (const double ranges : {1.0, 6.0}) {
                SCOPED_TRACE(testing::Message() << df << ' ' << k << ' ' << ranges);
                for (const double p : {1e-20, 1e-3, 0.3, 0.499, 0.5}) {
                    const double q = qtukey(p, ranges, k, df);
                    EXPECT_NEAR(ptukey(q, ranges, k, df) / p, 1.0, 2e-10) << p;
                }
                for (const double tail : {0.4, 0.05, 0x1p-20, 0x1p-45}) {
                    const double q = qtukey(1.0 - tail, ranges, k, df);
                    EXPECT_NEAR(uppertukey(q, ranges, k, df) / tail, 1.0, 1e-10 + 0x1p-53 / tail) << tail;
                }
            }
        }
    }
}

TEST(StudentizedRange, DensityIsTheDerivative) {
    for (const double df : {1.5, 8.0, 300.0}) {
        for (const double q : {0.4, 2.0, 5.0}) {
            const double h = 1e-4 * q;
            const double slope = (ptukey(q + h, 2.0, 5.0, df) - ptukey(q - h, 2.0, 5.0, df)) / (2.0 * h);
            EXPECT_NEAR(studentizedRange(q, 2.0, 5.0, df, true).density, slope, 1e-6 * (1.0 + slope)) << df;
        }
    }
}

TEST(StudentizedRange, EndValuesAndMarkers) {
    EXPECT_EQ(ptukey(-1.0, 1.0, 3.0, 10.0), 0.0);
    EXPECT_EQ(ptukey(0.0, 1.0, 3.0, 10.0), 0.0);
    EXPECT_EQ(ptukey(HUGE_VAL, 1.0, 3.0, 10.0), 1.0);
    EXPECT_TRUE(std::isnan(ptukey(std::nan(""), 1.0, 3.0, 10.0)));
    EXPECT_EQ(qtukey(0.0, 1.0, 3.0, 10.0), 0.0);
    EXPECT_EQ(qtukey(1.0, 1.0, 3.0, 10.0), kOverflow);
    EXPECT_EQ(qtukey(1.0 - 0x1p-53, 1.0, 3.0, 1e-3), kOverflow);
    for (const double p : {-0x1p-60, 1.0 + 0x1p-52, std::nan("")})
        EXPECT_EQ(qtukey(p, 1.0, 3.0, 10.0), kMissing);
    for (const double bad : {std::nan(""), -HUGE_VAL, 0.0, 1e7}) {
        EXPECT_EQ(ptukey(3.0, bad, 3.0, 10.0), kMissing) << bad;
        EXPECT_EQ(ptukey(3.0, 1.0, bad, 10.0), kMissing) << bad;
        EXPECT_EQ(qtukey(0.5, 1.0, bad, 10.0), kMissing) << bad;
    }
    EXPECT_EQ(ptukey(3.0, 1.0, 1.999, 10.0), kMissing);
    for (const double bad : {std::nan(""), -1.0, 9e-7}) EXPECT_EQ(ptukey(3.0, 1.0, 3.0, bad), kMissing) << bad;
}

TEST(StudentizedRange, ExtremeArgumentsEnd) {
    for (const double q : {5e-324, 1e-149, 0.01, 3.0, 59.0, 1e8, 1e300}) {
        for (const double ranges : {1.0, 1.5, 1e3, 1e6}) {
            for (const double k : {2.0, 2.0 + 0x1p-50, 1e3, 1e6}) {
                for (const double df : {1e-6, 0.1, 1.0, 1e6, 1e300, HUGE_VAL}) {
                    SCOPED_TRACE(testing::Message() << q << ' ' << ranges << ' ' << k << ' ' << df);
                    const double p = ptukey(q, ranges, k, df);
                    EXPECT_TRUE(p >= 0.0 && p <= 1.0) << p;
                    if (q != 3.0) continue;
                    EXPECT_GE(qtukey(0.375, ranges, k, df), 0.0);
                }
            }
        }
    }
}

}  // namespace
