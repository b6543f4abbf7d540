// Doors of the probability laws.

#include <algorithm>

#include "distributions/laws/data_rules.hpp"
#include "distributions/laws/law_table.hpp"
#include "distributions/step_table.hpp"
#include "frame/entry_frame.hpp"
#include "numcore/discrete_laws.h"
#include "numcore/empirical.h"
#include "numcore/law_codes.h"

namespace laws = numcore::distributions;

namespace {

constexpr std::int32_t kNameMessages = 6500;

template <class Cell>
std::span<const Cell> cellsOf(const Cell* cells, std::int32_t n) {
    return cells == nullptr || n < 1 ? std::span<const Cell>() : std::span(cells, static_cast<std::size_t>(n));
}

/// Rule -1 when the law or the data are not there.
ST_DistribCheck checkConstraints(const ST_DistribSettings* settings, const double* data, std::int32_t n) {
    const laws::Law* law = settings == nullptr ? nullptr : laws::lawOfCode(settings->code);
    if (law == nullptr) return {-1, 0, 0};
    const auto nRows = static_cast<std::size_t>(std::max(n, 0));
    const auto nCells = nRows * static_cast<std::size_t>(std::max(settings->nColumns, 0));
    if (nCells > 0 && data == nullptr) return {-1, 0, 0};
    return laws::checkData(law->rule, {data, nCells}, nRows, cellsOf(settings->exempt, settings->nColumns));
}

}  // namespace

void Cpp_GetDistCodeNParam(const char16_t* name, char16_t** messages, int32_t* code, int32_t* nParameters) {
    if (name == nullptr || messages == nullptr) return;
    const numcore::MessageTable texts(kNameMessages, 1, messages);
    const laws::Law* law = laws::lawOfName(name, texts);
    if (law == nullptr) return;
    if (code != nullptr) *code = law->shown.code;
    if (nParameters != nullptr) *nParameters = law->nAnnounced;
}

int16_t Cpp_CheckDistribConstraints2(const ST_DistribSettings* settings, const double* data, int32_t n,
                                     char16_t** /*messages*/, ST_DistribCheck* found) {
    const ST_DistribCheck check = checkConstraints(settings, data, n);
    if (found != nullptr) *found = check;
    return check.rule >= 0 && check.column == 0 ? NUMCORE_TRUE : NUMCORE_FALSE;
}

void VB_BuildCDFEmpirical(const double* values, int32_t n, const double* weights, int16_t sort, double* table,
                          int32_t* nRows) {
    if (nRows == nullptr) return;
    const auto rows = laws::stepRows(cellsOf(values, n), cellsOf(weights, n), numcore::isTrue(sort));
    *nRows = table == nullptr ? 0 : static_cast<std::int32_t>(rows.size());
    if (*nRows == 0) return;
    const std::size_t capacity = 2 * static_cast<std::size_t>(n);
    for (std::size_t i = 0; i < capacity; ++i) {
        const laws::StepRow& row = rows[std::min(i, rows.size() - 1)];
        table[i] = row.value;
        table[capacity + i] = row.probability;
    }
}

double VB_InvCDFEmpirical(double p, const double* table, int32_t nRows) {
    return laws::quantileOfSteps(p, laws::stepColumns(table, nRows));
}

double Cpp_GetProbaVal(double x, const double* table, int32_t nRows) {
    return laws::probabilityOfSteps(x, laws::stepColumns(table, nRows));
}

double Cpp_InvCDFUniformWDisc(double p, const double* weights, int32_t n, double a, double b) {
    return InvCDFUniformWDisc(p, weights, n, a, b);
}
