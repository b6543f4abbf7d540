// Mantel's test of association of two matrices over the same objects.
// Mantel, N. (1967), The detection of disease clustering and a generalized regression approach, Cancer Research
// 27:209-220; with a third matrix held constant: Smouse, P. E., Long, J. C. and Sokal, R. R. (1986), Multiple
// regression and correlation extensions of the Mantel test of matrix correspondence, Syst. Zool. 35:627-632.
#pragma once

#include <cstdint>
#include <span>

#include "correlation/association/permutation_test.hpp"
#include "suite/vmcore.hpp"

namespace numcore::association {

/// Matrices of n x n; the pairs are the cells below the diagonal. `control` without data: none.
struct MantelInput {
    vmcore::ConstMatrixView a;
    vmcore::ConstMatrixView b;
    vmcore::ConstMatrixView control;
};

struct MantelResult {
    double z = kMissing;
    double rho = kMissing;
    std::int64_t nPairs = 0;
    PermutationResult test;
};

/// Sum over the pairs of objects of a(i, j) b(order[i], order[j]), leaving out pairs with a missing or NaN cell
/// in either; the missing value when no pair is left.
///
/// @param order  a permutation of 0, ..., n - 1
/// @param nUsed  out: pairs in the sum
double mantelSum(vmcore::ConstMatrixView a, vmcore::ConstMatrixView b, std::span<const std::int32_t> order,
                 std::int64_t& nUsed);

/// Mantel's sum, the correlation over the pairs present in all matrices, and the test that permutes the objects
/// of b (of its residuals when a third matrix is held constant).
///
/// @param byRanks  replace the cells of each matrix by their ranks first
MantelResult mantelTest(const MantelInput& input, bool byRanks, const Orders& orders, Side side);

}  // namespace numcore::association
