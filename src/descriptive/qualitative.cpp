// Summaries of qualitative variables.

#include <algorithm>
#include <cmath>

#include "descriptive/summary.hpp"
#include "numcore/descriptive.hpp"

namespace numcore {
namespace {

template <class T>
void shapeTable(cST_MVect<T>& table, bool owned, std::int32_t nRows,
                const std::vector<std::u16string_view>& names) {
    const auto nColumns = static_cast<std::int32_t>(names.size());
    if (owned) {
        table = cST_MVect<T>(nRows, nColumns, missingCell<T>());
    } else {
        table.setShape(nRows, std::min(nColumns, static_cast<std::int32_t>(table.columns.size())));
        for (std::int32_t c = 0; c < table.columnCount(); ++c) {
            table.setLength(c, std::min(nRows, table.column(c).size()));
        }
    }
    for (std::int32_t c = 0; c < nColumns; ++c) {
        if (table.labels[c].empty()) table.labels[c] = u16string(names[static_cast<std::size_t>(c)]);
    }
}

template <class T>
std::int32_t columnSize(const cST_MVect<T>& table, std::int32_t c) {
    return c < table.columnCount() ? table.column(c).size() : 0;
}

/// The stated number of categories, as far as an array tells anything about them.
std::int32_t categoriesOf(const cST_QualiInfo& info, std::int32_t v) {
    if (v >= info.nCategories.size()) return 0;
    const std::int32_t known =
        std::max({columnSize(info.labels, v), columnSize(info.counts, v), columnSize(info.frequencies, v)});
    return std::clamp(info.nCategories[v], 0, known);
}

/// A cell of a column set by category and variable, from 0; `absent` outside.
template <class T>
T cellOf(const cST_MVect<T>& table, std::int32_t k, std::int32_t v, const T& absent) {
    return k < columnSize(table, v) ? table.column(v)[k] : absent;
}

double percentage(double frequency, double total) {
    return total > 0.0 ? frequency * 100.0 / total : kMissing;
}

/// Categories of all variables, bounded by what the label arrays can hold.
std::int32_t totalCategories(const cST_QualiInfo& info) {
    std::int64_t total = 0;
    for (std::int32_t v = 0; v < std::min(info.nVariables, info.nCategories.size()); ++v)
        total += categoriesOf(info, v);
    return static_cast<std::int32_t>(std::min<std::int64_t>(total, INT32_MAX));
}

void writeCategoryRow(const cST_QualiInfo& info, std::int32_t v, std::int32_t k, std::int32_t row,
                      cST_DataSet& out) {
    const double frequency = cellOf(info.frequencies, k, v, kMissing);
    if (k == 0) out.strings1->at(row, 0) = u16string(info.names[v].view());
    out.strings1->at(row, 1) = cellOf(info.labels, k, v, u16string());
    out.numeric1->at(row, 0) = cellOf(info.counts, k, v, kMissing);
    out.numeric1->at(row, 1) = frequency;
    out.numeric1->at(row, 2) = frequency == kMissing ? kMissing : percentage(frequency, info.totalWeight);
}

/// Entropy, in bits, of the frequencies of variable v.
double entropy(const cST_QualiInfo& info, std::int32_t v, double sum) {
    if (!(sum > 0.0)) return kMissing;
    double bits = 0.0;
    for (std::int32_t k = 0; k < categoriesOf(info, v); ++k) {
        const double share = cellOf(info.frequencies, k, v, 0.0) / sum;
        if (share > 0.0) bits -= share * std::log2(share);
    }
    return bits;
}

}  // namespace

void descriptive::shapeResult(cST_DataSet& out, std::int32_t nRows,
                              const std::vector<std::u16string_view>& textColumns,
                              const std::vector<std::u16string_view>& numericColumns) {
    const bool owned = out.record == nullptr;
    shapeTable(*out.strings1, owned, nRows, textColumns);
    shapeTable(*out.numeric1, owned, nRows, numericColumns);
    out.strings1Present = NUMCORE_TRUE;
    out.numeric1Present = NUMCORE_TRUE;
    out.nRows = nRows;
}

void PrepareQualiStats_ST(const cST_QualiInfo& info, cST_DataSet& out) {
    descriptive::shapeResult(out, totalCategories(info), {u"Variable", u"Category"},
                             {u"Count", u"Frequency", u"Percentage"});
}

void ComputeQualiStats_ST(cST_QualiInfo& info, cST_TableFormats& formats, cST_DataSet& out) {
    PrepareQualiStats_ST(info, out);
    const std::int32_t nVariables = std::clamp(info.nVariables, 0, info.nCategories.size());
    formats.rowTable.resize(nVariables);
    std::int32_t row = 0;
    const std::int32_t nRows = out.nRows;
    for (std::int32_t v = 0; v < nVariables; ++v) {
        formats.rowTable.cells[v] = row;
        for (std::int32_t k = 0; k < categoriesOf(info, v) && row < nRows; ++k, ++row) {
            writeCategoryRow(info, v, k, row, out);
        }
    }
    formats.nBlocks = nVariables;
    // Kept: the row count is that of the data, not the number of categories.
    out.nRows = info.nRows;
}

void ComputeQualiStats2_ST(cST_QualiInfo& info, cST_DataSet& out) {
    const std::int32_t nVariables = std::clamp(info.nVariables, 0, info.nCategories.size());
    descriptive::shapeResult(
        out, nVariables, {u"Variable", u"Mode"},
        {u"Categories", u"Count", u"Frequency", u"ModeFrequency", u"ModePercentage", u"Entropy"});
    for (std::int32_t v = 0; v < nVariables; ++v) {
        double count = 0.0;
        double sum = 0.0;
        std::int32_t mode = -1;
        double modeFrequency = kMissing;
        for (std::int32_t k = 0; k < categoriesOf(info, v); ++k) {
            const double frequency = cellOf(info.frequencies, k, v, 0.0);
            count += cellOf(info.counts, k, v, 0.0);
            sum += frequency;
            if (frequency > modeFrequency) {
                mode = k;
                modeFrequency = frequency;
            }
        }
        out.strings1->at(v, 0) = u16string(info.names[v].view());
        out.strings1->at(v, 1) = mode < 0 ? u16string() : cellOf(info.labels, mode, v, u16string());
        out.numeric1->at(v, 0) = categoriesOf(info, v);
        out.numeric1->at(v, 1) = count;
        out.numeric1->at(v, 2) = sum;
        out.numeric1->at(v, 3) = modeFrequency;
        out.numeric1->at(v, 4) = mode < 0 ? kMissing : percentage(modeFrequency, info.totalWeight);
        out.numeric1->at(v, 5) = entropy(info, v, sum);
    }
}

}  // namespace numcore
