// The body of the kernels of normal_quantile_lanes.hpp; instantiated once for each instruction set, in a file
// of its own that is compiled for that set. Nothing of the standard library is called here: an inline function
// compiled for a wider set could be the copy that the linker keeps for all.
#pragma once

#include <cstddef>
#include <cstdint>

#include "distributions/special/normal_quantile_steps.hpp"
#include "numcore/special.h"

namespace numcore::distributions {

/// @tparam Lanes  as for NormalQuantileSteps; Lanes::signBits gives the sign bit of each lane, lane 0 lowest
template <class Lanes>
class NormalQuantileColumn {
  public:
    static void compute(const double* p, std::size_t n, double* z) {
        for (std::size_t first = 0; first < n; first += kBlock) {
            computeBlock(p + first, n - first < kBlock ? n - first : kBlock, z + first);
        }
    }

  private:
    using Steps = NormalQuantileSteps<Lanes>;
    using RealVector = typename Lanes::Real;
    static constexpr std::size_t kWidth = sizeof(RealVector) / sizeof(double);
    static constexpr std::size_t kBlock = 512;

    static RealVector load(const double* from) {
        RealVector lanes;
        __builtin_memcpy(&lanes, from, sizeof lanes);
        return lanes;
    }
    static void store(const RealVector& lanes, double* to) { __builtin_memcpy(to, &lanes, sizeof lanes); }

    // The cells of a block outside the central region, side by side; filled up to a whole vector.
    struct Tails {
        double p[kBlock + kWidth];
        std::uint32_t cell[kBlock + kWidth];
        std::size_t n = 0;
    };

    static void computeBlock(const double* p, std::size_t n, double* z) {
        Tails tails;
        std::size_t i = 0;
        for (; i + kWidth <= n; i += kWidth) {
            const RealVector cells = load(p + i);
            const RealVector fromCentre = cells - 0.5;
            const auto isCentral =
                (fromCentre <= Steps::kCentralHalfWidth) & (fromCentre >= -Steps::kCentralHalfWidth);
            store(Steps::central(fromCentre), z + i);
            const int centralBits = Lanes::signBits(__builtin_bit_cast(RealVector, isCentral));
            if (centralBits != (1 << kWidth) - 1) setAside(cells, i, centralBits, tails);
        }
        computeTails(tails, z);
        for (; i < n; ++i) z[i] = InvCDFNormalStd(p[i]);
    }

    static void setAside(const RealVector& cells, std::size_t first, int centralBits, Tails& tails) {
        for (std::size_t lane = 0; lane < kWidth; ++lane) {
            tails.p[tails.n] = cells[lane];
            tails.cell[tails.n] = static_cast<std::uint32_t>(first + lane);
            tails.n += static_cast<std::size_t>(~centralBits >> lane & 1);
        }
    }

    static void computeTails(Tails& tails, double* z) {
        for (std::size_t lane = 0; lane < kWidth; ++lane) tails.p[tails.n + lane] = 0.0625;
        for (std::size_t first = 0; first < tails.n; first += kWidth) {
            const RealVector cells = load(tails.p + first);
            const RealVector complement = 1.0 - cells;
            const RealVector tail = complement < cells ? complement : cells;
            const RealVector depth = Steps::tailDepth(tail);
            const RealVector size = Steps::nearTail(depth);
            const RealVector values = cells < 0.5 ? -size : size;
            const auto isNear = (tail > 0.0) & (depth <= Steps::kFarTailStart);  // not for NaN
            const int nearBits = Lanes::signBits(__builtin_bit_cast(RealVector, isNear));
            const std::size_t n = tails.n - first < kWidth ? tails.n - first : kWidth;
            for (std::size_t lane = 0; lane < n; ++lane) {
                const bool near = (nearBits >> lane & 1) != 0;
                z[tails.cell[first + lane]] = near ? values[lane] : InvCDFNormalStd(cells[lane]);
            }
        }
    }
};

}  // namespace numcore::distributions
