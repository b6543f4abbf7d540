// Matrices: random numbers, and dense algebra by Eigen.

#define EIGEN_DONT_PARALLELIZE  // its blocking, and so the last bits, would depend on the number of threads
#include <Eigen/Cholesky>
#include <Eigen/LU>
#include <Eigen/QR>
#include <algorithm>
#include <cmath>

#include "suite/rngcore.hpp"
#include "suite/vmcore.hpp"

namespace numcore::vmcore {
namespace {

using Matrix = Eigen::MatrixXd;

bool isUsable(ConstMatrixView view) {
    return view.rows >= 0 && view.columns >= 0 && (view.data != nullptr || view.rows == 0 || view.columns == 0);
}

bool sameShape(ConstMatrixView a, ConstMatrixView b) {
    return isUsable(a) && isUsable(b) && a.rows == b.rows && a.columns == b.columns;
}

std::span<double> cellsOf(MatrixView view) {
    if (!isUsable(view)) return {};
    return {view.data, static_cast<std::size_t>(view.rows) * static_cast<std::size_t>(view.columns)};
}

Eigen::Map<Matrix> asEigen(MatrixView view) {
    return {view.data, view.rows, view.columns};
}
Eigen::Map<const Matrix> asEigen(ConstMatrixView view) {
    return {view.data, view.rows, view.columns};
}

bool allNumbers(const Matrix& matrix) {
    return std::all_of(matrix.data(), matrix.data() + matrix.size(),
                       [](double x) { return std::isfinite(x) && !IsMissingValue(x); });
}

// Powers of two, which scale without rounding, that bring the largest of each row (then column) into [1/2, 1).
Eigen::VectorXd rowScales(const Matrix& matrix) {
    Eigen::VectorXd scales(matrix.rows());
    for (Eigen::Index i = 0; i < matrix.rows(); ++i) {
        int exponent = 0;
        std::frexp(matrix.row(i).cwiseAbs().maxCoeff(), &exponent);
        scales[i] = std::ldexp(1.0, std::clamp(-exponent, -1000, 1000));
    }
    return scales;
}

}  // namespace

void M_GenerateRandom01(MatrixView out, std::int32_t rows, std::int32_t columns, std::int32_t* seed,
                        std::int16_t seedMode, std::int32_t* state) {
    std::int32_t usedSeed = seed == nullptr ? 0 : *seed;
    if (!isTrue(seedMode)) usedSeed = rngcore::chooseSeed();
    if (seed != nullptr) *seed = usedSeed;
    const std::span<double> cells = cellsOf(out);
    const std::size_t nAsked =
        static_cast<std::size_t>(std::max(rows, 0)) * static_cast<std::size_t>(std::max(columns, 0));
    const std::size_t n = std::min(nAsked, cells.size());
    const std::uint32_t start = state == nullptr ? 0U : static_cast<std::uint32_t>(*state);
    rngcore::fillUniform(usedSeed, start, cells.first(n));
    if (state != nullptr) *state = static_cast<std::int32_t>(start + static_cast<std::uint32_t>(n));
}

bool M_CholDecomp(ConstMatrixView a, MatrixView lower) {
    if (sameShape(a, lower) && a.rows == a.columns) {
        const Matrix copy = asEigen(a).triangularView<Eigen::Lower>();
        const Eigen::LLT<Matrix> factored(copy);
        if (allNumbers(copy) && factored.info() == Eigen::Success) {
            asEigen(lower) = factored.matrixL();
            return true;
        }
    }
    std::ranges::fill(cellsOf(lower), 0.0);
    return false;
}

bool M_InverseG2(ConstMatrixView a, MatrixView inverse) {
    if (!sameShape(a, inverse) || a.rows != a.columns || !allNumbers(asEigen(a))) {
        std::ranges::fill(cellsOf(inverse), kMissing);
        return false;
    }
    if (a.rows == 0) return true;
    const Matrix matrix = asEigen(a);
    const double threshold = static_cast<double>(a.rows) * kWeightEpsilon;

    // Rank is judged after scaling, so that units of measurement do not make a matrix look singular.
    const Eigen::VectorXd left = rowScales(matrix);
    const Eigen::VectorXd right = rowScales((left.asDiagonal() * matrix).transpose());
    Eigen::FullPivLU<Matrix> regular;
    regular.setThreshold(threshold);
    regular.compute(left.asDiagonal() * matrix * right.asDiagonal());
    if (regular.isInvertible()) {
        asEigen(inverse) = right.asDiagonal() * regular.inverse() * left.asDiagonal();
        return true;
    }

    Eigen::CompleteOrthogonalDecomposition<Matrix> singular;
    singular.setThreshold(threshold);
    singular.compute(matrix);
    asEigen(inverse) = singular.pseudoInverse();
    return false;
}

bool M_ProductATrB(ConstMatrixView a, ConstMatrixView b, MatrixView out) {
    if (!isUsable(a) || !isUsable(b) || !isUsable(out)) return false;
    if (a.columns != b.columns || out.rows != a.rows || out.columns != b.rows) return false;
    asEigen(out).noalias() = asEigen(a) * asEigen(b).transpose();
    return true;
}

bool M_CovMatFromSymMat(ConstMatrixView symmetric, MatrixView full) {
    if (!sameShape(symmetric, full) || full.rows != full.columns) return false;
    for (std::int32_t j = 0; j < full.columns; ++j) {
        for (std::int32_t i = j; i < full.rows; ++i) {
            const double x = symmetric(i, j);
            full(i, j) = x;
            full(j, i) = x;
        }
    }
    return true;
}

}  // namespace numcore::vmcore
