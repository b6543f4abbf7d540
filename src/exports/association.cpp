// Doors of the partial correlation and of Cronbach's alpha.

#include "numcore/association.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "correlation/association/complete_rows.hpp"
#include "correlation/association/partial.hpp"
#include "correlation/association/reliability.hpp"
#include "exports/association_input.hpp"
#include "numcore/containers.hpp"

namespace inside = numcore::association;

using inside::cellsAt;
using inside::PartialTail;
using numcore::kMissing;
using numcore::matrix;

namespace {

using Columns = std::vector<std::span<const double>>;

// A caller's table: its columns and weights; without columns when it cannot be read.
struct Table {
    Columns columns;
    std::span<const double> weights;
    std::vector<double> own;  // cells that were rearranged
};

Columns columnsOf(const double* data, std::int32_t n, std::int32_t p) {
    Columns columns;
    for (std::int64_t j = 0; data != nullptr && n > 0 && j < p; ++j)
        columns.push_back(cellsAt(data + j * n, n));
    return columns;
}

// The table of automation arrays, with a row a variable when transposed.
Table tableOf(SAFEARRAY* data, SAFEARRAY* weights, bool transposed) {
    const matrix<double> cells(data);
    const matrix<double> weightCells(weights);
    Table table;
    const std::int32_t n = transposed ? cells.columns() : cells.rows();
    const std::int32_t p = transposed ? cells.rows() : cells.columns();
    if (cells.size() == 0 || (weights != nullptr && weightCells.size() != n)) return table;
    table.weights = {weightCells.data(), weights == nullptr ? 0 : static_cast<std::size_t>(n)};
    if (transposed) {
        for (std::int32_t j = 0; j < p; ++j) {
            for (std::int32_t i = 0; i < n; ++i) table.own.push_back(cells.at(j, i));
        }
    }
    table.columns = columnsOf(transposed ? table.own.data() : cells.data(), n, p);
    return table;
}

PartialTail tailOf(std::int32_t code) {
    switch (code) {
        case NUMCORE_PARTIAL_LOWER:
            return PartialTail::kLower;
        case NUMCORE_PARTIAL_UPPER:
            return PartialTail::kUpper;
        case NUMCORE_PARTIAL_NONE:
            return PartialTail::kNone;
        case NUMCORE_PARTIAL_AS_FIRST_ORDER:
            return PartialTail::kLowerByRows;
        default:
            return PartialTail::kTwoSided;
    }
}

struct PartialMatrices {
    std::int32_t status = -1;
    std::vector<double> rho;
    std::vector<double> pValue;
};

PartialMatrices partialOf(const Columns& columns, std::span<const double> weights, std::int32_t tail) {
    PartialMatrices found;
    if (columns.empty()) return found;
    const auto p = static_cast<std::int32_t>(columns.size());
    const inside::RowSelection rows = inside::completeRows(columns);
    std::vector<double> correlations(columns.size() * columns.size());
    found.rho.assign(correlations.size(), kMissing);
    found.pValue.assign(correlations.size(), kMissing);
    found.status = inside::pairMatrix(columns, rows, weights, true, {correlations.data(), p, p}) ? 0 : -2;
    if (found.status != 0) return found;
    inside::partialGivenOthers({correlations.data(), p, p}, rows.nUsed, tailOf(tail), {found.rho.data(), p, p},
                               {found.pValue.data(), p, p});
    return found;
}

std::int32_t partialOfArrays(SAFEARRAY* data, SAFEARRAY* weights, std::int32_t tail, SAFEARRAY* rho,
                             SAFEARRAY* pValue, bool transposed) {
    const Table table = tableOf(data, weights, transposed);
    matrix<double> rhoOut(rho);
    matrix<double> pValueOut(pValue);
    if (table.columns.empty() || rhoOut.size() == 0) return -1;
    const PartialMatrices found = partialOf(table.columns, table.weights, tail);
    const auto p = static_cast<std::int32_t>(table.columns.size());
    for (std::int32_t j = 0; j < p; ++j) {
        for (std::int32_t i = 0; i < p; ++i) {
            const std::size_t cell =
                static_cast<std::size_t>(j) * table.columns.size() + static_cast<std::size_t>(i);
            rhoOut.at(i, j) = found.rho[cell];
            pValueOut.at(i, j) = found.pValue[cell];
        }
    }
    return found.status;
}

inside::ItemMatrix kindOf(std::int32_t kind) {
    return kind == NUMCORE_ITEMS_CORRELATION ? inside::ItemMatrix::kCorrelation
                                             : inside::ItemMatrix::kCovariance;
}

double finiteOrMissing(double value) {
    return std::isfinite(value) ? value : kMissing;
}

double alphaOf(const Columns& columns, std::span<const double> weights, std::int32_t kind) {
    if (columns.empty()) return kMissing;
    const auto k = static_cast<std::int32_t>(columns.size());
    std::vector<double> items(columns.size() * columns.size());
    const bool correlation = kindOf(kind) == inside::ItemMatrix::kCorrelation;
    if (!inside::pairMatrix(columns, inside::completeRows(columns), weights, correlation, {items.data(), k, k}))
        return kMissing;
    return finiteOrMissing(CronbachAlpha(items.data(), k, kind));
}

}  // namespace

double V_PartialCorrelation(const double* x, int32_t n, const double* y, const double* z, const double* weights,
                            double* pValue) {
    inside::PartialResult result;
    if (x != nullptr && y != nullptr && z != nullptr && n >= 1) {
        const auto first = cellsAt(x, n);
        const auto second = cellsAt(y, n);
        const auto control = cellsAt(z, n);
        const auto w = cellsAt(weights, n);
        const inside::RowSelection rows = inside::completeRows(std::vector{first, second, control});
        const auto rho = [&](auto a, auto b) { return inside::pairValue(a, b, rows, w, true); };
        // Kept: the degrees of freedom count rows, whatever their weight.
        result =
            inside::partialGivenOne(rho(first, second), rho(second, control), rho(first, control), rows.nUsed);
    }
    if (pValue != nullptr) *pValue = finiteOrMissing(result.pValue);
    return finiteOrMissing(result.rho);
}

double Cpp_V_PartialCorrelation(const double* x, int32_t n, const double* y, const double* z,
                                const double* weights, double* pValue) {
    return V_PartialCorrelation(x, n, y, z, weights, pValue);
}

int32_t M_PartialCorrelation(const double* data, int32_t n, int32_t p, const double* weights, int32_t tail,
                             double* rho, double* pValue) {
    if (data == nullptr || rho == nullptr || n < 1 || p < 1) return -1;
    const PartialMatrices found = partialOf(columnsOf(data, n, p), cellsAt(weights, n), tail);
    std::copy(found.rho.begin(), found.rho.end(), rho);
    if (pValue != nullptr) std::copy(found.pValue.begin(), found.pValue.end(), pValue);
    return found.status;
}

int32_t Cpp_M_PartialCorrelation(const double* data, int32_t n, int32_t p, const double* weights, int32_t tail,
                                 double* rho, double* pValue) {
    return M_PartialCorrelation(data, n, p, weights, tail, rho, pValue);
}

int32_t M_PartialCorrelationSPV(SAFEARRAY* data, SAFEARRAY* weights, int32_t tail, SAFEARRAY* rho,
                                SAFEARRAY* pValue) {
    return partialOfArrays(data, weights, tail, rho, pValue, false);
}

int32_t M_PartialCorrelationSPV_T(SAFEARRAY* data, SAFEARRAY* weights, int32_t tail, SAFEARRAY* rho,
                                  SAFEARRAY* pValue) {
    return partialOfArrays(data, weights, tail, rho, pValue, true);
}

double CronbachAlpha(const double* items, int32_t k, int32_t kind) {
    if (items == nullptr && k > 0) return kMissing;
    return inside::cronbachAlpha({items, k, k}, kindOf(kind));
}

double VB_CronbachAlpha(const double* items, int32_t k, int32_t kind) {
    return CronbachAlpha(items, k, kind);
}

double GetCronbachAlpha(const double* data, int32_t n, int32_t k, const double* weights, int32_t kind) {
    return alphaOf(columnsOf(data, n, k), cellsAt(weights, n), kind);
}

double VB_GetCronbachAlpha(const double* data, int32_t n, int32_t k, const double* weights, int32_t kind) {
    return GetCronbachAlpha(data, n, k, weights, kind);
}

double CronbachAlphaSPV_T(SAFEARRAY* data, SAFEARRAY* weights, int32_t kind) {
    const Table table = tableOf(data, weights, true);
    return alphaOf(table.columns, table.weights, kind);
}

double Cpp_CronbachAlphaSPV_T(SAFEARRAY* data, SAFEARRAY* weights, int32_t kind) {
    return CronbachAlphaSPV_T(data, weights, kind);
}
