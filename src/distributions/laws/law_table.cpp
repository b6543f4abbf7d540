#include "distributions/laws/law_table.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include "numcore/closed_form_laws.h"
#include "numcore/continuous_laws.h"
#include "numcore/discrete_laws.h"
#include "numcore/special.h"

namespace numcore::distributions {

namespace {

template <class Result, class... Arguments>
constexpr std::size_t countArguments(Result (*)(Arguments...)) {
    return sizeof...(Arguments);
}

/// A law's function as a row holds it. Its last arguments are the fixed ones, when there are any; those between
/// the point and them are the first parameters.
template <auto function, int... fixed>
double call(double x, double p1, double p2, double p3, double p4) {
    const std::array<double, 4> given = {p1, p2, p3, p4};
    return [&]<std::size_t... i>(std::index_sequence<i...>) {
        return static_cast<double>(function(x, given[i]..., fixed...));
    }
    (std::make_index_sequence<countArguments(function) - 1 - sizeof...(fixed)>());
}

/// A function whose first parameter is a count: its fraction is dropped.
template <auto function>
double withCount(double x, double count, double p2) {
    return static_cast<double>(function(x, std::trunc(count), p2));
}

// Kept: no check of sigma, which CDFNormal makes.
double normalDistribution(double x, double mu, double sigma) {
    return CDFNormalStd((x - mu) / sigma);
}

double normalQuantile(double p, double mu, double sigma) {
    return mu + sigma * InvCDFNormalStd(p);
}

double poissonMass(double x, double lambda) {
    return PDFPoisson(std::trunc(x), lambda);
}

double poissonDistribution(double x, double lambda) {
    using Count = std::numeric_limits<std::int32_t>;
    if (std::isnan(x)) return x;
    return CDFPoisson(static_cast<std::int32_t>(std::clamp<double>(x, Count::min(), Count::max())), lambda);
}

/// Where the displayed name stands in the caller's messages.
struct DisplayedName {
    std::int32_t entry;
    char suffix = 0;
};

template <class... Symbols>
constexpr numcore_law continuous(std::int32_t code, DisplayedName displayed, const char* name,
                                 Symbols... symbols) {
    return {code, displayed.entry, displayed.suffix, 0, sizeof...(symbols), name, {symbols...}};
}

template <class... Symbols>
constexpr numcore_law discrete(std::int32_t code, DisplayedName displayed, const char* name,
                               Symbols... symbols) {
    return {code, displayed.entry, displayed.suffix, 1, sizeof...(symbols), name, {symbols...}};
}

constexpr std::array kLaws = {
    // The bounds are the third and fourth parameter: the caller of code 0 passes 0 and 1.
    Law{.shown = continuous(0, {360}, "beta", "alpha", "beta"),
        .rule = NUMCORE_DATA_UNIT_INTERVAL,
        .density = call<PDFBeta4>,
        .distribution = call<CDFBeta4>,
        .quantile = call<InvCDFBeta4>},
    Law{.shown = discrete(1, {363}, "binomial", "n", "p"),
        .rule = NUMCORE_DATA_COUNTS,
        .density = call<withCount<PDFBinomial>>,
        .distribution = call<withCount<CDFBinomial>>,
        .quantile = call<withCount<InvCDFBinomial>>},
    // Kept: the displayed name announces a third parameter, which no function has.
    Law{.shown = discrete(2, {371, '1'}, "negative binomial 1", "n", "p"),
        .rule = NUMCORE_DATA_COUNTS,
        .density = call<withCount<PDFBinomialNeg1>>,
        .distribution = call<withCount<CDFBinomialNeg1>>,
        .quantile = call<withCount<InvCDFBinomialNeg1>>,
        .nAnnounced = 3},
    Law{.shown = discrete(3, {371, '2'}, "negative binomial 2", "k", "p"),
        .rule = NUMCORE_DATA_COUNTS,
        .density = call<PDFBinomialNeg2>,
        .distribution = call<CDFBinomialNeg2>,
        .quantile = call<InvCDFBinomialNeg2>},
    Law{.shown = continuous(4, {172}, "chi-square", "nu"),
        .rule = NUMCORE_DATA_NON_NEGATIVE,
        .density = call<PDFChiSq>,
        .distribution = call<CDFChiSq>,
        .quantile = call<InvCDFChiSq>},
    Law{.shown = continuous(5, {366}, "exponential", "lambda"),
        .rule = NUMCORE_DATA_NON_NEGATIVE,
        .density = call<PDFExponential>,
        .distribution = call<CDFExponential>,
        .quantile = call<InvCDFExponential>},
    Law{.shown = continuous(6, {362}, "fisher", "nu1", "nu2"),
        .rule = NUMCORE_DATA_NON_NEGATIVE,
        .density = call<PDFFisher>,
        .distribution = call<CDFFisher, NUMCORE_TRUE>,
        .quantile = call<InvCDFFisher, NUMCORE_TRUE>},
    Law{.shown = continuous(7, {373}, "standard gumbel"),
        .rule = NUMCORE_DATA_NUMBERS,
        .density = call<PDFFisherTippett, 1, 0>,
        .distribution = call<CDFFisherTippett, 1, 0>,
        .quantile = call<InvCDFFisherTippett, 1, 0>},
    Law{.shown = continuous(8, {372, '1'}, "gumbel 1", "beta"),
        .rule = NUMCORE_DATA_NUMBERS,
        .density = call<PDFFisherTippett, 0>,
        .distribution = call<CDFFisherTippett, 0>,
        .quantile = call<InvCDFFisherTippett, 0>},
    Law{.shown = continuous(9, {372, '2'}, "gumbel 2", "beta", "mu"),
        .rule = NUMCORE_DATA_NUMBERS,
        .density = call<PDFFisherTippett>,
        .distribution = call<CDFFisherTippett>,
        .quantile = call<InvCDFFisherTippett>},
    Law{.shown = continuous(10, {334, '1'}, "gamma 1", "k"),
        .rule = NUMCORE_DATA_NON_NEGATIVE,
        .density = call<PDFGamma3, 1, 0>,
        .distribution = call<CDFGamma3, 1, 0>,
        .quantile = call<InvCDFGamma3, 1, 0>},
    Law{.shown = continuous(11, {334, '2'}, "gamma 2", "k", "beta"),
        .rule = NUMCORE_DATA_NON_NEGATIVE,
        .density = call<PDFGamma3, 0>,
        .distribution = call<CDFGamma3, 0>,
        .quantile = call<InvCDFGamma3, 0>},
    Law{.shown = continuous(12, {334, '3'}, "gamma 3", "k", "beta", "mu"),
        .rule = NUMCORE_DATA_NUMBERS,
        .density = call<PDFGamma3>,
        .distribution = call<CDFGamma3>,
        .quantile = call<InvCDFGamma3>},
    Law{.shown = continuous(13, {288}, "log-normal", "mu", "sigma"),
        .rule = NUMCORE_DATA_POSITIVE,
        .density = call<PDFLogNormal>,
        .distribution = call<CDFLogNormal>,
        .quantile = call<InvCDFLogNormal>},
    Law{.shown = continuous(14, {287}, "normal", "mu", "sigma"),
        .rule = NUMCORE_DATA_NUMBERS,
        .density = call<PDFNormal>,
        .distribution = call<normalDistribution>,
        .quantile = call<normalQuantile>},
    Law{.shown = continuous(15, {289}, "standard normal"),
        .rule = NUMCORE_DATA_NUMBERS,
        .density = call<PDFNormalStd>,
        .distribution = call<CDFNormalStd>,
        .quantile = call<InvCDFNormalStd>},
    Law{.shown = continuous(16, {375}, "pareto", "a", "b"),
        .rule = NUMCORE_DATA_POSITIVE,
        .density = call<PDFPareto>,
        .distribution = call<CDFPareto>,
        .quantile = call<InvCDFPareto>},
    Law{.shown = discrete(17, {365}, "poisson", "lambda"),
        .rule = NUMCORE_DATA_COUNTS,
        .density = call<poissonMass>,
        .distribution = call<poissonDistribution>,
        .quantile = call<InvCDFPoisson>},
    Law{.shown = continuous(18, {361}, "student", "nu"),
        .rule = NUMCORE_DATA_NUMBERS,
        .density = call<PDFStudent>,
        .distribution = call<CDFStudent>,
        .quantile = call<InvCDFStudent>},
    Law{.shown = continuous(19, {370}, "uniform", "a", "b"),
        .rule = NUMCORE_DATA_NUMBERS,
        .density = call<PDFUniform>,
        .distribution = call<CDFUniform>,
        .quantile = call<InvCDFUniform>},
    Law{.shown = continuous(20, {367, '1'}, "weibull 1", "beta"),
        .rule = NUMCORE_DATA_NON_NEGATIVE,
        .density = call<PDFWeibull3, 1, 0>,
        .distribution = call<CDFWeibull3, 1, 0>,
        .quantile = call<InvCDFWeibull3, 1, 0>},
    Law{.shown = continuous(21, {367, '2'}, "weibull 2", "beta", "gamma"),
        .rule = NUMCORE_DATA_NON_NEGATIVE,
        .density = call<PDFWeibull3, 0>,
        .distribution = call<CDFWeibull3, 0>,
        .quantile = call<InvCDFWeibull3, 0>},
    Law{.shown = continuous(22, {367, '3'}, "weibull 3", "beta", "gamma", "mu"),
        .rule = NUMCORE_DATA_NUMBERS,
        .density = call<PDFWeibull3>,
        .distribution = call<CDFWeibull3>,
        .quantile = call<InvCDFWeibull3>},
    Law{.shown = continuous(23, {378}, "generalised extreme value", "k", "beta", "mu"),
        .rule = NUMCORE_DATA_NUMBERS,
        .density = call<PDFGEV>,
        .distribution = call<CDFGEV>,
        .quantile = call<InvCDFGEV>},
    Law{.shown = continuous(24, {1868}, "erlang", "k", "lambda"),
        .rule = NUMCORE_DATA_NON_NEGATIVE,
        .density = call<withCount<PDFErlang>>,
        .distribution = call<withCount<CDFErlang>>,
        .quantile = call<withCount<InvCDFErlang>>},
    Law{.shown = continuous(25, {1869}, "triangular", "a", "m", "b"),
        .rule = NUMCORE_DATA_NUMBERS,
        .density = call<PDFTriangular>,
        .distribution = call<CDFTriangular>,
        .quantile = call<InvCDFTriangular>},
    Law{.shown = continuous(26, {1392}, "pert", "a", "m", "b"),
        .rule = NUMCORE_DATA_NUMBERS,
        .density = call<PDFPert>,
        .distribution = call<CDFPert>,
        .quantile = call<InvCDFPert>},
    Law{.shown = continuous(27, {1393}, "logistic", "mu", "s"),
        .rule = NUMCORE_DATA_NUMBERS,
        .density = call<PDFLogistic>,
        .distribution = call<CDFLogistic>,
        .quantile = call<InvCDFLogistic>},
    Law{.shown = discrete(28, {1391}, "discrete uniform", "a", "b"),
        .rule = NUMCORE_DATA_WHOLE,
        .density = call<PDFUniformDisc>,
        .distribution = call<CDFUniformDisc>,
        .quantile = call<InvCDFUniformDisc>},
    Law{.shown = continuous(29, {360, '4'}, "beta 4", "alpha", "beta", "c", "d"),
        .rule = NUMCORE_DATA_NUMBERS,
        .density = call<PDFBeta4>,
        .distribution = call<CDFBeta4>,
        .quantile = call<InvCDFBeta4>},
    Law{.shown = continuous(30, {1394}, "trapezoidal", "a", "b", "c", "d"),
        .rule = NUMCORE_DATA_NUMBERS,
        .density = call<PDFTrapezoidal>,
        .distribution = call<CDFTrapezoidal>,
        .quantile = call<InvCDFTrapezoidal>},
    Law{.shown = discrete(31, {1395}, "bernoulli", "p"),
        .rule = NUMCORE_DATA_ZERO_OR_ONE,
        .density = call<PDFBernoulli>,
        .distribution = call<CDFBernoulli>,
        .quantile = call<InvCDFBernoulli>},
    Law{.shown = continuous(32, {1390}, "arcsine", "a"),
        .rule = NUMCORE_DATA_UNIT_INTERVAL,
        .density = call<PDFArcsine>,
        .distribution = call<CDFArcsine>,
        .quantile = call<InvCDFArcsine>},
};

constexpr bool eachAtItsCode() {
    for (std::size_t code = 0; code < kLaws.size(); ++code) {
        if (kLaws[code].shown.code != static_cast<std::int32_t>(code)) return false;
    }
    return true;
}
static_assert(eachAtItsCode());

// Codes in the order in which displayed names are compared.
constexpr std::array<std::uint8_t, 33> kOrderOfNames = {32, 31, 0,  29, 1,  2,  3,  4,  24, 5,  6,
                                                        8,  9,  10, 11, 12, 23, 7,  13, 14, 27, 15,
                                                        16, 26, 17, 18, 25, 30, 19, 28, 20, 21, 22};
static_assert(kOrderOfNames.size() == kLaws.size());

bool isNamed(const numcore_law& law, std::u16string_view name, const matrix<u16string>& messages) {
    const std::u16string_view base = messages[law.nameEntry];
    if (base.empty() || !name.starts_with(base)) return false;
    const std::u16string_view rest = name.substr(base.size());
    if (law.nameSuffix == 0) return rest.empty();
    return rest.size() == 1 && rest.front() == static_cast<char16_t>(law.nameSuffix);
}

}  // namespace

std::span<const Law> laws() {
    return kLaws;
}

const Law* lawOfCode(std::int32_t code) {
    return code >= 0 && static_cast<std::size_t>(code) < kLaws.size() ? &kLaws[static_cast<std::size_t>(code)]
                                                                      : nullptr;
}

const Law* lawOfName(std::u16string_view name, const matrix<u16string>& messages) {
    const auto found = std::ranges::find_if(
        kOrderOfNames, [&](std::uint8_t code) { return isNamed(kLaws[code].shown, name, messages); });
    return found == kOrderOfNames.end() ? nullptr : &kLaws[*found];
}

}  // namespace numcore::distributions
