#include "cli/correlation/compute.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

#include "caller/correlation.hpp"
#include "caller/data_set.hpp"
#include "caller/text.hpp"
#include "cli/codes.hpp"
#include "cli/correlation/partial.hpp"
#include "numcore/host.h"

namespace numcore::cli {

namespace {

std::int32_t familyOf(Coefficient coefficient) {
    switch (coefficient) {
        case Coefficient::kSpearman:
            return NUMCORE_COR_FAMILY_SPEARMAN;
        case Coefficient::kKendall:
            return NUMCORE_COR_FAMILY_KENDALL;
        case Coefficient::kPolychoric:
            return NUMCORE_COR_FAMILY_POLYCHORIC;
        case Coefficient::kPearson:
            break;
    }
    return NUMCORE_COR_FAMILY_PEARSON;
}

/// The library's code; Pearson's is always two-sided, see studentPValue.
std::int32_t alternativeOf(const CorrelationRequest& request) {
    return request.coefficient == Coefficient::kPearson ? 0 : codeOf(request.alternative);
}

COR_Param paramOf(const CorrelationRequest& request, bool rectangular) {
    COR_Param param{};
    param.coefficient = familyOf(request.coefficient);
    param.alternative = alternativeOf(request);
    param.missing = request.listwise ? NUMCORE_COR_LISTWISE : NUMCORE_COR_PAIRWISE;
    param.decimals = -1;
    param.alpha = request.alpha;
    param.covariance = flagOf(request.covariance);
    param.pValues = param.squared = param.intervals = flagOf(!request.covariance);
    param.exact = flagOf(request.exact);
    param.continuity = flagOf(request.continuity);
    param.rectangular = flagOf(rectangular);
    param.maximumLikelihood = flagOf(request.fullLikelihood);
    param.positiveColour = param.negativeColour = -1;
    return param;
}

std::size_t countFrom(std::int32_t n) {
    return n > 0 ? static_cast<std::size_t>(n) : 0;
}

/// The columns of a role as a table of the library, their names noted.
caller::NumericTable takeTable(Sample& sample, Role role, std::vector<std::string>& names) {
    std::vector<caller::Array> cells;
    std::vector<std::u16string> labels;
    for (NumberColumn& column : sample.numbers) {
        if (column.role != role) continue;
        names.push_back(column.name);
        labels.push_back(caller::toUtf16(column.name));
        cells.push_back(std::move(column.cells));
    }
    caller::NumericTable table(std::move(cells));
    table.setLabels(labels);
    return table;
}

void checkStatus(std::int32_t status) {
    if (status < 0)
        throw std::runtime_error(fmt::format("the correlation analysis cannot be done: status {}", status));
}

CorrelatedPair pairOf(const caller::CorrelationResults& results, std::size_t i, std::size_t j,
                      const CorrelationRequest& request) {
    const auto cell = [i, j](const auto& table) { return table.column(j).at(i); };
    CorrelatedPair pair{cell(results.coefficients()), cell(results.pValues()),
                        cell(results.squared()),      cell(results.lower()),
                        cell(results.upper()),        countFrom(results.nPairs().column(j).asInts()[i])};
    if (request.covariance || pair.coefficient == NUMCORE_MISSING) pair.pValue = NUMCORE_MISSING;
    if (request.coefficient == Coefficient::kPearson && !request.covariance)
        pair.pValue = studentPValue(pair.coefficient, pair.pValue, pair.n, request.alternative);
    return pair;
}

}  // namespace

double studentPValue(double coefficient, double twoSided, std::size_t n, Alternative alternative) {
    constexpr std::size_t kFewest = 3;
    if (coefficient == NUMCORE_MISSING || twoSided == NUMCORE_MISSING || n < kFewest) return NUMCORE_MISSING;
    if (std::abs(coefficient) >= 1.0) twoSided = 0.0;
    if (alternative == Alternative::kTwoSided) return twoSided;
    const bool asSupposed = alternative == Alternative::kGreater ? coefficient > 0.0 : coefficient < 0.0;
    return asSupposed ? twoSided / 2.0 : 1.0 - twoSided / 2.0;
}

Correlations correlate(Sample sample, const CorrelationRequest& request) {
    const auto has = [&sample](Role role) {
        return std::ranges::any_of(sample.numbers, [role](const auto& column) { return column.role == role; });
    };
    if (has(Role::kHeldConstant)) return correlatePartially(sample, request);
    Correlations out;
    out.rectangular = has(Role::kAcross);
    caller::DataSet data;
    data.setNumeric1(takeTable(sample, Role::kVariable, out.rows));
    if (out.rectangular) {
        data.setNumeric2(takeTable(sample, Role::kAcross, out.columns));
    } else {
        out.columns = out.rows;
    }
    if (sample.weighted()) data.setWeights(std::move(sample.weights));
    COR_Param param = paramOf(request, out.rectangular);
    caller::CorrelationResults results(out.rows.size(), out.columns.size());
    caller::Host host;
    checkStatus(Cpp_COR_Compute_ST(&data.record(), nullptr, &param, &results.record(), nullptr, host.system(),
                                   host.host()));
    out.pairs.reserve(out.rows.size() * out.columns.size());
    for (std::size_t i = 0; i < out.rows.size(); ++i) {
        for (std::size_t j = 0; j < out.columns.size(); ++j)
            out.pairs.push_back(pairOf(results, i, j, request));
    }
    const COR_Results& told = results.record();
    out.nRowsUsed = countFrom(told.nRowsUsed);
    out.nRowsExcluded = countFrom(told.nRowsExcluded);
    out.nMissing = countFrom(told.nMissing);
    out.nNotExact = countFrom(told.nNotExact);
    out.nNotConverged = countFrom(told.nNotConverged);
    out.complete = told.complete == NUMCORE_TRUE;
    return out;
}

}  // namespace numcore::cli
