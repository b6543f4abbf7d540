#include "decision/networks/projection.hpp"

#include <algorithm>
#include <bit>

namespace numcore::networks {
namespace {

/// A run at least this long is walked as a run.
constexpr std::size_t kLongRun = 16;
/// Short axes are put together into blocks of up to so many cells.
constexpr std::size_t kMostBlockCells = 1024;

std::uint64_t bitsOf(double x) {
    return std::bit_cast<std::uint64_t>(x);
}

std::uint64_t scaleRun(double* cells, std::size_t n, double factor) {
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < n; ++i) {
        cells[i] *= factor;
        bits |= bitsOf(cells[i]);
    }
    return bits;
}

std::uint64_t multiplyRun(double* cells, std::size_t n, const double* factors) {
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < n; ++i) {
        cells[i] *= factors[i];
        bits |= bitsOf(cells[i]);
    }
    return bits;
}

}  // namespace

double sumOf(std::span<const double> cells) {
    const std::size_t n = cells.size();
    double sums[4] = {0.0, 0.0, 0.0, 0.0};
    std::size_t i = 0;
    for (; i + 4 <= n; i += 4)
        for (std::size_t lane = 0; lane < 4; ++lane) sums[lane] += cells[i + lane];
    double total = (sums[0] + sums[2]) + (sums[1] + sums[3]);
    for (; i < n; ++i) total += cells[i];
    return total;
}

std::size_t Axes::nCells() const {
    std::size_t n = 1;
    for (const Number extent : extents) n *= static_cast<std::size_t>(extent);
    return n;
}

Axes axesOf(std::span<const Number> nodes, std::span<const Number> sizes) {
    Axes axes;
    axes.nodes.assign(nodes.begin(), nodes.end());
    axes.extents.reserve(nodes.size());
    for (const Number node : nodes)
        axes.extents.push_back(std::max<Number>(sizes[static_cast<std::size_t>(node)], 1));
    return axes;
}

Projection::Projection(const Axes& whole, std::span<const Number> part) : wholeCells_(whole.nCells()) {
    std::array<Number, kMostAxes> nodes{};
    std::array<Axis, kMostAxes> axes{};
    std::size_t n = 0;
    for (std::size_t i = 0; i < whole.nodes.size(); ++i) {
        if (whole.extents[i] == 1) continue;
        nodes[n] = whole.nodes[i];
        axes[n++] = {static_cast<std::size_t>(whole.extents[i]), 0};
    }
    for (std::size_t p = part.size(); p-- > 0;) {
        const auto at = static_cast<std::size_t>(
            std::find(nodes.begin(), nodes.begin() + static_cast<std::ptrdiff_t>(n), part[p]) - nodes.begin());
        if (at == n) continue;
        axes[at].stride = partCells_;
        partCells_ *= axes[at].extent;
    }
    splitIntoBlocks(merge(std::span(axes).first(n)));
}

/// Neighbouring axes that advance through both tables as one become one.
std::span<Projection::Axis> Projection::merge(std::span<Axis> axes) {
    std::size_t nMerged = 0;
    for (const Axis& axis : axes) {
        if (nMerged > 0 && axes[nMerged - 1].stride == axis.stride * axis.extent) {
            axes[nMerged - 1] = {axes[nMerged - 1].extent * axis.extent, axis.stride};
        } else {
            axes[nMerged++] = axis;
        }
    }
    return axes.first(nMerged);
}

// A long last axis that stays in place or runs along is a block by itself. Otherwise the last axes, as many as
// fit, make a block whose positions are listed.
void Projection::splitIntoBlocks(std::span<const Axis> axes) {
    std::size_t nOuter = axes.size();
    if (nOuter > 0 && axes.back().stride <= 1 && axes.back().extent >= kLongRun) {
        blockCells_ = axes.back().extent;
        runStride_ = axes.back().stride;
        --nOuter;
    } else {
        positions_.reserve(std::min(wholeCells_, kMostBlockCells));
        positions_.push_back(0);
        while (nOuter > 0 && (blockCells_ == 1 || blockCells_ * axes[nOuter - 1].extent <= kMostBlockCells)) {
            const Axis axis = axes[--nOuter];
            positions_.resize(blockCells_ * axis.extent);
            for (std::size_t i = blockCells_; i < positions_.size(); ++i)
                positions_[i] = positions_[i - blockCells_] + static_cast<std::uint32_t>(axis.stride);
            blockCells_ *= axis.extent;
        }
    }
    outer_.assign(axes.begin(), axes.begin() + static_cast<std::ptrdiff_t>(nOuter));
}

template <class Block>
void Projection::forEachBlock(const Block& block) const {
    std::array<std::size_t, kMostAxes> digits{};
    std::size_t wholeAt = 0;
    std::size_t partAt = 0;
    while (true) {
        block(wholeAt, partAt);
        wholeAt += blockCells_;
        std::size_t axis = outer_.size();
        while (axis > 0 && ++digits[axis - 1] == outer_[axis - 1].extent) {
            --axis;
            partAt -= outer_[axis].stride * (outer_[axis].extent - 1);
            digits[axis] = 0;
        }
        if (axis == 0) return;
        partAt += outer_[axis - 1].stride;
    }
}

std::uint64_t Projection::multiply(double* whole, const double* part) const {
    std::uint64_t bits = 0;
    forEachBlock([&](std::size_t wholeAt, std::size_t partAt) {
        double* cells = whole + wholeAt;
        const double* factors = part + partAt;
        if (!positions_.empty()) {
            for (std::size_t i = 0; i < blockCells_; ++i) {
                cells[i] *= factors[positions_[i]];
                bits |= bitsOf(cells[i]);
            }
        } else {
            bits |= runStride_ == 0 ? scaleRun(cells, blockCells_, *factors)
                                    : multiplyRun(cells, blockCells_, factors);
        }
    });
    return bits;
}

void Projection::sum(const double* whole, double* part) const {
    std::fill_n(part, partCells_, 0.0);
    forEachBlock([&](std::size_t wholeAt, std::size_t partAt) {
        const double* cells = whole + wholeAt;
        double* sums = part + partAt;
        if (!positions_.empty()) {
            for (std::size_t i = 0; i < blockCells_; ++i) sums[positions_[i]] += cells[i];
        } else if (runStride_ == 0) {
            *sums += sumOf({cells, blockCells_});
        } else {
            for (std::size_t i = 0; i < blockCells_; ++i) sums[i] += cells[i];
        }
    });
}

}  // namespace numcore::networks
