#include "caller/table.hpp"

#include <algorithm>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace numcore::caller {

namespace {

template <class Record>
Array emptyColumn(std::size_t nRows) {
    if constexpr (std::is_same_v<Record, ST_MVectDbl>) return Array::doubles(nRows);
    if constexpr (std::is_same_v<Record, ST_MVectLng>) return Array::ints(nRows);
    if constexpr (std::is_same_v<Record, ST_MVectStr>) return Array::texts(nRows);
}

template <class Record>
std::vector<Array> equalColumns(std::size_t nColumns, std::size_t nRows) {
    std::vector<Array> out;
    out.reserve(nColumns);
    for (std::size_t j = 0; j < nColumns; ++j) out.push_back(emptyColumn<Record>(nRows));
    return out;
}

}  // namespace

template <class Record>
Table<Record>::Table(std::size_t nColumns, std::size_t nRows) : Table(equalColumns<Record>(nColumns, nRows)) {
    record_.nRows = record_.nCells = static_cast<std::int32_t>(nRows);
}

template <class Record>
Table<Record>::Table(std::vector<Array> columns)
    : cells_(std::move(columns)),
      columns_(Array::columns(cells_.size())),
      labels_(Array::texts(cells_.size())),
      lengths_(Array::ints(cells_.size())) {
    std::size_t nRows = 0;
    for (std::size_t j = 0; j < cells_.size(); ++j) {
        columns_.asColumns()[j].cells = cells_[j].get();
        lengths_.asInts()[j] = static_cast<std::int32_t>(cells_[j].size());
        nRows = std::max(nRows, cells_[j].size());
    }
    record_.nColumns = static_cast<std::int32_t>(cells_.size());
    record_.nRows = record_.nCells = static_cast<std::int32_t>(nRows);
    record_.attributes = lengths_.get();
    record_.columns = columns_.get();
    record_.labels = labels_.get();
}

template <class Record>
void Table<Record>::setLabels(const std::vector<std::u16string>& labels) {
    for (std::size_t j = 0; j < labels.size(); ++j) setLabel(j, labels[j]);
}

template <class Record>
void Table<Record>::setLength(std::size_t j, std::size_t n) {
    if (n > cells_.at(j).size()) throw std::out_of_range("numcore::caller::Table");
    lengths_.asInts()[j] = static_cast<std::int32_t>(n);
}

template class Table<ST_MVectDbl>;
template class Table<ST_MVectLng>;
template class Table<ST_MVectStr>;

NumericTable numericTable(const std::vector<std::pair<std::u16string, std::vector<double>>>& columns) {
    std::vector<Array> cells;
    cells.reserve(columns.size());
    for (const auto& column : columns) cells.push_back(Array::doubles(column.second));
    NumericTable out(std::move(cells));
    for (std::size_t j = 0; j < columns.size(); ++j) out.setLabel(j, columns[j].first);
    return out;
}

TextTable textTable(const std::vector<std::pair<std::u16string, std::vector<std::u16string>>>& columns) {
    std::vector<Array> cells;
    for (const auto& column : columns) {
        const std::vector<std::u16string_view> views(column.second.begin(), column.second.end());
        cells.push_back(Array::texts(views));
    }
    TextTable out(std::move(cells));
    for (std::size_t j = 0; j < columns.size(); ++j) out.setLabel(j, columns[j].first);
    return out;
}

}  // namespace numcore::caller
