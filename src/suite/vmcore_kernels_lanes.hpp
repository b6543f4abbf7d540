// The bodies of the kernels, written over lanes; instantiated once for each instruction set, in a file of its
// own that is compiled for that set. Nothing of the standard library is called here: an inline function
// compiled for a wider set could be the copy that the linker keeps for all.
#pragma once

#include "suite/vmcore.hpp"
#include "suite/vmcore_kernels.hpp"

namespace numcore::vmcore {

/// @tparam Lanes  in an unnamed namespace of the including file; Lanes::Real is a vector of 2, 4 or 8 doubles
/// and
///                Lanes::signBits gives the sign bit of each, lane 0 lowest
template <class Lanes>
class LaneKernels {
  public:
    static constexpr Kernels table() { return {&sumBlock, &countMissing, &scanBracket}; }

  private:
    using RealVector = typename Lanes::Real;
    using Mask = decltype(RealVector{} == RealVector{});  // -1 in the lanes that compare true
    static constexpr std::size_t kLanes = 8;
    static constexpr std::size_t kWidth = sizeof(RealVector) / sizeof(double);
    static constexpr std::size_t kParts = kLanes / kWidth;
    static constexpr double kInfinity = __builtin_inf();

    static RealVector load(const double* from) {
        RealVector lanes;
        __builtin_memcpy(&lanes, from, sizeof lanes);
        return lanes;
    }

    template <class Vector>
    static auto addLanes(const Vector (&parts)[kParts]) {
        const auto lane = [&parts](std::size_t i) { return parts[i / kWidth][i % kWidth]; };
        return ((lane(0) + lane(4)) + (lane(2) + lane(6))) + ((lane(1) + lane(5)) + (lane(3) + lane(7)));
    }

    static double least(const RealVector (&parts)[kParts]) {
        double least = kInfinity;
        for (std::size_t i = 0; i < kLanes; ++i) {
            const double x = parts[i / kWidth][i % kWidth];
            if (x < least) least = x;
        }
        return least;
    }

    static double greatest(const RealVector (&parts)[kParts]) {
        double greatest = -kInfinity;
        for (std::size_t i = 0; i < kLanes; ++i) {
            const double x = parts[i / kWidth][i % kWidth];
            if (x > greatest) greatest = x;
        }
        return greatest;
    }

    // Calls step(part, cells, weights) for each vector; the last ones are filled up with missing cells to 8 in
    // all.
    template <class Step>
    static void forEachVector(const double* cells, const double* weights, std::size_t n, Step step) {
        const std::size_t nWhole = n - n % kLanes;
        for (std::size_t i = 0; i < nWhole; i += kLanes) {
            for (std::size_t part = 0; part < kParts; ++part) {
                const std::size_t first = i + part * kWidth;
                step(part, cells + first, weights == nullptr ? nullptr : weights + first);
            }
        }
        if (nWhole == n) return;
        double lastCells[kLanes];
        double lastWeights[kLanes];
        for (std::size_t i = 0; i < kLanes; ++i) {
            lastCells[i] = nWhole + i < n ? cells[nWhole + i] : kMissing;
            lastWeights[i] = nWhole + i < n && weights != nullptr ? weights[nWhole + i] : 0.0;
        }
        for (std::size_t part = 0; part < kParts; ++part) {
            const std::size_t first = part * kWidth;
            step(part, lastCells + first, weights == nullptr ? nullptr : lastWeights + first);
        }
    }

    // As few registers as the loop can do with: a spilled accumulator costs more than all the rest.
    struct Extremes {
        RealVector low[kParts];
        RealVector high[kParts];
        Mask nPresent[kParts] = {};

        Extremes() {
            for (std::size_t part = 0; part < kParts; ++part) {
                low[part] = RealVector{} + kInfinity;
                high[part] = RealVector{} - kInfinity;
            }
        }

        void take(std::size_t part, const RealVector& x, const Mask& present) {
            const RealVector lowX = present ? x : RealVector{} + kInfinity;
            low[part] = lowX < low[part] ? lowX : low[part];  // false for NaN, which is passed over
            high[part] = x > high[part] ? x : high[part];
            nPresent[part] -= present;
        }

        void store(std::size_t n, BlockSums& sums) const {
            sums.minimum = least(low);
            sums.maximum = greatest(high);
            sums.nMissing = static_cast<std::int64_t>(n) - addLanes(nPresent);
        }
    };

    static void sumUnweighted(const double* cells, std::size_t n, double centre, BlockSums& sums) {
        Extremes extremes;
        RealVector deviations[kParts] = {};
        RealVector squares[kParts] = {};
        forEachVector(cells, nullptr, n, [&](std::size_t part, const double* from, const double*) {
            const RealVector x = load(from);
            const Mask present = x != kMissing;
            extremes.take(part, x, present);
            const RealVector deviation = present ? x - centre : RealVector{};
            deviations[part] += deviation;
            squares[part] += deviation * deviation;
        });
        extremes.store(n, sums);
        sums.nUsed = static_cast<std::int64_t>(n) - sums.nMissing;
        sums.weight = static_cast<double>(sums.nUsed);
        sums.deviations = addLanes(deviations);
        sums.squares = addLanes(squares);
    }

    static void sumWeighted(const double* cells, const double* weights, std::size_t n, double centre,
                            BlockSums& sums) {
        Extremes extremes;
        Mask nUsed[kParts] = {};
        RealVector weight[kParts] = {};
        RealVector deviations[kParts] = {};
        RealVector squares[kParts] = {};
        forEachVector(cells, weights, n, [&](std::size_t part, const double* from, const double* weightFrom) {
            const RealVector x = load(from);
            const RealVector w = load(weightFrom);
            const Mask present = x != kMissing;
            extremes.take(part, x, present);
            const Mask used = present & (w > kWeightEpsilon);
            nUsed[part] -= used;
            weight[part] += used ? w : RealVector{};
            const RealVector deviation = x - centre;
            const RealVector weighted = used ? w * deviation : RealVector{};
            deviations[part] += weighted;
            squares[part] += used ? weighted * deviation : RealVector{};
        });
        extremes.store(n, sums);
        sums.nUsed = addLanes(nUsed);
        sums.weight = addLanes(weight);
        sums.deviations = addLanes(deviations);
        sums.squares = addLanes(squares);
    }

    static void sumBlock(const double* cells, const double* weights, std::size_t n, double centre,
                         BlockSums& sums) {
        if (weights == nullptr) {
            sumUnweighted(cells, n, centre, sums);
        } else {
            sumWeighted(cells, weights, n, centre, sums);
        }
    }

    static std::int64_t countMissing(const double* cells, std::size_t n) {
        Mask nPresent[kParts] = {};
        forEachVector(cells, nullptr, n, [&](std::size_t part, const double* from, const double*) {
            nPresent[part] -= load(from) != kMissing;
        });
        return static_cast<std::int64_t>(n) - addLanes(nPresent);
    }

    static BracketCounts scanBracket(const double* cells, std::size_t n, double low, double high,
                                     double* inside) {
        Mask nBelow[kParts] = {};
        Mask nAtLow[kParts] = {};
        Mask nAtHigh[kParts] = {};
        std::size_t nInside = 0;
        forEachVector(cells, nullptr, n, [&](std::size_t part, const double* from, const double*) {
            const RealVector x = load(from);
            nBelow[part] -= x < low;
            nAtLow[part] -= x == low;
            nAtHigh[part] -= x == high;
            const int insideBits = Lanes::signBits(__builtin_bit_cast(RealVector, (x > low) & (x < high)));
            if (insideBits == 0) return;  // as a rule: a bracket is narrow
            for (std::size_t i = 0; i < kWidth; ++i) {
                inside[nInside] = from[i];
                nInside += static_cast<std::size_t>((insideBits >> i) & 1);
            }
        });
        const std::size_t nFilledUp = (kLanes - n % kLanes) % kLanes;
        return {addLanes(nBelow) - static_cast<std::int64_t>(nFilledUp), addLanes(nAtLow), addLanes(nAtHigh),
                nInside};
    }
};

}  // namespace numcore::vmcore
