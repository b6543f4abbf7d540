#include "correlation/analysis_tables.hpp"

#include <algorithm>
#include <cmath>

#include "numcore/correlation.h"
#include "numcore/special.h"

namespace numcore::correlation {
namespace {

// Whether the host (or the caller inside the library) has the table.
template <class T>
bool exists(const cST_MVect<T>& table) {
    return table.columnCount() > 0;
}

bool isCovariance(const COR_Param& param) {
    return param.coefficient == NUMCORE_COR_FAMILY_PEARSON && isTrue(param.covariance);
}

// Symmetric in Fisher's transform, from the standard error of the coefficient.
void limitsFromError(const Coefficient& found, double alpha, double& lower, double& upper) {
    lower = upper = kMissing;
    if (found.standardError == kMissing || !(std::abs(found.value) < 1.0)) return;
    const double h = -InvCDFNormalStd(0.5 * alpha) * found.standardError / (1.0 - found.value * found.value);
    const double z = std::atanh(found.value);
    lower = std::tanh(z - h);
    upper = std::tanh(z + h);
}

}  // namespace

ResultTables::ResultTables(const COR_Param& param, const cST_MVect<double>& rows,
                           const cST_MVect<double>& columns, cCOR_Results& results)
    : param_(param),
      rows_(rows),
      columns_(columns),
      results_(results),
      square_(!isTrue(param.rectangular)),
      withPValues_(isTrue(param.pValues)),
      withSquared_(isTrue(param.squared) && !isCovariance(param)),
      withLimits_(isTrue(param.intervals) && !isCovariance(param)) {
    shape(results.coefficients, true, kMissing);
    shape(results.pValues, withPValues_, kMissing);
    shape(results.significant, withPValues_, std::int32_t{0});
    shape(results.squared, withSquared_, kMissing);
    shape(results.lower, withLimits_, kMissing);
    shape(results.upper, withLimits_, kMissing);
    shape(results.nPairs, true, std::int32_t{0});
    shape(results.colours, withPValues_, std::int32_t{-1});
}

template <class T>
void ResultTables::shape(cST_MVect<T>& table, bool wanted, const T& nothing) const {
    const std::int32_t nRows = rows_.columnCount();
    const std::int32_t nColumns = columns_.columnCount();
    if (!wanted) return;
    if (results_.record == nullptr) {
        table = cST_MVect<T>(nRows, nColumns, nothing);
        table.labels = matrix<u16string>(nColumns, 1, u16string());
    }
    if (!exists(table)) return;
    table.setShape(nRows, std::min(nColumns, table.columnCount()));
    for (std::int32_t c = 0; c < table.columnCount(); ++c) {
        table.setLength(c, nRows);
        if (c < table.labels.size()) table.labels[c] = u16string(columns_.label(c));
    }
}

template <class T>
void ResultTables::put(cST_MVect<T>& table, std::size_t i, std::size_t j, T value) const {
    const auto set = [&](std::size_t row, std::size_t column) {
        const auto r = static_cast<std::int32_t>(row);
        const auto c = static_cast<std::int32_t>(column);
        if (c < table.columnCount() && r < table.column(c).size()) table.column(c)[r] = value;
    };
    set(i, j);
    if (square_ && i != j) set(j, i);
}

void ResultTables::putLimits(std::size_t i, std::size_t j, const Coefficient& found) const {
    double lower = kMissing;
    double upper = kMissing;
    if (param_.coefficient == NUMCORE_COR_FAMILY_POLYCHORIC) {
        limitsFromError(found, param_.alpha, lower, upper);
    } else if (found.value != kMissing) {
        COR_ComputeCI_ST(found.value, static_cast<std::int32_t>(found.nPairs), param_.alpha, param_.coefficient,
                         &lower, &upper);
    }
    put(results_.lower, i, j, lower);
    put(results_.upper, i, j, upper);
}

void ResultTables::store(std::size_t i, std::size_t j, const Coefficient& found) {
    const bool isComputed = found.value != kMissing;
    put(results_.coefficients, i, j, found.value);
    put(results_.nPairs, i, j, static_cast<std::int32_t>(found.nPairs));
    if (withPValues_) {
        const bool hasPValue = found.pValue != kMissing;
        put(results_.pValues, i, j, found.pValue);
        put(results_.significant, i, j, std::int32_t{hasPValue && found.pValue < param_.alpha});
        const bool exactWanted = param_.coefficient == NUMCORE_COR_FAMILY_KENDALL && isTrue(param_.exact);
        if (exactWanted && hasPValue && !found.exact && !(square_ && i == j)) ++nNotExact_;
    }
    if (withSquared_) put(results_.squared, i, j, isComputed ? found.value * found.value : kMissing);
    if (withLimits_) putLimits(i, j, found);
    if (!isComputed) ++nNotComputed_;
    if (!found.converged) ++nNotConverged_;
}

void ResultTables::finish() {
    const cCorr_Settings settings(param_);
    if (withPValues_ && exists(results_.colours))
        settings.SetColors(results_.coefficients, results_.significant, square_, results_.colours);
    settings.FillTbF(results_.formats, rows_.columnCount(), columns_.columnCount());
    results_.nNotComputed = nNotComputed_;
    results_.nNotExact = nNotExact_;
    results_.nNotConverged = nNotConverged_;
}

}  // namespace numcore::correlation
