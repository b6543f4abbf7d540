// Coefficients of one pair over the containers.

#include "correlation/kendall.hpp"
#include "correlation/pearson.hpp"
#include "correlation/spearman.hpp"
#include "numcore/correlation.hpp"

namespace numcore {
namespace {

template <class Cell>
std::span<const Cell> cellsOf(const matrix<Cell>* from) {
    return from == nullptr ? std::span<const Cell>() : from->span();
}

std::span<const double> firstCells(const matrix<double>* from, std::int32_t n) {
    const auto cells = cellsOf(from);
    return cells.first(std::min(cells.size(), static_cast<std::size_t>(std::max(n, 0))));
}

}  // namespace

bool V_IsConstant(const matrix<double>* x, std::int32_t n) {
    return correlation::isConstant(firstCells(x, n));
}

double V_PearsonRho(const matrix<double>* x, std::int32_t n, const matrix<double>* y,
                    const matrix<std::int16_t>* exclusion, const matrix<double>* weights,
                    std::int16_t correlation, std::int16_t unbiased, std::int16_t frequency, double* pValue,
                    std::int32_t alternative, std::int16_t withPValue) {
    const correlation::PearsonOptions options{isTrue(correlation), isTrue(unbiased), isTrue(frequency),
                                              isTrue(withPValue), alternative};
    const auto found = correlation::pearsonPair(firstCells(x, n), firstCells(y, n),
                                                {cellsOf(weights), cellsOf(exclusion)}, options);
    if (pValue != nullptr && options.withPValue) *pValue = found.pValue;
    return found.value;
}

double V_PearsonRho_ST(const matrix<double>& x, std::int32_t n, const matrix<double>& y,
                       const matrix<std::int16_t>& exclusion, const matrix<double>& weights,
                       std::int16_t correlation, std::int16_t unbiased, std::int16_t frequency, double& pValue,
                       std::int32_t alternative, std::int16_t withPValue) {
    return V_PearsonRho(&x, n, &y, &exclusion, &weights, correlation, unbiased, frequency, &pValue, alternative,
                        withPValue);
}

double V_SpearmanRho(const matrix<double>* x, std::int32_t n, const matrix<double>* y,
                     const matrix<std::int16_t>* exclusion, const matrix<double>* weights, double* pValue,
                     std::int32_t alternative, double* S) {
    const auto found = correlation::spearmanPair(firstCells(x, n), firstCells(y, n),
                                                 {cellsOf(weights), cellsOf(exclusion)}, alternative);
    if (pValue != nullptr) *pValue = found.pValue;
    if (S != nullptr) *S = found.statistic;
    return found.value;
}

double V_KendallTau(const matrix<double>* x, std::int32_t n, const matrix<double>* y,
                    const matrix<std::int16_t>* exclusion, const matrix<double>* weights, double* pValue,
                    std::int32_t alternative, std::int16_t* exact, std::int16_t continuity, double* S) {
    const correlation::KendallOptions options{alternative, exact != nullptr && isTrue(*exact),
                                              isTrue(continuity)};
    const auto found = correlation::kendallPair(firstCells(x, n), firstCells(y, n),
                                                {cellsOf(weights), cellsOf(exclusion)}, options);
    if (pValue != nullptr) *pValue = found.pValue;
    if (exact != nullptr) *exact = found.exact ? NUMCORE_TRUE : NUMCORE_FALSE;
    if (S != nullptr) *S = found.score;
    return found.value;
}

}  // namespace numcore
