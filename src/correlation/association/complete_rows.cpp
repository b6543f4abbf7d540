#include "correlation/association/complete_rows.hpp"

#include <algorithm>
#include <cmath>

#include "correlation/pearson_matrix.hpp"
#include "numcore/markers.hpp"

namespace numcore::association {
namespace {

correlation::PearsonOptions optionsOf(bool correlation) {
    correlation::PearsonOptions options;
    options.correlation = correlation;
    options.withPValue = false;
    return options;
}

}  // namespace

RowSelection completeRows(std::span<const std::span<const double>> columns) {
    RowSelection rows;
    if (columns.empty()) return rows;
    rows.exclusion.assign(columns.front().size(), 0);
    for (const auto column : columns) {
        for (std::size_t i = 0; i < column.size(); ++i) {
            if (vmcore::IsMissingValue(column[i])) rows.exclusion[i] = NUMCORE_TRUE;
        }
    }
    rows.nUsed = static_cast<std::int32_t>(std::count(rows.exclusion.begin(), rows.exclusion.end(), 0));
    return rows;
}

double pairValue(std::span<const double> x, std::span<const double> y, const RowSelection& rows,
                 std::span<const double> weights, bool correlation) {
    return correlation::pearsonPair(x, y, {weights, rows.exclusion}, optionsOf(correlation)).value;
}

bool pairMatrix(std::span<const std::span<const double>> columns, const RowSelection& rows,
                std::span<const double> weights, bool correlation, vmcore::MatrixView out) {
    const numcore::correlation::Table table{
        {columns.begin(), columns.end()}, rows.exclusion.size(), {weights, rows.exclusion}};
    correlation::pearsonMatrix(table, nullptr, optionsOf(correlation),
                               [&](std::size_t i, std::size_t j, const correlation::Coefficient& found) {
                                   const auto row = static_cast<std::int32_t>(i);
                                   const auto column = static_cast<std::int32_t>(j);
                                   out(row, column) = out(column, row) = found.value;
                               });
    return std::all_of(out.data, out.data + std::int64_t{out.columns} * out.columns,
                       [](double cell) { return !vmcore::IsMissingValue(cell) && std::isfinite(cell); });
}

}  // namespace numcore::association
