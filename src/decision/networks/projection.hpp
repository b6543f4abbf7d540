// How the cells of a table of several nodes stand to those of a table of some of them, and the walks over both:
// products, sums. Positions are never computed per cell: a table falls into blocks of one pattern.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "decision/networks/lists.hpp"

namespace numcore::networks {

/// A table's nodes and their sizes (at least 1), the first node slowest.
struct Axes {
    std::vector<Number> nodes;
    std::vector<Number> extents;

    std::size_t nCells() const;
};

/// Sum of some cells, in four lanes.
double sumOf(std::span<const double> cells);

/// The axes of some nodes of a network.
Axes axesOf(std::span<const Number> nodes, std::span<const Number> sizes);

/// Tables have fewer than 2^32 cells, so no more axes than this are longer than 1.
inline constexpr std::size_t kMostAxes = 32;

class Projection {
  public:
    /// @param whole  axes of the larger table
    /// @param part   nodes of the smaller one, each in whole, in the order of its own cells
    Projection(const Axes& whole, std::span<const Number> part);

    std::size_t wholeCells() const { return wholeCells_; }
    std::size_t partCells() const { return partCells_; }

    /// whole *= part, cell by cell. Returns the bits of all products, or-ed.
    std::uint64_t multiply(double* whole, const double* part) const;
    /// part = sums of the cells of whole that belong to each of its cells.
    void sum(const double* whole, double* part) const;

  private:
    struct Axis {
        std::size_t extent;
        std::size_t stride;  ///< in the smaller table; 0 where it has not this axis
    };

    static std::span<Axis> merge(std::span<Axis> axes);
    void splitIntoBlocks(std::span<const Axis> axes);
    template <class Block>
    void forEachBlock(const Block& block) const;

    std::size_t wholeCells_ = 1;
    std::size_t partCells_ = 1;
    std::vector<Axis> outer_;  ///< axes over the blocks, slowest first; most tables are one block
    std::size_t blockCells_ = 1;
    std::size_t runStride_ = 0;  ///< 0 or 1: a block is one run of this stride
    std::vector<std::uint32_t>
        positions_;  ///< otherwise: where each cell of a block goes, from the block's start
};

}  // namespace numcore::networks
