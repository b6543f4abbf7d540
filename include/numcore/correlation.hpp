// Correlation over the containers; `numcore/correlation.h` tells what each coefficient is, and what data,
// exclusion, weights, flags and alternative mean. Pointers to containers may be null for unit weights, no
// exclusion and outputs that are not wanted; the data of a pair is bounded by its shortest container.
#pragma once

#include "numcore/containers.hpp"
#include "numcore/correlation.h"

namespace numcore {

/// True when the values among the first n that are not missing are all equal; with none too.
NUMCORE_API bool V_IsConstant(const matrix<double>* x, std::int32_t n);

// ---- One pair
// -------------------------------------------------------------------------------------------------

/// `Cpp_V_PearsonRho` over containers.
NUMCORE_API double V_PearsonRho(const matrix<double>* x, std::int32_t n, const matrix<double>* y,
                                const matrix<std::int16_t>* exclusion, const matrix<double>* weights,
                                std::int16_t correlation, std::int16_t unbiased, std::int16_t frequency,
                                double* pValue, std::int32_t alternative, std::int16_t withPValue);

/// The same by reference, for columns of a data set; empty exclusion and weights are those of null.
NUMCORE_API double V_PearsonRho_ST(const matrix<double>& x, std::int32_t n, const matrix<double>& y,
                                   const matrix<std::int16_t>& exclusion, const matrix<double>& weights,
                                   std::int16_t correlation, std::int16_t unbiased, std::int16_t frequency,
                                   double& pValue, std::int32_t alternative, std::int16_t withPValue);

/// `VB_V_SpearmanRho` over containers.
NUMCORE_API double V_SpearmanRho(const matrix<double>* x, std::int32_t n, const matrix<double>* y,
                                 const matrix<std::int16_t>* exclusion, const matrix<double>* weights,
                                 double* pValue, std::int32_t alternative, double* S);

/// `VB_V_KendallTau` over containers.
NUMCORE_API double V_KendallTau(const matrix<double>* x, std::int32_t n, const matrix<double>* y,
                                const matrix<std::int16_t>* exclusion, const matrix<double>* weights,
                                double* pValue, std::int32_t alternative, std::int16_t* exact,
                                std::int16_t continuity, double* S);

// ---- Matrices over column sets
// --------------------------------------------------------------------------------

/// Pearson coefficients or covariances of all pairs of the first p columns, rows 0 to n - 1.
///
/// @param data         columns; cells beyond the end of a column are missing
/// @param weights      empty = unit weights
/// @param exclusion    empty = use all
/// @param correlation, unbiased, frequency  flags of `Cpp_V_PearsonRho`
/// @param alternative  code
/// @param r            out, p x p: coefficients or covariances
/// @param withPValues  flag: write pValues and significant
/// @param pValues      out, p x p
/// @param alpha        level of significance; 1 - alpha is the confidence level of the interval
/// @param significant  out, p x p: 1 when the p-value is below alpha, otherwise 0, missing p-values included
/// @param withSquared  flag: write squared
/// @param squared      out, p x p: squared coefficients
/// @param withInterval flag: write lower and upper
/// @param lower, upper out, p x p: limits of `COR_ComputeCI_ST` with n the number of pairs used; missing for
///                     covariances
/// Outputs that are smaller than p x p get the cells that they have.
NUMCORE_API void M_PearsonCovCorr_ST(const cST_MVect<double>& data, std::int32_t n, std::int32_t p,
                                     const matrix<double>& weights, const matrix<std::int16_t>& exclusion,
                                     std::int16_t correlation, std::int16_t unbiased, std::int16_t frequency,
                                     std::int32_t alternative, cST_MVect<double>& r, std::int16_t withPValues,
                                     cST_MVect<double>& pValues, double alpha,
                                     cST_MVect<std::int32_t>& significant, std::int16_t withSquared,
                                     cST_MVect<double>& squared, std::int16_t withInterval,
                                     cST_MVect<double>& lower, cST_MVect<double>& upper);

/// M_PearsonCovCorr_ST for data without weights and missing values. Its results are the same: which columns are
/// complete is found out once, and the pairs of complete columns go through the same products of blocks.
NUMCORE_API void M_PearsonCovCorrNoMissNoWeight_ST(
    const cST_MVect<double>& data, std::int32_t n, std::int32_t p, const matrix<std::int16_t>& exclusion,
    std::int16_t correlation, std::int16_t unbiased, std::int16_t frequency, std::int32_t alternative,
    cST_MVect<double>& r, std::int16_t withPValues, cST_MVect<double>& pValues, double alpha,
    cST_MVect<std::int32_t>& significant, std::int16_t withSquared, cST_MVect<double>& squared,
    std::int16_t withInterval, cST_MVect<double>& lower, cST_MVect<double>& upper);

/// Spearman coefficients of all pairs, arguments as in M_PearsonCovCorr_ST.
///
/// @param option  keeps the place of Kendall's law; not looked at
NUMCORE_API void M_SpearmanRho_ST(const cST_MVect<double>& data, std::int32_t n, std::int32_t p,
                                  const matrix<double>& weights, const matrix<std::int16_t>& exclusion,
                                  std::int16_t option, std::int32_t alternative, cST_MVect<double>& r,
                                  std::int16_t withPValues, cST_MVect<double>& pValues, double alpha,
                                  cST_MVect<std::int32_t>& significant, std::int16_t withSquared,
                                  cST_MVect<double>& squared, std::int16_t withInterval,
                                  cST_MVect<double>& lower, cST_MVect<double>& upper);

/// M_SpearmanRho_ST as M_PearsonCovCorrNoMissNoWeight_ST.
NUMCORE_API void M_SpearmanRhoNoMissNoWeight_ST(
    const cST_MVect<double>& data, std::int32_t n, std::int32_t p, const matrix<std::int16_t>& exclusion,
    std::int16_t option, std::int32_t alternative, cST_MVect<double>& r, std::int16_t withPValues,
    cST_MVect<double>& pValues, double alpha, cST_MVect<std::int32_t>& significant, std::int16_t withSquared,
    cST_MVect<double>& squared, std::int16_t withInterval, cST_MVect<double>& lower, cST_MVect<double>& upper);

/// Kendall coefficients of all pairs, arguments as in M_PearsonCovCorr_ST.
///
/// @param option  NumcoreKendallLaw
NUMCORE_API void M_KendallTau_ST(const cST_MVect<double>& data, std::int32_t n, std::int32_t p,
                                 const matrix<double>& weights, const matrix<std::int16_t>& exclusion,
                                 std::int16_t option, std::int32_t alternative, cST_MVect<double>& r,
                                 std::int16_t withPValues, cST_MVect<double>& pValues, double alpha,
                                 cST_MVect<std::int32_t>& significant, std::int16_t withSquared,
                                 cST_MVect<double>& squared, std::int16_t withInterval,
                                 cST_MVect<double>& lower, cST_MVect<double>& upper);

/// M_KendallTau_ST as M_PearsonCovCorrNoMissNoWeight_ST.
NUMCORE_API void M_KendallTauNoMissNoWeight_ST(
    const cST_MVect<double>& data, std::int32_t n, std::int32_t p, const matrix<std::int16_t>& exclusion,
    std::int16_t option, std::int32_t alternative, cST_MVect<double>& r, std::int16_t withPValues,
    cST_MVect<double>& pValues, double alpha, cST_MVect<std::int32_t>& significant, std::int16_t withSquared,
    cST_MVect<double>& squared, std::int16_t withInterval, cST_MVect<double>& lower, cST_MVect<double>& upper);

// ---- Matrices over matrices
// -----------------------------------------------------------------------------------

/// `VB_M_PearsonRho` over containers. @return 0; -1 null or empty data, or an output of another size
NUMCORE_API std::int32_t M_PearsonRho(const matrix<double>* data, const matrix<std::int16_t>* exclusion,
                                      const matrix<double>* weights, std::int32_t alternative,
                                      matrix<double>* r, matrix<double>* pValues);
/// `VB_M_SpearmanRho` over containers, as M_PearsonRho.
NUMCORE_API std::int32_t M_SpearmanRho(const matrix<double>* data, const matrix<std::int16_t>* exclusion,
                                       const matrix<double>* weights, std::int32_t alternative,
                                       matrix<double>* r, matrix<double>* pValues);
/// `VB_M_KendallTau` over containers, as M_PearsonRho.
NUMCORE_API std::int32_t M_KendallTau(const matrix<double>* data, const matrix<std::int16_t>* exclusion,
                                      const matrix<double>* weights, std::int32_t alternative, std::int16_t law,
                                      matrix<double>* r, matrix<double>* pValues);
/// `Cpp_M_PearsonRhoMatMat` over containers, with the flags of `Cpp_V_PearsonRho`. A null second is the first.
NUMCORE_API std::int32_t M_PearsonRhoMatMat2(const matrix<double>* first, const matrix<double>* second,
                                             const matrix<std::int16_t>* exclusion,
                                             const matrix<double>* weights, std::int16_t correlation,
                                             std::int16_t unbiased, std::int16_t frequency,
                                             std::int32_t alternative, matrix<double>* r,
                                             matrix<double>* pValues);
/// `Cpp_M_SpearmanRhoMatMat` over containers. A null second is the first.
NUMCORE_API std::int32_t M_SpearmanRhoMatMat2(const matrix<double>* first, const matrix<double>* second,
                                              const matrix<std::int16_t>* exclusion,
                                              const matrix<double>* weights, std::int32_t alternative,
                                              matrix<double>* r, matrix<double>* pValues);
/// `Cpp_M_KendallTauMatMat` over containers. A null second is the first.
NUMCORE_API std::int32_t M_KendallTauMatMat2(const matrix<double>* first, const matrix<double>* second,
                                             const matrix<std::int16_t>* exclusion,
                                             const matrix<double>* weights, std::int32_t alternative,
                                             std::int16_t law, matrix<double>* r, matrix<double>* pValues);

}  // namespace numcore
