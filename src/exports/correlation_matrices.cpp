// Doors of the coefficients of all pairs of columns.

#include <algorithm>

#include "numcore/correlation.h"
#include "numcore/correlation.hpp"

using numcore::matrix;

namespace {

/// A caller's array in place. It is not changed, though the container could.
template <class Cell>
matrix<Cell> arrayOf(const Cell* cells, std::int32_t rows, std::int32_t columns) {
    return matrix<Cell>(rows, columns, const_cast<Cell*>(cells), true);
}

/// Calls compute(data, exclusion, weights, r, pValues) with containers over plain arrays. Data of no rows has
/// coefficients too, all missing.
template <class Compute>
std::int32_t overArrays(const double* data, std::int32_t n, std::int32_t p, const std::int16_t* exclusion,
                        const double* weights, double* r, double* pValues, const Compute& compute) {
    if (data == nullptr || r == nullptr || n < 0 || p < 1) return -1;
    auto coefficients = arrayOf(r, p, p);
    auto probabilities = arrayOf(pValues, p, p);
    if (n == 0) {
        std::ranges::fill(coefficients.span(), numcore::kMissing);
        std::ranges::fill(probabilities.span(), numcore::kMissing);
        return 0;
    }
    const auto cells = arrayOf(data, n, p);
    const auto skipped = arrayOf(exclusion, n, 1);
    const auto w = arrayOf(weights, n, 1);
    return compute(&cells, &skipped, &w, &coefficients, &probabilities);
}

/// The same over automation arrays, with one table or two.
struct Arrays {
    Arrays(SAFEARRAY* data, SAFEARRAY* others, SAFEARRAY* skipped, SAFEARRAY* w, SAFEARRAY* r, SAFEARRAY* p)
        : first(data), second(others), exclusion(skipped), weights(w), coefficients(r), pValues(p) {}

    matrix<double> first;
    matrix<double> second;
    matrix<std::int16_t> exclusion;
    matrix<double> weights;
    matrix<double> coefficients;
    matrix<double> pValues;
};

}  // namespace

int32_t VB_M_PearsonRho(const double* data, int32_t n, int32_t p, const int16_t* exclusion,
                        const double* weights, int32_t alternative, double* r, double* pValues) {
    return overArrays(data, n, p, exclusion, weights, r, pValues,
                      [&](auto* cells, auto* skipped, auto* w, auto* coefficients, auto* probabilities) {
                          return numcore::M_PearsonRho(cells, skipped, w, alternative, coefficients,
                                                       probabilities);
                      });
}

int32_t VB_M_SpearmanRho(const double* data, int32_t n, int32_t p, const int16_t* exclusion,
                         const double* weights, int32_t alternative, double* r, double* pValues) {
    return overArrays(data, n, p, exclusion, weights, r, pValues,
                      [&](auto* cells, auto* skipped, auto* w, auto* coefficients, auto* probabilities) {
                          return numcore::M_SpearmanRho(cells, skipped, w, alternative, coefficients,
                                                        probabilities);
                      });
}

int32_t VB_M_KendallTau(const double* data, int32_t n, int32_t p, const int16_t* exclusion,
                        const double* weights, int32_t alternative, int16_t law, double* r, double* pValues) {
    return overArrays(data, n, p, exclusion, weights, r, pValues,
                      [&](auto* cells, auto* skipped, auto* w, auto* coefficients, auto* probabilities) {
                          return numcore::M_KendallTau(cells, skipped, w, alternative, law, coefficients,
                                                       probabilities);
                      });
}

int32_t M_PearsonRhoSPV(SAFEARRAY* data, SAFEARRAY* exclusion, SAFEARRAY* weights, int32_t alternative,
                        SAFEARRAY* r, SAFEARRAY* pValues) {
    Arrays a(data, nullptr, exclusion, weights, r, pValues);
    return numcore::M_PearsonRho(&a.first, &a.exclusion, &a.weights, alternative, &a.coefficients, &a.pValues);
}

int32_t M_SpearmanRhoSPV(SAFEARRAY* data, SAFEARRAY* exclusion, SAFEARRAY* weights, int32_t alternative,
                         SAFEARRAY* r, SAFEARRAY* pValues) {
    Arrays a(data, nullptr, exclusion, weights, r, pValues);
    return numcore::M_SpearmanRho(&a.first, &a.exclusion, &a.weights, alternative, &a.coefficients, &a.pValues);
}

int32_t M_KendallTauSPV(SAFEARRAY* data, SAFEARRAY* exclusion, SAFEARRAY* weights, int32_t alternative,
                        int16_t law, SAFEARRAY* r, SAFEARRAY* pValues) {
    Arrays a(data, nullptr, exclusion, weights, r, pValues);
    return numcore::M_KendallTau(&a.first, &a.exclusion, &a.weights, alternative, law, &a.coefficients,
                                 &a.pValues);
}

int32_t Cpp_M_PearsonRhoMatMat(SAFEARRAY* first, SAFEARRAY* second, SAFEARRAY* exclusion, SAFEARRAY* weights,
                               int32_t alternative, SAFEARRAY* r, SAFEARRAY* pValues) {
    Arrays a(first, second, exclusion, weights, r, pValues);
    return numcore::M_PearsonRhoMatMat2(&a.first, &a.second, &a.exclusion, &a.weights, NUMCORE_TRUE,
                                        NUMCORE_TRUE, NUMCORE_TRUE, alternative, &a.coefficients, &a.pValues);
}

int32_t Cpp_M_SpearmanRhoMatMat(SAFEARRAY* first, SAFEARRAY* second, SAFEARRAY* exclusion, SAFEARRAY* weights,
                                int32_t alternative, SAFEARRAY* r, SAFEARRAY* pValues) {
    Arrays a(first, second, exclusion, weights, r, pValues);
    return numcore::M_SpearmanRhoMatMat2(&a.first, &a.second, &a.exclusion, &a.weights, alternative,
                                         &a.coefficients, &a.pValues);
}

int32_t Cpp_M_KendallTauMatMat(SAFEARRAY* first, SAFEARRAY* second, SAFEARRAY* exclusion, SAFEARRAY* weights,
                               int32_t alternative, int16_t law, SAFEARRAY* r, SAFEARRAY* pValues) {
    Arrays a(first, second, exclusion, weights, r, pValues);
    return numcore::M_KendallTauMatMat2(&a.first, &a.second, &a.exclusion, &a.weights, alternative, law,
                                        &a.coefficients, &a.pValues);
}
