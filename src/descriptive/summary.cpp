// Summary table of quantitative variables.

#include <array>
#include <vector>

#include "descriptive/summary.hpp"
#include "numcore/descriptive.hpp"

namespace numcore {
namespace descriptive {

std::array<double, kSummaryColumns> summaryRow(const vmcore::Summary& summary) {
    const double variance = vmcore::variance(summary);
    return {static_cast<double>(summary.nCells),
            static_cast<double>(summary.nMissing),
            static_cast<double>(summary.nCells - summary.nMissing),
            summary.minimum,
            summary.maximum,
            summary.mean,
            variance == kMissing ? kMissing : std::sqrt(variance)};
}

}  // namespace descriptive

namespace {

void writeRow(matrix<double>& table, std::int32_t row, const vmcore::Summary& summary) {
    const auto cells = descriptive::summaryRow(summary);
    for (std::size_t c = 0; c < cells.size(); ++c) table.at(row, static_cast<std::int32_t>(c)) = cells[c];
}

std::span<const double> weightsOfColumn(const cST_DataSet& data, std::int32_t column, bool perColumn) {
    const cST_MVect<double>& table2 = *data.numeric2;
    if (!perColumn || table2.columnCount() == 0) return data.observationWeights();
    return table2.cells(column % table2.columnCount());
}

}  // namespace

void ComputeQuantiStats_ST(cST_DataSet& data, matrix<u16string>& labels, std::int16_t withSecondTable,
                           std::int16_t weightsPerColumn, matrix<double>& table) {
    const bool second = isTrue(withSecondTable);
    std::vector<vmcore::ColumnView> columns;
    std::vector<std::u16string_view> names;
    for (std::int32_t c = 0; c < data.numeric1->columnCount(); ++c) {
        columns.push_back(
            {std::as_const(*data.numeric1).cells(c), weightsOfColumn(data, c, isTrue(weightsPerColumn))});
        names.push_back(data.numeric1->label(c));
    }
    for (std::int32_t c = 0; second && c < data.numeric2->columnCount(); ++c) {
        columns.push_back({std::as_const(*data.numeric2).cells(c), data.observationWeights()});
        names.push_back(data.numeric2->label(c));
    }
    std::vector<vmcore::Summary> summaries(columns.size());
    vmcore::summarizeColumns(columns, summaries);
    for (std::size_t v = 0; v < summaries.size(); ++v) {
        const auto row = static_cast<std::int32_t>(v);
        labels[row] = u16string(names[v]);
        writeRow(table, row, summaries[v]);
    }
}

void GetDescriptive_ST(cST_DataSet& data, std::int16_t weightsPerColumn, cST_DescStats& out, std::u16string&,
                       std::int32_t) {
    ComputeQuantiStats_ST(data, out.labels, NUMCORE_FALSE, weightsPerColumn, out.table);
}

void PrepareQuantiStats_ST(const cST_DataSet& data, std::int16_t withSecondTable, cST_DataSet& out) {
    const std::int32_t nRows =
        data.numeric1->columnCount() + (isTrue(withSecondTable) ? data.numeric2->columnCount() : 0);
    descriptive::shapeResult(out, nRows, {u"Variable"}, descriptive::summaryColumnNames());
}

}  // namespace numcore
