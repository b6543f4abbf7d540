// The two markers and the automation boolean, for C++.
#pragma once

#include <cstdint>

#include "numcore/api.h"

namespace numcore {

/// The missing value and the overflow marker.
inline constexpr double kMissing = NUMCORE_MISSING;
inline constexpr double kOverflow = NUMCORE_OVERFLOW;

/// A 16-bit automation boolean: only -1 is true.
constexpr bool isTrue(std::int16_t flag) noexcept {
    return flag == NUMCORE_TRUE;
}

}  // namespace numcore
