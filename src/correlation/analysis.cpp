// The correlation analysis: what the user asked for, from a data set into result tables.
#include <algorithm>
#include <atomic>
#include <cmath>
#include <string>
#include <vector>

#include "correlation/analysis_tables.hpp"
#include "correlation/polychoric_matrix.hpp"
#include "correlation/rank_matrices.hpp"
#include "numcore/correlation.h"
#include "numcore/correlation_analysis.hpp"

namespace numcore {
namespace {

using correlation::Coefficient;
using correlation::ResultTables;
using correlation::Store;
using correlation::Table;

std::int32_t checkParameters(const COR_Param& param) {
    if (param.coefficient < NUMCORE_COR_FAMILY_PEARSON || param.coefficient > NUMCORE_COR_FAMILY_POLYCHORIC)
        return NUMCORE_COR_BAD_FAMILY;
    const bool knownMissing = param.missing == NUMCORE_COR_PAIRWISE || param.missing == NUMCORE_COR_LISTWISE;
    return knownMissing && param.alpha > 0.0 && param.alpha < 1.0 ? NUMCORE_COR_DONE : NUMCORE_COR_BAD_OPTION;
}

std::int32_t checkWeights(std::span<const double> weights) {
    const bool good =
        std::ranges::all_of(weights, [](double weight) { return weight >= 0.0 && std::isfinite(weight); });
    return good ? NUMCORE_COR_DONE : NUMCORE_COR_BAD_WEIGHTS;
}

Table columnsOf(const cST_MVect<double>& set, std::int32_t nRows) {
    Table table;
    table.nRows = static_cast<std::size_t>(std::max(nRows, 0));
    for (std::int32_t c = 0; c < set.columnCount(); ++c) {
        const std::span<const double> cells = set.cells(c);
        table.columns.push_back(cells.first(std::min(cells.size(), table.nRows)));
    }
    return table;
}

bool isMissing(std::span<const double> column, std::size_t row) {
    return row >= column.size() || column[row] == kMissing;
}

// -1 for each row that takes no part, and what that leaves.
struct Selection {
    std::vector<std::int16_t> exclusion;
    std::int32_t nUsed = 0;
    std::int32_t nMissing = 0;
};

Selection selectRows(const cST_DataSet& data, const Table& first, const Table* second, bool listwise) {
    Selection selection;
    selection.exclusion.resize(first.nRows, NUMCORE_FALSE);
    const bool marks = isTrue(data.rowMarksPresent);
    for (std::size_t row = 0; row < first.nRows; ++row) {
        const auto lacksRow = [row](std::span<const double> column) { return isMissing(column, row); };
        auto nMissing = std::ranges::count_if(first.columns, lacksRow);
        if (second != nullptr) nMissing += std::ranges::count_if(second->columns, lacksRow);
        const bool excluded =
            (marks && data.isMarked(static_cast<std::int32_t>(row))) || (listwise && nMissing > 0);
        if (excluded) {
            selection.exclusion[row] = NUMCORE_TRUE;
        } else {
            ++selection.nUsed;
            selection.nMissing += static_cast<std::int32_t>(nMissing);
        }
    }
    return selection;
}

void computeFamily(const COR_Param& param, const Table& first, const Table* second, const Store& store) {
    const std::int32_t alternative = param.alternative;
    switch (param.coefficient) {
        case NUMCORE_COR_FAMILY_PEARSON:
            correlation::pearsonMatrix(first, second,
                                       {.correlation = !isTrue(param.covariance),
                                        .unbiased = !isTrue(param.biased),
                                        .frequency = !isTrue(param.analyticWeights),
                                        .withPValue = isTrue(param.pValues),
                                        .alternative = alternative},
                                       store);
            break;
        case NUMCORE_COR_FAMILY_SPEARMAN:
            correlation::spearmanMatrix(first, second, alternative, store);
            break;
        case NUMCORE_COR_FAMILY_KENDALL:
            correlation::kendallMatrix(first, second,
                                       {.alternative = alternative,
                                        .exact = isTrue(param.exact),
                                        .continuity = isTrue(param.continuity)},
                                       store);
            break;
        default:
            correlation::polychoricMatrix(
                first, second, {.alternative = alternative, .full = isTrue(param.maximumLikelihood)}, store);
    }
}

std::int32_t nothing(cCOR_Results& results, std::int32_t status) {
    results.status = status;
    results.writeBack();
    return status;
}

}  // namespace

std::int32_t COR_Compute_ST(cST_DataSet& data, COR_Param& param, cCOR_Results& results,
                            matrix<u16string>& /*messages*/, std::u16string& /*text*/, std::int32_t /*flag*/) {
    const bool rectangular = isTrue(param.rectangular);
    std::int32_t status = checkParameters(param);
    if (status == NUMCORE_COR_DONE) status = checkWeights(data.observationWeights());
    Table first = columnsOf(*data.numeric1, data.nRows);
    Table other = rectangular ? columnsOf(*data.numeric2, data.nRows) : Table();
    const bool empty = first.columns.empty() || first.nRows == 0 || (rectangular && other.columns.empty());
    if (status == NUMCORE_COR_DONE && empty) status = NUMCORE_COR_NO_DATA;
    if (status != NUMCORE_COR_DONE) return nothing(results, status);

    Table* second = rectangular ? &other : nullptr;
    const Selection selection = selectRows(data, first, second, param.missing == NUMCORE_COR_LISTWISE);
    first.rows = {data.observationWeights(), selection.exclusion};
    results.coefficient = param.coefficient;
    results.nRowsUsed = selection.nUsed;
    results.nRowsExcluded = static_cast<std::int32_t>(first.nRows) - selection.nUsed;
    results.nMissing = selection.nMissing;
    results.complete =
        selection.nMissing == 0 && data.observationWeights().empty() ? NUMCORE_TRUE : NUMCORE_FALSE;

    ResultTables tables(param, *data.numeric1, rectangular ? *data.numeric2 : *data.numeric1, results);
    computeFamily(param, first, second,
                  [&](std::size_t i, std::size_t j, const Coefficient& found) { tables.store(i, j, found); });
    tables.finish();
    if (isTrue(param.summaries)) {
        matrix<std::int16_t> exclusion(static_cast<std::int32_t>(first.nRows), 1, NUMCORE_FALSE);
        std::ranges::copy(selection.exclusion, exclusion.data());
        const matrix<double> none;
        M_InfoQuali_ST(*data.numeric1, data.nRows, data.numeric1->columnCount(),
                       isTrue(data.weightsPresent) ? *data.weights : none, exclusion, data.quali);
        data.quali.writeBack();
    }
    return nothing(results, NUMCORE_COR_DONE);
}

}  // namespace numcore
