#include "cli/plot/scale.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace numcore::cli::plot {

namespace {

/// The step 1, 2 or 5 times a power of ten next to an even division; its exponent.
struct Step {
    double size;
    int exponent;
};

Step niceStep(double width, int wanted) {
    const double rough = width / wanted;
    int exponent = static_cast<int>(std::floor(std::log10(rough)));
    const double part = rough / std::pow(10.0, exponent);
    double factor = 1.0;
    // The geometric means of neighbours: sqrt(2), sqrt(10), sqrt(50).
    if (part > 7.0710678) {
        ++exponent;
    } else if (part > 3.1622777) {
        factor = 5.0;
    } else if (part > 1.4142136) {
        factor = 2.0;
    }
    return {factor * std::pow(10.0, exponent), exponent};
}

/// Digits before the point that a fixed label would have, down to the last one of the step.
int digitsFrom(double largest, int exponent) {
    return largest > 0.0 ? static_cast<int>(std::floor(std::log10(largest))) - exponent + 1 : 1;
}

/// All labels of an axis have the same decimals, or are in scientific notation when they would be long; numbers
/// that differ only far behind their first digit are written out.
std::string tickLabel(double value, int exponent, double largest) {
    constexpr int kSmallestFixed = -4;
    constexpr double kLargestFixed = 1e6;
    constexpr int kMostScientific = 3;
    const int digits = digitsFrom(largest, exponent);
    const bool isLong = exponent < kSmallestFixed || largest >= kLargestFixed;
    if (isLong && digits <= kMostScientific) return fmt::format("{:g}", value);
    const std::string text = digits <= std::numeric_limits<double>::digits10 + 1
                                 ? fmt::format("{:.{}f}", value, std::max(0, -exponent))
                                 : fmt::format("{:.17g}", value);
    const bool zero = text.find_first_not_of("-0.") == std::string::npos;
    return zero ? "0" : text;
}

}  // namespace

Scale::Scale(double low, double high, double pixelAtLow, double pixelAtHigh)
    : low_(low),
      high_(high),
      pixelAtLow_(pixelAtLow),
      pixelsPerUnit_(high > low ? (pixelAtHigh - pixelAtLow) / (high - low) : 0.0) {}

double Scale::operator()(double value) const {
    return pixelAtLow_ + (value - low_) * pixelsPerUnit_;
}

std::vector<Tick> niceTicks(double low, double high, int wanted, bool whole) {
    if (!std::isfinite(high - low) || !(high > low)) return {};
    Step step = niceStep(high - low, wanted);
    if (whole && step.size < 1.0) step = {1.0, 0};
    // A hair of room, so that an end that is a multiple keeps its tick.
    const double hair = (high - low) * 1e-9;
    const double first = std::ceil((low - hair) / step.size);
    const double last = std::floor((high + hair) / step.size);
    const double largest = std::max(std::abs(low), std::abs(high));
    std::vector<Tick> ticks;
    // Beyond 2^53 neighbouring multiples are one number.
    constexpr double kLargestIndex = 9007199254740992.0;
    if (std::max(std::abs(first), std::abs(last)) >= kLargestIndex) return ticks;
    for (double i = first; i <= last; ++i) {
        const double value = i == 0.0 ? 0.0 : i * step.size;  // not -0
        ticks.push_back({value, tickLabel(value, step.exponent, largest)});
    }
    return ticks;
}

}  // namespace numcore::cli::plot
