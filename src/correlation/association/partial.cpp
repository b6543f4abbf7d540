#include "correlation/association/partial.hpp"

#include <algorithm>
#include <cmath>
#include <vector>

#include "numcore/continuous_laws.h"

namespace numcore::association {
namespace {

constexpr double kNothingLeft = 2.220446049250313e-16;
constexpr double kNoRelation = 1e-9;  // cells of the projector that are rounding

// What the controls leave of two variables: variances and covariance, the whole variance being 1.
struct Remainder {
    double varianceX = 0.0;
    double varianceY = 0.0;
    double covariance = 0.0;
};

double studentLowerTail(double rho, double degreesOfFreedom) {
    if (std::abs(rho) >= 1.0) return rho > 0.0 ? 1.0 : 0.0;
    const double t = std::sqrt(degreesOfFreedom / (1.0 - rho * rho)) * rho;
    return CDFStudent(t, degreesOfFreedom);
}

double probabilityOf(double rho, double nRows, std::int32_t nControls, PartialTail tail) {
    if (tail == PartialTail::kNone) return kMissing;
    // Kept: the first-order coefficient counts no degree of freedom for what it holds constant.
    if (tail == PartialTail::kLowerByRows) return studentLowerTail(rho, nRows - 2.0);
    const double degreesOfFreedom = nRows - 2.0 - nControls;
    if (!(degreesOfFreedom > 0.0)) return kMissing;
    switch (tail) {
        case PartialTail::kLower:
            return studentLowerTail(rho, degreesOfFreedom);
        case PartialTail::kUpper:
            return studentLowerTail(-rho, degreesOfFreedom);
        default:
            return 2.0 * studentLowerTail(-std::abs(rho), degreesOfFreedom);
    }
}

PartialResult resultOf(const Remainder& left, double nRows, std::int32_t nControls, PartialTail tail) {
    const double scale = left.varianceX * left.varianceY;
    if (!(scale > kNothingLeft)) return {0.0, tail == PartialTail::kNone ? kMissing : 1.0};
    const double rho = left.covariance / std::sqrt(scale);
    return {rho, probabilityOf(rho, nRows, nControls, tail)};
}

// From two rows of the inverse of the correlations: the covariance of the residuals is the inverse of that
// block.
Remainder fromInverse(vmcore::ConstMatrixView inverse, std::int32_t i, std::int32_t j) {
    const double determinant = inverse(i, i) * inverse(j, j) - inverse(i, j) * inverse(i, j);
    return {inverse(j, j) / determinant, inverse(i, i) / determinant, -inverse(i, j) / determinant};
}

// The projector on what linear relations among the variables rule out: zero cells where a variable takes part
// in none.
std::vector<double> nullProjector(vmcore::ConstMatrixView correlations, vmcore::ConstMatrixView inverse) {
    const std::int32_t p = correlations.columns;
    std::vector<double> cells(static_cast<std::size_t>(p) * static_cast<std::size_t>(p));
    const vmcore::MatrixView projector{cells.data(), p, p};
    vmcore::M_ProductATrB(inverse, correlations, projector);
    for (std::int32_t j = 0; j < p; ++j) {
        for (std::int32_t i = 0; i < p; ++i) {
            const double cell = (i == j ? 1.0 : 0.0) - projector(i, j);
            projector(i, j) = std::abs(cell) < kNoRelation ? 0.0 : cell;
        }
    }
    return cells;
}

// The limit of fromInverse for correlations with a vanishing multiple of the identity added: their inverse is
// the projector over that multiple plus the generalized inverse.
Remainder fromRelations(vmcore::ConstMatrixView inverse, vmcore::ConstMatrixView projector, std::int32_t i,
                        std::int32_t j) {
    const double ownI = projector(i, i);
    const double ownJ = projector(j, j);
    const double shared = projector(i, j);
    if (ownI == 0.0 && ownJ == 0.0) return fromInverse(inverse, i, j);
    if (ownI * ownJ - shared * shared > kNoRelation) return {};
    const double scale = ownJ * inverse(i, i) + ownI * inverse(j, j) - 2.0 * shared * inverse(i, j);
    return {ownJ / scale, ownI / scale, -shared / scale};
}

}  // namespace

PartialResult partialGivenOne(double rhoXY, double rhoYZ, double rhoXZ, double nRows) {
    return resultOf({1.0 - rhoXZ * rhoXZ, 1.0 - rhoYZ * rhoYZ, rhoXY - rhoYZ * rhoXZ}, nRows, 1,
                    PartialTail::kLowerByRows);
}

void partialGivenOthers(vmcore::ConstMatrixView correlations, double nRows, PartialTail tail,
                        vmcore::MatrixView rho, vmcore::MatrixView pValue) {
    const std::int32_t p = correlations.columns;
    std::vector<double> cells(static_cast<std::size_t>(p) * static_cast<std::size_t>(p));
    const vmcore::MatrixView inverse{cells.data(), p, p};
    std::vector<double> relations;
    if (!vmcore::M_InverseG2(correlations, inverse)) relations = nullProjector(correlations, inverse);
    for (std::int32_t j = 0; j < p; ++j) {
        rho(j, j) = 1.0;
        pValue(j, j) = tail == PartialTail::kNone ? kMissing : 0.0;
        for (std::int32_t i = 0; i < j; ++i) {
            const Remainder left = relations.empty() ? fromInverse(inverse, i, j)
                                                     : fromRelations(inverse, {relations.data(), p, p}, i, j);
            const PartialResult result = resultOf(left, nRows, p - 2, tail);
            rho(i, j) = rho(j, i) = result.rho;
            pValue(i, j) = pValue(j, i) = result.pValue;
        }
    }
}

}  // namespace numcore::association
