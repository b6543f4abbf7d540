// What a caller's options of resampling mean.
#pragma once

#include <cstdint>

#include "numcore/resampling.h"

namespace numcore::tests {

enum class ResamplingMethod { kAutomatic, kPermutation, kBootstrap };

struct ResamplingSettings {
    ResamplingMethod method = ResamplingMethod::kAutomatic;
    std::int64_t nResamples = NUMCORE_RESAMPLES_DEFAULT;          ///< at least 1
    std::int64_t maxArrangements = NUMCORE_ARRANGEMENTS_DEFAULT;  ///< 0: drawn resamples only
    double seconds = 0.0;                                         ///< 0: no limit
    std::int32_t seed = 0;
};

/// Settings of a record: defaults, bounds, and a seed of chance unless one is given. Writes the seed and clears
/// nUsed and nExtreme; the outcome tells only whether a number was bounded.
ResamplingSettings takeSettings(ResamplingOptions& options);

}  // namespace numcore::tests
