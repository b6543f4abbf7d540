// Arrays of a caller as spans.
#pragma once

#include <cstdint>
#include <span>

namespace numcore::exports {

/// n cells; empty for null or n < 1.
template <class Cell>
std::span<const Cell> cellsAt(const Cell* cells, std::int32_t n) {
    return cells == nullptr || n < 1 ? std::span<const Cell>() : std::span(cells, static_cast<std::size_t>(n));
}

}  // namespace numcore::exports
