// Studentized range: the average over s of the range of normal variables at q s. Both integrals are trapezoidal
// rules on analytic, rapidly decaying integrands, which converge exponentially (Goodwin, E. T., 1949, Proc.
// Cambridge Philos. Soc. 45:241-245; Trefethen, L. N. and Weideman, J. A. C., 2014, SIAM Review 56:385-458).

#include "distributions/laws/studentized_range.hpp"

#include <algorithm>
#include <cmath>

#include "distributions/laws/chi_scale.hpp"
#include "distributions/laws/studentized_range_normal.hpp"
#include "numcore/markers.hpp"
#include "numcore/studentized_range.h"

namespace numcore::distributions {
namespace {

// Steps of the rule over ln s that leave an error of 1e-11, measured: in units of the width of the integrand,
// and the limit that its strip of analyticity sets, narrower with many means and ranges.
constexpr double kStepOfWidth = 0.75;
constexpr double kStepOfWidthSomeDf = 0.65;
constexpr double kStepOfWidthFewDf = 0.5;
constexpr double kManyDf = 80.0;
constexpr double kFewDf = 28.0;
constexpr double kLargestStep = 0.14;
constexpr double kManyDifferences = 4.7;  // as ln means + 1.2 ln ranges
constexpr double kNegligible = 1e-12;
constexpr double kComplementLimit = 0.9;
constexpr double kLargestCount = 1e6;  // of ranges and means
constexpr double kLeastDf = 1e-6;
constexpr double kLeastPoint = 1e-150;  // points outside are moved to 0 and to the largest one
constexpr double kLargestPoint = 1e150;
// From here s is 1 to within the accuracy of the rest.
constexpr double kNormalDf = 1e14;

// Largest of several ranges.
RangeTails ofSeveral(RangeTails one, double ranges) {
    if (ranges == 1.0) return one;
    if (one.lower <= 0.0) return one;
    const double logLower = one.lower < 0.5 ? std::log(one.lower) : std::log1p(-one.upper);
    const double lower = std::exp(ranges * logLower);
    return {lower, -std::expm1(ranges * logLower), ranges * lower / one.lower * one.density};
}

// About where the integrand of a tail is largest, and its width there.
struct Peak {
    double mode;
    double curvature;
};

Peak upperPeak(double q, double df, double middle) {
    // Beyond the middle the upper tail falls as exp(-w^2 / 4), before it is flat.
    const double beyond = std::sqrt(df / (df + 0.5 * q * q));
    const double mode = q * beyond > middle ? beyond : std::min(1.0, middle / q);
    const double w = q * mode;
    return {mode, 2.0 * df * mode * mode + w * w};
}

Peak lowerPeak(double q, double df, double power, double middle) {
    // Below the middle the lower tail rises as a power of w, above it is flat.
    const double below = std::sqrt((df + power) / df);
    const double mode = std::max(1.0, std::min(below, middle / q));
    return {mode, 2.0 * df * mode * mode + std::min(q * mode, middle) * middle};
}

struct Average {
    double tail = 0.0;
    double density = 0.0;
};

// The parameters of the law.
struct Law {
    double ranges;
    NormalRange range;
    double k;
    double df;
    bool withDensity;

    RangeTails given(double w) const { return ofSeveral(range.at(w, withDensity), ranges); }
};

double largestStep(const Law& law) {
    const double differences = std::log(law.k) + 1.2 * std::log(law.ranges);
    if (differences <= kManyDifferences) return kLargestStep;
    return kLargestStep * std::pow(kManyDifferences / differences, 2.8);
}

Average averageTail(double q, const Law& law, bool upper) {
    const double df = law.df;
    const double middle = law.range.middle();
    const Peak peak = upper ? upperPeak(q, df, middle) : lowerPeak(q, df, law.ranges * (law.k - 1.0), middle);
    const double ofDf = df < kFewDf ? kStepOfWidthFewDf : (df < kManyDf ? kStepOfWidthSomeDf : kStepOfWidth);
    const double ofWidth = law.ranges > 1.0 ? 0.9 * ofDf : ofDf;
    const double step = std::min(ofWidth / std::sqrt(peak.curvature), largestStep(law));
    Average average;
    average.tail = averageOverChiScale({df, peak.mode, step, kNegligible}, upper ? 1.0 : 0.0,
                                       [&](double s, double, double weight) {
                                           const RangeTails tails = law.given(q * s);
                                           average.density += weight * s * tails.density;
                                           return upper ? tails.upper : tails.lower;
                                       });
    return average;
}

StudentizedRange averaged(double q, const Law& law) {
    const RangeTails centre = law.given(q);
    if (law.df >= kNormalDf) return {centre.lower, centre.upper, centre.density};
    const bool upperFirst = centre.upper < 0.5;
    const auto [first, density] = averageTail(q, law, upperFirst);
    const double second = first < kComplementLimit ? 1.0 - first : averageTail(q, law, !upperFirst).tail;
    const double lower = upperFirst ? second : first;
    const double upper = upperFirst ? first : second;
    return {std::min(lower, 1.0), std::min(upper, 1.0), density};
}

bool inDomain(double ranges, double k, double df) {
    return ranges >= 1.0 && ranges <= kLargestCount && k >= 2.0 && k <= kLargestCount && df >= kLeastDf;
}

}  // namespace

StudentizedRange studentizedRange(double q, double ranges, double k, double df, bool withDensity) {
    if (!inDomain(ranges, k, df)) return {kMissing, kMissing, kMissing};
    if (std::isnan(q)) return {q, q, q};
    if (q < kLeastPoint) return {0.0, 1.0, 0.0};
    if (std::isinf(q)) return {1.0, 0.0, 0.0};
    return averaged(std::min(q, kLargestPoint), {ranges, NormalRange(k), k, df, withDensity});
}

}  // namespace numcore::distributions

double ptukey(double q, double ranges, double k, double df) {
    return numcore::distributions::studentizedRange(q, ranges, k, df).lower;
}
