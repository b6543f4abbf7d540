#include "tests/resampling/engine.hpp"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <memory>

#include "suite/parallel.hpp"
#include "tests/clopper_pearson.hpp"

namespace numcore::tests {
namespace {

constexpr std::int64_t kWorkOfBlock = 1 << 16;  // observations that one thread looks at before the next block
constexpr std::int64_t kBlocksAtFirst = 4;      // before the clock is looked at
constexpr double kSameStatistic = 1e-9;
constexpr double kOutsideEachLimit = 0.005;

// ---- The run

void fillInParallel(const Resamples& resamples, std::int64_t from, std::int64_t perBlock,
                    std::span<double> out) {
    const std::int64_t n = std::ssize(out);
    const std::int64_t nBlocks = (n + perBlock - 1) / perBlock;
    parallelFor(nBlocks, nBlocks > 1, [&](std::int64_t block) {
        const std::int64_t begin = block * perBlock;
        const std::int64_t length = std::min(perBlock, n - begin);
        resamples.fill(from + begin,
                       out.subspan(static_cast<std::size_t>(begin), static_cast<std::size_t>(length)));
    });
}

class Clock {
  public:
    double seconds() const {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
    }

  private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

// Fills from the front until the time is over; how many are filled. Rounds double at most, and take about half
// of the time that is left.
std::int64_t fillInTime(const Resamples& resamples, std::int64_t perBlock, double limit,
                        std::span<double> out) {
    const Clock clock;
    const std::int64_t smallestRound = kBlocksAtFirst * perBlock;
    const std::int64_t n = std::ssize(out);
    std::int64_t done = 0;
    std::int64_t round = std::min(smallestRound, n);
    while (round > 0) {
        fillInParallel(resamples, done, perBlock,
                       out.subspan(static_cast<std::size_t>(done), static_cast<std::size_t>(round)));
        done += round;
        const double spent = clock.seconds();
        if (spent >= limit) break;
        const double affordable = 0.5 * (limit - spent) * static_cast<double>(done) / std::max(spent, 1e-9);
        const double wanted = std::min(affordable, 2.0 * static_cast<double>(round));
        round = std::min(std::max(smallestRound, static_cast<std::int64_t>(wanted)), n - done);
    }
    return done;
}

// ---- The conclusion

struct Counts {
    std::int64_t lower = 0;
    std::int64_t upper = 0;
    std::int64_t absolute = 0;
};

// How many are as far out as the observed one; one that is no number is far out on every side.
Counts countExtremes(std::span<const double> statistics, double observed) {
    const double size = std::abs(observed);
    const double slack = kSameStatistic * std::max(1.0, size);
    Counts counts;
    for (const double statistic : statistics) {
        counts.lower += !(statistic > observed + slack);
        counts.upper += !(statistic < observed - slack);
        counts.absolute += !(std::abs(statistic) < size - slack);
    }
    return counts;
}

std::int64_t pick(const Counts& counts, Extremes extremes) {
    switch (extremes) {
        case Extremes::kAbsolute:
            return counts.absolute;
        case Extremes::kLower:
            return counts.lower;
        case Extremes::kUpper:
            return counts.upper;
        default:
            return std::min(counts.lower, counts.upper);
    }
}

// The statistic such that what lies above it is at most `tail` of all; statistics are reordered.
double upperQuantile(std::span<double> statistics, double tail, bool complete) {
    const auto n = static_cast<double>(statistics.size());
    const double wanted = (1.0 - std::clamp(tail, 0.0, 1.0)) * (complete ? n : n + 1.0);
    // A rank that is whole but for rounding is that rank.
    const double rank = std::clamp(std::ceil(wanted - 1e-9 * std::max(1.0, wanted)), 1.0, n);
    const auto at = statistics.begin() + static_cast<std::ptrdiff_t>(rank) - 1;
    std::nth_element(statistics.begin(), at, statistics.end());
    return std::clamp(*at, -kOverflow, kOverflow);
}

// Extremes made the largest ones.
void raiseExtremes(std::span<double> statistics, Extremes extremes) {
    for (double& statistic : statistics) {
        if (std::isnan(statistic)) {
            statistic = std::numeric_limits<double>::infinity();
        } else if (extremes == Extremes::kAbsolute) {
            statistic = std::abs(statistic);
        } else if (extremes == Extremes::kLower) {
            statistic = -statistic;
        }
    }
}

void takeCriticalValues(std::span<double> statistics, Extremes extremes, double alpha, bool complete,
                        Resampled& result) {
    if (std::isnan(alpha)) return;
    raiseExtremes(statistics, extremes);
    if (extremes != Extremes::kDoubled) {
        const double critical = upperQuantile(statistics, alpha, complete);
        result.critical = extremes == Extremes::kLower ? -critical : critical;
        return;
    }
    result.critical = upperQuantile(statistics, alpha / 2.0, complete);
    for (double& statistic : statistics) statistic = -statistic;
    result.lowerCritical = -upperQuantile(statistics, alpha / 2.0, complete);
}

void takePValue(std::int64_t nExtreme, std::int64_t nUsed, bool complete, bool doubled, Resampled& result) {
    const auto b = static_cast<double>(nExtreme);
    const auto m = static_cast<double>(nUsed);
    const double sides = doubled ? 2.0 : 1.0;
    const auto inUnit = [sides](double p) { return std::min(1.0, sides * p); };
    result.pValue = inUnit(complete ? b / m : (b + 1.0) / (m + 1.0));
    result.pFrom = result.pTo = result.pValue;
    if (complete) return;
    const ProportionLimits limits = clopperPearson(b, m, kOutsideEachLimit);
    result.pFrom = inUnit(limits.lower);
    result.pTo = inUnit(limits.upper);
}

}  // namespace

Resampled resample(const Resamples& resamples, double observed, Extremes extremes, double alpha,
                   const ResamplingSettings& settings, ResamplingOptions& options) {
    Resampled result;
    if (std::isnan(observed) || resamples.count < 1) return result;
    const auto n = static_cast<std::size_t>(resamples.count);
    // Not set to 0: places that the time limit leaves unused are never touched.
    const auto all = std::make_unique_for_overwrite<double[]>(n);
    const std::int64_t perBlock =
        std::clamp<std::int64_t>(kWorkOfBlock / resamples.workEach, 1, kWorkOfBlock / 16);
    std::int64_t nUsed = resamples.count;
    if (resamples.complete || settings.seconds == 0.0) {
        fillInParallel(resamples, 0, perBlock, {all.get(), n});
    } else {
        nUsed = fillInTime(resamples, perBlock, settings.seconds, {all.get(), n});
    }
    const std::span<double> statistics(all.get(), static_cast<std::size_t>(nUsed));

    options.nUsed = nUsed;
    options.nExtreme = pick(countExtremes(statistics, observed), extremes);
    options.outcome |= NUMCORE_RESAMPLED;
    if (resamples.complete) options.outcome |= NUMCORE_RESAMPLED_ALL;
    if (nUsed < resamples.count) options.outcome |= NUMCORE_RESAMPLED_STOPPED;
    takePValue(options.nExtreme, nUsed, resamples.complete, extremes == Extremes::kDoubled, result);
    takeCriticalValues(statistics, extremes, alpha, resamples.complete, result);
    result.ok = true;
    return result;
}

Resampled resample(const Arrangements& arrangements, const GroupStatistic& statistic, double observed,
                   Extremes extremes, double alpha, const ResamplingSettings& settings,
                   ResamplingOptions& options) {
    Resamples resamples;
    resamples.count = arrangements.count();
    resamples.complete = arrangements.complete();
    resamples.workEach = static_cast<std::int64_t>(arrangements.nObservations());
    resamples.fill = [&](std::int64_t from, std::span<double> out) {
        Arrangements::Cursor cursor(arrangements);
        for (double& found : out) {
            cursor.moveTo(from++);
            found = statistic(cursor);
        }
    };
    return resample(resamples, observed, extremes, alpha, settings, options);
}

}  // namespace numcore::tests
