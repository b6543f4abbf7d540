// One walk over everything in a data set that has a cell per row; copying, dropping and sorting rows use it.
#pragma once

#include "numcore/dataset.hpp"

namespace numcore::frame {

/// Calls visit(flag member or null, table member) for each column set of the data set, in record order. A null
/// flag member means the table has no flag of its own.
template <class Visit>
void forEachColumnSet(Visit&& visit) {
    visit(&cST_DataSet::numeric1Present, &cST_DataSet::numeric1);
    visit(&cST_DataSet::raw1Present, &cST_DataSet::raw1);
    visit(&cST_DataSet::numeric2Present, &cST_DataSet::numeric2);
    visit(&cST_DataSet::raw2Present, &cST_DataSet::raw2);
    visit(&cST_DataSet::strings1Present, &cST_DataSet::strings1);
    visit(&cST_DataSet::raw3Present, &cST_DataSet::raw3);
    visit(&cST_DataSet::strings2Present, &cST_DataSet::strings2);
    visit(&cST_DataSet::raw4Present, &cST_DataSet::raw4);
    visit(&cST_DataSet::numeric3Present, &cST_DataSet::numeric3);
}

/// Calls visit(cells, own length or null) for every present array of the data set that has a cell per row: the
/// columns of present tables and of the listed tables, weights, row labels, row numbers, groups.
/// setLength(n) tells a column its new own length.
template <class Visit>
void forEachRowArray(cST_DataSet& data, Visit&& visit) {
    const auto visitTable = [&](auto& table) {
        for (std::int32_t c = 0; c < table.columnCount(); ++c) {
            const std::int32_t shrunk = visit(table.column(c), table.length(c));
            table.setLength(c, shrunk);
        }
    };
    const auto visitVector = [&](auto& cells) { visit(cells, cells.size()); };

    forEachColumnSet([&](auto flag, auto member) {
        if (isTrue(data.*flag)) visitTable(*(data.*member));
    });
    if (isTrue(data.strings3Present)) visitTable(*data.strings3);
    for (const auto& table : data.numericTables.tables) visitTable(*table);
    for (const auto& table : data.stringTables.tables) visitTable(*table);
    if (isTrue(data.weightsPresent)) visitVector(*data.weights);
    if (isTrue(data.weights2Present)) visitVector(*data.weights2);
    if (isTrue(data.rowLabelsPresent)) visitVector(*data.rowLabels);
    visitVector(*data.rowNumbers);
    visitVector(*data.groups);
}

}  // namespace numcore::frame
