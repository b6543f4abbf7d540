/* Correlation: p-values, laws and intervals of coefficients; coefficients of pairs and of matrices.
 *
 * What the doors share:
 *   data        column-major doubles, n observations by p variables; the missing value holds nothing. A pair
 *               of variables uses the observations where both are present
 *   exclusion   one 16-bit value an observation: 0 = use it, anything else = skip it; null uses all
 *   weights     one an observation; null = unit weights
 *   flags       16-bit booleans, true only when -1
 *   alternative 0 two-sided, -1 lower, 1 upper, 2 no p-value (it becomes the missing value); -2 = no p-value
 *               for Pearson (p comes from q = 0). Other codes are upper for ranks and lower for Pearson
 *   matrices    p x p (or columns of the first x columns of the second), column-major; an output that is null
 *               is not wanted. What cannot be computed is the missing value */
#pragma once

#include "numcore/automation.h"

/* Coefficient whose interval `COR_ComputeCI_ST` computes. */
enum NumcoreCorrelation { NUMCORE_COR_PEARSON = 1, NUMCORE_COR_SPEARMAN = 2, NUMCORE_COR_KENDALL = 3 };

/* Law behind Kendall's p-value. */
enum NumcoreKendallLaw {
    NUMCORE_KENDALL_EXACT = -1,           /* exact where it applies, otherwise normal */
    NUMCORE_KENDALL_NORMAL = 0,           /* normal */
    NUMCORE_KENDALL_CONTINUITY = 1,       /* normal, S moved by 1 towards 0 */
    NUMCORE_KENDALL_EXACT_CONTINUITY = 2, /* exact where it applies, otherwise as 1 */
};

NUMCORE_BEGIN_C

/* ---- Laws and p-values ---- */

/** Distribution function of Spearman's coefficient without ties: the probability that a random order of n
 *  values gives a sum of squared rank differences of at least S.
 *
 *  @param rho the coefficient, used from n = 10 on
 *  @param n   number of observations
 *  @param S   sum of squared rank differences, used below n = 10, where orders within 1e-9 of it reach it
 *  @return n < 10: exact, from all orders. n < 1201: `CDFNormalStd`(rho sqrt(n - 1)). Otherwise `CDFStudent` of
 *          rho sqrt((n - 2) / (1 - rho^2)) with n - 2 degrees of freedom; 0 or 1 by the sign for |rho| >= 1.
 *          Below n = 1201, 0 when S exceeds its maximum (n^2 - 1) n / 3. The missing value for n < 0 */
NUMCORE_API double CDFSpearman(double rho, int32_t n, double S);

/** Upper tail of Kendall's S = concordant - discordant pairs: P(K >= S) over all orders of n values, no ties.
 *
 *  @return exact up to n = 200, beyond it by the normal law with a continuity correction, to 3e-4 absolute;
 *          the missing value for n < 1. Kendall (1938), Biometrika 30:81-93 */
NUMCORE_API double CDFKendall(int32_t S, int32_t n);

/** P-value of a Pearson coefficient.
 *
 *  @param alternative code; 2 makes the p-value missing
 *  @param r           coefficient
 *  @param n           number of observations; below 3, where Student's law does not exist, p is missing
 *  @param pvalue      out: with q = 1 - `CDFStudent`(|t|, n - 2): 2 min(q, 1 - q) two-sided, 1 - q upper, q
 *                     otherwise. Kept: |t| for every alternative
 *  @param t           out: r sqrt((n - 2) / (1 - r^2)). For |r| >= 1 and alternative -2 it is left as it was
 *                     and q is 0 */
NUMCORE_API void PVal_Pearson(int32_t alternative, double r, int32_t n, double* pvalue, double* t);

/** P-value of a Spearman coefficient by `CDFSpearman` with S = (n^3 - n)(1 - rho) / 6, not rounded.
 *
 *  @param pvalue       out: two-sided twice the smaller tail, at most 1; lower `CDFSpearman`(rho, n, S); upper
 *                      1 - `CDFSpearman`(rho, n, S + 2). Kept: 2, where the functions of data step by 1.
 *                      Missing for alternative 2 and a missing rho
 *  @param signif_flag  flag: write signif
 *  @param signif       out: 1 when alpha > p, otherwise 0
 *  @param squared_flag flag: write squared
 *  @param squared      out: rho^2; missing when rho is
 *  @param S            out; missing where the p-value is */
NUMCORE_API void PvalSpearman(double rho, int32_t alternative, int32_t n, double* pvalue, int16_t signif_flag,
                              double alpha, int32_t* signif, int16_t squared_flag, double* squared, double* S);

/** Confidence interval of a coefficient by Fisher's transform.
 *
 *  @param r      coefficient
 *  @param n      number of pairs
 *  @param alpha  1 - confidence level
 *  @param method NumcoreCorrelation. Standard errors: 1/sqrt(n - 3); sqrt((1 + r^2/2)/(n - 3));
 *                sqrt(0.437/(n - 4)); 0 for any other code
 *  @param lower, upper out: tanh(atanh(r) -+ z se). Kept: r = 1 gives [1, 1], but r = -1, like what lies
 *                outside [-1, 1] and a too small n, gives missing limits
 *  Fisher (1921), Metron 1:3-32; Bonett and Wright (2000), Psychometrika 65:23-28; Fieller, Hartley and Pearson
 *  (1957), Biometrika 44:470-481. */
NUMCORE_API void COR_ComputeCI_ST(double r, int32_t n, double alpha, int32_t method, double* lower,
                                  double* upper);

/** `COR_ComputeCI_ST` of Pearson coefficients for automation arrays of doubles: cell by cell, as many as all
 *  arrays have.
 *
 *  @param n number of pairs: one for all cells, or one a cell */
NUMCORE_API void Cpp_PearsonRhoConfidenceInterval(SAFEARRAY* r, SAFEARRAY* n, double alpha, SAFEARRAY* lower,
                                                  SAFEARRAY* upper);

/* ---- One pair of variables ---- */

/** Weighted Pearson coefficient or covariance of x and y.
 *
 *  Sums of squares and products by updating; a covariance divides by W, the sum of weights, less (unbiased) 1
 *  for frequency weights and the mean weight otherwise. Weights of 0 count as observations (in the degrees of
 *  freedom too). The coefficient is missing without observations or spread.
 *
 *  @param correlation flag: coefficient, otherwise covariance
 *  @param unbiased    flag: divisor of a covariance
 *  @param frequency   flag: weights count rows
 *  @param pValue      out, written when withPValue is true: as `PVal_Pearson` from the number of pairs. Kept:
 *                     a coefficient that rounding brought above 1 becomes 1 with p = 1, one below -1 becomes -1
 *                     with p = 0
 *  West (1979), Comm. ACM 22:532-535. */
NUMCORE_API double Cpp_V_PearsonRho(const double* x, int32_t n, const double* y, const int16_t* exclusion,
                                    const double* weights, int16_t correlation, int16_t unbiased,
                                    int16_t frequency, double* pValue, int32_t alternative, int16_t withPValue);

/** Spearman coefficient of x and y: average ranks, corrected for ties; weights as if rows were repeated.
 *
 *  @param pValue out: as `PvalSpearman`, but the upper tail steps to S + 1 (kept), with n the whole part of the
 *                sum of weights
 *  @param S      out: (W^3 - W)(1 - rho) / 6; missing where the p-value is */
NUMCORE_API double VB_V_SpearmanRho(const double* x, int32_t n, const double* y, const int16_t* exclusion,
                                    const double* weights, double* pValue, int32_t alternative, double* S);

/** Kendall coefficient (tau-b) of x and y.
 *
 *  A pair of observations with |dx dy| <= 2.22e-16 is tied; each product of two weights is truncated to a whole
 *  number before it is added (kept).
 *
 *  @param pValue     out: exact (`CDFKendall`) without ties and with less than 50 weight when *exact is true;
 *                    otherwise by the normal law with the variance corrected for ties. 0 when a variable is
 *                    constant (kept)
 *  @param exact      in/out flag, or null for false: on return whether the exact law was used
 *  @param continuity flag: move S by 1 towards 0 for the normal law
 *  @param S          out: concordant less discordant weight
 *  Kendall (1970), Rank Correlation Methods, 4th ed., chapters 3 to 5. */
NUMCORE_API double VB_V_KendallTau(const double* x, int32_t n, const double* y, const int16_t* exclusion,
                                   const double* weights, double* pValue, int32_t alternative, int16_t* exact,
                                   int16_t continuity, double* S);

/* ---- All pairs of columns ---- */

/** `Cpp_V_PearsonRho` with all flags true for each pair of p columns.
 *  @param r, pValues out, p x p
 *  @return 0; -1 for null data or r, n < 0 or p < 1 */
NUMCORE_API int32_t VB_M_PearsonRho(const double* data, int32_t n, int32_t p, const int16_t* exclusion,
                                    const double* weights, int32_t alternative, double* r, double* pValues);
/** `VB_V_SpearmanRho` for each pair of p columns, as `VB_M_PearsonRho`. */
NUMCORE_API int32_t VB_M_SpearmanRho(const double* data, int32_t n, int32_t p, const int16_t* exclusion,
                                     const double* weights, int32_t alternative, double* r, double* pValues);
/** `VB_V_KendallTau` for each pair of p columns, as `VB_M_PearsonRho`.
 *  @param law NumcoreKendallLaw */
NUMCORE_API int32_t VB_M_KendallTau(const double* data, int32_t n, int32_t p, const int16_t* exclusion,
                                    const double* weights, int32_t alternative, int16_t law, double* r,
                                    double* pValues);

/** `VB_M_PearsonRho` for automation arrays: data, weights and outputs of doubles, exclusion of 16-bit integers;
 *  null exclusion, weights and pValues as there.
 *  @return 0; -1 when there is no data or an output has not p x p cells */
NUMCORE_API int32_t M_PearsonRhoSPV(SAFEARRAY* data, SAFEARRAY* exclusion, SAFEARRAY* weights,
                                    int32_t alternative, SAFEARRAY* r, SAFEARRAY* pValues);
/** `VB_M_SpearmanRho` for automation arrays. */
NUMCORE_API int32_t M_SpearmanRhoSPV(SAFEARRAY* data, SAFEARRAY* exclusion, SAFEARRAY* weights,
                                     int32_t alternative, SAFEARRAY* r, SAFEARRAY* pValues);
/** `VB_M_KendallTau` for automation arrays. */
NUMCORE_API int32_t M_KendallTauSPV(SAFEARRAY* data, SAFEARRAY* exclusion, SAFEARRAY* weights,
                                    int32_t alternative, int16_t law, SAFEARRAY* r, SAFEARRAY* pValues);

/* ---- Columns of one matrix with columns of another ---- */

/** Pearson coefficients between every column of first and every column of second, for automation arrays of
 *  doubles with the same number of rows.
 *
 *  @param r, pValues out: columns of first x columns of second; pValues may be null
 *  @return 0; -1 when there is no data, the rows differ or an output has another size */
NUMCORE_API int32_t Cpp_M_PearsonRhoMatMat(SAFEARRAY* first, SAFEARRAY* second, SAFEARRAY* exclusion,
                                           SAFEARRAY* weights, int32_t alternative, SAFEARRAY* r,
                                           SAFEARRAY* pValues);
/** `Cpp_M_PearsonRhoMatMat` with Spearman coefficients. */
NUMCORE_API int32_t Cpp_M_SpearmanRhoMatMat(SAFEARRAY* first, SAFEARRAY* second, SAFEARRAY* exclusion,
                                            SAFEARRAY* weights, int32_t alternative, SAFEARRAY* r,
                                            SAFEARRAY* pValues);
/** `Cpp_M_PearsonRhoMatMat` with Kendall coefficients. @param law NumcoreKendallLaw */
NUMCORE_API int32_t Cpp_M_KendallTauMatMat(SAFEARRAY* first, SAFEARRAY* second, SAFEARRAY* exclusion,
                                           SAFEARRAY* weights, int32_t alternative, int16_t law, SAFEARRAY* r,
                                           SAFEARRAY* pValues);

NUMCORE_END_C
