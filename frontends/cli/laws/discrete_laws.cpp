// Laws on whole numbers. Functions are called with whole numbers only.
#include <cmath>

#include "cli/laws/law.hpp"
#include "cli/laws/support.hpp"
#include "numcore/numcore.h"

namespace numcore::cli {

std::vector<Law> discreteLaws() {
    return {
        {.codes = {1},
         .aliases = {{"binom"}, {"bin"}},
         .parameters = {{"", "trials", Domain::kPositiveCount, 0.0, false, "size trials"},
                        {"", "probability of a success", Domain::kProbability, 0.0, false, "prob"}},
         .discrete = true,
         .support =
             [](const Values& p) {
                 return Interval{0.0, p[0]};
             },
         .functions = "PDFBinomial CDFBinomial InvCDFBinomial",
         .upperTail = [](double x, const Values& p) { return CDFBeta(p[1], x + 1.0, p[0] - x, NUMCORE_TRUE); },
         .mean = [](const Values& p) { return p[0] * p[1]; },
         .variance = [](const Values& p) { return p[0] * p[1] * (1.0 - p[1]); },
         .meanText = "n p",
         .varianceText = "n p (1 - p)",
         .example = "10 0.3"},
        {.codes = {2},
         .aliases = {{"nbinom"}, {"negative-binomial"}, {"negbin"}, {"negbinom"}, {"pascal"}},
         .parameters = {{"", "successes to wait for", Domain::kPositiveCount, 0.0, false, "size successes"},
                        {"", "probability of a success", Domain::kInsideUnit, 0.0, false, "prob"}},
         .discrete = true,
         .support = halfLine,
         .functions = "PDFBinomialNeg1 CDFBinomialNeg1 InvCDFBinomialNeg1",
         .upperTail = [](double x, const Values& p) { return CDFBeta(p[1], p[0], x + 1.0, NUMCORE_FALSE); },
         .mean = [](const Values& p) { return p[0] * (1.0 - p[1]) / p[1]; },
         .variance = [](const Values& p) { return p[0] * (1.0 - p[1]) / (p[1] * p[1]); },
         .meanText = "n (1 - p)/p",
         .varianceText = "n (1 - p)/p^2",
         .example = "3 0.4",
         .notes = {"The number of failures before the n-th success."}},
        {.codes = {3},
         .aliases = {{"nbinom2"}, {"negbin2"}, {"polya"}},
         .parameters = {{"", "shape", Domain::kPositive, 0.0, false, "size"},
                        {"", "mean divided by k", Domain::kPositive, 0.0, false, ""}},
         .discrete = true,
         .support = halfLine,
         .functions = "PDFBinomialNeg2 CDFBinomialNeg2 InvCDFBinomialNeg2",
         .upperTail = [](double x,
                         const Values& p) { return CDFBeta(1.0 / (1.0 + p[1]), p[0], x + 1.0, NUMCORE_FALSE); },
         .mean = [](const Values& p) { return p[0] * p[1]; },
         .variance = [](const Values& p) { return p[0] * p[1] * (1.0 + p[1]); },
         .meanText = "k p",
         .varianceText = "k p (1 + p)",
         .example = "2.5 1.2",
         .notes = {"p is no probability: R's nbinom with size = k has mu = k p and prob = 1/(1 + p)."}},
        {.codes = {17},
         .aliases = {{"pois"}},
         .parameters = {{"", "mean", Domain::kPositive, 0.0, false, "mean mu rate"}},
         .discrete = true,
         .support = halfLine,
         .functions = "PDFPoisson CDFPoisson InvCDFPoisson",
         .upperTail = [](double x, const Values& p) { return IncompleteGamma(p[0], x + 1.0); },
         .mean = [](const Values& p) { return p[0]; },
         .variance = [](const Values& p) { return p[0]; },
         .meanText = "lambda",
         .varianceText = "lambda",
         .example = "4",
         .notes =
             {"From 1000 events on the distribution function is a normal approximation, off by up to 5e-6."}},
        {.codes = {28},
         .aliases = {{"discrete-uniform"},
                     {"uniform-discrete"},
                     {"randint", "scipy's randint leaves its upper bound out: here b is a possible value"}},
         .parameters = {{"", "smallest value", Domain::kWhole, 0.0, false, "min lower low"},
                        {"", "largest value", Domain::kWhole, 0.0, false, "max upper high"}},
         .order = "a < b",
         .ordered = [](const Values& p) { return p[0] < p[1]; },
         .discrete = true,
         .support =
             [](const Values& p) {
                 return Interval{p[0], p[1]};
             },
         .functions = "PDFUniformDisc CDFUniformDisc InvCDFUniformDisc",
         .upperTail = [](double x, const Values& p) { return CDFUniformDisc(-x - 1.0, -p[1], -p[0]); },
         .mean = [](const Values& p) { return p[0] + (p[1] - p[0]) / 2.0; },
         .variance = [](const Values& p) { return (p[1] - p[0]) * (p[1] - p[0] + 2.0) / 12.0; },
         .meanText = "(a + b)/2",
         .varianceText = "((b - a + 1)^2 - 1)/12",
         .example = "1 6",
         .notes =
             {"Where p is reached exactly the library's quantile is the next whole number: of 1 to 6 at 0.5 "
              "it is 4."}},
        {.codes = {31},
         .aliases = {{"bern"}},
         .parameters = {{"", "probability of 1", Domain::kProbability, 0.0, false, "prob"}},
         .discrete = true,
         .support =
             [](const Values& /*parameters*/) {
                 return Interval{0.0, 1.0};
             },
         .functions = "PDFBernoulli CDFBernoulli InvCDFBernoulli",
         .upperTail = [](double /*x*/, const Values& p) { return p[0]; },
         .mean = [](const Values& p) { return p[0]; },
         .variance = [](const Values& p) { return p[0] * (1.0 - p[0]); },
         .meanText = "p",
         .varianceText = "p (1 - p)",
         .example = "0.3"},
    };
}

}  // namespace numcore::cli
