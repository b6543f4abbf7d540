#include "suite/basecore.hpp"

#include <gtest/gtest.h>

#include <cmath>

#include "numcore/api.h"
#include "reference_table.hpp"

namespace {

using namespace numcore::basecore;
using numcore::testing::Row;

double call(const Row& row) {
    const std::string function = row.text("function");
    if (function == "GammaLn") return GammaLn(row["a1"]);
    if (function == "LogExpAPlusExpB") return LogExpAPlusExpB(row["a1"], row["a2"]);
    if (function == "Cnk") return Cnk(row["a1"], row["a2"]);
    if (function == "Fact") return Fact(static_cast<std::int32_t>(row["a1"]));
    if (function == "sqr") return sqr(row["a1"]);
    EXPECT_EQ(function, "Pi");
    return Pi();
}

TEST(Basecore, ScalarsMatchReference) {
    numcore::testing::expectTable("suite/basecore.csv", call);
}

TEST(Basecore, GammaLnIsSmoothAcrossItsRanges) {
    // Gamma(x + 1) = x Gamma(x), across every boundary between two forms.
    for (double x = 0.01; x < 40.0; x += 0.0625 / 3.0) {
        const double scale = std::max(1.0, std::abs(GammaLn(x + 1.0)));
        EXPECT_NEAR(GammaLn(x + 1.0), GammaLn(x) + std::log(x), 2e-15 * scale) << x;
    }
}

TEST(Basecore, LogExpTreatsTheMissingValueAsLogarithmOfNothing) {
    EXPECT_EQ(LogExpAPlusExpB(NUMCORE_MISSING, -3.5), -3.5);
}

TEST(Basecore, SignsAndOrder) {
    EXPECT_EQ(FSgn(-0.5), -1.0);
    EXPECT_EQ(FSgn(-0.0), 0.0);
    EXPECT_EQ(FSign(HUGE_VAL), 1);
    EXPECT_EQ(FSign(std::nan("")), 0);
    EXPECT_EQ(Min(2.0, -3.0), -3.0);
    EXPECT_EQ(Max(2.0, -3.0), 2.0);
}

TEST(Basecore, OnlyMinusOneIsTrue) {
    EXPECT_TRUE(isTrue(-1));
    for (const int flag : {0, 1, 2, -2, 255, 32767, -32768})
        EXPECT_FALSE(isTrue(static_cast<std::int16_t>(flag)));
}

TEST(Basecore, ReplaceScansOnce) {
    EXPECT_EQ(Replace(u"node XXXX of XXXX", u"XXXX", u"A"), u"node A of A");
    EXPECT_EQ(Replace(u"aaaaa", u"aa", u"a"), u"aaa");
    EXPECT_EQ(Replace(u"XX", u"X", u"aXXb"), u"aXXbaXXb");
    EXPECT_EQ(Replace(u"abc", u"", u"z"), u"abc");
    EXPECT_EQ(Replace(u"", u"a", u"b"), u"");
    EXPECT_EQ(Replace(u"\u00e9t\u00e9", u"\u00e9", u""), u"t");
}

}  // namespace
