// Summary of every variable in every group.

#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

#include "descriptive/summary.hpp"
#include "frame/categories.hpp"
#include "numcore/descriptive.hpp"

namespace numcore {
namespace {

/// Rows sorted by group; group g has rows[start[g]] to rows[start[g + 1] - 1].
struct Grouping {
    std::vector<u16string> names;
    std::vector<std::int32_t> rows;
    std::vector<std::size_t> start;
};

Grouping groupRows(const frame::Categories& groups) {
    Grouping result;
    result.start.resize(groups.labels.size() + 1, 0);
    for (const std::int32_t group : groups.ofRow) {
        if (group >= 0) ++result.start[static_cast<std::size_t>(group) + 1];
    }
    std::partial_sum(result.start.begin(), result.start.end(), result.start.begin());
    result.rows.resize(result.start.back());
    std::vector<std::size_t> next = result.start;
    for (std::size_t row = 0; row < groups.ofRow.size(); ++row) {
        if (groups.ofRow[row] < 0) continue;
        result.rows[next[static_cast<std::size_t>(groups.ofRow[row])]++] = static_cast<std::int32_t>(row);
    }
    for (const std::u16string_view label : groups.labels) result.names.emplace_back(label);
    return result;
}

Grouping allRowsTogether(std::u16string_view name, std::int32_t nRows) {
    Grouping result;
    result.names.emplace_back(name);
    result.rows.resize(static_cast<std::size_t>(nRows));
    std::iota(result.rows.begin(), result.rows.end(), 0);
    result.start = {0, result.rows.size()};
    return result;
}

std::int32_t longestColumn(const cST_MVect<double>& table) {
    std::int32_t longest = 0;
    for (std::int32_t c = 0; c < table.columnCount(); ++c) longest = std::max(longest, table.length(c));
    return longest;
}

/// The cells of the stated rows; rows past the end of the source are left out.
void gather(std::span<const double> source, std::span<const std::int32_t> rows, std::vector<double>& out) {
    out.clear();
    for (const std::int32_t row : rows) {
        if (static_cast<std::size_t>(row) < source.size()) out.push_back(source[static_cast<std::size_t>(row)]);
    }
}

vmcore::Summary summarizeGroup(const cST_DataSet& data, std::int32_t variable,
                               std::span<const std::int32_t> rows, std::vector<double>& cells,
                               std::vector<double>& weights) {
    const auto column = std::as_const(*data.numeric1).cells(variable);
    const auto allWeights = data.observationWeights();
    gather(column, rows, cells);
    weights.clear();
    if (!allWeights.empty()) {
        // A row without a weight weighs nothing.
        for (const std::int32_t row : rows) {
            if (static_cast<std::size_t>(row) >= column.size()) continue;
            const auto i = static_cast<std::size_t>(row);
            weights.push_back(i < allWeights.size() ? allWeights[i] : 0.0);
        }
    }
    return vmcore::summarize(cells, weights);
}

}  // namespace

std::int32_t GetStatsAndRestructure_ST(cST_DataSet& data, std::int32_t groupColumn, std::int16_t byGroup,
                                       cST_DataSet& out, std::u16string_view allRows) {
    const bool grouped = isTrue(data.strings3Present);
    if (grouped && (groupColumn < 1 || groupColumn > data.strings3->columnCount())) return -1;
    const Grouping groups =
        grouped ? groupRows(frame::findCategories(std::as_const(*data.strings3).cells(groupColumn - 1)))
                : allRowsTogether(allRows, longestColumn(*data.numeric1));
    const auto nGroups = static_cast<std::int32_t>(groups.names.size());
    const std::int32_t nVariables = data.numeric1->columnCount();
    const std::int32_t nRows = detail::checkedSize(nGroups, nVariables);
    descriptive::shapeResult(out, nRows, {u"Variable", u"Group"}, descriptive::summaryColumnNames());

    std::vector<double> cells;
    std::vector<double> weights;
    for (std::int32_t v = 0; v < nVariables; ++v) {
        for (std::int32_t g = 0; g < nGroups; ++g) {
            const auto group = static_cast<std::size_t>(g);
            const std::span<const std::int32_t> rows(groups.rows.data() + groups.start[group],
                                                     groups.start[group + 1] - groups.start[group]);
            const auto statistics = descriptive::summaryRow(summarizeGroup(data, v, rows, cells, weights));
            const std::int32_t row = isTrue(byGroup) ? g * nVariables + v : v * nGroups + g;
            out.strings1->at(row, 0) = u16string(data.numeric1->label(v));
            out.strings1->at(row, 1) = groups.names[group];
            for (std::size_t c = 0; c < statistics.size(); ++c) {
                out.numeric1->at(row, static_cast<std::int32_t>(c)) = statistics[c];
            }
        }
    }
    return nRows;
}

}  // namespace numcore
