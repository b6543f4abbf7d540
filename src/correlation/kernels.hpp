// Inner loops of the coefficients that are compiled for several instruction sets. All give the same bits: each
// sum runs in four lanes, row i in lane i mod 4, and the lanes are added in the same order, whichever columns
// are worked on together.
#pragma once

#include <cstddef>
#include <cstdint>

namespace numcore::correlation {

/// Rows of a packed block; a shorter one is filled up with zeros.
inline constexpr std::size_t kBlockRows = 256;
/// Packed columns of data with missing cells are three arrays of kBlockRows: values, squares, presence.
inline constexpr std::size_t kMaskedArrays = 3;
/// Sums of such a pair: weight, x, y, xx, yy, xy.
inline constexpr std::size_t kMaskedSums = 6;

/// Sums of a column over the rows where another one has no value.
enum AbsentSum : std::size_t { kAbsentWeight, kAbsentValues, kAbsentSquares, kAbsentSums };
/// Columns of the rows of AbsentRows are filled up to a multiple of this.
inline constexpr std::size_t kAbsentStep = 4;

/// Rows of a block that hold the weights of nColumns columns, 0 where a cell is missing, and then their values,
/// 0 there too; and those of them where another column has no value.
struct AbsentRows {
    const double* cells;
    std::size_t nColumns;
    const std::uint8_t* rows;
    std::size_t nRows;
};

/// Panels of packed columns, one after another.
struct Panels {
    const double* first;
    std::size_t nFirst;
    const double* second;
    std::size_t nSecond;
    bool upper;  ///< only pairs with the second column not before the first matter; others may be summed too
};

/// Observations of a Kendall pair; weights null for unit weights.
struct PairedCells {
    const double* x;
    const double* y;
    const double* weights;
};

/// Sums over pairs of observations: whole numbers.
struct PairCounts {
    double untiedX;
    double untiedY;
    double score;  ///< concordant less discordant
    double nTied;  ///< number of tied pairs, whatever their weights
};

struct Kernels {
    /// Deviations from the centre, times weights where they are not null.
    void (*packComplete)(const double* cells, std::size_t n, double centre, const double* weights, double* out);
    /// The three arrays of a column with missing cells.
    void (*packMasked)(const double* cells, std::size_t n, double centre, const double* weights, double* out);
    /// Adds the sum of products of each pair of packed columns to sums[i * nSecond + j].
    void (*addProducts)(const Panels& panels, double* sums);
    /// Adds kMaskedSums sums of each pair to those from sums[(i * nSecond + j) * kMaskedSums] on.
    void (*addMasked)(const Panels& panels, double* sums);
    /// Adds kAbsentSums sums, each for all columns, over the rows.
    void (*addAbsent)(const AbsentRows& absent, double* sums);
    /// Counts the pairs of observation i with those of [from, to).
    void (*countPairs)(const PairedCells& cells, std::size_t i, std::size_t from, std::size_t to,
                       PairCounts& counts);
};

/// For every x86-64 processor.
const Kernels& baselineKernels();
/// For processors with AVX2 only.
const Kernels& avx2Kernels();
/// The fastest that this processor runs.
const Kernels& kernels();

}  // namespace numcore::correlation
