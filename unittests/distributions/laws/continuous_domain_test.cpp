// What holds for every law, for those on the incomplete gamma and beta functions and the normal ones.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <vector>

#include "law_properties.hpp"
#include "numcore/continuous_laws.h"
#include "numcore/special.h"

namespace {

using numcore::kOverflow;
using numcore::testing::BadParameters;
using numcore::testing::Law;
using numcore::testing::Parameters;

constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinite = std::numeric_limits<double>::infinity();
constexpr double kUpperTail = 1e-9;  // rounding of 1 - p for p close to 1

// Where the chi-square quantile is meant to be good.
const std::vector<double> kMiddle = {0.001, 0.025, 0.1, 0.3, 0.5, 0.7, 0.9, 0.975, 0.999};

double normalQuantile(double p, const Parameters& parameters) {
    return std::clamp(parameters[0] + parameters[1] * InvCDFNormalStd(p), -kOverflow, kOverflow);
}

double upperFisher(double x, const Parameters& p) {
    return CDFFisher(x, p[0], p[1], NUMCORE_FALSE);
}

double upperFisherQuantile(double p, const Parameters& parameters) {
    return InvCDFFisher(p, parameters[0], parameters[1], NUMCORE_FALSE);
}

// The good parameters, the last ones left out, with one after the other replaced by each bad value.
std::vector<BadParameters> eachBad(const Parameters& good, const std::vector<double>& values,
                                   std::size_t nLeft = 0) {
    std::vector<BadParameters> all;
    for (std::size_t i = 0; i + nLeft < good.size(); ++i) {
        for (const double value : values) {
            all.push_back({good});
            all.back().values[i] = value;
        }
    }
    return all;
}

std::vector<BadParameters> operator+(std::vector<BadParameters> one, const std::vector<BadParameters>& other) {
    one.insert(one.end(), other.begin(), other.end());
    return one;
}

const std::vector<double> kNotPositive = {0.0, -1.0, -1e300, -kInfinite, kInfinite, kNotANumber};
const std::vector<double> kNotShapes = {-1e-300, -1.0, -kInfinite, kInfinite, kNotANumber};
constexpr double kLower = NUMCORE_TRUE;

const std::vector<Law> kLaws = {
    {"Normal",
     PDFNormal,
     CDFNormal,
     normalQuantile,
     {{0, 1}, {-3, 0.01}, {1e6, 40}},
     {{{1, 0}, "dp"}},
     kUpperTail},
    {"LogNormal",
     PDFLogNormal,
     CDFLogNormal,
     InvCDFLogNormal,
     {{0, 1}, {-3, 0.1}, {200, 7}},
     {{{0, 0}}, {{0, -1}}, {{0, kInfinite}}, {{0, kNotANumber}}, {{0, 1}, "dpq", -0.5}},
     kUpperTail},
    {"Student, closed forms",
     PDFStudent,
     CDFStudent,
     InvCDFStudent,
     {{1}, {2}},
     eachBad({1}, {0.0, -1.0, -kInfinite, kNotANumber}) + std::vector<BadParameters>{{{kInfinite}, "dp"}},
     kUpperTail},
    {"Student", PDFStudent, CDFStudent, InvCDFStudent, {{3}, {4.5}, {12}, {250}, {1e6}}, {}, 1e-4},
    {"ChiSq",
     PDFChiSq,
     CDFChiSq,
     InvCDFChiSq,
     {{0.2}, {1}, {2}, {7.5}, {60}, {1500}},
     eachBad({1}, kNotPositive),
     1e-4,
     false,
     true,
     kMiddle},
    {"Fisher",
     PDFFisher,
     CDFFisher,
     InvCDFFisher,
     {{1, 1, kLower}, {3, 5, kLower}, {10, 200, kLower}, {3e4, 2e5, kLower}},
     eachBad({3, 5, kLower}, kNotPositive, 1),
     kUpperTail},
    {"Fisher, U-shaped",
     PDFFisher,
     CDFFisher,
     InvCDFFisher,
     {{0.5, 40, kLower}, {0.8, 0.6, kLower}},
     {},
     kUpperTail,
     false,
     true,
     kMiddle},
    {"Beta",
     PDFBeta,
     CDFBeta,
     InvCDFBeta,
     {{1, 1, kLower}, {2, 3, kLower}, {0.05, 8, kLower}, {300, 2, kLower}, {1e5, 2e5, kLower}},
     eachBad({2, 3, kLower}, kNotShapes, 1),
     kUpperTail},
    {"Beta, U-shaped",
     PDFBeta,
     CDFBeta,
     InvCDFBeta,
     {{0.5, 0.5, kLower}, {0.3, 0.7, kLower}},
     {},
     kUpperTail,
     false,
     true,
     kMiddle},
    {"Beta4",
     PDFBeta4,
     CDFBeta4,
     InvCDFBeta4,
     {{2, 3, 1, 5}, {1, 1, -2, -1}, {40, 5, -1e6, 1e6}},
     {{{-1, 3, 0, 1}}, {{2, kNotANumber, 0, 1}}, {{2, 3, 1, 0}}},
     kUpperTail},
    {"Gamma3",
     PDFGamma3,
     CDFGamma3,
     InvCDFGamma3,
     {{2, 1.5, 0}, {0.5, 2, 1}, {20, 0.1, -3}, {700, 1e-3, 0}},
     {{{0, 1, 0}},
      {{-1, 1, 0}},
      {{kInfinite, 1, 0}},
      {{2, -1, 0}},
      {{2, kNotANumber, 0}},
      {{2, 0, 0}, "q"},
      {{2, 1, 1}, "dp"},
      {{2, 1, 0}, "q", 1.5}},
     1e-4,
     false,
     true,
     kMiddle},
    {"Erlang",
     PDFErlang,
     CDFErlang,
     InvCDFErlang,
     {{1, 0.5}, {3, 2}, {15, 1}, {900, 30}},
     eachBad({2, 1}, kNotPositive) + std::vector<BadParameters>{{{0.9, 1}}, {{2, 1}, "dpq", -0.5}},
     1e-4,
     false,
     true,
     kMiddle},
    {"Pert",
     PDFPert,
     CDFPert,
     InvCDFPert,
     {{1, 3, 6}, {0, 0, 1}, {-10, 9, 9}},
     {{{6, 3, 1}}, {{0, -1, 1}}, {{0, 2, 1}}, {{0, kNotANumber, 1}}},
     kUpperTail}};

class ContinuousLaw : public ::testing::TestWithParam<Law> {};

TEST_P(ContinuousLaw, HasThePropertiesOfALaw) {
    numcore::testing::expectLaw(GetParam());
}

INSTANTIATE_TEST_SUITE_P(All, ContinuousLaw, ::testing::ValuesIn(kLaws));

// The upper tail falls, so only its quantile goes through the checks.
TEST(ContinuousLawTail, QuantileUndoesIt) {
    const Law law = {"Fisher, upper tail",        PDFFisher, upperFisher, upperFisherQuantile,
                     {{1, 1}, {3, 5}, {10, 200}}, {},        kUpperTail};
    numcore::testing::expectQuantileInverse(law);
    numcore::testing::expectHostileEnd(law);
}

}  // namespace
