#include "correlation/polychoric_matrix.hpp"

#include <algorithm>

#include "correlation/association/ordinal_table.hpp"
#include "correlation/association/polychoric.hpp"
#include "numcore/special.h"
#include "suite/parallel.hpp"
#include "suite/vmcore.hpp"

namespace numcore::correlation {
namespace {

// Of the coefficient over its standard error, in the normal law.
double waldPValue(double rho, double standardError, std::int32_t alternative) {
    if (alternative == kNoPValue || standardError == kMissing || !(standardError > 0.0)) return kMissing;
    const double z = rho / standardError;
    if (alternative == kTwoSided) return std::min(2.0 * CDFNormalStd(-std::abs(z)), 1.0);
    return alternative == kLower ? CDFNormalStd(z) : CDFNormalStd(-z);
}

std::int64_t countPairs(std::span<const double> x, std::span<const double> y, const Rows& rows) {
    std::int64_t n = 0;
    forEachPair(x, y, rows, [&](std::size_t i) {
        const bool isGraded = association::isCategory(x[i]) && association::isCategory(y[i]);
        if (isGraded && rows.weight(i) > vmcore::kWeightEpsilon) ++n;
    });
    return n;
}

Coefficient polychoricPair(std::span<const double> x, std::span<const double> y, const Rows& rows,
                           const PolychoricOptions& options) {
    Coefficient found;
    found.nPairs = countPairs(x, y, rows);
    const association::OrdinalTable table = association::tabulate(x, y, rows.exclusion, rows.weights);
    const double start = association::pearsonOfCodes(table);
    const association::PolychoricFit fit =
        options.full ? association::fitFull(table, start) : association::fitTwoStep(table, start);
    found.value = fit.rho;
    found.standardError = fit.standardError;
    found.converged = fit.status != association::FitStatus::kNotConverged;
    if (fit.rho != kMissing) found.pValue = waldPValue(fit.rho, fit.standardError, options.alternative);
    return found;
}

// A variable with itself: 1 where it has at least two categories, certain.
Coefficient ofItself(std::span<const double> x, const Rows& rows, const PolychoricOptions& options) {
    Coefficient found;
    found.nPairs = countPairs(x, x, rows);
    const association::OrdinalTable table = association::tabulate(x, x, rows.exclusion, rows.weights);
    if (table.nRows < 2 || !association::isScale(static_cast<std::size_t>(table.nRows))) return found;
    found.value = 1.0;
    found.standardError = 0.0;
    if (options.alternative != kNoPValue) found.pValue = options.alternative == kLower ? 1.0 : 0.0;
    return found;
}

}  // namespace

void polychoricMatrix(const Table& first, const Table* second, const PolychoricOptions& options,
                      const Store& store) {
    const std::vector<std::span<const double>>& others = second == nullptr ? first.columns : second->columns;
    const std::size_t nOthers = others.size();
    parallelFor(static_cast<std::int64_t>(first.columns.size() * nOthers), true, [&](std::int64_t pair) {
        const std::size_t i = static_cast<std::size_t>(pair) / nOthers;
        const std::size_t j = static_cast<std::size_t>(pair) % nOthers;
        if (second == nullptr && j < i) return;
        const bool itself = second == nullptr && i == j;
        store(i, j,
              itself ? ofItself(first.columns[i], first.rows, options)
                     : polychoricPair(first.columns[i], others[j], first.rows, options));
    });
}

}  // namespace numcore::correlation
