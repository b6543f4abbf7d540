// What the doors of the associations share: arrays of a caller as spans and views.
#pragma once

#include <cstdint>
#include <span>

#include "correlation/association/biserial.hpp"
#include "suite/vmcore.hpp"

namespace numcore::association {

/// n cells; empty for null or n < 1.
template <class Cell>
std::span<const Cell> cellsAt(const Cell* cells, std::int32_t n) {
    return cells == nullptr || n < 1 ? std::span<const Cell>() : std::span(cells, static_cast<std::size_t>(n));
}

/// Alternative code of a caller.
inline Side sideOfCode(std::int32_t alternative) {
    if (alternative == 0) return Side::kTwoSided;
    return alternative == -1 ? Side::kLower : Side::kUpper;
}

}  // namespace numcore::association
