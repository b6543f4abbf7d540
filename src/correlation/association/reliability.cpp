#include "correlation/association/reliability.hpp"

namespace numcore::association {
namespace {

constexpr double kDegenerateTotal = 1e-12;

}  // namespace

double cronbachAlpha(vmcore::ConstMatrixView items, ItemMatrix kind) {
    const double k = items.columns;
    double diagonal = 0.0;
    double above = 0.0;
    for (std::int32_t j = 0; j < items.columns; ++j) {
        for (std::int32_t i = 0; i <= j; ++i) {
            if (vmcore::IsMissingValue(items(i, j))) return kMissing;
            (i == j ? diagonal : above) += items(i, j);
        }
    }
    const double others = 2.0 * above;
    if (kind == ItemMatrix::kCorrelation) return (others / (k - 1.0)) / (others / k + 1.0);
    const double ratio = others / diagonal;
    // Kept: the total is compared by its ratio to the diagonal; fewer than two items divide 0 by 0.
    if (ratio + 1.0 < kDegenerateTotal) return kMissing;
    return k / (k - 1.0) * ratio / (ratio + 1.0);
}

}  // namespace numcore::association
