// Laws whose functions are closed formulas.
#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "cli/laws/law.hpp"
#include "cli/laws/support.hpp"
#include "numcore/numcore.h"

namespace numcore::cli {

namespace {

double square(double value) {
    return value * value;
}

/// P(Y > y) of the exponential law of rate 1: chi-square with two degrees of freedom on 2 y.
double exponentialTail(double y) {
    return pValChiSq(2.0 * y, 2.0);
}

/// P(Y <= y) of the same law, without loss for small y.
double exponentialHead(double y) {
    return IncompleteGamma(y, 1.0);
}

double gumbelUpperTail(double x, const Values& p) {
    return exponentialHead(std::exp(-(x - p[1]) / p[0]));
}

double gumbelUpperQuantile(double p, const Values& v) {
    return v[1] - v[0] * std::log(-std::log1p(-p));
}

Interval gevSupport(const Values& p) {
    const double bound = p[2] + p[1] / p[0];
    if (p[0] == 0.0) return {-kInfinite, kInfinite};
    return p[0] > 0.0 ? Interval{-kInfinite, bound} : Interval{bound, kInfinite};
}

double gevUpperTail(double x, const Values& p) {
    const double z = (x - p[2]) / p[1];
    if (p[0] == 0.0) return exponentialHead(std::exp(-z));
    return exponentialHead(std::pow(1.0 - p[0] * z, 1.0 / p[0]));
}

double gevMean(const Values& p) {
    if (p[0] == 0.0) return p[2] + std::numbers::egamma * p[1];
    if (p[0] <= -1.0) return kInfinite;
    return p[2] - p[1] * std::expm1(std::lgamma(1.0 + p[0])) / p[0];
}

double gevVariance(const Values& p) {
    if (p[0] == 0.0) return square(std::numbers::pi * p[1]) / 6.0;
    if (p[0] <= -1.0) return NUMCORE_MISSING;
    if (p[0] <= -0.5) return kInfinite;
    const double first = std::lgamma(1.0 + p[0]);
    const double second = std::lgamma(1.0 + 2.0 * p[0]);
    return square(p[1] / p[0]) * std::exp(2.0 * first) * std::expm1(second - 2.0 * first);
}

double weibullMean(const Values& p) {
    return p[2] + p[1] * std::exp(std::lgamma(1.0 + 1.0 / p[0]));
}

double weibullVariance(const Values& p) {
    const double first = std::lgamma(1.0 + 1.0 / p[0]);
    const double second = std::lgamma(1.0 + 2.0 / p[0]);
    return square(p[1]) * std::exp(2.0 * first) * std::expm1(second - 2.0 * first);
}

double paretoVariance(const Values& p) {
    if (p[0] <= 1.0) return NUMCORE_MISSING;
    if (p[0] <= 2.0) return kInfinite;
    return p[0] * square(p[1] / (p[0] - 1.0)) / (p[0] - 2.0);
}

double trapezoidalMean(const Values& p) {
    const auto [a, b, c, d] = p;
    return ((c * c + c * d + d * d) - (a * a + a * b + b * b)) / (3.0 * (c + d - a - b));
}

double trapezoidalVariance(const Values& p) {
    // About the lower bound, where nothing cancels.
    const double b = p[1] - p[0];
    const double c = p[2] - p[0];
    const double d = p[3] - p[0];
    const double mean = trapezoidalMean({0.0, b, c, d});
    return ((c + d) * (c * c + d * d) - b * b * b) / (6.0 * (c + d - b)) - mean * mean;
}

std::vector<Law> survivalLaws() {
    return {
        {.codes = {5},
         .aliases = {{"exp"},
                     {"expon", "scipy's expon takes loc and scale: here lambda = 1/scale"},
                     {"negexp"}},
         .parameters = {{"", "rate, 1/scale", Domain::kPositive, 1.0, true, "rate", "scale"}},
         .support = halfLine,
         .functions = "PDFExponential CDFExponential InvCDFExponential",
         .upperTail = [](double x, const Values& p) { return exponentialTail(p[0] * x); },
         .upperQuantile = [](double p, const Values& v) { return -std::log(p) / v[0]; },
         .mean = [](const Values& p) { return 1.0 / p[0]; },
         .variance = [](const Values& p) { return 1.0 / square(p[0]); },
         .meanText = "1/lambda",
         .varianceText = "1/lambda^2",
         .example = "0.5"},
        {.codes = {20, 21, 22},
         .aliases = {{"weibull"},
                     {"weib"},
                     {"weibull_min",
                      "scipy's weibull_min takes c, loc and scale: here the scale comes before "
                      "the location"}},
         .parameters = {{"", "shape", Domain::kPositive, 0.0, false, "shape c"},
                        {"", "scale", Domain::kPositive, 1.0, true, "scale"},
                        {"", "location", Domain::kReal, 0.0, true, "loc location"}},
         .support =
             [](const Values& p) {
                 return Interval{p[2], kInfinite};
             },
         .functions = "PDFWeibull3 CDFWeibull3 InvCDFWeibull3",
         .upperTail = [](double x,
                         const Values& p) { return exponentialTail(std::pow((x - p[2]) / p[1], p[0])); },
         .upperQuantile = [](double p,
                             const Values& v) { return v[2] + v[1] * std::pow(-std::log(p), 1.0 / v[0]); },
         .mean = weibullMean,
         .variance = weibullVariance,
         .meanText = "mu + gamma G(1 + 1/beta), G the gamma function",
         .varianceText = "gamma^2 (G(1 + 2/beta) - G(1 + 1/beta)^2)",
         .example = "2 3"},
        {.codes = {16},
         .aliases = {{"pareto"}},
         .parameters = {{"", "shape", Domain::kPositive, 0.0, false, "shape alpha"},
                        {"", "scale: the lower bound", Domain::kPositive, 1.0, true, "scale min xm"}},
         .support =
             [](const Values& p) {
                 return Interval{p[1], kInfinite};
             },
         .functions = "PDFPareto CDFPareto InvCDFPareto",
         .upperTail = [](double x, const Values& p) { return exponentialTail(p[0] * std::log(x / p[1])); },
         .upperQuantile = [](double p, const Values& v) { return v[1] * std::pow(p, -1.0 / v[0]); },
         .mean = [](const Values& p) { return p[0] > 1.0 ? p[0] * p[1] / (p[0] - 1.0) : kInfinite; },
         .variance = paretoVariance,
         .meanText = "a b/(a - 1) (a > 1)",
         .varianceText = "a b^2 / ((a - 1)^2 (a - 2)) (a > 2)",
         .example = "3 1",
         .notes = {"The law of the first kind, which starts at b; some programs mean the one that starts at 0 "
                   "(Lomax)."}},
    };
}

std::vector<Law> extremeValueLaws() {
    return {
        {.codes = {7, 8, 9},
         .aliases = {{"gumbel", "elsewhere the location mostly comes first: here the scale does"},
                     {"gumbel_r", "scipy's gumbel_r takes loc and scale: here the scale comes first"},
                     {"fisher-tippett"}},
         .parameters = {{"", "scale", Domain::kPositive, 1.0, true, "scale"},
                        {"", "location", Domain::kReal, 0.0, true, "loc location"}},
         .support = wholeLine,
         .functions = "PDFFisherTippett CDFFisherTippett InvCDFFisherTippett",
         .upperTail = gumbelUpperTail,
         .upperQuantile = gumbelUpperQuantile,
         .mean = [](const Values& p) { return p[1] + std::numbers::egamma * p[0]; },
         .variance = [](const Values& p) { return square(std::numbers::pi * p[0]) / 6.0; },
         .meanText = "mu + 0.5772156649 beta",
         .varianceText = "pi^2 beta^2/6",
         .example = "2 1",
         .notes = {"The law of the largest value. From 709 scales below the location downward the library's "
                   "distribution function is 1, although the probability there is 0."}},
        {.codes = {23},
         .aliases = {{"gev"},
                     {"genextreme",
                      "scipy's genextreme takes c, loc and scale: here k = c and the scale comes "
                      "before the location"},
                     {"generalized-extreme-value"}},
         .parameters = {{"", "shape, minus the xi of other texts", Domain::kReal, 0.0, false, "shape c"},
                        {"", "scale", Domain::kPositive, 1.0, true, "scale"},
                        {"", "location", Domain::kReal, 0.0, true, "loc location"}},
         .support = gevSupport,
         .functions = "PDFGEV CDFGEV InvCDFGEV",
         .upperTail = gevUpperTail,
         .mean = gevMean,
         .variance = gevVariance,
         .meanText = "mu + beta (1 - G(1 + k))/k (k > -1)",
         .varianceText = "beta^2 (G(1 + 2 k) - G(1 + k)^2)/k^2 (k > -1/2)",
         .example = "-0.2 2 1",
         .notes = {"The shape's sign: F(x) = exp(-(1 - k z)^(1/k)), z = (x - mu)/beta; most texts and R's evd "
                   "write xi = -k.",
                   "The library's quantile takes the shape with the other sign: it undoes the distribution "
                   "of -k."}},
        {.codes = {27},
         .aliases = {{"logistic"}, {"logis"}},
         .parameters = {{"", "mean", Domain::kReal, 0.0, true, "loc location mean"},
                        {"", "scale", Domain::kPositive, 1.0, true, "scale"}},
         .support = wholeLine,
         .functions = "PDFLogistic CDFLogistic InvCDFLogistic",
         .upperTail = [](double x, const Values& p) { return CDFLogistic(p[0] - x, 0.0, p[1]); },
         .upperQuantile = [](double p, const Values& v) { return v[0] - v[1] * InvCDFLogistic(p, 0.0, 1.0); },
         .mean = [](const Values& p) { return p[0]; },
         .variance = [](const Values& p) { return square(std::numbers::pi * p[1]) / 3.0; },
         .meanText = "mu",
         .varianceText = "pi^2 s^2/3",
         .example = "1 2"},
    };
}

std::vector<Law> piecewiseLaws() {
    return {
        {.codes = {19},
         .aliases = {{"unif"}, {"rectangular"}},
         .parameters = {{"", "lower bound", Domain::kReal, 0.0, true, "min lower"},
                        {"", "upper bound", Domain::kReal, 1.0, true, "max upper"}},
         .order = "a < b",
         .ordered = [](const Values& p) { return p[0] < p[1]; },
         .support =
             [](const Values& p) {
                 return Interval{p[0], p[1]};
             },
         .functions = "PDFUniform CDFUniform InvCDFUniform",
         .upperTail = [](double x, const Values& p) { return CDFUniform(-x, -p[1], -p[0]); },
         .upperQuantile = [](double p, const Values& v) { return negated(InvCDFUniform(p, -v[1], -v[0])); },
         .mean = [](const Values& p) { return p[0] + (p[1] - p[0]) / 2.0; },
         .variance = [](const Values& p) { return square(p[1] - p[0]) / 12.0; },
         .meanText = "(a + b)/2",
         .varianceText = "(b - a)^2/12",
         .example = "0 10",
         .notes = {"scipy's uniform takes loc and scale: a = loc, b = loc + scale."}},
        {.codes = {25},
         .aliases = {{"triang", "scipy's triang takes the mode as a part of the width: here the mode itself"},
                     {"triangle"},
                     {"tri"}},
         .parameters = {{"", "minimum", Domain::kReal, 0.0, false, "min"},
                        {"", "mode", Domain::kReal, 0.0, false, "mode"},
                        {"", "maximum", Domain::kReal, 0.0, false, "max"}},
         .order = "a <= m <= b and a < b",
         .ordered = [](const Values& p) { return p[0] <= p[1] && p[1] <= p[2] && p[0] < p[2]; },
         .support =
             [](const Values& p) {
                 return Interval{p[0], p[2]};
             },
         .functions = "PDFTriangular CDFTriangular InvCDFTriangular",
         .upperTail = [](double x, const Values& p) { return CDFTriangular(-x, -p[2], -p[1], -p[0]); },
         .upperQuantile = [](double p,
                             const Values& v) { return negated(InvCDFTriangular(p, -v[2], -v[1], -v[0])); },
         .mean = [](const Values& p) { return (p[0] + p[1] + p[2]) / 3.0; },
         .variance =
             [](const Values& p) {
                 const double mode = p[1] - p[0];
                 const double width = p[2] - p[0];
                 return (mode * mode - mode * width + width * width) / 18.0;
             },
         .meanText = "(a + m + b)/3",
         .varianceText = "(a^2 + m^2 + b^2 - a m - a b - m b)/18",
         .example = "0 2 5",
         .notes = {"The mode stands between the bounds; several programs put it last."}},
        {.codes = {30},
         .aliases = {{"trapezoid"},
                     {"trapz", "scipy's trapezoid takes c, d, loc and scale: here the four corners"},
                     {"trap"}},
         .parameters = {{"", "start", Domain::kReal, 0.0, false, "min"},
                        {"", "start of the flat top", Domain::kReal, 0.0, false, "mode1"},
                        {"", "end of the flat top", Domain::kReal, 0.0, false, "mode2"},
                        {"", "end", Domain::kReal, 0.0, false, "max"}},
         .order = "a <= b <= c <= d and a < d",
         .ordered = [](const Values& p) { return p[0] <= p[1] && p[1] <= p[2] && p[2] <= p[3] && p[0] < p[3]; },
         .support =
             [](const Values& p) {
                 return Interval{p[0], p[3]};
             },
         .functions = "PDFTrapezoidal CDFTrapezoidal InvCDFTrapezoidal",
         .upperTail = [](double x, const Values& p) { return CDFTrapezoidal(-x, -p[3], -p[2], -p[1], -p[0]); },
         .upperQuantile =
             [](double p, const Values& v) {
                 return negated(InvCDFTrapezoidal(p, -v[3], -v[2], -v[1], -v[0]));
             },
         .mean = trapezoidalMean,
         .variance = trapezoidalVariance,
         .meanText = "((c^2 + c d + d^2) - (a^2 + a b + b^2)) / (3 (c + d - a - b))",
         .varianceText = "((c + d)(c^2 + d^2) - (a + b)(a^2 + b^2)) / (6 (c + d - a - b)) - mean^2",
         .example = "0 1 3 5"},
        {.codes = {32},
         .aliases = {{"arcsin"}},
         .parameters = {{"", "the law is Beta(1 - a, a)", Domain::kInsideUnit, 0.5, true, ""}},
         .support =
             [](const Values& /*parameters*/) {
                 return Interval{0.0, 1.0};
             },
         .functions = "PDFArcsine CDFArcsine InvCDFArcsine",
         .upperTail = [](double x, const Values& p) { return CDFBeta(x, 1.0 - p[0], p[0], NUMCORE_FALSE); },
         .upperQuantile = [](double p,
                             const Values& v) { return InvCDFBeta(p, 1.0 - v[0], v[0], NUMCORE_FALSE); },
         .mean = [](const Values& p) { return 1.0 - p[0]; },
         .variance = [](const Values& p) { return p[0] * (1.0 - p[0]) / 2.0; },
         .meanText = "1 - a",
         .varianceText = "a (1 - a)/2",
         .example = "0.5"},
    };
}

}  // namespace

std::vector<Law> closedFormLaws() {
    std::vector<Law> all = survivalLaws();
    std::ranges::move(extremeValueLaws(), std::back_inserter(all));
    std::ranges::move(piecewiseLaws(), std::back_inserter(all));
    return all;
}

}  // namespace numcore::cli
