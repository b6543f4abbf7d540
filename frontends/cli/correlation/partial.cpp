#include "cli/correlation/partial.hpp"

#include <algorithm>
#include <cstdint>
#include <span>

#include "numcore/association.h"
#include "numcore/correlation.h"

namespace numcore::cli {

namespace {

using Columns = std::vector<std::span<const double>>;

struct Variables {
    Columns rows;
    Columns columns;
    Columns heldConstant;
};

bool allPresent(const Columns& columns, std::size_t i) {
    return std::ranges::none_of(columns, [i](const auto& cells) { return cells[i] == NUMCORE_MISSING; });
}

/// The rows of the columns of one pair and those held constant, column after column as the library takes them.
struct PairTable {
    std::vector<double> cells;
    std::vector<double> weights;
    std::size_t nRows = 0;
};

PairTable gather(const Columns& columns, std::span<const double> weights, const std::vector<bool>& usable) {
    std::vector<std::size_t> rows;
    for (std::size_t i = 0; i < usable.size(); ++i) {
        if (usable[i] && allPresent(columns, i)) rows.push_back(i);
    }
    PairTable table;
    table.nRows = rows.size();
    table.cells.reserve(rows.size() * columns.size());
    for (const auto& cells : columns) {
        for (const std::size_t i : rows) table.cells.push_back(cells[i]);
    }
    for (const std::size_t i : rows) {
        if (!weights.empty()) table.weights.push_back(weights[i]);
    }
    return table;
}

std::int32_t tailOf(Alternative alternative) {
    if (alternative == Alternative::kTwoSided) return NUMCORE_PARTIAL_TWO_SIDED;
    return alternative == Alternative::kLess ? NUMCORE_PARTIAL_LOWER : NUMCORE_PARTIAL_UPPER;
}

CorrelatedPair pairOf(const PairTable& table, std::size_t nColumns, const CorrelationRequest& request) {
    constexpr double kNone = NUMCORE_MISSING;
    CorrelatedPair pair{kNone, kNone, kNone, kNone, kNone, table.nRows};
    std::vector<double> rho(nColumns * nColumns, kNone);
    std::vector<double> pValues(nColumns * nColumns, kNone);
    const double* weights = table.weights.empty() ? nullptr : table.weights.data();
    const auto n = static_cast<std::int32_t>(table.nRows);
    Cpp_M_PartialCorrelation(table.cells.data(), n, static_cast<std::int32_t>(nColumns), weights,
                             tailOf(request.alternative), rho.data(), pValues.data());
    pair.coefficient = rho[1];
    if (pair.coefficient == kNone) return pair;
    pair.pValue = pValues[1];
    pair.squared = pair.coefficient * pair.coefficient;
    const auto nHeldConstant = static_cast<std::int32_t>(nColumns) - 2;
    COR_ComputeCI_ST(pair.coefficient, n - nHeldConstant, request.alpha, NUMCORE_COR_PEARSON, &pair.lower,
                     &pair.upper);
    return pair;
}

Variables split(const Sample& sample, Correlations& out) {
    Variables variables;
    for (const NumberColumn& column : sample.numbers) {
        const auto cells = column.cells.asDoubles();
        if (column.role == Role::kHeldConstant) {
            variables.heldConstant.push_back(cells);
        } else {
            const bool across = column.role == Role::kAcross;
            (across ? variables.columns : variables.rows).push_back(cells);
            (across ? out.columns : out.rows).push_back(column.name);
        }
    }
    out.rectangular = !variables.columns.empty();
    if (!out.rectangular) {
        variables.columns = variables.rows;
        out.columns = out.rows;
    }
    return variables;
}

/// Marks the rows in use and counts them and their missing cells.
std::vector<bool> usableRows(const Variables& variables, std::size_t nRows, bool listwise, Correlations& out) {
    Columns all = variables.rows;
    if (out.rectangular) all.insert(all.end(), variables.columns.begin(), variables.columns.end());
    all.insert(all.end(), variables.heldConstant.begin(), variables.heldConstant.end());
    std::vector<bool> usable(nRows, true);
    for (std::size_t i = 0; i < nRows; ++i) {
        usable[i] = !listwise || allPresent(all, i);
        ++(usable[i] ? out.nRowsUsed : out.nRowsExcluded);
        if (!usable[i]) continue;
        out.nMissing += static_cast<std::size_t>(
            std::ranges::count_if(all, [i](const auto& cells) { return cells[i] == NUMCORE_MISSING; }));
    }
    return usable;
}

}  // namespace

Correlations correlatePartially(const Sample& sample, const CorrelationRequest& request) {
    Correlations out;
    const Variables variables = split(sample, out);
    const std::vector<bool> usable = usableRows(variables, sample.nRows, request.listwise, out);
    const auto weights = sample.weights.asDoubles();
    const std::size_t nColumns = 2 + variables.heldConstant.size();
    out.complete = out.nMissing == 0 && weights.empty();
    out.pairs.resize(out.rows.size() * out.columns.size());
    for (std::size_t i = 0; i < out.rows.size(); ++i) {
        for (std::size_t j = 0; j < out.columns.size(); ++j) {
            CorrelatedPair& pair = out.pairs[i * out.columns.size() + j];
            if (!out.rectangular && j > i) continue;
            Columns columns{variables.rows[i], variables.columns[j]};
            columns.insert(columns.end(), variables.heldConstant.begin(), variables.heldConstant.end());
            const PairTable table = gather(columns, weights, usable);
            if (!out.rectangular && i == j) {
                pair = {1.0, NUMCORE_MISSING, 1.0, NUMCORE_MISSING, NUMCORE_MISSING, table.nRows};
            } else {
                pair = pairOf(table, nColumns, request);
            }
            if (!out.rectangular) out.pairs[j * out.columns.size() + i] = pair;
        }
    }
    return out;
}

}  // namespace numcore::cli
