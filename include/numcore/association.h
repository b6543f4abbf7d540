/* Partial correlation, reliability, and association of ordinal, two-valued and multivariate data.
 *
 * What all members share: a missing cell equals NUMCORE_MISSING; an observation takes part when its cells are
 * present and its weight exceeds 2.220446049250313e-16 (Pearson coefficients: is not 0); weights are
 * frequencies, and a null weight pointer stands for 1 each. Tables are column-major. Null pointers for arrays
 * that are read, and counts below what is needed, give the missing value or status -1; nothing is then
 * written. Optional outputs may be null. A result that cannot be computed is the missing value. No result
 * depends on the number of threads. */
#pragma once

#include "numcore/records.h"

/* Which probability the matrix forms of the partial correlation give. Degrees of freedom: rows less 2 less
 * the number of variables held constant, except for NUMCORE_PARTIAL_AS_FIRST_ORDER. */
enum NumcorePartialTail {
    NUMCORE_PARTIAL_LOWER = -1,
    NUMCORE_PARTIAL_TWO_SIDED = 0,
    NUMCORE_PARTIAL_UPPER = 1,
    NUMCORE_PARTIAL_NONE = 2,          /* probabilities are the missing value */
    NUMCORE_PARTIAL_AS_FIRST_ORDER = 3 /* lower tail, rows less 2, as `V_PartialCorrelation` */
};

/* What the matrix of `CronbachAlpha` holds; any other number than 100 means covariances. */
enum NumcoreItemMatrix { NUMCORE_ITEMS_COVARIANCE = 0, NUMCORE_ITEMS_CORRELATION = 100 };

/* How a polychoric correlation is estimated; any other number than 2 means two steps. */
enum NumcorePolychoricMethod {
    NUMCORE_POLYCHORIC_TWO_STEP = 1, /* thresholds from the margins, then the correlation */
    NUMCORE_POLYCHORIC_FULL = 2      /* thresholds and correlation together */
};

/* How an estimate ended. */
enum NumcoreFitStatus {
    NUMCORE_FIT_AT_LIMIT = 1, /* the likelihood is largest at -1 or 1, which is the estimate; no error */
    NUMCORE_FIT_CONVERGED = 0,
    NUMCORE_FIT_TOO_FEW = -1,      /* no observation, or null pointers */
    NUMCORE_FIT_DEGENERATE = -2,   /* no spread; fewer categories than needed or more than 200 */
    NUMCORE_FIT_NOT_CONVERGED = -3 /* the last step's values are given */
};

/* A polychoric correlation and what belongs to it. */
typedef struct ST_PolychoricFit {
    double rho;
    double standardError;
    double logLikelihood;
    double normalityChiSquare; /* likelihood ratio against the table's own shares */
    double normalityPValue;    /* upper tail; the missing value for a table of 2 x 2 */
    int32_t degreesOfFreedom;  /* rows x columns - rows - columns */
    int32_t nRows;             /* categories of the first variable */
    int32_t nColumns;
    int32_t nSteps;
    int32_t status; /* NumcoreFitStatus */
    int32_t reserved;
} ST_PolychoricFit;
NUMCORE_LAYOUT(sizeof(ST_PolychoricFit) == 64);

/* A coefficient of the biserial family with its test of no association. */
typedef struct ST_BiserialFit {
    double coefficient;
    double standardError;
    double statistic; /* Student's t (point-biserial) or a normal deviate */
    double pValue;
    double upperWeight; /* weight of the observations above the lowest category */
    double weight;      /* of all observations used */
    int32_t nCategories;
    int32_t status; /* NumcoreFitStatus */
} ST_BiserialFit;
NUMCORE_LAYOUT(sizeof(ST_BiserialFit) == 56);

/* Options of the RV coefficient. */
typedef struct ST_RVOptions {
    int32_t nPermutations; /* below 1: no test */
    int32_t seed;
    int16_t seedGiven;   /* flag: use this seed; otherwise one is chosen */
    int16_t standardize; /* flag: divide each variable by its deviation */
    int32_t reserved;
} ST_RVOptions;
NUMCORE_LAYOUT(sizeof(ST_RVOptions) == 16);

/* The RV coefficient and its permutation test. */
typedef struct ST_RVResult {
    double rv;
    double expected; /* mean of the coefficient over all orders; the missing value with unequal weights */
    double pValue;
    int32_t nPermutations; /* orders tried */
    int32_t nUsed;         /* observations used */
    int32_t seed;          /* seed used */
    int16_t complete;      /* flag: every order was tried */
    int16_t reserved;
} ST_RVResult;
NUMCORE_LAYOUT(sizeof(ST_RVResult) == 40);

/* Options of the Mantel test. */
typedef struct ST_MantelOptions {
    int32_t nPermutations; /* below 1: no test */
    int32_t seed;
    int16_t seedGiven;   /* flag: use this seed; otherwise one is chosen */
    int16_t ranks;       /* flag: replace the cells of each matrix by their ranks */
    int32_t alternative; /* 0 two-sided, -1 lower, any other number upper */
} ST_MantelOptions;
NUMCORE_LAYOUT(sizeof(ST_MantelOptions) == 16);

/* Mantel's statistics and their permutation test. */
typedef struct ST_MantelResult {
    double z;   /* sum of products over the pairs */
    double rho; /* (partial) correlation over the pairs */
    double pValue;
    int64_t nPairs;        /* pairs in the correlation */
    int32_t nPermutations; /* orders tried */
    int32_t seed;          /* seed used */
    int16_t complete;      /* flag: every order was tried */
    int16_t reserved[3];
} ST_MantelResult;
NUMCORE_LAYOUT(sizeof(ST_MantelResult) == 48);

NUMCORE_BEGIN_C

/* ---- Partial correlation ---- */

/** Correlation of x and y with z held constant.
 *
 *  @param x, y, z observations, n each; a row with a missing cell is left out
 *  @param weights n frequencies, or null
 *  @param pValue  out or null: lower tail of Student's law at t = rho sqrt((m - 2) / (1 - rho^2)) with m - 2
 *                 degrees of freedom, m the rows without a missing cell, whatever their weight. Kept: not a
 *                 two-sided probability, and z costs no degree of freedom
 *  @return the coefficient. Kept: 0, with probability 1, where (1 - r_yz^2)(1 - r_xz^2) is not above
 *          2.220446049250313e-16, also for an x or y that is constant or holds a NaN. The missing value for
 *          such a z, and for n < 1.
 *
 *  Yule (1907), Proc. R. Soc. Lond. A 79:182-193; the correlations by `V_PearsonRho`. */
NUMCORE_API double V_PartialCorrelation(const double* x, int32_t n, const double* y, const double* z,
                                        const double* weights, double* pValue);
/** `V_PartialCorrelation` for a foreign caller. */
NUMCORE_API double Cpp_V_PartialCorrelation(const double* x, int32_t n, const double* y, const double* z,
                                            const double* weights, double* pValue);

/** Correlation of every pair of variables with all others held constant.
 *
 *  @param data    n x p; a row with a missing cell is left out
 *  @param weights n frequencies, or null
 *  @param tail    NumcorePartialTail; another number means two-sided
 *  @param rho     out, p x p: coefficients, 1 on the diagonal. As for one variable held constant, 0 with
 *                 probability 1 for a pair of which the others determine a variable
 *  @param pValue  out or null, p x p; 0 on the diagonal
 *  @return 0; -1 null pointers or counts below 1; -2 a variable is constant (then all is the missing value)
 *
 *  By the inverse of the correlations, Whittaker (1990), Graphical Models in Applied Multivariate Statistics.
 */
NUMCORE_API int32_t M_PartialCorrelation(const double* data, int32_t n, int32_t p, const double* weights,
                                         int32_t tail, double* rho, double* pValue);
/** `M_PartialCorrelation` for a foreign caller. */
NUMCORE_API int32_t Cpp_M_PartialCorrelation(const double* data, int32_t n, int32_t p, const double* weights,
                                             int32_t tail, double* rho, double* pValue);
/** `M_PartialCorrelation` over automation arrays of doubles, a column a variable; what does not fit rho or
 *  pValue is dropped. Weights of another length than the rows give status -1. */
NUMCORE_API int32_t M_PartialCorrelationSPV(SAFEARRAY* data, SAFEARRAY* weights, int32_t tail, SAFEARRAY* rho,
                                            SAFEARRAY* pValue);
/** The same with the data transposed: a row a variable. */
NUMCORE_API int32_t M_PartialCorrelationSPV_T(SAFEARRAY* data, SAFEARRAY* weights, int32_t tail, SAFEARRAY* rho,
                                              SAFEARRAY* pValue);

/* ---- Cronbach's alpha ---- */

/** Cronbach's reliability coefficient of k items.
 *
 *  @param items k x k covariances or correlations; the diagonal and what is above it are read
 *  @param kind  NUMCORE_ITEMS_CORRELATION (100): the standardized alpha; anything else: covariances
 *  @return alpha; the missing value for a missing cell, a null pointer, or (covariances) when the sum off the
 *          diagonal over the sum on it, plus 1, is below 1e-12. Kept: fewer than two items give NaN
 *
 *  Cronbach (1951), Psychometrika 16:297-334. */
NUMCORE_API double CronbachAlpha(const double* items, int32_t k, int32_t kind);
/** `CronbachAlpha` for the Basic caller. */
NUMCORE_API double VB_CronbachAlpha(const double* items, int32_t k, int32_t kind);

/** `CronbachAlpha` of observations.
 *
 *  @param data    n x k, a column an item; a row with a missing cell is left out
 *  @param weights n frequencies, or null
 *  @param kind    100: of the correlations; anything else: of the covariances
 *  @return alpha; the missing value also for a constant item with kind 100, for constant items alone, and
 *          without two rows or two items */
NUMCORE_API double GetCronbachAlpha(const double* data, int32_t n, int32_t k, const double* weights,
                                    int32_t kind);
/** `GetCronbachAlpha` for the Basic caller. */
NUMCORE_API double VB_GetCronbachAlpha(const double* data, int32_t n, int32_t k, const double* weights,
                                       int32_t kind);
/** `GetCronbachAlpha` over automation arrays of doubles with the data transposed: a row an item. Weights
 *  (null allowed) of another length than the observations give the missing value. */
NUMCORE_API double CronbachAlphaSPV_T(SAFEARRAY* data, SAFEARRAY* weights, int32_t kind);
/** `CronbachAlphaSPV_T` for a foreign caller. */
NUMCORE_API double Cpp_CronbachAlphaSPV_T(SAFEARRAY* data, SAFEARRAY* weights, int32_t kind);

/* ---- Polychoric correlation ----
 *
 * Two ordinal variables are seen as a bivariate normal law cut by thresholds. The categories of a variable
 * are its distinct values, ascending; a NaN cell counts as missing. */

/** Polychoric correlation of two ordinal variables.
 *
 *  @param x, y    category values, n each
 *  @param weights n frequencies, or null
 *  @param method  NumcorePolychoricMethod
 *  @param start   first correlation tried; outside (-1, 1): the Pearson coefficient of the category numbers
 *  @param fit     out or null
 *  @return the coefficient, to about 1e-10; -1 or 1 when the likelihood is largest there, as for a 2 x 2
 *          table with an empty cell (no continuity correction is made); the missing value with fewer than 2
 *          or more than 200 categories
 *
 *  Maximum likelihood, Olsson (1979), Psychometrika 44:443-460, over cells from `CDFBiNormalStd`. Two steps:
 *  a root of the score between bounds, by secant steps; standard error with the share of the thresholds,
 *  Joereskog (1994), Psychometrika 59:381-389. Full: quasi-Newton steps from there, started
 *  with the expected information, until no parameter moves by 1e-10 (at most 500 steps); standard error from
 *  the expected information. */
NUMCORE_API double V_PolychoricRho(const double* x, int32_t n, const double* y, const double* weights,
                                   int32_t method, double start, ST_PolychoricFit* fit);

/** `V_PolychoricRho` started from the Pearson coefficient of the category numbers, over part of the rows.
 *
 *  @param exclusion n values, 0 = use the row; or null */
NUMCORE_API double V_PolychoricRhoPearsonInitOnCode(const double* x, int32_t n, const double* y,
                                                    const int16_t* exclusion, const double* weights,
                                                    int32_t method, ST_PolychoricFit* fit);

/** Polychoric correlations of all pairs of variables, each over the rows where both are present.
 *
 *  @param data           n x p category values
 *  @param weights        n frequencies, or null
 *  @param rho            out, p x p; 1 on the diagonal
 *  @param standardErrors out or null, p x p; 0 on the diagonal
 *  @return 0; -1 null pointers or counts below 1 */
NUMCORE_API int32_t Cpp_M_Polychoric(const double* data, int32_t n, int32_t p, const double* weights,
                                     int32_t method, double* rho, double* standardErrors);

/** Probabilities of the cells of a bivariate normal law cut by thresholds.
 *
 *  @param rowThresholds    nRows - 1 values, strictly ascending; the outer limits are infinite
 *  @param columnThresholds nColumns - 1 values, strictly ascending
 *  @param rho              correlation, in [-1, 1]
 *  @param pij              out, nRows x nColumns, to 1e-15 absolute; 0 below 1e-18
 *  @return 0; -1 for null pointers, counts outside 1 to 200, or what is no law */
NUMCORE_API int32_t PolychoricPij(const double* rowThresholds, int32_t nRows, const double* columnThresholds,
                                  int32_t nColumns, double rho, double* pij);

/** Log-likelihood of a table: the sum of count times logarithm of the cell's probability.
 *
 *  @param counts nRows x nColumns, >= 0; thresholds and rho as in `PolychoricPij`
 *  @return the missing value when a cell that holds counts has no probability, a count is missing, NaN or
 *          below 0, or for bad input */
NUMCORE_API double PolychoricLogLike(const double* counts, int32_t nRows, int32_t nColumns,
                                     const double* rowThresholds, const double* columnThresholds, double rho);

/** First derivatives of `PolychoricLogLike` and the expected information.
 *
 *  @param rho         correlation, in (-1, 1)
 *  @param gradient    out, nRows + nColumns - 1 values: in rho, the row thresholds, the column thresholds
 *  @param information out or null, square of that size: minus the expected second derivatives
 *  @return 0; -1 for bad input. Olsson (1979). */
NUMCORE_API int32_t PolychoricDerivatives(const double* counts, int32_t nRows, int32_t nColumns,
                                          const double* rowThresholds, const double* columnThresholds,
                                          double rho, double* gradient, double* information);

/* ---- Biserial family ----
 *
 * x is a number, group an ordered variable. The first three coefficients need exactly two distinct values of
 * group among the observations used; the larger one is the upper group, so that a coefficient is positive
 * when x is larger there. A NaN cell counts as missing. Alternative: 0 two-sided, -1 lower, any other number
 * upper. The number 1 in a name is left out: `BiserialCorrelation2` goes with `GetRBiserial2`. */

/** Biserial correlation: x with the normal variable behind a two-valued one.
 *
 *  @param x, group observations, n each
 *  @param weights  n frequencies, or null
 *  @param fit      out or null: standard error (sqrt(pq) / density - r^2) / sqrt(W), Soper (1914), Biometrika
 *                  10:384-390; the test takes the error without association
 *  @return `GetRBiserial` of the means of the groups; may exceed 1 in size. The missing value when x has no
 *          spread or group not two values */
NUMCORE_API double BiserialCorrelation(const double* x, int32_t n, const double* group, const double* weights,
                                       int32_t alternative, ST_BiserialFit* fit);
/** Point-biserial correlation: Pearson's coefficient with a two-valued variable, tested by Student's law with
 *  W - 2 degrees of freedom. */
NUMCORE_API double BiserialCorrelation2(const double* x, int32_t n, const double* group, const double* weights,
                                        int32_t alternative, ST_BiserialFit* fit);
/** Rank-biserial correlation: how much more often x is larger in the upper group than in the lower one, as a
 *  share of the pairs; 2 U / (n0 n1) - 1 for Mann and Whitney's U. The test is the normal one with the
 *  tie-corrected variance, without continuity correction. Cureton (1956), Psychometrika 21:287-290. */
NUMCORE_API double BiserialCorrelation3(const double* x, int32_t n, const double* group, const double* weights,
                                        int32_t alternative, ST_BiserialFit* fit);
/** Polyserial correlation: x with the normal variable behind an ordinal one of 2 to 200 categories. Two-step
 *  maximum likelihood, Olsson, Drasgow and Dorans (1982), Psychometrika 47:337-347; standard error with the
 *  share of the first step, Murphy and Topel (1985), J. Bus. Econ. Statist. 3:370-379; the test divides the
 *  estimate by it. */
NUMCORE_API double BiserialCorrelation4(const double* x, int32_t n, const double* group, const double* weights,
                                        int32_t alternative, ST_BiserialFit* fit);

/** Biserial correlation from summaries, (upper - lower) / deviation * pq / (normal density at the
 *  p-quantile). Pearson (1909), Biometrika 7:96-105.
 *
 *  @param upperMean, lowerMean means of the groups
 *  @param deviation            of all observations, divisor n, > 0
 *  @param upperShare           p, share of the upper group, in (0, 1) */
NUMCORE_API double GetRBiserial(double upperMean, double lowerMean, double deviation, double upperShare);
/** Point-biserial correlation from summaries, (upper - lower) / deviation * sqrt(pq). */
NUMCORE_API double GetRBiserial2(double upperMean, double lowerMean, double deviation, double upperShare);
/** Rank-biserial correlation from the mean ranks of the groups among all n observations, n > 0: 2 (upper -
 *  lower) / n. Glass (1966), Educational and Psychological Measurement 26:623-631. */
NUMCORE_API double GetRBiserial3(double upperMeanRank, double lowerMeanRank, double n);
/** Polyserial correlation from the Pearson coefficient r of x with the category numbers: r s / (sum of the
 *  normal densities at the thresholds), s the deviation of the numbers. Olsson, Drasgow and Dorans (1982).
 *
 *  @param categoryWeights weight of each of nCategories categories, > 0; 2 to 200 categories */
NUMCORE_API double GetRBiserial4(double pearson, const double* categoryWeights, int32_t nCategories);

/** `BiserialCorrelation`, `BiserialCorrelation2` to `4` and `GetRBiserial`, `GetRBiserial2` to `4` for a
 *  foreign caller. */
NUMCORE_API double Cpp_BiserialCorrelation(const double* x, int32_t n, const double* group,
                                           const double* weights, int32_t alternative, ST_BiserialFit* fit);
NUMCORE_API double Cpp_BiserialCorrelation2(const double* x, int32_t n, const double* group,
                                            const double* weights, int32_t alternative, ST_BiserialFit* fit);
NUMCORE_API double Cpp_BiserialCorrelation3(const double* x, int32_t n, const double* group,
                                            const double* weights, int32_t alternative, ST_BiserialFit* fit);
NUMCORE_API double Cpp_BiserialCorrelation4(const double* x, int32_t n, const double* group,
                                            const double* weights, int32_t alternative, ST_BiserialFit* fit);
NUMCORE_API double Cpp_GetRBiserial(double upperMean, double lowerMean, double deviation, double upperShare);
NUMCORE_API double Cpp_GetRBiserial2(double upperMean, double lowerMean, double deviation, double upperShare);
NUMCORE_API double Cpp_GetRBiserial3(double upperMeanRank, double lowerMeanRank, double n);
NUMCORE_API double Cpp_GetRBiserial4(double pearson, const double* categoryWeights, int32_t nCategories);

/* ---- RV coefficient ---- */

/** RV coefficient of two sets of variables: tr(Sxy Syx) / sqrt(tr(Sxx^2) tr(Syy^2)) of the covariances.
 *
 *  @param x       n x p
 *  @param y       n x q; a row with a missing or NaN cell in either is left out
 *  @param weights n frequencies, or null
 *  @param options null: variables as they are, no test
 *  @param result  out or null. The test permutes the rows of y and counts coefficients at least as large as the
 *                 one found: all orders when they are no more than nPermutations, otherwise that many drawn
 *                 from the seed's stream, with p = (count + 1) / (drawn + 1)
 *  @return the coefficient, in [0, 1]; the missing value for fewer than 2 rows or a set without spread
 *
 *  Escoufier (1973), Biometrics 29:751-760; Robert and Escoufier (1976), Appl. Statist. 25:257-265; the
 *  p-value by Phipson and Smyth (2010), Stat. Appl. Genet. Mol. Biol. 9(1):39. */
NUMCORE_API double RVcoefficient(const double* x, int32_t n, int32_t p, const double* y, int32_t q,
                                 const double* weights, const ST_RVOptions* options, ST_RVResult* result);
/** `RVcoefficient` for a foreign caller. */
NUMCORE_API double Cpp_RVcoefficient(const double* x, int32_t n, int32_t p, const double* y, int32_t q,
                                     const double* weights, const ST_RVOptions* options, ST_RVResult* result);
/** `RVcoefficient` without weights, options and test. */
NUMCORE_API double ComputeRV(const double* x, int32_t n, int32_t p, const double* y, int32_t q);
/** `RVcoefficient` of numeric tables 1 and 2 of a data set with its observation weights, without marked rows.
 *
 *  @return 0; -1 null records, a table without columns, or tables of different heights; -2 no coefficient */
NUMCORE_API int32_t Cpp_RV_Compute(ST_DataSet* data, const ST_RVOptions* options, ST_RVResult* result);

/* ---- Mantel test ----
 *
 * Matrices of n x n over the same objects, read below the diagonal. A pair that is missing (or NaN) in either
 * matrix is skipped, also wherever a permutation puts it. */

/** Mantel's statistic: the sum of a(i, j) b(order[i], order[j]) over the pairs i > j.
 *
 *  @param order a permutation of 0, ..., n - 1 applied to b; null: as given
 *  @return the missing value without a pair, for n < 2, null matrices, or when order is no permutation
 *
 *  Mantel (1967), Cancer Research 27:209-220. */
NUMCORE_API double GetZMantel(const double* a, const double* b, int32_t n, const int32_t* order);

/** Mantel test of two matrices.
 *
 *  @param options null: no test, cells as they are
 *  @param result  out: sum, Pearson correlation over the pairs, and the test that permutes the objects of b and
 *                 compares correlations; orders and p-value as in `RVcoefficient`. Ranks are taken over the
 *                 pairs present in each matrix; the sum is always of the cells
 *  @return 0; -1 null pointers or fewer than 2 objects; -2 a matrix has no spread over the common pairs */
NUMCORE_API int32_t RunMantelTest(const double* a, const double* b, int32_t n, const ST_MantelOptions* options,
                                  ST_MantelResult* result);

/** Partial Mantel test: `RunMantelTest` of a and b with a third matrix held constant.
 *
 *  @param control n x n; null: no third matrix
 *  @param result  out; the correlation is that of the residuals of a and b on control over the pairs present in
 *                 all three, and the test permutes the residuals of b
 *  @return as `RunMantelTest`; -2 also when control leaves nothing of a matrix
 *
 *  Smouse, Long and Sokal (1986), Systematic Zoology 35:627-632. */
NUMCORE_API int32_t cRunMantelTest(const double* a, const double* b, const double* control, int32_t n,
                                   const ST_MantelOptions* options, ST_MantelResult* result);

NUMCORE_END_C
