// Doors of the probability laws.

#include <algorithm>

#include "distributions/step_table.hpp"
#include "numcore/empirical.h"
#include "numcore/markers.hpp"

namespace {

std::span<const double> cellsOf(const double* cells, std::int32_t n) {
    return cells == nullptr || n < 1 ? std::span<const double>()
                                     : std::span(cells, static_cast<std::size_t>(n));
}

}  // namespace

void VB_BuildCDFEmpirical(const double* values, int32_t n, const double* weights, int16_t sort, double* table,
                          int32_t* nRows) {
    if (nRows == nullptr) return;
    const auto rows =
        numcore::distributions::stepRows(cellsOf(values, n), cellsOf(weights, n), numcore::isTrue(sort));
    *nRows = table == nullptr ? 0 : static_cast<std::int32_t>(rows.size());
    if (*nRows == 0) return;
    const std::size_t capacity = 2 * static_cast<std::size_t>(n);
    for (std::size_t i = 0; i < capacity; ++i) {
        const auto& row = rows[std::min(i, rows.size() - 1)];
        table[i] = row.value;
        table[capacity + i] = row.probability;
    }
}

double VB_InvCDFEmpirical(double p, const double* table, int32_t nRows) {
    return numcore::distributions::quantileOfSteps(p, numcore::distributions::stepColumns(table, nRows));
}

double Cpp_GetProbaVal(double x, const double* table, int32_t nRows) {
    return numcore::distributions::probabilityOfSteps(x, numcore::distributions::stepColumns(table, nRows));
}
