#include "correlation/table.hpp"

#include "suite/parallel.hpp"
#include "suite/vmcore.hpp"

namespace numcore::correlation {
namespace {

std::vector<std::size_t> rowsThatTakePart(const Table& table, std::size_t n, bool withWeightOnly) {
    std::vector<std::size_t> rows;
    rows.reserve(n);
    for (std::size_t i = 0; i < n; ++i) {
        const bool weighs = !withWeightOnly || table.rows.weight(i) > vmcore::kWeightEpsilon;
        if (!table.rows.isExcluded(i) && weighs) rows.push_back(i);
    }
    return rows;
}

std::vector<double> copyOf(std::span<const double> column, const std::vector<std::size_t>& rows) {
    std::vector<double> cells(rows.size());
    for (std::size_t k = 0; k < rows.size(); ++k) {
        cells[k] = rows[k] < column.size() ? column[rows[k]] : kMissing;
    }
    return cells;
}

}  // namespace

SelectedColumns::SelectedColumns(const Table& table, bool withWeightOnly)
    : columns_(table.columns.size()), copies_(table.columns.size()) {
    const std::size_t n = table.rows.bounded(table.nRows);
    const bool isPlain = table.rows.weights.empty() && table.rows.exclusion.empty() &&
                         std::all_of(table.columns.begin(), table.columns.end(),
                                     [&](std::span<const double> column) { return column.size() >= n; });
    if (isPlain) {
        nRows_ = n;
        for (std::size_t c = 0; c < columns_.size(); ++c) columns_[c] = table.columns[c].first(n);
        return;
    }
    const auto rows = rowsThatTakePart(table, n, withWeightOnly);
    nRows_ = rows.size();
    parallelFor(std::ssize(columns_), nRows_ * columns_.size() > kParallelFrom, [&](std::int64_t i) {
        const auto c = static_cast<std::size_t>(i);
        if (nRows_ == n && table.columns[c].size() >= n) {
            columns_[c] = table.columns[c].first(n);
        } else {
            copies_[c] = copyOf(table.columns[c], rows);
            columns_[c] = copies_[c];
        }
    });
    if (std::any_of(rows.begin(), rows.end(), [&](std::size_t i) { return table.rows.weight(i) != 1.0; })) {
        weightCopy_ = copyOf(table.rows.weights, rows);
        weights_ = weightCopy_;
    }
}

}  // namespace numcore::correlation
