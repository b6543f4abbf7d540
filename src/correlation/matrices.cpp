// Coefficients of all pairs over matrices.

#include "correlation/rank_matrices.hpp"
#include "numcore/correlation.hpp"

namespace numcore {
namespace {

using correlation::Coefficient;
using correlation::Store;
using correlation::Table;

template <class Cell>
std::span<const Cell> cellsOf(const matrix<Cell>* from) {
    return from == nullptr ? std::span<const Cell>() : from->span();
}

bool hasShape(const matrix<double>* output, std::int32_t rows, std::int32_t columns) {
    return output->rows() == rows && output->columns() == columns;
}

bool isAsked(const matrix<double>* output) {
    return output != nullptr && output->size() > 0;
}

Table tableOf(const matrix<double>& data, const matrix<std::int16_t>* exclusion,
              const matrix<double>* weights) {
    Table table;
    table.nRows = static_cast<std::size_t>(data.rows());
    for (std::int32_t c = 0; c < data.columns(); ++c) {
        table.columns.push_back(data.span().subspan(static_cast<std::size_t>(c) * table.nRows, table.nRows));
    }
    table.rows = {cellsOf(weights), cellsOf(exclusion)};
    return table;
}

/// Runs a family over one or two matrices. @param family called with the tables and where results go
template <class Family>
std::int32_t fill(const matrix<double>* first, const matrix<double>* second,
                  const matrix<std::int16_t>* exclusion, const matrix<double>* weights, matrix<double>* r,
                  matrix<double>* pValues, const Family& family) {
    const matrix<double>* columns = second == nullptr ? first : second;
    if (!isAsked(first) || !isAsked(columns) || first->rows() != columns->rows()) return -1;
    if (r == nullptr || !hasShape(r, first->columns(), columns->columns())) return -1;
    if (isAsked(pValues) && !hasShape(pValues, r->rows(), r->columns())) return -1;
    const auto put = [&](std::size_t i, std::size_t j, const Coefficient& found) {
        const auto row = static_cast<std::int32_t>(i);
        const auto column = static_cast<std::int32_t>(j);
        r->at(row, column) = found.value;
        if (isAsked(pValues)) pValues->at(row, column) = found.pValue;
    };
    const Store store = [&](std::size_t i, std::size_t j, const Coefficient& found) {
        put(i, j, found);
        if (second == nullptr && i != j) put(j, i, found);
    };
    const Table rows = tableOf(*first, exclusion, weights);
    if (second == nullptr) {
        family(rows, nullptr, store);
    } else {
        const Table others = tableOf(*second, exclusion, weights);
        family(rows, &others, store);
    }
    return 0;
}

}  // namespace

std::int32_t M_PearsonRho(const matrix<double>* data, const matrix<std::int16_t>* exclusion,
                          const matrix<double>* weights, std::int32_t alternative, matrix<double>* r,
                          matrix<double>* pValues) {
    return M_PearsonRhoMatMat2(data, nullptr, exclusion, weights, NUMCORE_TRUE, NUMCORE_TRUE, NUMCORE_TRUE,
                               alternative, r, pValues);
}

std::int32_t M_PearsonRhoMatMat2(const matrix<double>* first, const matrix<double>* second,
                                 const matrix<std::int16_t>* exclusion, const matrix<double>* weights,
                                 std::int16_t correlation, std::int16_t unbiased, std::int16_t frequency,
                                 std::int32_t alternative, matrix<double>* r, matrix<double>* pValues) {
    const correlation::PearsonOptions options{isTrue(correlation), isTrue(unbiased), isTrue(frequency),
                                              isAsked(pValues), alternative};
    return fill(first, second, exclusion, weights, r, pValues,
                [&](const Table& rows, const Table* others, const Store& store) {
                    correlation::pearsonMatrix(rows, others, options, store);
                });
}

std::int32_t M_SpearmanRho(const matrix<double>* data, const matrix<std::int16_t>* exclusion,
                           const matrix<double>* weights, std::int32_t alternative, matrix<double>* r,
                           matrix<double>* pValues) {
    return M_SpearmanRhoMatMat2(data, nullptr, exclusion, weights, alternative, r, pValues);
}

std::int32_t M_SpearmanRhoMatMat2(const matrix<double>* first, const matrix<double>* second,
                                  const matrix<std::int16_t>* exclusion, const matrix<double>* weights,
                                  std::int32_t alternative, matrix<double>* r, matrix<double>* pValues) {
    const std::int32_t asked = isAsked(pValues) ? alternative : std::int32_t{correlation::kNoPValue};
    return fill(first, second, exclusion, weights, r, pValues,
                [&](const Table& rows, const Table* others, const Store& store) {
                    correlation::spearmanMatrix(rows, others, asked, store);
                });
}

std::int32_t M_KendallTau(const matrix<double>* data, const matrix<std::int16_t>* exclusion,
                          const matrix<double>* weights, std::int32_t alternative, std::int16_t law,
                          matrix<double>* r, matrix<double>* pValues) {
    return M_KendallTauMatMat2(data, nullptr, exclusion, weights, alternative, law, r, pValues);
}

std::int32_t M_KendallTauMatMat2(const matrix<double>* first, const matrix<double>* second,
                                 const matrix<std::int16_t>* exclusion, const matrix<double>* weights,
                                 std::int32_t alternative, std::int16_t law, matrix<double>* r,
                                 matrix<double>* pValues) {
    const std::int32_t asked = isAsked(pValues) ? alternative : std::int32_t{correlation::kNoPValue};
    return fill(first, second, exclusion, weights, r, pValues,
                [&](const Table& rows, const Table* others, const Store& store) {
                    correlation::kendallMatrix(rows, others, correlation::kendallOptions(asked, law), store);
                });
}

}  // namespace numcore
