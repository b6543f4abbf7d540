// Wide to long and back.

#include <algorithm>
#include <charconv>
#include <vector>

#include "frame/categories.hpp"
#include "numcore/dataset.hpp"

namespace numcore {
namespace {

enum Mode : std::int32_t { kWideToLong = 0, kLongToWide = 1 };

u16string rowName(const cST_DataSet& data, std::int32_t row) {
    if (isTrue(data.rowLabelsPresent) && row < data.rowLabels->size()) return (*data.rowLabels)[row];
    char digits[16];
    const char* const end = std::to_chars(std::begin(digits), std::end(digits), row + 1).ptr;
    return u16string(std::u16string(static_cast<const char*>(digits), end));
}

/// The result's tables: its own when it has no record, otherwise the caller's, whose shape is told.
template <class T>
void shape(cST_MVect<T>& table, const cST_DataSet& owner, std::int32_t rows, std::int32_t columns) {
    if (owner.record == nullptr) {
        table = cST_MVect<T>(rows, columns, missingCell<T>());
        return;
    }
    const auto room = static_cast<std::int32_t>(table.columns.size());
    table.setShape(rows, std::min(columns, room));
    for (std::int32_t c = 0; c < table.columnCount(); ++c)
        table.setLength(c, std::min(rows, table.column(c).size()));
}

template <class T>
void shapeVector(matrix<T>& cells, const cST_DataSet& owner, std::int32_t rows) {
    if (owner.record == nullptr) cells = matrix<T>(rows, 1, missingCell<T>());
}

std::int32_t wideToLong(cST_DataSet& source, cST_DataSet& out) {
    const cST_MVect<double>& wide = *source.numeric1;
    const std::int32_t nColumns = wide.columnCount();
    std::int32_t longest = 0;
    for (std::int32_t c = 0; c < nColumns; ++c) longest = std::max(longest, wide.column(c).size());
    const std::int32_t nRows = std::clamp(source.nRows, 0, longest);
    const std::int32_t nLong = detail::checkedSize(nRows, nColumns);
    const bool weighted = isTrue(source.weightsPresent);
    const bool grouped = isTrue(source.strings3Present);
    const std::int32_t nGroupColumns = grouped ? source.strings3->columnCount() : 0;

    shape(*out.strings1, out, nLong, 2);
    shape(*out.numeric1, out, nLong, 1);
    if (weighted) shapeVector(*out.weights, out, nLong);
    if (grouped) shape(*out.strings3, out, nLong, nGroupColumns);
    std::int32_t at = 0;
    for (std::int32_t row = 0; row < nRows; ++row) {
        for (std::int32_t c = 0; c < nColumns; ++c, ++at) {
            out.strings1->at(at, 0) = u16string(wide.label(c));
            out.strings1->at(at, 1) = rowName(source, row);
            out.numeric1->at(at, 0) = row < wide.column(c).size() ? wide.column(c)[row] : kMissing;
            if (weighted) (*out.weights)[at] = row < source.weights->size() ? (*source.weights)[row] : 0.0;
            for (std::int32_t g = 0; g < nGroupColumns; ++g) {
                out.strings3->at(at, g) = source.strings3->column(g)[row];
            }
        }
    }
    out.strings1Present = NUMCORE_TRUE;
    out.numeric1Present = NUMCORE_TRUE;
    if (weighted) out.weightsPresent = NUMCORE_TRUE;
    if (grouped) out.strings3Present = NUMCORE_TRUE;
    out.nRows = nLong;
    return nLong;
}

std::int32_t longToWide(cST_DataSet& source, cST_DataSet& out) {
    const cST_MVect<u16string>& keys = *source.strings1;
    if (keys.columnCount() < 2 || source.numeric1->columnCount() < 1) return -1;
    const matrix<double>& values = source.numeric1->column(0);
    const frame::Categories columns = frame::numberTexts(keys.column(0).span());
    const frame::Categories rows = frame::numberTexts(keys.column(1).span());
    const auto nRows = static_cast<std::int32_t>(rows.labels.size());
    const auto nColumns = static_cast<std::int32_t>(columns.labels.size());

    shape(*out.numeric1, out, nRows, nColumns);
    shapeVector(*out.rowLabels, out, nRows);
    for (std::int32_t c = 0; c < nColumns; ++c) {
        out.numeric1->labels[c] = u16string(columns.labels[static_cast<std::size_t>(c)]);
        for (std::int32_t r = 0; r < nRows; ++r) out.numeric1->at(r, c) = kMissing;
    }
    for (std::int32_t r = 0; r < nRows; ++r)
        (*out.rowLabels)[r] = u16string(rows.labels[static_cast<std::size_t>(r)]);
    const std::int32_t nLong =
        std::min({std::max(source.nRows, 0), values.size(), keys.column(0).size(), keys.column(1).size()});
    for (std::int32_t i = 0; i < nLong; ++i) {
        const std::int32_t r = rows.ofRow[static_cast<std::size_t>(i)];
        const std::int32_t c = columns.ofRow[static_cast<std::size_t>(i)];
        if (r >= 0 && c >= 0) out.numeric1->at(r, c) = values[i];
    }
    out.numeric1Present = NUMCORE_TRUE;
    out.rowLabelsPresent = NUMCORE_TRUE;
    out.nRows = nRows;
    return nRows;
}

}  // namespace

std::int32_t ReStructureData_ST(cST_DataSet& source, cST_DataSet& destination, std::int32_t mode) {
    if (!isTrue(source.numeric1Present)) return -1;
    if (mode == kWideToLong) return wideToLong(source, destination);
    if (mode == kLongToWide && isTrue(source.strings1Present)) return longToWide(source, destination);
    return -1;
}

}  // namespace numcore
