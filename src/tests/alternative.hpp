// The alternative hypothesis of a test.
#pragma once

#include <cstdint>

namespace numcore::tests {

enum class Alternative { kTwoSided, kLower, kUpper };

/// Of a caller's code: 0 two-sided, -1 lower, any other value upper.
constexpr Alternative alternativeOf(std::int32_t code) {
    if (code == 0) return Alternative::kTwoSided;
    return code == -1 ? Alternative::kLower : Alternative::kUpper;
}

}  // namespace numcore::tests
