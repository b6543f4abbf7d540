#include "cli/laws/plot_range.hpp"

#include <algorithm>
#include <cmath>

#include "cli/laws/evaluate.hpp"

namespace numcore::cli {

namespace {

/// The end of the range on one side: near 0 or 1, unless the tail is so heavy that nothing else would be seen.
double tailEnd(const ChosenLaw& chosen, double median, double quartile, bool upper) {
    constexpr double kTails[] = {0.0005, 0.005, 0.025, 0.05, 0.1};
    constexpr double kLongest = 11.0;  // quartile distances
    double end = quartile;
    for (const double tail : kTails) {
        end = invertDistribution(chosen, tail, upper ? Tail::kUpper : Tail::kLower);
        if (std::abs(end - median) <= kLongest * std::abs(quartile - median)) break;
    }
    return end;
}

void takeIn(std::span<const double> points, Interval& range) {
    constexpr double kMostWidths = 1.5;
    const double reach = kMostWidths * (range.upper - range.lower);
    const Interval allowed{range.lower - reach, range.upper + reach};
    for (const double x : points) {
        if (!(x >= allowed.lower && x <= allowed.upper)) continue;
        range.lower = std::min(range.lower, x);
        range.upper = std::max(range.upper, x);
    }
}

}  // namespace

Interval plotRange(const ChosenLaw& chosen, std::span<const double> points) {
    const Interval support = chosen.law->support(chosen.parameters);
    const double median = invertDistribution(chosen, 0.5, Tail::kLower);
    Interval range{tailEnd(chosen, median, invertDistribution(chosen, 0.25, Tail::kLower), false),
                   tailEnd(chosen, median, invertDistribution(chosen, 0.25, Tail::kUpper), true)};
    if (chosen.law->discrete) range = {std::floor(range.lower), std::ceil(range.upper)};
    const double margin = 0.25 * (range.upper - range.lower);
    if (range.lower - support.lower <= margin) range.lower = support.lower;
    if (support.upper - range.upper <= margin) range.upper = support.upper;
    takeIn(points, range);
    if (!(range.upper > range.lower)) range = {range.lower - 0.5, range.lower + 0.5};
    const double room = chosen.law->discrete ? std::max(0.8, 0.04 * (range.upper - range.lower))
                                             : 0.04 * (range.upper - range.lower);
    return {range.lower - room, range.upper + room};
}

}  // namespace numcore::cli
