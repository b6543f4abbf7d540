// Coefficients of all pairs over column sets, with all that is derived from them.

#include "correlation/rank_laws.hpp"
#include "correlation/rank_matrices.hpp"
#include "numcore/correlation.hpp"

namespace numcore {
namespace {

using correlation::Coefficient;
using correlation::Store;
using correlation::Table;

struct Outputs {
    cST_MVect<double>& r;
    bool withPValues;
    cST_MVect<double>& pValues;
    double alpha;
    cST_MVect<std::int32_t>& significant;
    bool withSquared;
    cST_MVect<double>& squared;
    bool withInterval;
    cST_MVect<double>& lower;
    cST_MVect<double>& upper;
};

/// Only cells that exist: the spare cell is shared by all threads.
template <class Cell>
void put(cST_MVect<Cell>& out, std::int32_t i, std::int32_t j, Cell value) {
    if (j < out.columnCount() && i < out.column(j).size()) out.column(j)[i] = value;
}

/// @param method  NumcoreCorrelation; 0 for covariances, which have no interval
void putCell(const Outputs& out, std::int32_t i, std::int32_t j, const Coefficient& found,
             std::int32_t method) {
    put(out.r, i, j, found.value);
    if (out.withPValues) {
        put(out.pValues, i, j, found.pValue);
        put(out.significant, i, j, found.pValue != kMissing && found.pValue < out.alpha ? 1 : 0);
    }
    if (out.withSquared) put(out.squared, i, j, found.value == kMissing ? kMissing : found.value * found.value);
    if (out.withInterval) {
        double lower = kMissing;
        double upper = kMissing;
        if (method != 0) {
            COR_ComputeCI_ST(found.value, correlation::wholePart(static_cast<double>(found.nPairs)), out.alpha,
                             method, &lower, &upper);
        }
        put(out.lower, i, j, lower);
        put(out.upper, i, j, upper);
    }
}

Store storeInto(const Outputs& out, std::int32_t method) {
    return [out, method](std::size_t i, std::size_t j, const Coefficient& found) {
        const auto row = static_cast<std::int32_t>(i);
        const auto column = static_cast<std::int32_t>(j);
        putCell(out, row, column, found, method);
        if (row != column) putCell(out, column, row, found, method);
    };
}

Table tableOf(const cST_MVect<double>& data, std::int32_t n, std::int32_t p, const matrix<double>& weights,
              const matrix<std::int16_t>& exclusion) {
    Table table;
    table.nRows = static_cast<std::size_t>(std::max(n, 0));
    for (std::int32_t c = 0; c < std::min(p, data.columnCount()); ++c) table.columns.push_back(data.cells(c));
    table.rows = {weights.span(), exclusion.span()};
    return table;
}

}  // namespace

void M_PearsonCovCorr_ST(const cST_MVect<double>& data, std::int32_t n, std::int32_t p,
                         const matrix<double>& weights, const matrix<std::int16_t>& exclusion,
                         std::int16_t correlation, std::int16_t unbiased, std::int16_t frequency,
                         std::int32_t alternative, cST_MVect<double>& r, std::int16_t withPValues,
                         cST_MVect<double>& pValues, double alpha, cST_MVect<std::int32_t>& significant,
                         std::int16_t withSquared, cST_MVect<double>& squared, std::int16_t withInterval,
                         cST_MVect<double>& lower, cST_MVect<double>& upper) {
    const correlation::PearsonOptions options{isTrue(correlation), isTrue(unbiased), isTrue(frequency),
                                              isTrue(withPValues), alternative};
    const Outputs out{r,       isTrue(withPValues),  pValues, alpha, significant, isTrue(withSquared),
                      squared, isTrue(withInterval), lower,   upper};
    correlation::pearsonMatrix(tableOf(data, n, p, weights, exclusion), nullptr, options,
                               storeInto(out, options.correlation ? NUMCORE_COR_PEARSON : 0));
}

void M_PearsonCovCorrNoMissNoWeight_ST(const cST_MVect<double>& data, std::int32_t n, std::int32_t p,
                                       const matrix<std::int16_t>& exclusion, std::int16_t correlation,
                                       std::int16_t unbiased, std::int16_t frequency, std::int32_t alternative,
                                       cST_MVect<double>& r, std::int16_t withPValues,
                                       cST_MVect<double>& pValues, double alpha,
                                       cST_MVect<std::int32_t>& significant, std::int16_t withSquared,
                                       cST_MVect<double>& squared, std::int16_t withInterval,
                                       cST_MVect<double>& lower, cST_MVect<double>& upper) {
    M_PearsonCovCorr_ST(data, n, p, matrix<double>(), exclusion, correlation, unbiased, frequency, alternative,
                        r, withPValues, pValues, alpha, significant, withSquared, squared, withInterval, lower,
                        upper);
}

void M_SpearmanRho_ST(const cST_MVect<double>& data, std::int32_t n, std::int32_t p,
                      const matrix<double>& weights, const matrix<std::int16_t>& exclusion,
                      std::int16_t /*option*/, std::int32_t alternative, cST_MVect<double>& r,
                      std::int16_t withPValues, cST_MVect<double>& pValues, double alpha,
                      cST_MVect<std::int32_t>& significant, std::int16_t withSquared,
                      cST_MVect<double>& squared, std::int16_t withInterval, cST_MVect<double>& lower,
                      cST_MVect<double>& upper) {
    const Outputs out{r,       isTrue(withPValues),  pValues, alpha, significant, isTrue(withSquared),
                      squared, isTrue(withInterval), lower,   upper};
    correlation::spearmanMatrix(tableOf(data, n, p, weights, exclusion), nullptr,
                                isTrue(withPValues) ? alternative : std::int32_t{correlation::kNoPValue},
                                storeInto(out, NUMCORE_COR_SPEARMAN));
}

void M_SpearmanRhoNoMissNoWeight_ST(const cST_MVect<double>& data, std::int32_t n, std::int32_t p,
                                    const matrix<std::int16_t>& exclusion, std::int16_t option,
                                    std::int32_t alternative, cST_MVect<double>& r, std::int16_t withPValues,
                                    cST_MVect<double>& pValues, double alpha,
                                    cST_MVect<std::int32_t>& significant, std::int16_t withSquared,
                                    cST_MVect<double>& squared, std::int16_t withInterval,
                                    cST_MVect<double>& lower, cST_MVect<double>& upper) {
    M_SpearmanRho_ST(data, n, p, matrix<double>(), exclusion, option, alternative, r, withPValues, pValues,
                     alpha, significant, withSquared, squared, withInterval, lower, upper);
}

void M_KendallTau_ST(const cST_MVect<double>& data, std::int32_t n, std::int32_t p,
                     const matrix<double>& weights, const matrix<std::int16_t>& exclusion, std::int16_t option,
                     std::int32_t alternative, cST_MVect<double>& r, std::int16_t withPValues,
                     cST_MVect<double>& pValues, double alpha, cST_MVect<std::int32_t>& significant,
                     std::int16_t withSquared, cST_MVect<double>& squared, std::int16_t withInterval,
                     cST_MVect<double>& lower, cST_MVect<double>& upper) {
    const Outputs out{r,       isTrue(withPValues),  pValues, alpha, significant, isTrue(withSquared),
                      squared, isTrue(withInterval), lower,   upper};
    const std::int32_t asked = isTrue(withPValues) ? alternative : std::int32_t{correlation::kNoPValue};
    correlation::kendallMatrix(tableOf(data, n, p, weights, exclusion), nullptr,
                               correlation::kendallOptions(asked, option), storeInto(out, NUMCORE_COR_KENDALL));
}

void M_KendallTauNoMissNoWeight_ST(const cST_MVect<double>& data, std::int32_t n, std::int32_t p,
                                   const matrix<std::int16_t>& exclusion, std::int16_t option,
                                   std::int32_t alternative, cST_MVect<double>& r, std::int16_t withPValues,
                                   cST_MVect<double>& pValues, double alpha,
                                   cST_MVect<std::int32_t>& significant, std::int16_t withSquared,
                                   cST_MVect<double>& squared, std::int16_t withInterval,
                                   cST_MVect<double>& lower, cST_MVect<double>& upper) {
    M_KendallTau_ST(data, n, p, matrix<double>(), exclusion, option, alternative, r, withPValues, pValues,
                    alpha, significant, withSquared, squared, withInterval, lower, upper);
}

}  // namespace numcore
