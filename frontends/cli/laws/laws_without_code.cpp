// Laws that the library has functions for, but no code.
#include <algorithm>
#include <cmath>

#include "cli/laws/law.hpp"
#include "cli/laws/support.hpp"
#include "numcore/numcore.h"

namespace numcore::cli {

namespace {

Interval hypergeometricSupport(const Values& p) {
    return {std::max(0.0, p[2] - (p[0] - p[1])), std::min(p[1], p[2])};
}

double hypergeometricVariance(const Values& p) {
    if (p[0] <= 1.0) return 0.0;
    const double share = p[1] / p[0];
    return p[2] * share * (1.0 - share) * (p[0] - p[2]) / (p[0] - 1.0);
}

double arcsineUnit(double x, const Values& p) {
    return (x - p[1]) / (p[2] - p[1]);
}

double arcsineUpperQuantile(double p, const Values& v) {
    const double unit = InvCDFBeta(p, 1.0 - v[0], v[0], NUMCORE_FALSE);
    return unit == NUMCORE_MISSING ? unit : v[1] + (v[2] - v[1]) * unit;
}

/// Gamma((nu - 1)/2) / Gamma(nu/2) through the beta function with one half.
double noncentralStudentMean(const Values& p) {
    if (p[0] <= 1.0) return NUMCORE_MISSING;
    constexpr double kHalfLogPi = 0.57236494292470009;
    return p[1] * std::sqrt(p[0] / 2.0) * std::exp(betaln((p[0] - 1.0) / 2.0, 0.5) - kHalfLogPi);
}

double noncentralStudentVariance(const Values& p) {
    if (p[0] <= 1.0) return NUMCORE_MISSING;
    if (p[0] <= 2.0) return kInfinite;
    const double mean = noncentralStudentMean(p);
    return p[0] * (1.0 + p[1] * p[1]) / (p[0] - 2.0) - mean * mean;
}

double noncentralFisherMean(const Values& p) {
    return p[1] > 2.0 ? p[1] * (p[0] + p[2]) / (p[0] * (p[1] - 2.0)) : kInfinite;
}

double noncentralFisherVariance(const Values& p) {
    if (p[1] <= 2.0) return NUMCORE_MISSING;
    if (p[1] <= 4.0) return kInfinite;
    const double shifted = p[0] + p[2];
    const double ratio = p[1] / p[0];
    const double less2 = p[1] - 2.0;
    return 2.0 * ratio * ratio * (shifted * shifted + (shifted + p[2]) * less2) /
           (less2 * less2 * (p[1] - 4.0));
}

std::vector<Law> countingAndArcsineLaws() {
    return {
        {.name = "hypergeometric",
         .aliases = {{"hyper", "R's hyper takes marked, unmarked and draws: here population, marked, draws"},
                     {"hypergeom"},
                     {"hypgeom"}},
         .parameters = {{"N", "population", Domain::kCount, 0.0, false, "population"},
                        {"K", "marked ones in the population", Domain::kCount, 0.0, false, "marked"},
                        {"n", "draws", Domain::kCount, 0.0, false, "draws"}},
         .order = "K <= N and n <= N",
         .ordered = [](const Values& p) { return p[1] <= p[0] && p[2] <= p[0]; },
         .discrete = true,
         .support = hypergeometricSupport,
         .functions = "PDFHyperG CDFHyperG",
         .density = [](double x, const Values& p) { return PDFHyperG(x, p[0], p[1], p[2]); },
         .distribution = [](double x, const Values& p) { return CDFHyperG(x, p[0], p[1], p[2]); },
         // The unmarked ones among the draws.
         .upperTail = [](double x,
                         const Values& p) { return CDFHyperG(p[2] - x - 1.0, p[0], p[0] - p[1], p[2]); },
         .mean = [](const Values& p) { return p[0] > 0.0 ? p[2] * p[1] / p[0] : 0.0; },
         .variance = hypergeometricVariance,
         .meanText = "n K/N",
         .varianceText = "n (K/N) (1 - K/N) (N - n)/(N - 1)",
         .example = "20 8 5",
         .notes = {"The number of marked ones among n draws without replacement."}},
        {.name = "general arcsine",
         .aliases = {{"arcsine-general"}, {"arcsineg"}},
         .parameters = {{"a", "the law on [0, 1] is Beta(1 - a, a)", Domain::kInsideUnit, 0.0, false, ""},
                        {"c", "lower bound", Domain::kReal, 0.0, false, "min lower"},
                        {"d", "upper bound", Domain::kReal, 0.0, false, "max upper"}},
         .order = "c < d",
         .ordered = [](const Values& p) { return p[1] < p[2]; },
         .support =
             [](const Values& p) {
                 return Interval{p[1], p[2]};
             },
         .functions = "PDFArcsineG CDFArcsineG InvCDFArcsineG",
         .density = [](double x, const Values& p) { return PDFArcsineG(x, p[0], p[1], p[2]); },
         .distribution = [](double x, const Values& p) { return CDFArcsineG(x, p[0], p[1], p[2]); },
         .quantile = [](double p, const Values& v) { return InvCDFArcsineG(p, v[0], v[1], v[2]); },
         .upperTail =
             [](double x, const Values& p) {
                 return CDFBeta(arcsineUnit(x, p), 1.0 - p[0], p[0], NUMCORE_FALSE);
             },
         .upperQuantile = arcsineUpperQuantile,
         .mean = [](const Values& p) { return p[1] + (p[2] - p[1]) * (1.0 - p[0]); },
         .variance =
             [](const Values& p) {
                 const double width = p[2] - p[1];
                 return width * width * p[0] * (1.0 - p[0]) / 2.0;
             },
         .meanText = "c + (d - c)(1 - a)",
         .varianceText = "(d - c)^2 a (1 - a)/2",
         .example = "0.5 -1 1"},
    };
}

std::vector<Law> noncentralLaws() {
    return {
        {.name = "noncentral student",
         .aliases = {{"nct"}, {"noncentral-t"}},
         .parameters = {{"nu", "degrees of freedom", Domain::kPositive, 0.0, false, "df"},
                        {"delta", "noncentrality", Domain::kReal, 0.0, false, "ncp nc"}},
         .support = wholeLine,
         .functions = "PDFStudentNC CDFStudentNC InvCDFStudentNC",
         .density = [](double x, const Values& p) { return PDFStudentNC(x, p[0], p[1]); },
         .distribution = [](double x, const Values& p) { return CDFStudentNC(x, p[0], p[1]); },
         .quantile = [](double p, const Values& v) { return InvCDFStudentNC(p, v[0], v[1]); },
         .upperTail = [](double x, const Values& p) { return CDFStudentNC(-x, p[0], -p[1]); },
         .upperQuantile = [](double p, const Values& v) { return negated(InvCDFStudentNC(p, v[0], -v[1])); },
         .mean = noncentralStudentMean,
         .variance = noncentralStudentVariance,
         .meanText = "delta sqrt(nu/2) G((nu - 1)/2)/G(nu/2) (nu > 1)",
         .varianceText = "nu (1 + delta^2)/(nu - 2) - mean^2 (nu > 2)",
         .example = "10 1.5"},
        {.name = "noncentral chi-square",
         .aliases = {{"ncx2"}, {"ncchisq"}, {"noncentral-chi2"}, {"noncentral-chisq"}},
         .parameters = {{"nu", "degrees of freedom", Domain::kPositive, 0.0, false, "df"},
                        {"lambda", "noncentrality", Domain::kNonNegative, 0.0, false, "ncp nc"}},
         .support = halfLine,
         .functions = "CDFchiSqNC",
         .distribution = [](double x, const Values& p) { return CDFchiSqNC(x, p[0], p[1]); },
         .mean = [](const Values& p) { return p[0] + p[1]; },
         .variance = [](const Values& p) { return 2.0 * (p[0] + 2.0 * p[1]); },
         .meanText = "nu + lambda",
         .varianceText = "2 (nu + 2 lambda)",
         .example = "3 2"},
        {.name = "noncentral fisher",
         .aliases = {{"ncf"}, {"noncentral-f"}},
         .parameters = {{"nu1", "degrees of freedom of the numerator", Domain::kPositive, 0.0, false,
                         "df1 dfn"},
                        {"nu2", "degrees of freedom of the denominator", Domain::kPositive, 0.0, false,
                         "df2 dfd"},
                        {"lambda", "noncentrality", Domain::kNonNegative, 0.0, false, "ncp nc"}},
         .support = halfLine,
         .functions = "CDFFisherNC",
         .distribution = [](double x, const Values& p) { return CDFFisherNC(x, p[0], p[1], p[2]); },
         .mean = noncentralFisherMean,
         .variance = noncentralFisherVariance,
         .meanText = "nu2 (nu1 + lambda)/(nu1 (nu2 - 2)) (nu2 > 2)",
         .varianceText =
             "2 (nu2/nu1)^2 ((nu1 + lambda)^2 + (nu1 + 2 lambda)(nu2 - 2)) / ((nu2 - 2)^2 (nu2 - 4)) "
             "(nu2 > 4)",
         .example = "3 20 2"},
        {.name = "noncentral beta",
         .aliases = {{"ncbeta"}},
         .parameters = {{"alpha", "first shape", Domain::kPositive, 0.0, false, "shape1 a"},
                        {"beta", "second shape", Domain::kPositive, 0.0, false, "shape2 b"},
                        {"lambda", "noncentrality", Domain::kNonNegative, 0.0, false, "ncp nc"}},
         .support =
             [](const Values& /*parameters*/) {
                 return Interval{0.0, 1.0};
             },
         .functions = "CDFbetaNC",
         .distribution = [](double x, const Values& p) { return CDFbetaNC(x, p[0], p[1], p[2]); },
         .example = "2 3 1"},
        {.name = "studentized range",
         .aliases = {{"tukey"}, {"srange"}},
         .parameters = {{"k", "number of means", Domain::kPositiveCount, 0.0, false, "nmeans"},
                        {"df", "degrees of freedom", Domain::kPositiveOrInfinite, 0.0, false, "nu"},
                        {"ranges", "number of independent ranges, of which the largest", Domain::kPositiveCount,
                         1.0, true, "nranges"}},
         .order = "k >= 2",
         .ordered = [](const Values& p) { return p[0] >= 2.0; },
         .support = halfLine,
         .functions = "ptukey qtukey",
         .distribution = [](double x, const Values& p) { return ptukey(x, p[2], p[0], p[1]); },
         .quantile = [](double p, const Values& v) { return qtukey(p, v[2], v[0], v[1]); },
         .example = "3 10"},
    };
}

}  // namespace

std::vector<Law> lawsWithoutCode() {
    std::vector<Law> all = countingAndArcsineLaws();
    std::ranges::move(noncentralLaws(), std::back_inserter(all));
    return all;
}

}  // namespace numcore::cli
