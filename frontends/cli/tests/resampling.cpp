#include "cli/tests/resampling.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "cli/codes.hpp"
#include "numcore/parametric_tests.h"

namespace numcore::cli {

namespace {

bool has(const ResamplingOptions& resampling, NumcoreResamplingOutcome bit) {
    return (resampling.outcome & bit) != 0;
}

std::string drawn(const TestOutcome& outcome) {
    const bool bootstrap = outcome.resampling.method == NUMCORE_RESAMPLE_BOOTSTRAP;
    return fmt::format("{} {}", outcome.resampling.nUsed, bootstrap ? "bootstrap samples" : outcome.drawn);
}

}  // namespace

ResamplingOptions resamplingOf(const ResampleRequest& request) {
    ResamplingOptions options{};
    options.useResampling = flagOf(request.wanted());
    options.timeLimit = request.timeLimit;
    options.method = request.bootstrap ? NUMCORE_RESAMPLE_BOOTSTRAP : NUMCORE_RESAMPLE_AUTOMATIC;
    options.nResamples = request.nResamples;
    // The library takes 0 for its default, and a negative number for never.
    const std::int64_t limit = request.exactLimit.value_or(NUMCORE_ARRANGEMENTS_DEFAULT);
    options.maxArrangements = limit == 0 ? -1 : limit;
    options.seed = request.seed.value_or(0);
    options.seedGiven = flagOf(request.seed.has_value());
    return options;
}

bool isExact(const ResamplingOptions& resampling) {
    return has(resampling, NUMCORE_RESAMPLED_ALL);
}

PLimits limitsOfP(const TestOutcome& outcome) {
    constexpr double kAlpha = 0.01;
    const ResamplingOptions& resampling = outcome.resampling;
    PLimits limits{NUMCORE_MISSING, NUMCORE_MISSING};
    if (!outcome.resampled() || isExact(resampling) || resampling.nUsed < 1) return limits;
    GetInfSupClopper(static_cast<double>(resampling.nExtreme), static_cast<std::int32_t>(resampling.nUsed),
                     kAlpha, &limits.lower, &limits.upper);
    if (!outcome.twoTails || limits.lower == NUMCORE_MISSING) return limits;
    return {std::min(1.0, 2.0 * limits.lower), std::min(1.0, 2.0 * limits.upper)};
}

std::string methodOf(const TestOutcome& outcome) {
    if (!outcome.resampled()) return outcome.method;
    const ResamplingOptions& resampling = outcome.resampling;
    if (isExact(resampling)) return fmt::format("{}, all {} arrangements", outcome.method, resampling.nUsed);
    return fmt::format("{}, {}, seed {}", outcome.method, drawn(outcome), resampling.seed);
}

std::string tellResampling(const TestOutcome& outcome) {
    const ResamplingOptions& resampling = outcome.resampling;
    if (!outcome.resampled()) return "of the law: no resample could be made";
    if (isExact(resampling)) {
        return fmt::format("exact, {} of all {} arrangements are as extreme as the data", resampling.nExtreme,
                           resampling.nUsed);
    }
    const PLimits limits = limitsOfP(outcome);
    const std::string again =
        has(resampling, NUMCORE_RESAMPLED_STOPPED)
            ? fmt::format("--time-limit ended the run: --resample {} --seed {} without it repeats it",
                          resampling.nUsed, resampling.seed)
            : fmt::format("--seed {} draws them again", resampling.seed);
    return fmt::format("{} of {} as extreme as the data; more would give {:.4g} to {:.4g} (99 %); {}",
                       resampling.nExtreme, drawn(outcome), limits.lower, limits.upper, again);
}

}  // namespace numcore::cli
