// What holds for every law: a row each.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "law_properties.hpp"
#include "numcore/closed_form_laws.h"
#include "numcore/continuous_laws.h"
#include "numcore/discrete_laws.h"
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

const std::vector<Law> kContinuousLaws = {
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

// InvCDFGEV belongs to the law with the other sign of the shape.
double gevQuantile(double p, const Parameters& parameters) {
    return InvCDFGEV(p, -parameters[0], parameters[1], parameters[2]);
}

const std::vector<Law> kClosedFormLaws = {
    {"Exponential",
     PDFExponential,
     CDFExponential,
     InvCDFExponential,
     {{1}, {1e-5}, {3e7}},
     {{{0}}, {{-1}}, {{kNotANumber}}, {{1}, "dpq", -0.5}, {{1}, "q", 1.5}},
     kUpperTail},
    {"Weibull3",
     PDFWeibull3,
     CDFWeibull3,
     InvCDFWeibull3,
     {{1, 1, 0}, {0.3, 2, 0}, {4, 10, -5}, {200, 1e-3, 0}},
     eachBad({2, 1, 0}, {-1.0, -1e-300, kNotANumber}, 1) +
         std::vector<BadParameters>{{{0, 1, 0}}, {{2, 0, 0}, "q"}},
     kUpperTail},
    {"FisherTippett",
     PDFFisherTippett,
     CDFFisherTippett,
     InvCDFFisherTippett,
     {{1, 0}, {2.5, 3}, {1e-3, -20}},
     {{{0, 0}}, {{-1, 0}}, {{kNotANumber, 0}}},
     kUpperTail},
    {"GEV",
     PDFGEV,
     CDFGEV,
     gevQuantile,
     {{0, 1, 0}, {0.3, 1, 0}, {-0.3, 2, 1}, {1e-9, 1, 0}, {-2, 1, 5}, {0.7, 4, -1}},
     {{{0, 0, 0}}, {{0.3, 0, 0}}, {{-0.3, -1, 0}}, {{0.3, kNotANumber, 0}}, {{kNotANumber, 1, 0}, "q"}},
     1e-7},
    {"Logistic",
     PDFLogistic,
     CDFLogistic,
     InvCDFLogistic,
     {{0, 1}, {3, 0.5}, {-1e3, 20}},
     {},
     kUpperTail,
     false,
     false},
    {"Pareto",
     PDFPareto,
     CDFPareto,
     InvCDFPareto,
     {{1, 1}, {3, 2}, {0.5, 10}},
     {{{0, 1}, "dq"}, {{-1, 1}, "dq"}, {{1, 0}, "dq"}, {{1, -1}, "dq"}, {{kNotANumber, 1}, "dq"}},
     1e-8},
    {"Triangular",
     PDFTriangular,
     CDFTriangular,
     InvCDFTriangular,
     {{1, 3, 6}, {0, 0, 1}, {-2, 5, 5}},
     {{{3, 1, 6}}, {{1, 7, 6}}, {{1, kNotANumber, 6}}},
     kUpperTail},
    {"Trapezoidal",
     PDFTrapezoidal,
     CDFTrapezoidal,
     InvCDFTrapezoidal,
     {{0, 1, 3, 5}, {0, 0, 1, 1}, {-4, -2, -2, 7}},
     {{{0, 4, 3, 5}}, {{1, 0, 3, 5}}, {{0, 1, 6, 5}}, {{0, 1, kNotANumber, 5}}},
     kUpperTail},
    {"Uniform",
     PDFUniform,
     CDFUniform,
     InvCDFUniform,
     {{0, 1}, {-3, 7}},
     {{{1, 1}, "q"}, {{2, 1}, "q"}, {{kNotANumber, 1}, "q"}, {{0, 1}, "q", -0.5}},
     kUpperTail},
    {"Arcsine",
     PDFArcsine,
     CDFArcsine,
     InvCDFArcsine,
     {{0.5}, {0.4}, {0.6}},
     eachBad({0.5}, {0.0, 1.0, -1.0, kInfinite, kNotANumber}),
     kUpperTail,
     false,
     true,
     kMiddle},
    {"ArcsineG",
     PDFArcsineG,
     CDFArcsineG,
     InvCDFArcsineG,
     {{0.5, 0, 5}, {0.4, -2, 2}},
     {{{0, 1, 5}}, {{0.5, 5, 5}}, {{0.5, 5, 1}}, {{0.5, kNotANumber, 1}}},
     1e-8,
     false,
     true,
     kMiddle}};

// The hypergeometric law has no quantile of its own.
double searchedHyperG(double p, const Parameters& law) {
    double reached = std::floor(std::min(law[1], law[2]));
    double missed = -1.0;
    if (!(reached >= 0.0 && reached <= 0x1p53)) return numcore::kMissing;
    while (reached - missed > 1.0) {
        const double middle = std::floor(0.5 * (reached + missed));
        (CDFHyperG(middle, law[0], law[1], law[2]) >= p ? reached : missed) = middle;
    }
    return reached;
}

const std::vector<Law> kDiscreteLaws = {
    {"UniformDisc",
     PDFUniformDisc,
     CDFUniformDisc,
     InvCDFUniformDisc,
     {{1, 6}, {-3, 40}, {0, 1e9}},
     {{{3, 3}, "q"}, {{4, 3}, "q"}, {{kNotANumber, 3}, "q"}, {{1, 6}, "q", 1.5}, {{1, 6}, "q", kNotANumber}},
     1e-8,
     true,
     false},
    {"Bernoulli",
     PDFBernoulli,
     CDFBernoulli,
     InvCDFBernoulli,
     {{0.25}, {0.9}},
     {{{kNotANumber}, "q"}},
     kUpperTail,
     true,
     false},
    {"Binomial",
     PDFBinomial,
     CDFBinomial,
     InvCDFBinomial,
     {{10, 0.3}, {11, 0.5}, {300, 0.004}, {5000, 0.4}, {1e9, 0.999}, {4e9, 1e-9}},
     eachBad({10, 0.3}, {-1.0, kInfinite, kNotANumber}) +
         std::vector<BadParameters>{{{10, 1.5}}, {{0, 0.3}, "q"}, {{10, 0.3}, "q", -0.5}},
     kUpperTail,
     true},
    {"BinomialNeg1",
     PDFBinomialNeg1,
     CDFBinomialNeg1,
     InvCDFBinomialNeg1,
     {{1, 0.5}, {5, 0.9}, {3, 0.001}, {4000, 0.2}},
     eachBad({2, 0.4}, {0.0, -1.0, kInfinite, kNotANumber}) +
         std::vector<BadParameters>{{{2, 1}}, {{2, 1.5}}, {{2, 0.4}, "q", 1.5}},
     kUpperTail,
     true},
    {"BinomialNeg2",
     PDFBinomialNeg2,
     CDFBinomialNeg2,
     InvCDFBinomialNeg2,
     {{2.5, 1.2}, {0.01, 100}, {1e-9, 2}, {12345.5, 3.5}, {3e8, 0.25}},
     eachBad({2, 0.4}, kNotPositive) + std::vector<BadParameters>{{{2, 0.4}, "q", 1.5}},
     kUpperTail,
     true},
    {"Poisson",
     PDFPoisson,
     CDFPoisson,
     InvCDFPoisson,
     {{0.01}, {2.5}, {100}, {700}},
     {{{0}}, {{-1}}, {{kNotANumber}}, {{2}, "q", 1.5}, {{2}, "q", kNotANumber}},
     1e-6,  // of CDFPoisson for small probabilities
     true},
    {"HyperG",
     PDFHyperG,
     CDFHyperG,
     searchedHyperG,
     {{20, 8, 5}, {60, 50, 40}, {1e5, 4e4, 99000}, {4e9, 2e9, 1e9}, {1e12, 2e6, 4e11}},
     {{{-1, 8, 5}, "dp"},
      {{20.5, 8, 5}, "dp"},
      {{20, 21, 5}, "dp"},
      {{20, 8, 21}, "dp"},
      {{20, 8, kNotANumber}, "dp"},
      {{kInfinite, 8, 5}, "dp"},
      {{0x1p54, 8, 5}, "dp"}},
     kUpperTail,
     true}};

class LawDomain : public ::testing::TestWithParam<Law> {};

TEST_P(LawDomain, HasThePropertiesOfALaw) {
    numcore::testing::expectLaw(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Continuous, LawDomain, ::testing::ValuesIn(kContinuousLaws));
INSTANTIATE_TEST_SUITE_P(ClosedForm, LawDomain, ::testing::ValuesIn(kClosedFormLaws));
INSTANTIATE_TEST_SUITE_P(Discrete, LawDomain, ::testing::ValuesIn(kDiscreteLaws));

// The upper tail falls, so only its quantile goes through the checks.
TEST(UpperTail, QuantileUndoesIt) {
    const Law law = {"Fisher, upper tail",        PDFFisher, upperFisher, upperFisherQuantile,
                     {{1, 1}, {3, 5}, {10, 200}}, {},        kUpperTail};
    numcore::testing::expectQuantileInverse(law);
    numcore::testing::expectHostileEnd(law);
}

}  // namespace
