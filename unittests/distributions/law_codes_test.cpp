#include "numcore/law_codes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "distributions/laws/data_rules.hpp"
#include "distributions/laws/law_table.hpp"
#include "numcore/numcore.h"
#include "scalar_rows.hpp"

namespace {

using numcore::kMissing;
using numcore::distributions::lawOfCode;
using numcore::distributions::lawOfName;
using numcore::distributions::laws;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr std::array kDispatchers = {PDFGeneral, CDFGeneral, InvCDFGeneral};

/// The same value, NaN included.
void expectSame(double got, double expected, const std::string& what) {
    if (std::isnan(expected)) {
        EXPECT_TRUE(std::isnan(got)) << what;
    } else {
        EXPECT_EQ(got, expected) << what;
    }
}

/// The three dispatching functions give the bits of the law's own at points of all kinds.
template <auto density, auto distribution, auto quantile, class... Parameters>
void expectLaw(std::int32_t code, Parameters... parameters) {
    std::array<double, 4> p = {parameters...};
    std::fill(p.begin() + sizeof...(parameters), p.end(), kNaN);
    if (code == 0) p = {p[0], p[1], 0.0, 1.0};
    for (const double x : {-kInfinity, -1.5, 0.0, 0.25, 1.0, 2.0, 7.0, 1e300, kInfinity, kNaN}) {
        const std::string what = "code " + std::to_string(code) + " at " + std::to_string(x);
        expectSame(PDFGeneral(x, code, p[0], p[1], p[2], p[3]), density(x, parameters...), "density, " + what);
        expectSame(CDFGeneral(x, code, p[0], p[1], p[2], p[3]), distribution(x, parameters...),
                   "distribution, " + what);
    }
    for (const double x : {-0.5, 0.0, 1e-9, 0.375, 0.5, 0.999, 1.0, 1.5, kNaN}) {
        expectSame(InvCDFGeneral(x, code, p[0], p[1], p[2], p[3]),
                   static_cast<double>(quantile(x, parameters...)),
                   "quantile, code " + std::to_string(code) + " at " + std::to_string(x));
    }
}

TEST(LawCodes, MatchReference) {
    numcore::testing::expectScalarRows(
        "distributions/law_codes.csv",
        {NUMCORE_SCALAR(CDFGeneral), NUMCORE_SCALAR(PDFGeneral), NUMCORE_SCALAR(InvCDFGeneral)});
}

TEST(LawCodes, CallTheLawsOwnFunctions) {
    expectLaw<PDFBeta, [](double x, double a, double b) { return CDFBeta4(x, a, b, 0.0, 1.0); },
              [](double p, double a, double b) { return InvCDFBeta4(p, a, b, 0.0, 1.0); }>(0, 2.0, 3.0);
    expectLaw<PDFBinomial, CDFBinomial, InvCDFBinomial>(1, 12.0, 0.3);
    expectLaw<PDFBinomialNeg1, CDFBinomialNeg1, InvCDFBinomialNeg1>(2, 4.0, 0.6);
    expectLaw<PDFBinomialNeg2, CDFBinomialNeg2, InvCDFBinomialNeg2>(3, 2.5, 1.5);
    expectLaw<PDFChiSq, CDFChiSq, InvCDFChiSq>(4, 3.0);
    expectLaw<PDFExponential, CDFExponential, InvCDFExponential>(5, 0.7);
    expectLaw<PDFFisher, [](double x, double m, double n) { return CDFFisher(x, m, n, NUMCORE_TRUE); },
              [](double p, double m, double n) { return InvCDFFisher(p, m, n, NUMCORE_TRUE); }>(6, 4.0, 9.0);
    expectLaw<PDFFisherTippett, CDFFisherTippett, InvCDFFisherTippett>(9, 2.0, 1.0);
    expectLaw<PDFGamma3, CDFGamma3, InvCDFGamma3>(12, 2.5, 0.7, -1.0);
    expectLaw<PDFLogNormal, CDFLogNormal, InvCDFLogNormal>(13, 0.2, 0.8);
    expectLaw<PDFNormal, CDFNormal, [](double p, double m, double s) { return m + s * InvCDFNormalStd(p); }>(
        14, 1.0, 2.0);
    expectLaw<PDFNormalStd, CDFNormalStd, InvCDFNormalStd>(15);
    expectLaw<PDFPareto, CDFPareto, InvCDFPareto>(16, 2.0, 0.5);
    expectLaw<PDFStudent, CDFStudent, InvCDFStudent>(18, 6.0);
    expectLaw<PDFUniform, CDFUniform, InvCDFUniform>(19, 0.0, 4.0);
    expectLaw<PDFWeibull3, CDFWeibull3, InvCDFWeibull3>(22, 1.7, 2.0, -0.5);
    expectLaw<PDFGEV, CDFGEV, InvCDFGEV>(23, 0.2, 1.0, 0.5);
    expectLaw<PDFErlang, CDFErlang, InvCDFErlang>(24, 3.0, 1.2);
    expectLaw<PDFTriangular, CDFTriangular, InvCDFTriangular>(25, 0.0, 1.0, 3.0);
    expectLaw<PDFPert, CDFPert, InvCDFPert>(26, 0.0, 1.0, 3.0);
    expectLaw<PDFLogistic, CDFLogistic, InvCDFLogistic>(27, 0.5, 0.7);
    expectLaw<PDFUniformDisc, CDFUniformDisc, InvCDFUniformDisc>(28, 0.0, 5.0);
    expectLaw<PDFBeta4, CDFBeta4, InvCDFBeta4>(29, 2.0, 3.0, -1.0, 4.0);
    expectLaw<PDFTrapezoidal, CDFTrapezoidal, InvCDFTrapezoidal>(30, 0.0, 0.5, 1.5, 4.0);
    expectLaw<PDFBernoulli, CDFBernoulli, InvCDFBernoulli>(31, 0.35);
    expectLaw<PDFArcsine, CDFArcsine, InvCDFArcsine>(32, 0.4);
}

TEST(LawCodes, ShortFormsHaveScaleOneAndLocationZero) {
    struct Form {
        std::int32_t code;
        std::array<double, 3> given;
        std::int32_t full;
        std::array<double, 3> parameters;
    };
    const Form forms[] = {
        {7, {kNaN, kNaN, kNaN}, 9, {1.0, 0.0, kNaN}},  {8, {2.0, kNaN, kNaN}, 9, {2.0, 0.0, kNaN}},
        {10, {2.5, kNaN, kNaN}, 12, {2.5, 1.0, 0.0}},  {11, {2.5, 0.7, kNaN}, 12, {2.5, 0.7, 0.0}},
        {20, {1.7, kNaN, kNaN}, 22, {1.7, 1.0, 0.0}},  {21, {1.7, 2.0, kNaN}, 22, {1.7, 2.0, 0.0}},
        {15, {kNaN, kNaN, kNaN}, 14, {0.0, 1.0, kNaN}}};
    for (const auto& [code, given, full, parameters] : forms) {
        for (const double x : {0.0, 0.375, 0.9}) {
            for (const auto function : kDispatchers) {
                EXPECT_NEAR(function(x, code, given[0], given[1], given[2], kNaN),
                            function(x, full, parameters[0], parameters[1], parameters[2], kNaN), 1e-15)
                    << code << " at " << x;
            }
        }
    }
}

TEST(LawCodes, CountsLoseTheirFraction) {
    for (const auto function : kDispatchers) {
        EXPECT_EQ(function(0.6, 1, 12.9, 0.3, 0, 0), function(0.6, 1, 12.0, 0.3, 0, 0));
        EXPECT_EQ(function(0.6, 2, 4.9, 0.6, 0, 0), function(0.6, 2, 4.0, 0.6, 0, 0));
        EXPECT_EQ(function(0.6, 24, 3.9, 1.2, 0, 0), function(0.6, 24, 3.0, 1.2, 0, 0));
    }
    EXPECT_EQ(CDFGeneral(4.9, 17, 3.3, 0, 0, 0), CDFPoisson(4, 3.3));
    EXPECT_EQ(CDFGeneral(-0.9, 17, 3.3, 0, 0, 0), CDFPoisson(0, 3.3));
    EXPECT_EQ(PDFGeneral(4.9, 17, 3.3, 0, 0, 0), PDFPoisson(4.0, 3.3));
    for (const double x : {3e9, 1e300, kInfinity}) {
        EXPECT_EQ(CDFGeneral(x, 17, 3.3, 0, 0, 0), 1.0) << x;
        EXPECT_EQ(CDFGeneral(-x, 17, 3.3, 0, 0, 0), 0.0) << -x;
    }
    EXPECT_TRUE(std::isnan(CDFGeneral(kNaN, 17, 3.3, 0, 0, 0)));
}

TEST(LawCodes, KeepTheirRules) {
    for (const std::int32_t code : {-1, 33, std::numeric_limits<std::int32_t>::min(), 1 << 30}) {
        EXPECT_EQ(CDFGeneral(0.5, code, 1, 1, 1, 1), 0.0) << code;
        EXPECT_EQ(PDFGeneral(0.5, code, 1, 1, 1, 1), 0.0) << code;
        EXPECT_EQ(InvCDFGeneral(0.5, code, 1, 1, 1, 1), kMissing) << code;
        EXPECT_EQ(numcore_law_of_code(code), nullptr) << code;
    }
    EXPECT_EQ(CDFGeneral(0.5, 14, 1.0, 0.0, 0, 0), 0.0) << "no check of sigma";
    EXPECT_EQ(CDFGeneral(1.5, 14, 1.0, 0.0, 0, 0), 1.0);
    EXPECT_TRUE(std::isnan(CDFGeneral(1.0, 14, 1.0, 0.0, 0, 0)));
    for (const double p : {-1.0, 0.0, 1.0, 2.0}) EXPECT_EQ(InvCDFGeneral(p, 14, 3.0, 2.0, 0, 0), 3.0) << p;
    for (const std::int32_t code : {1, 2, 3, 17})
        EXPECT_EQ(InvCDFGeneral(1.5, code, 2.0, 0.5, 0, 0), 4294967295.0) << code;
    EXPECT_EQ(InvCDFGeneral(1.0, 17, 3.3, 0, 0, 0), 2147483647.0);
}

TEST(LawTable, SaysWhatCallersHold) {
    for (const auto& row : numcore::testing::readTable("distributions/law_names.csv")) {
        const auto code = static_cast<std::int32_t>(row["code"]);
        const numcore_law* law = numcore_law_of_code(code);
        ASSERT_NE(law, nullptr) << code;
        EXPECT_EQ(law->nameEntry, row["entry"]) << code;
        EXPECT_EQ(law->nameSuffix, row.text("suffix").empty() ? '\0' : row.text("suffix")[0]) << code;
        EXPECT_EQ(lawOfCode(code)->nAnnounced, row["parameters"]) << code;
        EXPECT_EQ(law->nParameters, code == 2 ? 2 : row["parameters"]) << code;
        for (int i = 0; i < 4; ++i) EXPECT_EQ(law->parameters[i] != nullptr, i < law->nParameters) << code;
        const bool discrete = code == 1 || code == 2 || code == 3 || code == 17 || code == 28 || code == 31;
        EXPECT_EQ(law->isDiscrete, discrete ? 1 : 0) << code;
    }
}

/// Messages in which each law's name is "law" with the entry, and its digit.
numcore::matrix<numcore::u16string> messagesOfLaws() {
    numcore::matrix<numcore::u16string> messages(6500, 1, numcore::u16string());
    for (const auto& law : laws()) {
        const std::string text = "law" + std::to_string(law.shown.nameEntry) + ":";
        messages[law.shown.nameEntry] = numcore::u16string(std::u16string(text.begin(), text.end()));
    }
    return messages;
}

TEST(LawNames, AreComparedExactly) {
    auto messages = messagesOfLaws();
    for (const auto& row : numcore::testing::readTable("distributions/law_names.csv")) {
        const std::string text = "law" + row.text("entry") + ":" + row.text("suffix");
        const auto* law = lawOfName(std::u16string(text.begin(), text.end()), messages);
        ASSERT_NE(law, nullptr) << text;
        EXPECT_EQ(law->shown.code, row["code"]);
    }
    for (const char16_t* name :
         {u"", u"law", u"LAW360:", u"law360: ", u"law360:1", u"law360:44", u"law371:", u"4"})
        EXPECT_EQ(lawOfName(name, messages), nullptr) << numcore::u16string(name).size();
    EXPECT_EQ(lawOfName(u"", {}), nullptr) << "an empty entry names no law";
}

TEST(LawNames, FirstOfEqualNamesCounts) {
    // All entries of laws not yet found read alike: the laws come out in their order of comparison.
    auto messages = messagesOfLaws();
    for (const auto& law : laws()) messages[law.shown.nameEntry] = numcore::u16string(u"x");
    for (const char16_t* name : {u"x", u"x1", u"x2", u"x3", u"x4"}) {
        double place = 0.0;
        while (const auto* law = lawOfName(name, messages)) {
            for (const auto& row : numcore::testing::readTable("distributions/law_names.csv")) {
                if (row["code"] != law->shown.code) continue;
                EXPECT_GT(row["place"], place);
                place = row["place"];
            }
            messages[law->shown.nameEntry] = numcore::u16string();
        }
        EXPECT_GT(place, 0.0);
        for (const auto& law : laws()) messages[law.shown.nameEntry] = numcore::u16string(u"x");
    }
    messages[360] = numcore::u16string(u"beta");
    messages[363] = numcore::u16string(u"beta4");
    EXPECT_EQ(lawOfName(u"beta4", messages)->shown.code, 29) << "a suffixed name before a plain one";
}

TEST(DataRules, HoldForEachLaw) {
    using numcore::distributions::checkData;
    struct Column {
        std::vector<double> cells;
        std::vector<std::int32_t> codes;  // laws that the column can come from
    };
    const std::vector<std::int32_t> anyNumber = {7, 8, 9, 12, 14, 15, 18, 19, 22, 23, 25, 26, 27, 29, 30};
    const auto and_ = [&](std::vector<std::int32_t> codes) {
        codes.insert(codes.end(), anyNumber.begin(), anyNumber.end());
        return codes;
    };
    const Column columns[] = {
        {{-0.5, 2.5}, and_({})},
        {{-3.0, 2.0}, and_({28})},
        {{0.0, 3.0, 1e300}, and_({1, 2, 3, 4, 5, 6, 10, 11, 17, 20, 21, 24, 28})},
        {{0.0, kMissing, 1.0}, and_({0, 1, 2, 3, 4, 5, 6, 10, 11, 17, 20, 21, 24, 28, 31, 32})},
        {{0.0, 0.5, 1.0}, and_({0, 4, 5, 6, 10, 11, 20, 21, 24, 32})},
        {{1e-300, 2.5}, and_({4, 5, 6, 10, 11, 13, 16, 20, 21, 24})},
        {{kNaN}, {}},
        {{kInfinity}, {}},
    };
    for (const auto& [cells, codes] : columns) {
        for (const auto& law : laws()) {
            const bool expected = std::find(codes.begin(), codes.end(), law.shown.code) != codes.end();
            const ST_DistribCheck found = checkData(law.rule, cells, cells.size(), {});
            EXPECT_EQ(found.column == 0, expected) << law.shown.name << " " << cells.back();
        }
    }
}

TEST(DataRules, PointToTheFirstValueThatBreaksThem) {
    const std::vector<double> data = {1.0, 2.0, kMissing, 4.0, 0.5, -1.0, 7.0, 2.5, 3.0};
    const std::int16_t exempt[] = {NUMCORE_FALSE, NUMCORE_TRUE, 1};
    ST_DistribSettings settings{17, 3, nullptr};
    ST_DistribCheck found{};
    EXPECT_EQ(Cpp_CheckDistribConstraints2(&settings, data.data(), 3, nullptr, &found), NUMCORE_FALSE);
    EXPECT_EQ(found.rule, NUMCORE_DATA_COUNTS);
    EXPECT_EQ(found.column, 2);
    EXPECT_EQ(found.row, 2);
    settings.exempt = exempt;
    EXPECT_EQ(Cpp_CheckDistribConstraints2(&settings, data.data(), 3, nullptr, &found), NUMCORE_FALSE);
    EXPECT_EQ(found.column, 3) << "a flag of 1 does not exempt";
    EXPECT_EQ(found.row, 2);
    settings.nColumns = 2;
    EXPECT_EQ(Cpp_CheckDistribConstraints2(&settings, data.data(), 3, nullptr, &found), NUMCORE_TRUE);
    EXPECT_EQ(found.column, 0);
}

}  // namespace
