// P-values, laws and intervals of the coefficients.

#include <gtest/gtest.h>

#include <cmath>

#include "numcore/correlation.h"
#include "scalar_rows.hpp"

namespace {

using numcore::testing::Row;

constexpr double kUntouched = 123.5;

std::int32_t whole(const Row& row, const char* column) {
    return static_cast<std::int32_t>(row[column]);
}

double outputOf(const Row& row, const std::string& function, const std::string& output) {
    double first = kUntouched;
    double second = kUntouched;
    if (function == "PVal_Pearson") {
        PVal_Pearson(whole(row, "a1"), row["a2"], whole(row, "a3"), &first, &second);
        return output == "pvalue" ? first : second;
    }
    if (function == "COR_ComputeCI_ST") {
        COR_ComputeCI_ST(row["a1"], whole(row, "a2"), row["a3"], whole(row, "a4"), &first, &second);
        return output == "lower" ? first : second;
    }
    double squared = kUntouched;
    std::int32_t significant = -7;
    PvalSpearman(row["a1"], whole(row, "a2"), whole(row, "a3"), &first,
                 static_cast<std::int16_t>(whole(row, "a4")), row["a5"], &significant,
                 static_cast<std::int16_t>(whole(row, "a6")), &squared, &second);
    if (output == "signif") return significant;
    if (output == "squared") return squared;
    return output == "pvalue" ? first : second;
}

TEST(CorrelationLaws, MatchReference) {
    numcore::testing::expectTable("correlation/laws.csv", [](const Row& row) {
        const std::string name = row.text("function");
        if (name == "CDFSpearman") return CDFSpearman(row["a1"], whole(row, "a2"), row["a3"]);
        if (name == "CDFKendall") return CDFKendall(whole(row, "a1"), whole(row, "a2"));
        const std::size_t colon = name.find(':');
        return outputOf(row, name.substr(0, colon), name.substr(colon + 1));
    });
}

TEST(CorrelationLaws, AreExactForFewObservations) {
    numcore::testing::expectScalarRows("correlation/exact_laws.csv",
                                       {NUMCORE_SCALAR(CDFSpearman), NUMCORE_SCALAR(CDFKendall)});
}

TEST(CorrelationLaws, BadArgumentsGiveTheMissingValue) {
    EXPECT_EQ(CDFSpearman(0.5, -1, 1.0), NUMCORE_MISSING);
    EXPECT_EQ(CDFSpearman(0.5, 5, static_cast<double>(NAN)), NUMCORE_MISSING);
    for (const int n : {20, 1201}) EXPECT_EQ(CDFSpearman(static_cast<double>(NAN), n, 1.0), NUMCORE_MISSING);
    EXPECT_EQ(CDFSpearman(1.0, 1201, 0.0), 1.0);
    EXPECT_EQ(CDFSpearman(-1.0, INT32_MAX, 0.0), 0.0);
    EXPECT_EQ(CDFKendall(0, 0), NUMCORE_MISSING);
    EXPECT_EQ(CDFKendall(INT32_MIN, 5), 1.0);
    EXPECT_EQ(CDFKendall(INT32_MIN, 201), 1.0);
    EXPECT_EQ(CDFKendall(INT32_MAX, 201), 0.0);
    for (const double r : {static_cast<double>(NAN), NUMCORE_MISSING}) {
        double p = kUntouched;
        PVal_Pearson(0, r, 10, &p, nullptr);
        EXPECT_EQ(p, NUMCORE_MISSING);
        double S = kUntouched;
        PvalSpearman(r, 0, 10, &p, 0, 0.05, nullptr, 0, nullptr, &S);
        EXPECT_EQ(p, NUMCORE_MISSING);
        EXPECT_EQ(S, NUMCORE_MISSING);
    }
    double p = kUntouched;
    for (const int n : {INT32_MIN, -1, 0, 1, 2}) {
        PVal_Pearson(0, 0.5, n, &p, nullptr);
        EXPECT_EQ(p, NUMCORE_MISSING) << n;
    }
    double upper = kUntouched;
    COR_ComputeCI_ST(0.5, 10, static_cast<double>(NAN), 1, &p, &upper);
    EXPECT_EQ(p, NUMCORE_MISSING);
    EXPECT_EQ(upper, NUMCORE_MISSING);
    PVal_Pearson(0, 0.5, 10, nullptr, nullptr);
    PvalSpearman(0.5, 0, 10, nullptr, NUMCORE_TRUE, 0.05, nullptr, NUMCORE_TRUE, nullptr, nullptr);
    COR_ComputeCI_ST(0.5, 10, 0.05, 1, nullptr, nullptr);
}

TEST(CorrelationLaws, LongApproximationJoinsTheExactKendallLaw) {
    // Standard deviation of S at n = 200 is 948.9; the next n is approximated.
    for (const int S : {-1900, -100, 0, 100, 1900}) {
        EXPECT_NEAR(CDFKendall(S, 201), CDFKendall(static_cast<int>(S * 948.9 / 956.0), 200), 1.5e-3) << S;
    }
}

}  // namespace
