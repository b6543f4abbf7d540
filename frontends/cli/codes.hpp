// What the library's doors take for words and booleans.
#pragma once

#include <cstdint>

#include "cli/options.hpp"
#include "numcore/api.h"

namespace numcore::cli {

inline std::int16_t flagOf(bool value) {
    return value ? NUMCORE_TRUE : NUMCORE_FALSE;
}

inline std::int32_t codeOf(Alternative alternative) {
    if (alternative == Alternative::kTwoSided) return 0;
    return alternative == Alternative::kLess ? -1 : 1;
}

}  // namespace numcore::cli
