/* The empirical distribution of a weighted sample: its step table, quantiles and probabilities read from it.
 *
 * A step table has two columns, value and cumulative probability, stored column by column: the second column
 * starts nRows cells after the first. Odd rows (from 1) stand just before a step, even rows on top of it. */
#pragma once

#include "numcore/api.h"

NUMCORE_BEGIN_C

/** Step table of the empirical distribution function of a weighted sample.
 *
 *  The first row is (x1, 0); where a value differs from the one before it by more than 2.220446049250313e-16,
 *  whatever their magnitude (kept), the top of the step before and the flat segment up to the value follow;
 *  the last row is (xn, 1). Tied values add no rows; an observation of weight 0 does.
 *
 *  @param values  n of them; an observation is left out when its value is missing or NaN or its weight
 *                 missing
 *  @param weights n of them; null: 1 each
 *  @param sort    flag: sort by value; otherwise the values are taken as ascending already
 *  @param table   out: 2n rows and 2 columns; the rows after the last one repeat it, so that the table can
 *                 be read as one of 2n rows
 *  @param nRows   out: rows of the table in use, 2 for each different value; 0, with the table left alone,
 *                 when n < 1, values or table is null, no observation is left, or the weights do not sum to
 *                 a positive number. Null: nothing is done. */
NUMCORE_API void VB_BuildCDFEmpirical(const double* values, int32_t n, const double* weights, int16_t sort,
                                      double* table, int32_t* nRows);

/** Quantile read from a step table.
 *
 *  @param p     probability; NaN gives 0
 *  @param nRows rows of the table
 *  @return the value of the first even row whose cumulative probability is at least p; 0 when there is none,
 *          the table is null or nRows < 2 */
NUMCORE_API double VB_InvCDFEmpirical(double p, const double* table, int32_t nRows);

/** Probability of a value in a step table: P(X <= x).
 *
 *  @param table values ascending
 *  @return the cumulative probability of the last row whose value is at most x: 0 below the first value, 1
 *          from the last one. The missing value for x missing or NaN, a null table or nRows < 2. Binary
 *          search. */
NUMCORE_API double Cpp_GetProbaVal(double x, const double* table, int32_t nRows);

/** `InvCDFUniformWDisc` for callers of the record interface. */
NUMCORE_API double Cpp_InvCDFUniformWDisc(double p, const double* weights, int32_t n, double a, double b);

NUMCORE_END_C
