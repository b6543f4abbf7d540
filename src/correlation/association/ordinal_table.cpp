#include "correlation/association/ordinal_table.hpp"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "numcore/special.h"
#include "suite/vmcore.hpp"

namespace numcore::association {

bool isCategory(double cell) {
    return !vmcore::IsMissingValue(cell) && !std::isnan(cell);
}

std::vector<double> categoriesOf(std::span<const double> x, const std::vector<bool>& use) {
    std::vector<double> found;
    for (std::size_t i = 0; i < x.size(); ++i) {
        if (!use[i]) continue;
        const auto place = std::lower_bound(found.begin(), found.end(), x[i]);
        if (place != found.end() && *place == x[i]) continue;
        found.insert(place, x[i]);
        if (!isScale(found.size())) break;
    }
    return found;
}

std::int32_t categoryOf(double value, std::span<const double> categories) {
    return static_cast<std::int32_t>(std::lower_bound(categories.begin(), categories.end(), value) -
                                     categories.begin());
}

OrdinalTable tabulate(std::span<const double> x, std::span<const double> y,
                      std::span<const std::int16_t> exclusion, std::span<const double> weights) {
    const std::size_t nCells = std::min(x.size(), y.size());
    const std::size_t n = weights.empty() ? nCells : std::min(nCells, weights.size());
    std::vector<bool> use(n);
    for (std::size_t i = 0; i < n; ++i) {
        use[i] = (i >= exclusion.size() || exclusion[i] == 0) && isCategory(x[i]) && isCategory(y[i]) &&
                 (weights.empty() || weights[i] > vmcore::kWeightEpsilon);
    }
    const auto rows = categoriesOf(x.first(n), use);
    const auto columns = categoriesOf(y.first(n), use);
    OrdinalTable table;
    table.nRows = static_cast<std::int32_t>(rows.size());
    table.nColumns = static_cast<std::int32_t>(columns.size());
    if (!isScale(rows.size()) || !isScale(columns.size())) return table;
    table.counts.assign(rows.size() * columns.size(), 0.0);
    for (std::size_t i = 0; i < n; ++i) {
        if (!use[i]) continue;
        const auto row = static_cast<std::size_t>(categoryOf(x[i], rows));
        const auto column = static_cast<std::size_t>(categoryOf(y[i], columns));
        const double weight = weights.empty() ? 1.0 : weights[i];
        table.counts[column * rows.size() + row] += weight;
        table.total += weight;
    }
    return table;
}

std::vector<double> rowTotals(const OrdinalTable& table) {
    std::vector<double> totals(static_cast<std::size_t>(table.nRows), 0.0);
    for (std::size_t cell = 0; cell < table.counts.size(); ++cell)
        totals[cell % totals.size()] += table.counts[cell];
    return totals;
}

std::vector<double> columnTotals(const OrdinalTable& table) {
    std::vector<double> totals(static_cast<std::size_t>(table.nColumns), 0.0);
    const auto nRows = static_cast<std::size_t>(table.nRows);
    for (std::size_t cell = 0; cell < table.counts.size(); ++cell) totals[cell / nRows] += table.counts[cell];
    return totals;
}

std::vector<double> thresholdsOf(std::span<const double> totals) {
    const double all = std::accumulate(totals.begin(), totals.end(), 0.0);
    std::vector<double> thresholds;
    double below = 0.0;
    for (std::size_t i = 0; i + 1 < totals.size(); ++i) {
        below += totals[i];
        thresholds.push_back(InvCDFNormalStd(below / all));
    }
    return thresholds;
}

double pearsonOfCodes(const OrdinalTable& table) {
    if (table.counts.empty()) return 0.0;
    double meanRow = 0.0;
    double meanColumn = 0.0;
    for (std::int32_t j = 0; j < table.nColumns; ++j) {
        for (std::int32_t i = 0; i < table.nRows; ++i) {
            meanRow += table.at(i, j) * i / table.total;
            meanColumn += table.at(i, j) * j / table.total;
        }
    }
    double squaresRow = 0.0;
    double squaresColumn = 0.0;
    double products = 0.0;
    for (std::int32_t j = 0; j < table.nColumns; ++j) {
        for (std::int32_t i = 0; i < table.nRows; ++i) {
            squaresRow += table.at(i, j) * (i - meanRow) * (i - meanRow);
            squaresColumn += table.at(i, j) * (j - meanColumn) * (j - meanColumn);
            products += table.at(i, j) * (i - meanRow) * (j - meanColumn);
        }
    }
    const double scale = squaresRow * squaresColumn;
    return scale > 0.0 ? products / std::sqrt(scale) : 0.0;
}

}  // namespace numcore::association
