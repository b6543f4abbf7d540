// Copying, cutting out and dropping rows of a whole data set.

#include <algorithm>
#include <vector>

#include "frame/row_tables.hpp"

namespace numcore {
namespace {

constexpr std::int16_t kTrue = NUMCORE_TRUE;

/// Rows to copy: a block of consecutive ones or a list; from 0. A negative row gives a missing cell.
struct RowPick {
    std::int32_t first = 0;
    std::int32_t count = 0;
    const std::vector<std::int32_t>* list = nullptr;

    std::int32_t operator[](std::int32_t i) const {
        return list == nullptr ? first + i : (*list)[static_cast<std::size_t>(i)];
    }
};

/// Copies the picked cells to the top of the destination, as far as both reach.
template <class T>
void copyCells(const matrix<T>& source, matrix<T>& destination, const RowPick& rows, const T& absent) {
    const std::int32_t count = std::min(rows.count, destination.size());
    for (std::int32_t i = 0; i < count; ++i) {
        const std::int32_t row = rows[i];
        if (row >= 0 && row < source.size()) {
            destination[i] = source[row];
        } else if (rows.list != nullptr) {
            destination[i] = absent;
        }
    }
}

template <class T>
void giveStorage(matrix<T>& cells, const cST_DataSet& owner, std::int32_t rows, const T& init) {
    if (owner.record == nullptr && cells.size() < rows) cells = matrix<T>(rows, 1, init);
}

/// A destination without a record gets a table of the needed shape.
template <class T>
void giveStorage(cST_MVect<T>& table, const cST_DataSet& owner, std::int32_t rows, std::int32_t columns) {
    if (owner.record != nullptr || table.record != nullptr || table.columnCount() > 0) return;
    table = cST_MVect<T>(rows, columns, missingCell<T>());
}

template <class T>
void copyTable(const cST_MVect<T>& source, cST_MVect<T>& destination, const cST_DataSet& owner, bool withLabels,
               const RowPick& rows) {
    giveStorage(destination, owner, rows.count, source.columnCount());
    if (withLabels) {
        for (std::int32_t c = 1; c <= source.columnCount(); ++c) {
            destination.labels(c) = u16string(source.label(c - 1));
        }
    }
    const std::int32_t nColumns = std::min(source.columnCount(), destination.columnCount());
    for (std::int32_t c = 0; c < nColumns; ++c) {
        copyCells(source.column(c), destination.column(c), rows, missingCell<T>());
    }
}

template <class List>
void copyList(const List& source, List& destination, const cST_DataSet& owner, bool withLabels,
              const RowPick& rows) {
    const std::size_t n = std::min(source.tables.size(), destination.tables.size());
    for (std::size_t t = 0; t < n; ++t) {
        copyTable(*source.tables[t], *destination.tables[t], owner, withLabels, rows);
    }
}

void copyWeights(cST_DataSet& source, cST_DataSet& destination, const RowPick& rows) {
    giveStorage(*destination.weights, destination, rows.count, 1.0);
    // Kept: the destination has weights in every case. A source without any counts each row once.
    destination.weightsPresent = kTrue;
    if (source.weights->size() > 0) {
        copyCells(*source.weights, *destination.weights, rows, 0.0);
    } else {
        const auto weights = destination.weights->span();
        std::fill_n(weights.begin(), std::min(weights.size(), static_cast<std::size_t>(rows.count)), 1.0);
    }
    if (isTrue(source.weights2Present)) {
        giveStorage(*destination.weights2, destination, rows.count, 0.0);
        destination.weights2Present = kTrue;
        copyCells(*source.weights2, *destination.weights2, rows, 0.0);
    }
}

/// The tables with a flag of their own, and the labels of the rows; columns of text table 3 are up to the
/// caller.
void copyFlaggedTables(cST_DataSet& source, cST_DataSet& destination, bool withLabels, const RowPick& rows) {
    frame::forEachColumnSet([&](auto flag, auto member) {
        if (!isTrue(source.*flag)) return;
        destination.*flag = kTrue;
        copyTable(*(source.*member), *(destination.*member), destination, withLabels, rows);
    });
}

void copyListsAndLabels(cST_DataSet& source, cST_DataSet& destination, bool withLabels, const RowPick& rows) {
    if (isTrue(source.rowLabelsPresent)) {
        giveStorage(*destination.rowLabels, destination, rows.count, u16string());
        destination.rowLabelsPresent = kTrue;
        copyCells(*source.rowLabels, *destination.rowLabels, rows, u16string());
    }
    copyList(source.numericTables, destination.numericTables, destination, withLabels, rows);
    copyList(source.stringTables, destination.stringTables, destination, withLabels, rows);
}

std::int32_t countMarked(const cST_DataSet& data, std::int32_t first, std::int32_t count) {
    std::int32_t marked = 0;
    const std::int32_t end = std::min(first + count, data.rowMarks->size());
    for (std::int32_t i = first; i < end; ++i) marked += data.isMarked(i) ? 1 : 0;
    return marked;
}

}  // namespace

void Duplicate_STDataset(cST_DataSet& source, cST_DataSet& destination, std::int16_t withLabels,
                         std::int32_t column3, std::int32_t firstRow, std::int32_t lastRow) {
    const std::int32_t first = std::max(firstRow, 1) - 1;
    const RowPick rows{first, std::max(std::clamp(lastRow, 0, std::max(source.nRows, 0)) - first, 0), nullptr};
    const bool labels = isTrue(withLabels);

    copyFlaggedTables(source, destination, labels, rows);
    if (isTrue(source.strings3Present)) {
        giveStorage(*destination.strings3, destination, rows.count, 1);
        destination.strings3Present = kTrue;
        if (labels)
            destination.strings3->labels(1) = u16string(source.strings3->label(detail::fromOne(column3)));
        if (column3 >= 1 && column3 <= source.strings3->columnCount() &&
            destination.strings3->columnCount() > 0) {
            copyCells(source.strings3->column(column3 - 1), destination.strings3->column(0), rows, u16string());
        }
    }
    copyWeights(source, destination, rows);
    giveStorage<std::int16_t>(*destination.rowMarks, destination, rows.count, NUMCORE_FALSE);
    copyCells<std::int16_t>(*source.rowMarks, *destination.rowMarks, rows, NUMCORE_FALSE);
    if (isTrue(source.rowMarksPresent) && countMarked(source, rows.first, rows.count) > 0) {
        destination.rowMarksPresent = kTrue;
    }
    copyListsAndLabels(source, destination, labels, rows);
}

std::int32_t ExtractRowsIntoNewTable_ST(cST_DataSet& source, cST_Vect<std::int32_t>** rows,
                                        cST_DataSet& destination) {
    if (rows == nullptr || rows[0] == nullptr || rows[0]->count() == 0) return 0;
    std::vector<std::int32_t> list;
    list.reserve(rows[0]->span().size());
    for (const std::int32_t row : rows[0]->span())
        list.push_back(row >= 1 && row <= source.nRows ? row - 1 : -1);
    const RowPick pick{0, static_cast<std::int32_t>(list.size()), &list};

    copyFlaggedTables(source, destination, true, pick);
    if (isTrue(source.strings3Present)) {
        destination.strings3Present = kTrue;
        destination.groupColumn = source.groupColumn;
        copyTable(*source.strings3, *destination.strings3, destination, true, pick);
    }
    if (isTrue(source.weightsPresent)) copyWeights(source, destination, pick);
    copyListsAndLabels(source, destination, true, pick);
    destination.nRows = pick.count;
    return destination.nRows;
}

void RemoveRowsMissingSTDataSet(cST_DataSet& data) {
    frame::forEachRowArray(data, [&]<class T>(matrix<T>& cells, std::int32_t length) {
        const std::int32_t nRows = std::min(data.nRows, cells.size());
        std::int32_t kept = 0;
        std::int32_t keptLength = length;
        for (std::int32_t i = 0; i < nRows; ++i) {
            if (data.isMarked(i)) {
                if (i < length) --keptLength;
            } else {
                if (kept != i) cells[kept] = std::move(cells[i]);
                ++kept;
            }
        }
        for (std::int32_t i = kept; i < nRows; ++i) cells[i] = missingCell<T>();
        if constexpr (std::is_same_v<T, double>) {
            if (&cells == data.weights.get() || &cells == data.weights2.get()) {
                for (std::int32_t i = kept; i < nRows; ++i) cells[i] = 0.0;
            }
        }
        return keptLength;
    });
}

}  // namespace numcore
