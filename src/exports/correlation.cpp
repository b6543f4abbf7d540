// Doors of the coefficients of one pair.

#include "numcore/correlation.h"

#include <algorithm>

#include "correlation/rank_laws.hpp"
#include "numcore/correlation.hpp"

using numcore::matrix;

namespace {

/// A caller's vector in place. It is not changed, though the container could.
template <class Cell>
matrix<Cell> vectorOf(const Cell* cells, std::int32_t n) {
    return matrix<Cell>(n, 1, const_cast<Cell*>(cells), true);
}

}  // namespace

double Cpp_V_PearsonRho(const double* x, int32_t n, const double* y, const int16_t* exclusion,
                        const double* weights, int16_t correlation, int16_t unbiased, int16_t frequency,
                        double* pValue, int32_t alternative, int16_t withPValue) {
    const auto first = vectorOf(x, n);
    const auto second = vectorOf(y, n);
    const auto skipped = vectorOf(exclusion, n);
    const auto w = vectorOf(weights, n);
    return numcore::V_PearsonRho(&first, n, &second, &skipped, &w, correlation, unbiased, frequency, pValue,
                                 alternative, withPValue);
}

double VB_V_SpearmanRho(const double* x, int32_t n, const double* y, const int16_t* exclusion,
                        const double* weights, double* pValue, int32_t alternative, double* S) {
    const auto first = vectorOf(x, n);
    const auto second = vectorOf(y, n);
    const auto skipped = vectorOf(exclusion, n);
    const auto w = vectorOf(weights, n);
    return numcore::V_SpearmanRho(&first, n, &second, &skipped, &w, pValue, alternative, S);
}

double VB_V_KendallTau(const double* x, int32_t n, const double* y, const int16_t* exclusion,
                       const double* weights, double* pValue, int32_t alternative, int16_t* exact,
                       int16_t continuity, double* S) {
    const auto first = vectorOf(x, n);
    const auto second = vectorOf(y, n);
    const auto skipped = vectorOf(exclusion, n);
    const auto w = vectorOf(weights, n);
    return numcore::V_KendallTau(&first, n, &second, &skipped, &w, pValue, alternative, exact, continuity, S);
}

void Cpp_PearsonRhoConfidenceInterval(SAFEARRAY* r, SAFEARRAY* n, double alpha, SAFEARRAY* lower,
                                      SAFEARRAY* upper) {
    const matrix<double> coefficients(r);
    const matrix<double> counts(n);
    matrix<double> low(lower);
    matrix<double> high(upper);
    if (counts.size() == 0) return;
    const std::int32_t nCells = std::min(
        {coefficients.size(), low.size(), high.size(), counts.size() == 1 ? INT32_MAX : counts.size()});
    for (std::int32_t i = 0; i < nCells; ++i) {
        const double count = counts.size() == 1 ? counts[0] : counts[i];
        COR_ComputeCI_ST(coefficients[i], numcore::correlation::wholePart(count), alpha, NUMCORE_COR_PEARSON,
                         &low[i], &high[i]);
    }
}
