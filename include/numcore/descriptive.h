/* Descriptive statistics: summary tables of quantitative and qualitative variables, quantiles. */
#pragma once

#include "numcore/records.h"

/* Labels and table of a summary. The caller supplies both arrays. */
typedef struct ST_DescStats {
    SAFEARRAY* labels; /* BSTR: the name of each variable */
    SAFEARRAY* table;  /* doubles, a row per variable and 7 columns: observations, missing, present,
                          minimum, maximum, mean, standard deviation */
} ST_DescStats;
NUMCORE_LAYOUT(sizeof(ST_DescStats) == 16);

/* Quantile methods. X(1) <= ... <= X(m) are the sorted values, h a position among them, k its whole part and
 * f its fraction. The numbers in brackets are those of Hyndman and Fan (1996), The American Statistician
 * 50:361-365. */
enum NumcoreQuantileMethod {
    NUMCORE_QUANTILE_LINEAR_CDF = 0,   /* [4] h = mp, linear between X(k) and X(k+1) */
    NUMCORE_QUANTILE_NEAREST_EVEN = 1, /* [3] h = mp, nearest rank, ties to the even rank */
    NUMCORE_QUANTILE_INVERSE_CDF = 2,  /* [1] h = mp, X(k) when f = 0, else X(k+1) */
    NUMCORE_QUANTILE_WEIBULL = 3,      /* [6] h = (m+1)p, linear */
    NUMCORE_QUANTILE_AVERAGED_CDF = 4, /* [2] h = mp, mean of X(k), X(k+1) when f = 0, else X(k+1) */
    NUMCORE_QUANTILE_LINEAR = 5        /* [7] h = (m-1)p + 1, linear: the default of most programs */
};

/* Options of `Cpp_QuantileOpt` and `Cpp_GetQuantileTable`. */
typedef struct ST_QuantileOptions {
    int32_t method;      /* 0 to 5 */
    int16_t weighted;    /* flag: use the weights (then method is not looked at) */
    int16_t interval;    /* flag: confidence limits too */
    int16_t largeSample; /* flag: limits by the normal approximation instead of the exact binomial law */
    int16_t reserved[3];
    double level; /* confidence level in (0, 1), such as 0.95 */
} ST_QuantileOptions;
NUMCORE_LAYOUT(sizeof(ST_QuantileOptions) == 24);

/* Statistics of one variable, in the order in which `Cpp_UNI_Compute_Stats` writes them. */
enum NumcoreUnivariate {
    NUMCORE_UNI_COUNT = 0, /* observations */
    NUMCORE_UNI_MISSING = 1,
    NUMCORE_UNI_WEIGHT = 2, /* sum of weights of the values used */
    NUMCORE_UNI_MINIMUM = 3,
    NUMCORE_UNI_MAXIMUM = 4,
    NUMCORE_UNI_AT_MINIMUM = 5, /* weight at the minimum */
    NUMCORE_UNI_AT_MAXIMUM = 6,
    NUMCORE_UNI_RANGE = 7,
    NUMCORE_UNI_FIRST_QUARTILE = 8,
    NUMCORE_UNI_MEDIAN = 9,
    NUMCORE_UNI_THIRD_QUARTILE = 10,
    NUMCORE_UNI_SUM = 11,
    NUMCORE_UNI_MEAN = 12,
    NUMCORE_UNI_VARIANCE_N = 13, /* divisor: sum of weights */
    NUMCORE_UNI_VARIANCE = 14,   /* divisor: sum of weights - 1 */
    NUMCORE_UNI_DEVIATION_N = 15,
    NUMCORE_UNI_DEVIATION = 16,
    NUMCORE_UNI_VARIATION = 17,       /* standard deviation (divisor n) over mean */
    NUMCORE_UNI_SKEWNESS_N = 18,      /* g1, population form */
    NUMCORE_UNI_SKEWNESS = 19,        /* G1, corrected for the sample size */
    NUMCORE_UNI_SKEWNESS_BOWLEY = 20, /* of the quartiles */
    NUMCORE_UNI_KURTOSIS_N = 21,      /* g2, excess, population form */
    NUMCORE_UNI_KURTOSIS = 22,        /* G2, excess, corrected for the sample size */
    NUMCORE_UNI_SE_MEAN = 23,
    NUMCORE_UNI_SE_SKEWNESS = 24,
    NUMCORE_UNI_SE_KURTOSIS = 25,
    NUMCORE_UNI_MEAN_ABS_DEVIATION = 26,
    NUMCORE_UNI_MEDIAN_ABS_DEVIATION = 27,
    NUMCORE_UNI_GEOMETRIC_MEAN = 28,
    NUMCORE_UNI_GEOMETRIC_DEVIATION = 29,
    NUMCORE_UNI_HARMONIC_MEAN = 30,
    NUMCORE_UNI_N_STATISTICS = 31
};

NUMCORE_BEGIN_C

/** Summary table of the quantitative variables of a data set (numeric table 1).
 *
 *  Per variable: observations (the column's own length), missing cells, present cells, minimum, maximum,
 *  mean and standard deviation. With the weights flag set, mean and deviation are weighted by the observation
 *  weights taken as frequencies: the variance divides by the sum of weights minus 1; rows whose weight
 *  is not above 2.220446049250313e-16 take no part in them. One value gives deviation 0. Statistics of a
 *  column without a value are the missing value. A NaN cell is present, gives mean and deviation NaN and is
 *  passed over by minimum and maximum.
 *
 *  @param data             the data set
 *  @param weightsPerColumn flag: variable c (from 0) is weighted by column c modulo the number of columns of
 *                          numeric table 2 instead
 *  @param out              labels and table; what does not fit the arrays is dropped
 *  @param system           its text is passed on; may be null
 *
 *  One pass with pairwise updates of mean and sum of squares: Chan, Golub and LeVeque (1983), The American
 *  Statistician 37:242-247. */
NUMCORE_API void Cpp_GetDescriptive_ST(ST_DataSet* data, int16_t weightsPerColumn, ST_DescStats* out,
                                       SystemInfo* system);

/** `Cpp_GetDescriptive_ST` with, when withSecondTable is true, the columns of numeric table 2 after those of
 *  table 1 (always with the observation weights). */
NUMCORE_API void Cpp_ComputeQuantiStats_ST(ST_DataSet* data, ST_DescStats* out, int16_t withSecondTable,
                                           int16_t weightsPerColumn, SystemInfo* system);

/** Qualitative summary: one row per category, the variables one after another, in out's text table 1
 *  (variable name on the first row of its block, category) and numeric table 1 (count, frequency, percentage of
 *  the total weight; the missing value when the total is not above 0). The first row of each block goes to
 *  the row table of formats, the number of variables to its nBlocks. A null formats record is allowed. */
NUMCORE_API void Cpp_ComputeQualiStats_ST(ST_QualiInfo* info, ST_TableFormats* formats, ST_DataSet* out);

/** Quantile of order p of the first n cells of x. Missing cells are dropped first.
 *
 *  @param flags    not read (kept for the callers that pass it)
 *  @param weighted flag: weigh each cell by w; then the method number is not looked at and the result is the
 *                  value at which the running weight passes W p, or the mean of it and the next when the
 *                  running weight equals W p
 *  @param method   NumcoreQuantileMethod; any other number gives 0
 *  @param p        order, in [0, 1]
 *  @return the quantile; the missing value when no cell is left, n < 1, x (or, weighted, w) is null, or p is
 *          outside [0, 1]. NaN cells sort last.
 *
 *  Selection by sampled brackets after Floyd and Rivest (1975), Communications of the ACM 18:165-172. */
NUMCORE_API double Cpp_V_QuantileMethod(double* x, int32_t n, int16_t* flags, int16_t weighted, double* w,
                                        int32_t method, double p);

/** `Cpp_V_QuantileMethod` without weights. */
NUMCORE_API double Cpp_V_QuantileMethod2(double* x, int32_t n, int32_t method, double p);

/** One quantile with its confidence limits.
 *
 *  @param w      weights, read when options->weighted is set; may be null otherwise
 *  @param lower  out or null: lower limit (see `V_ConfQuantilesNonParam1`, `V_ConfQuantilesLargeSample`)
 *  @param upper  out or null: upper limit
 *  @return the quantile as `Cpp_V_QuantileMethod`; null options mean method 5 without limits. Limits that
 *          were not asked for or do not exist are the missing value. */
NUMCORE_API double Cpp_QuantileOpt(double* x, int32_t n, double* w, const ST_QuantileOptions* options, double p,
                                   double* lower, double* upper);

/** Quantiles of every column of numeric table 1.
 *
 *  @param p       orders, nP of them
 *  @param options null means method 5 without limits
 *  @param table   doubles, a row per column of numeric table 1 and a column per order; with limits three
 *                 columns per order: quantile, lower, upper
 *  @param labels  BSTR or null: receives the column names
 *  @return 0; -1 for a null record, null p or nP < 1 */
NUMCORE_API int32_t Cpp_GetQuantileTable(ST_DataSet* data, const double* p, int32_t nP,
                                         const ST_QuantileOptions* options, SAFEARRAY* table,
                                         SAFEARRAY* labels);

/** Skewness of the first n cells of x with weights w (null: 1 each).
 *
 *  @param kind 0: g1 = m3 / m2^(3/2); 1: G1 = g1 sqrt(W(W-1)) / (W-2); 2: b1 = g1 ((W-1)/W)^(3/2); W the sum
 *              of weights, m2 and m3 central moments with divisor W
 *  @return the missing value when there are fewer than 2 values (3 in kind 1), no spread, or the kind
 *          is unknown. Joanes and Gill (1998), The Statistician 47:183-189. */
NUMCORE_API double Cpp_Skewness(double* x, int32_t n, double* w, int32_t kind);

/** Statistics of each column of numeric table 1, in the order of NumcoreUnivariate.
 *
 *  @param method quantile method of the quartiles
 *  @param table  doubles, NUMCORE_UNI_N_STATISTICS rows and a column per variable
 *  @param labels BSTR or null: receives the column names
 *  @return 0; -1 for a null data set */
NUMCORE_API int32_t Cpp_UNI_Compute_Stats(ST_DataSet* data, int32_t method, SAFEARRAY* table,
                                          SAFEARRAY* labels);

/** Summary table by group, one row per variable and group.
 *
 *  Groups are the texts of column groupColumn of text table 3, ascending; rows without a group are left out.
 *  Out's text table 1 receives variable (column 1) and group (column 2), its numeric table 1 the seven
 *  statistics of `Cpp_GetDescriptive_ST`; out's row count is set.
 *
 *  @param byGroup  flag: rows ordered by group then variable; otherwise by variable then group
 *  @param messages 7779 texts of the caller, or null; entry 1, when not empty, names the group of all rows
 *                  that is used when the data set has no text table 3
 *  @return number of rows of the result; -1 for a null record or an unknown group column */
NUMCORE_API int32_t Cpp_GetStatsAndRestructure2_ST(ST_DataSet* data, int32_t groupColumn, int16_t byGroup,
                                                   ST_DataSet* out, char16_t** messages, SystemInfo* system,
                                                   QUORIXInfo* host);

NUMCORE_END_C
