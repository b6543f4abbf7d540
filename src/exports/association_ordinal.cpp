// Doors of the polychoric correlation and the biserial family.

#include <algorithm>
#include <cmath>

#include "correlation/association/polychoric.hpp"
#include "exports/association_input.hpp"
#include "numcore/association.h"
#include "suite/parallel.hpp"

namespace inside = numcore::association;

using inside::cellsAt;
using numcore::kMissing;

namespace {

inside::PolychoricFit fitTable(const inside::OrdinalTable& table, std::int32_t method, double start) {
    const double first = start > -1.0 && start < 1.0 ? start : inside::pearsonOfCodes(table);
    return method == NUMCORE_POLYCHORIC_FULL ? inside::fitFull(table, first) : inside::fitTwoStep(table, first);
}

ST_PolychoricFit recordOf(const inside::OrdinalTable& table, const inside::PolychoricFit& fit) {
    const inside::NormalityTest test = inside::testNormality(table, fit);
    return {fit.rho,
            fit.standardError,
            fit.logLikelihood,
            test.statistic,
            test.pValue,
            test.degreesOfFreedom,
            table.nRows,
            table.nColumns,
            fit.nSteps,
            static_cast<std::int32_t>(fit.status),
            0};
}

double polychoric(const double* x, std::int32_t n, const double* y, const std::int16_t* exclusion,
                  const double* weights, std::int32_t method, double start, ST_PolychoricFit* out) {
    const auto table =
        x == nullptr || y == nullptr
            ? inside::OrdinalTable()
            : inside::tabulate(cellsAt(x, n), cellsAt(y, n), cellsAt(exclusion, n), cellsAt(weights, n));
    const inside::PolychoricFit fit = fitTable(table, method, start);
    if (out != nullptr) *out = recordOf(table, fit);
    return fit.rho;
}

bool isCategoryCount(std::int32_t n) {
    return n >= 1 && inside::isScale(static_cast<std::size_t>(n));
}

// The law of the caller's thresholds; false when they are none.
bool lawOf(const double* rowThresholds, std::int32_t nRows, const double* columnThresholds,
           std::int32_t nColumns, double rho, inside::LatentLaw& law) {
    if (!isCategoryCount(nRows) || !isCategoryCount(nColumns)) return false;
    if ((nRows > 1 && rowThresholds == nullptr) || (nColumns > 1 && columnThresholds == nullptr)) return false;
    const auto rows = cellsAt(rowThresholds, nRows - 1);
    const auto columns = cellsAt(columnThresholds, nColumns - 1);
    law = {rho, {rows.begin(), rows.end()}, {columns.begin(), columns.end()}};
    return inside::isLaw(law);
}

// The table of the caller's counts; empty when a count is none.
inside::OrdinalTable tableOf(const double* counts, std::int32_t nRows, std::int32_t nColumns) {
    inside::OrdinalTable table;
    const auto cells = cellsAt(counts, nRows * nColumns);
    if (!std::all_of(cells.begin(), cells.end(), [](double c) { return c >= 0.0 && std::isfinite(c); }))
        return table;
    table.nRows = nRows;
    table.nColumns = nColumns;
    table.counts.assign(cells.begin(), cells.end());
    for (const double count : cells) table.total += count;
    return table;
}

using Estimate = inside::Association (*)(const inside::GradedSample&, inside::Side);

double biserial(Estimate estimate, const double* x, std::int32_t n, const double* group, const double* weights,
                std::int32_t alternative, ST_BiserialFit* out) {
    inside::GradedSample sample;
    if (x != nullptr && group != nullptr)
        sample = inside::gradedSample(cellsAt(x, n), cellsAt(group, n), cellsAt(weights, n));
    const inside::Association result = estimate(sample, inside::sideOfCode(alternative));
    if (out != nullptr) {
        *out = {result.coefficient, result.standardError,
                result.statistic,   result.pValue,
                result.upperWeight, result.weight,
                result.nCategories, static_cast<std::int32_t>(result.status)};
    }
    return result.coefficient;
}

}  // namespace

double V_PolychoricRho(const double* x, int32_t n, const double* y, const double* weights, int32_t method,
                       double start, ST_PolychoricFit* fit) {
    return polychoric(x, n, y, nullptr, weights, method, start, fit);
}

double V_PolychoricRhoPearsonInitOnCode(const double* x, int32_t n, const double* y, const int16_t* exclusion,
                                        const double* weights, int32_t method, ST_PolychoricFit* fit) {
    return polychoric(x, n, y, exclusion, weights, method, kMissing, fit);
}

int32_t Cpp_M_Polychoric(const double* data, int32_t n, int32_t p, const double* weights, int32_t method,
                         double* rho, double* standardErrors) {
    if (data == nullptr || rho == nullptr || n < 1 || p < 1) return -1;
    const std::int64_t columns = p;
    const auto put = [&](std::int64_t i, std::int64_t j, double coefficient, double error) {
        rho[j * columns + i] = rho[i * columns + j] = coefficient;
        if (standardErrors != nullptr)
            standardErrors[j * columns + i] = standardErrors[i * columns + j] = error;
    };
    numcore::parallelFor(columns * columns, p > 2, [&](std::int64_t cell) {
        const std::int64_t i = cell % columns;
        const std::int64_t j = cell / columns;
        if (i == j) put(i, i, 1.0, 0.0);
        if (i >= j) return;
        ST_PolychoricFit fit;
        const double coefficient =
            polychoric(data + i * n, n, data + j * n, nullptr, weights, method, kMissing, &fit);
        put(i, j, coefficient, fit.standardError);
    });
    return 0;
}

int32_t PolychoricPij(const double* rowThresholds, int32_t nRows, const double* columnThresholds,
                      int32_t nColumns, double rho, double* pij) {
    inside::LatentLaw law;
    if (pij == nullptr || !lawOf(rowThresholds, nRows, columnThresholds, nColumns, rho, law)) return -1;
    const auto cells = inside::cellsOf(law).probability;
    std::copy(cells.begin(), cells.end(), pij);
    return 0;
}

double PolychoricLogLike(const double* counts, int32_t nRows, int32_t nColumns, const double* rowThresholds,
                         const double* columnThresholds, double rho) {
    inside::LatentLaw law;
    if (counts == nullptr || !lawOf(rowThresholds, nRows, columnThresholds, nColumns, rho, law))
        return kMissing;
    const auto table = tableOf(counts, nRows, nColumns);
    if (table.counts.empty()) return kMissing;
    const double sum = inside::logLikelihood(table.counts, inside::cellsOf(law).probability);
    return std::isfinite(sum) ? sum : kMissing;
}

int32_t PolychoricDerivatives(const double* counts, int32_t nRows, int32_t nColumns,
                              const double* rowThresholds, const double* columnThresholds, double rho,
                              double* gradient, double* information) {
    inside::LatentLaw law;
    if (counts == nullptr || gradient == nullptr) return -1;
    if (!lawOf(rowThresholds, nRows, columnThresholds, nColumns, rho, law) || std::abs(rho) == 1.0) return -1;
    const auto table = tableOf(counts, nRows, nColumns);
    if (table.counts.empty()) return -1;
    const inside::Derivatives sums = inside::derivatives(table, law);
    std::copy(sums.gradient.begin(), sums.gradient.end(), gradient);
    if (information == nullptr) return 0;
    std::transform(sums.information.begin(), sums.information.end(), information,
                   [&](double perWeight) { return table.total * perWeight; });
    return 0;
}

double BiserialCorrelation(const double* x, int32_t n, const double* group, const double* weights,
                           int32_t alternative, ST_BiserialFit* fit) {
    return biserial(inside::biserial, x, n, group, weights, alternative, fit);
}
double BiserialCorrelation2(const double* x, int32_t n, const double* group, const double* weights,
                            int32_t alternative, ST_BiserialFit* fit) {
    return biserial(inside::pointBiserial, x, n, group, weights, alternative, fit);
}
double BiserialCorrelation3(const double* x, int32_t n, const double* group, const double* weights,
                            int32_t alternative, ST_BiserialFit* fit) {
    return biserial(inside::rankBiserial, x, n, group, weights, alternative, fit);
}
double BiserialCorrelation4(const double* x, int32_t n, const double* group, const double* weights,
                            int32_t alternative, ST_BiserialFit* fit) {
    return biserial(inside::polyserial, x, n, group, weights, alternative, fit);
}

double GetRBiserial(double upperMean, double lowerMean, double deviation, double upperShare) {
    return inside::biserialOf(upperMean, lowerMean, deviation, upperShare);
}
double GetRBiserial2(double upperMean, double lowerMean, double deviation, double upperShare) {
    return inside::pointBiserialOf(upperMean, lowerMean, deviation, upperShare);
}
double GetRBiserial3(double upperMeanRank, double lowerMeanRank, double n) {
    return inside::rankBiserialOf(upperMeanRank, lowerMeanRank, n);
}
double GetRBiserial4(double pearson, const double* categoryWeights, int32_t nCategories) {
    if (!isCategoryCount(nCategories)) return kMissing;
    return inside::polyserialOf(pearson, cellsAt(categoryWeights, nCategories));
}

double Cpp_BiserialCorrelation(const double* x, int32_t n, const double* group, const double* weights,
                               int32_t alternative, ST_BiserialFit* fit) {
    return BiserialCorrelation(x, n, group, weights, alternative, fit);
}
double Cpp_BiserialCorrelation2(const double* x, int32_t n, const double* group, const double* weights,
                                int32_t alternative, ST_BiserialFit* fit) {
    return BiserialCorrelation2(x, n, group, weights, alternative, fit);
}
double Cpp_BiserialCorrelation3(const double* x, int32_t n, const double* group, const double* weights,
                                int32_t alternative, ST_BiserialFit* fit) {
    return BiserialCorrelation3(x, n, group, weights, alternative, fit);
}
double Cpp_BiserialCorrelation4(const double* x, int32_t n, const double* group, const double* weights,
                                int32_t alternative, ST_BiserialFit* fit) {
    return BiserialCorrelation4(x, n, group, weights, alternative, fit);
}
double Cpp_GetRBiserial(double upperMean, double lowerMean, double deviation, double upperShare) {
    return GetRBiserial(upperMean, lowerMean, deviation, upperShare);
}
double Cpp_GetRBiserial2(double upperMean, double lowerMean, double deviation, double upperShare) {
    return GetRBiserial2(upperMean, lowerMean, deviation, upperShare);
}
double Cpp_GetRBiserial3(double upperMeanRank, double lowerMeanRank, double n) {
    return GetRBiserial3(upperMeanRank, lowerMeanRank, n);
}
double Cpp_GetRBiserial4(double pearson, const double* categoryWeights, int32_t nCategories) {
    return GetRBiserial4(pearson, categoryWeights, nCategories);
}
