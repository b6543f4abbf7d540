// What the doors of the associations share: arrays of a caller as spans and views.
#pragma once

#include <cstdint>
#include <span>

#include "correlation/association/biserial.hpp"
#include "exports/caller_cells.hpp"
#include "suite/vmcore.hpp"

namespace numcore::association {

using exports::cellsAt;

/// Alternative code of a caller.
inline Side sideOfCode(std::int32_t alternative) {
    if (alternative == 0) return Side::kTwoSided;
    return alternative == -1 ? Side::kLower : Side::kUpper;
}

}  // namespace numcore::association
