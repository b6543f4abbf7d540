#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "numcore/association.h"
#include "numcore/special.h"
#include "reference_table.hpp"

namespace {

using numcore::testing::agrees;
using numcore::testing::readDataColumn;
using numcore::testing::readTable;

using Member = double (*)(const double*, std::int32_t, const double*, const double*, std::int32_t,
                          ST_BiserialFit*);
const Member kMembers[] = {Cpp_BiserialCorrelation, Cpp_BiserialCorrelation2, Cpp_BiserialCorrelation3,
                           Cpp_BiserialCorrelation4};

struct Sample {
    std::vector<double> x;
    std::vector<double> group;
    std::vector<double> weights;

    double fit(Member member, std::int32_t alternative, ST_BiserialFit* out) const {
        return member(x.data(), static_cast<std::int32_t>(x.size()), group.data(),
                      weights.empty() ? nullptr : weights.data(), alternative, out);
    }
};

Sample cars(const std::string& x, const std::string& group) {
    return {readDataColumn("mtcars.csv", x), readDataColumn("mtcars.csv", group), {}};
}

TEST(Biserial, MatchesReference) {
    for (const auto& row : readTable("correlation/association/biserial.csv")) {
        const Sample sample = cars(row.text("x"), row.text("group"));
        ST_BiserialFit fit;
        const double r = sample.fit(kMembers[static_cast<int>(row["member"]) - 1], 0, &fit);
        EXPECT_TRUE(agrees(r, row["r"], 1e-12)) << row.line() << ": " << r;
        EXPECT_TRUE(agrees(fit.pValue, row["p"], 1e-10)) << row.line() << ": " << fit.pValue;
        ST_BiserialFit lower;
        ST_BiserialFit upper;
        sample.fit(kMembers[static_cast<int>(row["member"]) - 1], -1, &lower);
        sample.fit(kMembers[static_cast<int>(row["member"]) - 1], 7, &upper);
        EXPECT_NEAR(lower.pValue + upper.pValue, 1.0, 1e-14);
        EXPECT_EQ(lower.pValue < upper.pValue, r < 0.0);
    }
}

TEST(Biserial, PolyserialMatchesDirectMaximisation) {
    for (const auto& row : readTable("correlation/association/polyserial.csv")) {
        ST_BiserialFit fit;
        const double r = cars(row.text("x"), row.text("group")).fit(BiserialCorrelation4, 0, &fit);
        EXPECT_TRUE(agrees(r, row["r"], 1e-7)) << row.line() << ": " << r;
        EXPECT_EQ(fit.status, NUMCORE_FIT_CONVERGED);
        EXPECT_EQ(fit.nCategories, row.text("group") == "am" ? 2 : 3);
    }
}

// The spread of 400 estimates from samples of 400 with correlation 0.6, categories cut at -0.8 and 0.3, is
// 0.0382 in NumPy's generator; the errors of such samples lie around 0.0379.
TEST(Biserial, PolyserialErrorIsTheSpreadOfEstimates) {
    Sample sample;
    // A grid of the bivariate law stands for the sample: 400 quantile pairs with exact conditional shares.
    for (int i = 0; i < 400; ++i) {
        const double z = InvCDFNormalStd((i + 0.5) / 400.0);
        const double spread = std::sqrt(1.0 - 0.36);
        const double below[] = {CDFNormalStd((-0.8 - 0.6 * z) / spread), CDFNormalStd((0.3 - 0.6 * z) / spread),
                                1.0};
        double share = 0.0;
        for (int category = 0; category < 3; ++category) {
            sample.x.push_back(z);
            sample.group.push_back(category);
            sample.weights.push_back(below[category] - share);
            share = below[category];
        }
    }
    ST_BiserialFit fit;
    EXPECT_NEAR(sample.fit(BiserialCorrelation4, 0, &fit), 0.6, 0.001);
    EXPECT_NEAR(fit.standardError, 0.0380, 0.0006);
}

TEST(Biserial, WeightsCountRowsAndGapsAreSkipped) {
    Sample plain = cars("hp", "am");
    Sample weighted = plain;
    weighted.weights.assign(plain.x.size(), 1.0);
    weighted.weights[3] = 2.0;
    weighted.x.push_back(NUMCORE_MISSING);
    weighted.group.push_back(5.0);
    weighted.weights.push_back(1.0);
    weighted.x.push_back(100.0);
    weighted.group.push_back(std::nan(""));
    weighted.weights.push_back(1.0);
    weighted.x.push_back(100.0);
    weighted.group.push_back(9.0);
    weighted.weights.push_back(0.0);
    plain.x.push_back(plain.x[3]);
    plain.group.push_back(plain.group[3]);
    for (const Member member : kMembers) {
        ST_BiserialFit a;
        ST_BiserialFit b;
        EXPECT_TRUE(agrees(weighted.fit(member, 0, &a), plain.fit(member, 0, &b), 1e-12));
        EXPECT_TRUE(agrees(a.standardError, b.standardError, 1e-11));
        EXPECT_TRUE(agrees(a.pValue, b.pValue, 1e-10));
        EXPECT_EQ(a.upperWeight, b.upperWeight);
    }
}

TEST(Biserial, SeparatedGroupsAndBadInput) {
    const Sample apart{{1, 2, 3, 4}, {0, 0, 1, 1}, {}};
    ST_BiserialFit fit;
    EXPECT_EQ(apart.fit(BiserialCorrelation3, 0, &fit), 1.0);
    EXPECT_GT(apart.fit(BiserialCorrelation, 0, &fit), 1.0) << "not bounded";
    const Sample exact{{1, 1, 3, 3}, {0, 0, 1, 1}, {}};
    EXPECT_EQ(exact.fit(BiserialCorrelation2, 0, &fit), 1.0);
    EXPECT_EQ(fit.pValue, 0.0);
    EXPECT_EQ((Sample{{3, 3, 3, 3}, {0, 0, 1, 1}, {0.1, 0.7, 0.3, 1.9}}.fit(BiserialCorrelation3, 0, &fit)),
              0.0);
    EXPECT_EQ(fit.pValue, NUMCORE_MISSING) << "without spread there is nothing to test";
    for (const Member member : kMembers) {
        EXPECT_EQ((Sample{{1, 2, 3}, {4, 4, 7}, {1, 1, HUGE_VAL}}.fit(member, 0, &fit)), NUMCORE_MISSING);
        EXPECT_EQ((Sample{{1, 2, 3}, {4, 4, 4}, {}}.fit(member, 0, &fit)), NUMCORE_MISSING);
        EXPECT_EQ(fit.status, NUMCORE_FIT_DEGENERATE);
        EXPECT_EQ((Sample{{}, {}, {}}.fit(member, 0, &fit)), NUMCORE_MISSING);
        EXPECT_EQ(fit.status, NUMCORE_FIT_TOO_FEW);
        EXPECT_EQ(member(nullptr, 3, apart.group.data(), nullptr, 0, nullptr), NUMCORE_MISSING);
        if (member == Cpp_BiserialCorrelation3) continue;
        EXPECT_EQ((Sample{{2, 2, 2}, {4, 4, 5}, {}}.fit(member, 0, &fit)), NUMCORE_MISSING);
        EXPECT_EQ((Sample{{2, HUGE_VAL, 2}, {4, 4, 5}, {}}.fit(member, 0, &fit)), NUMCORE_MISSING);
    }
    EXPECT_EQ((Sample{{1, 2, 3}, {1, 2, 3}, {}}.fit(BiserialCorrelation2, 0, &fit)), NUMCORE_MISSING);
}

TEST(Biserial, FromSummaries) {
    EXPECT_TRUE(agrees(Cpp_GetRBiserial2(3, 1, 2, 0.5), 0.5, 1e-15));
    EXPECT_TRUE(agrees(Cpp_GetRBiserial(3, 1, 2, 0.5), 0.62665706865775013, 1e-15)) << "sqrt(2 pi) / 4";
    EXPECT_EQ(Cpp_GetRBiserial3(3.5, 1.5, 4), 1.0);
    const double halves[] = {5, 5};
    EXPECT_TRUE(agrees(Cpp_GetRBiserial4(0.5, halves, 2), Cpp_GetRBiserial(3, 1, 2, 0.5), 1e-14));
    EXPECT_EQ(GetRBiserial(3, 1, 0, 0.5), NUMCORE_MISSING);
    EXPECT_EQ(GetRBiserial2(3, 1, 2, 1.0), NUMCORE_MISSING);
    EXPECT_EQ(GetRBiserial3(3, 1, 0), NUMCORE_MISSING);
    EXPECT_EQ(GetRBiserial4(0.5, halves, 1), NUMCORE_MISSING);
    EXPECT_EQ(GetRBiserial4(0.5, nullptr, 2), NUMCORE_MISSING);
}

}  // namespace
