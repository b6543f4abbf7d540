// The normal laws and those on the incomplete gamma and beta functions.
#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "cli/laws/law.hpp"
#include "cli/laws/support.hpp"
#include "numcore/numcore.h"

namespace numcore::cli {

namespace {

constexpr double kNormalFloor = 1e-16;  // CDFNormalStd is 0 below it

/// Phi(z), far out too: where CDFNormalStd is 0 the complementary error function goes on.
double normalTail(double z) {
    const double probability = CDFNormalStd(z);
    return probability == 0.0 ? 0.5 * derfc(-z / std::numbers::sqrt2) : probability;
}

constexpr const char* kNormalTails =
    "The library's distribution function is 0 below 1e-16; the program goes on with its complementary error "
    "function.";

/// AS 239 gives 0 below e^-88, and beyond shape 1000 both tails are a normal approximation.
double gammaFloor(double shape, bool upper) {
    if (shape > 1000.0) return kNormalFloor;
    return upper ? kSmallestProbability : 6.1e-39;
}

constexpr const char* kGammaLargeShapes =
    "Beyond a shape of 1000 (2000 degrees of freedom) the distribution function is a normal approximation, off "
    "by up to 5e-6.";
constexpr const char* kGammaQuantiles =
    "Quantiles are right to 1e-6 or so; for probabilities below 1e-6 and large shapes they can be far off.";

/// Bounds of the beta law: c and d.
double betaUpperTail(double x, const Values& p) {
    return CDFBeta((x - p[2]) / (p[3] - p[2]), p[0], p[1], NUMCORE_FALSE);
}

double betaUpperQuantile(double p, const Values& v) {
    const double unit = InvCDFBeta(p, v[0], v[1], NUMCORE_FALSE);
    return unit == NUMCORE_MISSING ? unit : v[2] + (v[3] - v[2]) * unit;
}

double fisherMean(const Values& p) {
    return p[1] > 2.0 ? p[1] / (p[1] - 2.0) : kInfinite;
}

double fisherVariance(const Values& p) {
    if (p[1] <= 2.0) return NUMCORE_MISSING;
    if (p[1] <= 4.0) return kInfinite;
    const double less2 = p[1] - 2.0;
    return 2.0 * p[1] * p[1] * (p[0] + less2) / (p[0] * less2 * less2 * (p[1] - 4.0));
}

double studentVariance(const Values& p) {
    if (p[0] <= 1.0) return NUMCORE_MISSING;
    return p[0] > 2.0 ? p[0] / (p[0] - 2.0) : kInfinite;
}

double pertMean(const Values& p) {
    return (p[0] + 4.0 * p[1] + p[2]) / 6.0;
}

std::vector<Law> normalLaws() {
    return {
        {.codes = {15, 14},
         .aliases = {{"normal"}, {"norm"}, {"gaussian"}, {"gauss"}, {"z"}, {"stdnorm"}},
         .parameters = {{"", "mean", Domain::kReal, 0.0, true, "mean loc m"},
                        {"", "standard deviation", Domain::kPositive, 1.0, true, "sd scale s"}},
         .support = wholeLine,
         .functions = "PDFNormal CDFNormal PDFNormalStd CDFNormalStd InvCDFNormalStd",
         .farLowerTail = [](double x, const Values& p) { return normalTail((x - p[0]) / p[1]); },
         .upperTail = [](double x, const Values& p) { return normalTail(-(x - p[0]) / p[1]); },
         .upperQuantile = [](double p, const Values& v) { return v[0] - v[1] * InvCDFNormalStd(p); },
         .mean = [](const Values& p) { return p[0]; },
         .variance = [](const Values& p) { return p[1] * p[1]; },
         .meanText = "mu",
         .varianceText = "sigma^2",
         .example = "10 2",
         .notes = {kNormalTails}},
        {.codes = {13},
         .aliases = {{"lognorm", "scipy's lognorm takes s, loc and scale: here mu = ln(scale), sigma = s"},
                     {"lnorm"},
                     {"galton"}},
         .parameters = {{"", "mean of ln X", Domain::kReal, 0.0, true, "meanlog"},
                        {"", "standard deviation of ln X", Domain::kPositive, 1.0, true, "sdlog s"}},
         .support = halfLine,
         .functions = "PDFLogNormal CDFLogNormal InvCDFLogNormal",
         .farLowerTail = [](double x, const Values& p) { return normalTail((std::log(x) - p[0]) / p[1]); },
         .upperTail = [](double x, const Values& p) { return normalTail(-(std::log(x) - p[0]) / p[1]); },
         .upperQuantile = [](double p, const Values& v) { return std::exp(v[0] - v[1] * InvCDFNormalStd(p)); },
         .mean = [](const Values& p) { return std::exp(p[0] + p[1] * p[1] / 2.0); },
         .variance =
             [](const Values& p) {
                 const double square = p[1] * p[1];
                 return std::expm1(square) * std::exp(2.0 * p[0] + square);
             },
         .meanText = "exp(mu + sigma^2/2)",
         .varianceText = "(exp(sigma^2) - 1) exp(2 mu + sigma^2)",
         .example = "0 0.5",
         .notes = {kNormalTails}},
        {.codes = {18},
         .aliases = {{"t"}, {"student"}, {"student-t"}, {"students-t"}},
         .parameters = {{"", "degrees of freedom", Domain::kPositive, 0.0, false, "df"}},
         .support = wholeLine,
         .functions = "PDFStudent CDFStudent InvCDFStudent",
         .upperTail = [](double x, const Values& p) { return CDFStudent(-x, p[0]); },
         .upperQuantile = [](double p, const Values& v) { return -InvCDFStudent(p, v[0]); },
         .mean = [](const Values& p) { return p[0] > 1.0 ? 0.0 : NUMCORE_MISSING; },
         .variance = studentVariance,
         .meanText = "0 (nu > 1)",
         .varianceText = "nu/(nu - 2) (nu > 2)",
         .example = "10",
         .notes =
             {"Quantiles are Hill's expansion without refinement: errors up to 1e-5 from nu = 3, 1e-6 from 10, "
              "1e-7 from 30, but up to 5 % between 1 and 3 (1 and 2 are exact)."}},
    };
}

std::vector<Law> gammaLaws() {
    return {
        {.codes = {4},
         .aliases = {{"chi-square"}, {"chisq"}, {"chi2"}, {"chisquared"}, {"x2"}},
         .parameters = {{"", "degrees of freedom", Domain::kPositive, 0.0, false, "df k"}},
         .support = halfLine,
         .functions = "PDFChiSq CDFChiSq InvCDFChiSq pValChiSq",
         .upperTail = [](double x, const Values& p) { return pValChiSq(x, p[0]); },
         .floor = [](const Values& p, bool upper) { return gammaFloor(p[0] / 2.0, upper); },
         .mean = [](const Values& p) { return p[0]; },
         .variance = [](const Values& p) { return 2.0 * p[0]; },
         .meanText = "nu",
         .varianceText = "2 nu",
         .example = "3",
         .notes = {kGammaLargeShapes, kGammaQuantiles}},
        {.codes = {10, 11, 12},
         .aliases = {{"gamma"}},
         .parameters = {{"", "shape", Domain::kPositive, 0.0, false, "shape a alpha"},
                        {"", "scale, 1/rate", Domain::kPositive, 1.0, true, "scale theta", "rate"},
                        {"", "location", Domain::kReal, 0.0, true, "loc location"}},
         .support =
             [](const Values& p) {
                 return Interval{p[2], kInfinite};
             },
         .functions = "PDFGamma3 CDFGamma3 InvCDFGamma3",
         .upperTail = [](double x, const Values& p) { return pValChiSq(2.0 * (x - p[2]) / p[1], 2.0 * p[0]); },
         .floor = [](const Values& p, bool upper) { return gammaFloor(p[0], upper); },
         .mean = [](const Values& p) { return p[2] + p[0] * p[1]; },
         .variance = [](const Values& p) { return p[0] * p[1] * p[1]; },
         .meanText = "mu + k beta",
         .varianceText = "k beta^2",
         .example = "2 3",
         .notes = {"R's gamma takes shape and rate: beta = 1/rate. scipy's takes a, loc and scale: here the "
                   "scale comes before the location.",
                   kGammaLargeShapes, kGammaQuantiles}},
        {.codes = {24},
         .aliases = {{"erlang"}},
         .parameters = {{"", "shape", Domain::kPositiveCount, 0.0, false, "shape"},
                        {"", "rate, 1/scale", Domain::kPositive, 1.0, true, "rate", "scale"}},
         .support = halfLine,
         .functions = "PDFErlang CDFErlang InvCDFErlang",
         .upperTail = [](double x, const Values& p) { return pValChiSq(2.0 * p[1] * x, 2.0 * p[0]); },
         .floor = [](const Values& p, bool upper) { return gammaFloor(p[0], upper); },
         .mean = [](const Values& p) { return p[0] / p[1]; },
         .variance = [](const Values& p) { return p[0] / (p[1] * p[1]); },
         .meanText = "k/lambda",
         .varianceText = "k/lambda^2",
         .example = "3 0.5",
         .notes = {"The second parameter is a rate; the gamma law takes a scale.", kGammaLargeShapes,
                   kGammaQuantiles}},
    };
}

std::vector<Law> betaLaws() {
    return {
        {.codes = {6},
         .aliases = {{"f"}, {"fisher"}, {"fisher-f"}, {"snedecor"}},
         .parameters = {{"", "degrees of freedom of the numerator", Domain::kPositive, 0.0, false, "df1 dfn"},
                        {"", "degrees of freedom of the denominator", Domain::kPositive, 0.0, false,
                         "df2 dfd"}},
         .support = halfLine,
         .functions = "PDFFisher CDFFisher InvCDFFisher pValFisher",
         .upperTail = [](double x, const Values& p) { return CDFFisher(x, p[0], p[1], NUMCORE_FALSE); },
         .upperQuantile = [](double p, const Values& v) { return InvCDFFisher(p, v[0], v[1], NUMCORE_FALSE); },
         .mean = fisherMean,
         .variance = fisherVariance,
         .meanText = "nu2/(nu2 - 2) (nu2 > 2)",
         .varianceText = "2 nu2^2 (nu1 + nu2 - 2) / (nu1 (nu2 - 2)^2 (nu2 - 4)) (nu2 > 4)",
         .example = "3 20"},
        {.codes = {0, 29},
         .aliases = {{"beta"}, {"beta4"}},
         .parameters = {{"", "first shape", Domain::kPositive, 0.0, false, "shape1 a"},
                        {"", "second shape", Domain::kPositive, 0.0, false, "shape2 b"},
                        {"", "lower bound", Domain::kReal, 0.0, true, "min lower"},
                        {"", "upper bound", Domain::kReal, 1.0, true, "max upper"}},
         .order = "c < d",
         .ordered = [](const Values& p) { return p[2] < p[3]; },
         .support =
             [](const Values& p) {
                 return Interval{p[2], p[3]};
             },
         .functions = "PDFBeta CDFBeta InvCDFBeta PDFBeta4 CDFBeta4 InvCDFBeta4",
         .upperTail = betaUpperTail,
         .upperQuantile = betaUpperQuantile,
         .mean = [](const Values& p) { return p[2] + (p[3] - p[2]) * p[0] / (p[0] + p[1]); },
         .variance =
             [](const Values& p) {
                 const double sum = p[0] + p[1];
                 const double width = (p[3] - p[2]) / sum;
                 return width * width * p[0] * p[1] / (sum + 1.0);
             },
         .meanText = "c + (d - c) alpha/(alpha + beta)",
         .varianceText = "(d - c)^2 alpha beta / ((alpha + beta)^2 (alpha + beta + 1))",
         .example = "2 3"},
        {.codes = {26},
         .aliases = {{"pert"}, {"beta-pert"}},
         .parameters = {{"", "minimum", Domain::kReal, 0.0, false, "min"},
                        {"", "mode", Domain::kReal, 0.0, false, "mode"},
                        {"", "maximum", Domain::kReal, 0.0, false, "max"}},
         .order = "a <= m <= b and a < b",
         .ordered = [](const Values& p) { return p[0] <= p[1] && p[1] <= p[2] && p[0] < p[2]; },
         .support =
             [](const Values& p) {
                 return Interval{p[0], p[2]};
             },
         .functions = "PDFPert CDFPert InvCDFPert",
         .upperTail = [](double x, const Values& p) { return CDFPert(-x, -p[2], -p[1], -p[0]); },
         .upperQuantile = [](double p, const Values& v) { return negated(InvCDFPert(p, -v[2], -v[1], -v[0])); },
         .mean = pertMean,
         .variance =
             [](const Values& p) {
                 const double mean = pertMean(p);
                 return (mean - p[0]) * (p[2] - mean) / 7.0;
             },
         .meanText = "(a + 4 m + b)/6",
         .varianceText = "(mean - a)(b - mean)/7",
         .example = "1 3 7"},
    };
}

}  // namespace

std::vector<Law> gammaAndBetaLaws() {
    std::vector<Law> all = normalLaws();
    std::ranges::move(gammaLaws(), std::back_inserter(all));
    std::ranges::move(betaLaws(), std::back_inserter(all));
    return all;
}

}  // namespace numcore::cli
