#include <algorithm>
#include <numeric>
#include <vector>

#include "frame/categories.hpp"
#include "frame/row_tables.hpp"

namespace numcore {
namespace {

/// Rows in the order of their groups, rows without a group last; stable.
std::vector<std::int32_t> orderByGroup(const std::vector<std::int32_t>& groupOfRow, std::size_t nGroups) {
    std::vector<std::int32_t> start(nGroups + 2, 0);
    const auto slot = [&](std::int32_t group) { return group < 0 ? nGroups : static_cast<std::size_t>(group); };
    for (const std::int32_t group : groupOfRow) ++start[slot(group) + 1];
    std::partial_sum(start.begin(), start.end(), start.begin());
    std::vector<std::int32_t> order(groupOfRow.size());
    for (std::size_t row = 0; row < groupOfRow.size(); ++row) {
        order[static_cast<std::size_t>(start[slot(groupOfRow[row])]++)] = static_cast<std::int32_t>(row);
    }
    return order;
}

/// Puts cell order[i] at i, for the cells that the array has.
template <class T>
void reorder(matrix<T>& cells, const std::vector<std::int32_t>& order) {
    if (cells.size() < static_cast<std::int32_t>(order.size())) return;
    std::vector<T> sorted;
    sorted.reserve(order.size());
    for (const std::int32_t row : order) sorted.push_back(std::move(cells[row]));
    for (std::size_t i = 0; i < order.size(); ++i) cells[static_cast<std::int32_t>(i)] = std::move(sorted[i]);
}

}  // namespace

std::int32_t SortSTDataSetByGroup_ST(cST_DataSet& data, std::int32_t groupColumn) {
    const cST_MVect<u16string>& table = *data.strings3;
    if (!isTrue(data.strings3Present) || groupColumn < 1 || groupColumn > table.columnCount()) return -1;
    const matrix<u16string>& cells = table.column(groupColumn - 1);
    const std::int32_t nRows = std::clamp(data.nRows, 0, cells.size());
    const frame::Categories groups = frame::findCategories(cells.span().first(static_cast<std::size_t>(nRows)));
    const std::vector<std::int32_t> order = orderByGroup(groups.ofRow, groups.labels.size());

    frame::forEachRowArray(data, [&](auto& column, std::int32_t length) {
        reorder(column, order);
        return length;
    });
    reorder(*data.rowMarks, order);
    for (std::size_t i = 0; i < order.size(); ++i) {
        const auto row = static_cast<std::int32_t>(i);
        (*data.groups)[row] = groups.ofRow[static_cast<std::size_t>(order[i])] + 1;
        (*data.order)[row] = order[i] + 1;
    }
    data.nGroups = static_cast<std::int32_t>(groups.labels.size());
    data.groupColumn = groupColumn;
    data.groupSorted = NUMCORE_TRUE;
    return data.nGroups;
}

}  // namespace numcore
