#include "tests/resampling/settings.hpp"

#include <cmath>

#include "numcore/markers.hpp"
#include "suite/rngcore.hpp"

namespace numcore::tests {
namespace {

ResamplingMethod methodOf(std::int16_t code) {
    switch (code) {
        case NUMCORE_RESAMPLE_PERMUTATION:
            return ResamplingMethod::kPermutation;
        case NUMCORE_RESAMPLE_BOOTSTRAP:
            return ResamplingMethod::kBootstrap;
        default:
            return ResamplingMethod::kAutomatic;
    }
}

std::int64_t bounded(std::int64_t wanted, std::int64_t largest, ResamplingOptions& options) {
    if (wanted <= largest) return wanted;
    options.outcome |= NUMCORE_RESAMPLED_BOUNDED;
    return largest;
}

}  // namespace

ResamplingSettings takeSettings(ResamplingOptions& options) {
    options.nUsed = 0;
    options.nExtreme = 0;
    options.outcome = 0;
    if (!isTrue(options.seedGiven)) options.seed = rngcore::chooseSeed();

    ResamplingSettings settings;
    settings.method = methodOf(options.method);
    settings.seed = options.seed;
    if (options.nResamples >= 1)
        settings.nResamples = bounded(options.nResamples, NUMCORE_RESAMPLES_LARGEST, options);
    if (settings.method != ResamplingMethod::kAutomatic || options.maxArrangements < 0) {
        settings.maxArrangements = 0;
    } else if (options.maxArrangements > 0) {
        settings.maxArrangements = bounded(options.maxArrangements, NUMCORE_ARRANGEMENTS_LARGEST, options);
    }
    if (std::isfinite(options.timeLimit) && options.timeLimit > 0.0) settings.seconds = options.timeLimit;
    return settings;
}

}  // namespace numcore::tests
