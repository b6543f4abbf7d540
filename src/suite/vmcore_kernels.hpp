// Inner loops of vmcore that are compiled for several instruction sets. All give the same bits: each sums in
// eight lanes, cell i in lane i mod 8, and adds the lanes in the same order.
#pragma once

#include <cstddef>
#include <cstdint>

namespace numcore::vmcore {

/// Sums of a block of cells.
struct BlockSums {
    std::int64_t nMissing;
    std::int64_t nUsed;
    double minimum;     // of the cells that are numbers; +infinity when there is none
    double maximum;     // the same, but a missing cell counts as the number it is; -infinity when there is none
    double weight;      // of the cells used
    double deviations;  // weighted sum of their deviations from the centre
    double squares;     // weighted sum of the squared deviations
};

/// How cells lie to the ends of a bracket. A missing cell lies below.
struct BracketCounts {
    std::int64_t nBelow;
    std::int64_t nAtLow;
    std::int64_t nAtHigh;
    std::size_t nInside;
};

struct Kernels {
    /// Weights may be null for unit weights.
    void (*sumBlock)(const double* cells, const double* weights, std::size_t n, double centre, BlockSums& sums);
    std::int64_t (*countMissing)(const double* cells, std::size_t n);
    /// `low` is above the missing value. The cells between low and high go to `inside`, in order; it has room
    /// for n and may be written to beyond them.
    BracketCounts (*scanBracket)(const double* cells, std::size_t n, double low, double high, double* inside);
};

/// For every x86-64 processor.
const Kernels& baselineKernels();
/// For processors with AVX2 only.
const Kernels& avx2Kernels();
/// True when this processor and its operating system have AVX2.
bool hasAvx2();
/// The fastest that this processor runs.
const Kernels& kernels();

}  // namespace numcore::vmcore
