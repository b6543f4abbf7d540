// Vectors and small matrices of doubles: summaries, order statistics, sorting, ranks, dense algebra.
//
// A cell that equals the missing value holds nothing. NaN is a value: it makes sums NaN, minimum and maximum
// pass over it, and it sorts after every number. An observation is used when its cell is not missing and its
// weight exceeds kWeightEpsilon; an empty weight span stands for unit weights, and cells beyond a shorter one
// are not used.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "numcore/api.h"

namespace numcore::vmcore {

inline constexpr double kMissing = NUMCORE_MISSING;
inline constexpr double kOverflow = NUMCORE_OVERFLOW;
inline constexpr double kWeightEpsilon = 2.220446049250313e-16;

/// True for the missing value, exactly.
constexpr bool IsMissingValue(double x) {
    return x == kMissing;
}

/// A column-major matrix of the caller; element (i, j) counts from 0 and is not checked.
struct MatrixView {
    double* data = nullptr;
    std::int32_t rows = 0;
    std::int32_t columns = 0;

    double& operator()(std::int32_t i, std::int32_t j) const {
        return data[static_cast<std::ptrdiff_t>(j) * rows + i];
    }
};

/// The same for reading.
struct ConstMatrixView {
    const double* data = nullptr;
    std::int32_t rows = 0;
    std::int32_t columns = 0;

    ConstMatrixView() = default;
    ConstMatrixView(const double* cells, std::int32_t nRows, std::int32_t nColumns)
        : data(cells), rows(nRows), columns(nColumns) {}
    ConstMatrixView(MatrixView view) : data(view.data), rows(view.rows), columns(view.columns) {}

    double operator()(std::int32_t i, std::int32_t j) const {
        return data[static_cast<std::ptrdiff_t>(j) * rows + i];
    }
};

// ---- Summaries
// ------------------------------------------------------------------------------------------------

/// What one pass over a column yields.
struct Summary {
    std::int64_t nCells = 0;
    std::int64_t nMissing = 0;
    std::int64_t nUsed = 0;     ///< observations in mean and sumSquares
    double minimum = kMissing;  ///< over all cells that are neither missing nor NaN, whatever their weight
    double maximum = kMissing;
    double mean = kMissing;   ///< weighted; the missing value when no observation is used
    double meanLost = 0.0;    ///< what rounding took from the mean; the merging of parts needs it
    double sumSquares = 0.0;  ///< weighted sum of squared deviations from the mean
    double weight = 0.0;      ///< sum of the weights of the observations used
};

/// Cells of a column and their weights.
struct ColumnView {
    std::span<const double> cells;
    std::span<const double> weights;
};

/// Summary of a column on the calling thread.
///
/// Blocks that stay in the first-level cache are read twice, for the mean and for the squared deviations with
/// their correction term, and are merged pairwise: Chan, Golub and LeVeque (1983), Am. Stat. 37:242-247. The
/// order of all additions is fixed, so that every processor and number of threads gives the same bits.
Summary summarize(std::span<const double> cells, std::span<const double> weights = {});

/// Summaries of several columns; columns and chunks of their rows are shared among threads when they are large.
///
/// @param columns  columns of any lengths
/// @param out      out: one summary a column, as summarize gives it; columns beyond its length are left out
void summarizeColumns(std::span<const ColumnView> columns, std::span<Summary> out);

/// Summary of two parts of a column together.
Summary mergeSummaries(const Summary& a, const Summary& b);

/// Weighted variance with frequency weights: sumSquares / (weight - 1).
///
/// @return 0 for exactly one observation used; the missing value for none, and for several whose weights sum to
///         1 or less
double variance(const Summary& summary);

// ---- Order statistics
// -----------------------------------------------------------------------------------------

/// Number of cells that are not missing.
std::int64_t countPresent(std::span<const double> cells);

/// Copies the cells that are not missing, in order.
///
/// @param out  at least as many places as there are cells; what follows the copied ones may be overwritten
/// @return number of cells copied
std::int64_t compact(std::span<const double> cells, double* out);

/// Order statistics of given ranks among the cells that are not missing, without sorting or copying them all.
///
/// @param cells  unsorted; missing cells are left out, NaN comes after every number
/// @param ranks  ranks from 0, in any order, repeats allowed
/// @param out    out: one value a rank; the missing value for a rank below 0 or not below the number of such
/// cells
/// @return number of cells that are not missing
///
/// A sample brackets each rank, one pass counts what lies below and gathers what lies within, and a selection
/// in the gathered cells ends it: Floyd and Rivest (1975), Comm. ACM 18:165-172. Many ranks, few cells, or a
/// rank outside its bracket are answered from a copy.
std::int64_t selectRanks(std::span<const double> cells, std::span<const std::int64_t> ranks,
                         std::span<double> out);

/// An order statistic and the one after it.
struct OrderPair {
    double at = kMissing;
    double next = kMissing;
};

/// Order statistics of ranks `rank` and `rank + 1` (from 0), as selectRanks gives them; at the last rank both
/// are the last value.
OrderPair selectPair(std::span<const double> cells, std::int64_t rank);

// ---- Vectors
// --------------------------------------------------------------------------------------------------

/// Sum of the cells that are not missing (0 when there is none), with a compensated error.
double V_Sum2(std::span<const double> values);
/// Smallest and largest cell that is neither missing nor NaN; the missing value when there is none.
double V_Min(std::span<const double> values);
double V_Max(std::span<const double> values);
/// Number of missing cells.
std::int32_t V_NbMissing(std::span<const double> values);
/// True when every cell that is not missing lies in [0, 1].
bool V_Is01(std::span<const double> values);
/// Sets every flag to false (0).
void InitVectorToFalse(std::span<std::int16_t> flags);

/// Weighted mean and variance of the first n observations that are not excluded.
///
/// @param data              observations
/// @param n                 how many to look at; bounded by the length of data
/// @param mean, variance    out; the missing value when no observation is used
/// @param exclusion         one flag an observation, 0 = use it; missing flags (a shorter or empty span) use it
/// @param weights           one weight an observation; empty = unit weights
/// @param frequencyWeights  16-bit boolean. True: a weight counts rows, and the variance divides by the sum W
/// of the
///                          weights less 1. Otherwise it divides by W less the mean weight.
/// @param skipMissing       16-bit boolean. True: a missing observation is not used. Otherwise one missing
/// observation
///                          among those not excluded makes both results missing.
/// The variance of exactly one observation is 0; it is missing for several whose divisor is not positive.
void V_MeanVar(std::span<const double> data, std::int32_t n, double& mean, double& variance,
               std::span<const std::int16_t> exclusion, std::span<const double> weights,
               std::int16_t frequencyWeights, std::int16_t skipMissing);

/// V_MeanVar of all observations with both options true.
void V_MeanVarW2(std::span<const double> data, std::span<const double> weights, double& mean, double& variance);
/// Weighted mean of all observations; the missing value when none is used.
double V_MeanW2(std::span<const double> data, std::span<const double> weights);

/// Weighted quantile by the running weight.
///
/// @param data     observations; missing ones are left out with their weights
/// @param weights  empty = unit weights; an observation without weight, or with a negative or NaN one, has
/// weight 0 but
///                 keeps its place in the order
/// @param p        order in [0, 1]: 0 and below give the first value in order, 1 and above the last
/// @return with T = p times the sum of the weights: at the first value whose running weight equals T exactly,
/// the mean
///         of it and the next value in order (at the last value, that value); at the first whose running weight
///         exceeds T, that value. The missing value when there is no observation or p is NaN.
double V_QuantileW2(std::span<const double> data, std::span<const double> weights, double p);

/// Weighted mean, variance (divisor: sum of the weights less 1), and population skewness m3 / m2^1.5 and excess
/// kurtosis m4 / m2^2 - 3, with m the central moments divided by the sum of the weights.
///
/// All four are the missing value when no observation is used; skewness and kurtosis also when m2 is 0.
void V_MeanVarSkewPKurtP(std::span<const double> data, std::span<const double> weights, double& mean,
                         double& variance, double& skewness, double& kurtosis);

/// Average ranks from 1, with ties.
///
/// @param values   one value an observation; one that is missing or has no weight gets a missing rank and no
/// part
/// @param weights  frequency weights: an observation counts as that many tied rows; empty = unit weights. A
/// group of
///                 equal values with total weight t after a running weight c gets rank c + (t + 1) / 2
/// @param ranks    out: one rank a value
/// @return the total weight of each group of equal values, ascending by value; with unit weights 1 for an
/// untied value
std::vector<double> V_GetRanksTies(std::span<const double> values, std::span<const double> weights,
                                   std::span<double> ranks);

/// Sorts values ascending, NaN last; equal ones keep their order. The missing value is a number here, the
/// smallest usually.
void SortQVector(std::span<double> values);
/// The same, carrying weights along; values beyond a shorter weight span are not sorted.
void SortQ(std::span<double> values, std::span<double> weights);

// ---- Matrices
// -------------------------------------------------------------------------------------------------

/// Fills the first rows x columns elements of a matrix, in the order they are stored, with uniforms in [0, 1).
///
/// @param out       matrix; never filled beyond its own size
/// @param rows, columns  how many elements; below 1 fills none
/// @param seed      in/out: the seed; a chosen one is written back; null with seedMode true = seed 0
/// @param seedMode  16-bit boolean: -1 uses the caller's seed; any other value chooses one
/// @param state     in/out: position in the stream of the first number drawn (unsigned), advanced by how many
/// are
///                  drawn; null = from 0
/// The same stream as rngcore::Random01.
void M_GenerateRandom01(MatrixView out, std::int32_t rows, std::int32_t columns, std::int32_t* seed,
                        std::int16_t seedMode, std::int32_t* state);

/// Cholesky factor of a symmetric positive definite matrix: a = lower * transpose(lower).
///
/// @param a      n x n; its lower triangle is read
/// @param lower  out, n x n: lower triangular, zeros above; may be the storage of a
/// @return false, with lower all zeros, when a is not positive definite, not square, or not of the shape of
/// lower
bool M_CholDecomp(ConstMatrixView a, MatrixView lower);

/// Inverse of a square matrix; the Moore-Penrose inverse when it is singular to working precision.
///
/// @param a        n x n
/// @param inverse  out, n x n; may be the storage of a
/// @return true for the inverse, false for the Moore-Penrose inverse; false with inverse all missing when the
/// shapes
///         do not fit or a cell is not finite
/// LU decomposition with full pivoting tells the rank (relative threshold n times the double epsilon); the
/// singular case goes through a complete orthogonal decomposition.
bool M_InverseG2(ConstMatrixView a, MatrixView inverse);

/// Product with a transposed second factor: out = a * transpose(b).
///
/// @param a    n x k
/// @param b    m x k
/// @param out  out, n x m; not the storage of a or b
/// @return false, with out left alone, when the shapes do not fit
bool M_ProductATrB(ConstMatrixView a, ConstMatrixView b, MatrixView out);

/// Full covariance matrix from a symmetric one of which the lower triangle counts: mirrors it to the upper one.
///
/// @param symmetric  n x n
/// @param full       out, n x n; may be the storage of symmetric
/// @return false, with full left alone, when the shapes do not fit
bool M_CovMatFromSymMat(ConstMatrixView symmetric, MatrixView full);

}  // namespace numcore::vmcore
