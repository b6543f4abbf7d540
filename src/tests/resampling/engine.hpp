// The run over resamples and what is concluded from their statistics, whatever the test.
#pragma once

#include <cstdint>
#include <functional>
#include <span>

#include "tests/alternative.hpp"
#include "tests/resampling/arrangements.hpp"
#include "tests/resampling/resampling.hpp"
#include "tests/resampling/settings.hpp"

namespace numcore::tests {

/// Which statistics are extreme.
enum class Extremes {
    kAbsolute,  ///< far from 0
    kLower,
    kUpper,
    kDoubled  ///< either tail: p is twice the smaller one
};

/// Of a statistic that is symmetric about 0 under the hypothesis.
constexpr Extremes extremesOf(Alternative alternative) {
    if (alternative == Alternative::kTwoSided) return Extremes::kAbsolute;
    return alternative == Alternative::kLower ? Extremes::kLower : Extremes::kUpper;
}

/// Resamples by number. fill(from, out) writes the statistics of from, from + 1, ...: NaN where there is none.
/// It is called from several threads at once, for parts of any length, and what it writes depends on the number
/// alone.
struct Resamples {
    std::int64_t count = 0;
    bool complete = false;      ///< they are every arrangement once; the time limit does not hold
    std::int64_t workEach = 1;  ///< about how many observations one looks at
    std::function<void(std::int64_t from, std::span<double> out)> fill;
};

/// Makes the resamples and concludes.
///
/// @param observed  statistic of the data; NaN gives no result
/// @param options   out: nUsed, nExtreme, outcome
Resampled resample(const Resamples& resamples, double observed, Extremes extremes, double alpha,
                   const ResamplingSettings& settings, ResamplingOptions& options);

/// A statistic of the observations as they are dealt to the groups; called from several threads at once.
using GroupStatistic = std::function<double(const Arrangements::Cursor&)>;

/// The same for any statistic of groups: of permuted or bootstrapped observations, by their numbers.
Resampled resample(const Arrangements& arrangements, const GroupStatistic& statistic, double observed,
                   Extremes extremes, double alpha, const ResamplingSettings& settings,
                   ResamplingOptions& options);

}  // namespace numcore::tests
