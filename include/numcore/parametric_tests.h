/* Parametric tests: means (t, z, Welch's analysis of variance), variances (F, chi-square, Bartlett, Levene) and
 * proportions.
 *
 * What all members share:
 *
 * - Alternative, a 32-bit code: 0 two-sided, -1 lower (the first mean, variance or proportion is smaller), any
 *   other number upper.
 * - Flags are 16-bit automation booleans: only -1 is true, 1 is false.
 * - An observation takes part when its value is greater than NUMCORE_MISSING (so neither NaN nor minus
 * infinity) and its weight exceeds 2.220446049250313e-16. Weights are frequencies: variances divide by the sum
 * of the weights less 1. A null weight pointer stands for 1 each. n1' and n2' below count the observations that
 * take part, W1 and W2 are the sums of their weights.
 * - A result that cannot be computed, and an open lower limit, is the missing value; an infinite result, and an
 *   open upper limit, is the overflow marker; its negative twin is the missing value again. No result is NaN or
 *   infinite. Every output pointer may be null; a null array or a count below 1 is an empty sample.
 * - Critical values belong to the statistic: the quantile at 1 - alpha / 2 (two-sided), 1 - alpha (upper),
 *   alpha (lower). p-values are c, 1 - c or 2 min(c, 1 - c) of the law's lower tail c, so that those near 0
 * have an absolute error of about 1e-16.
 * - Status: 0 computed; -1 too few observations; -2 degenerate data; -101 memory ran short (outputs are then as
 *   they were). No function throws.
 * - ResamplingOptions: null, or its first flag not true: p-value and critical value come from the law named.
 *   Otherwise the resampling engine gives both, and the limits follow from its critical value; the record is
 *   copied in before the test and back after it. */
#pragma once

#include "numcore/records.h"
#include "numcore/resampling.h"

/* Status of the tests of this header. */
enum NumcoreTestStatus {
    NUMCORE_TEST_DONE = 0,
    NUMCORE_TEST_TOO_FEW = -1,
    NUMCORE_TEST_DEGENERATE = -2,
    NUMCORE_TEST_NO_MEMORY = -101
};

/* A mean-difference plot: what a paired test writes for each retained pair (x, y). */
typedef struct ST_PairOutput {
    int32_t requested;   /* in: at least 1 asks for the output */
    int32_t nPairs;      /* out: retained pairs */
    double* means;       /* out: (x + y) / 2, room for as many cells as the shorter sample has; or null */
    double* differences; /* out: x - y, as many; or null */
} ST_PairOutput;
NUMCORE_LAYOUT(sizeof(ST_PairOutput) == 24);
NUMCORE_LAYOUT(offsetof(ST_PairOutput, means) == 8);

/* Interval of one proportion; any other number than 1 to 3 is the adjusted Wald interval. */
enum NumcoreProportionInterval {
    NUMCORE_PROPORTION_WALD = 1,
    NUMCORE_PROPORTION_WILSON = 2,
    NUMCORE_PROPORTION_CLOPPER_PEARSON = 3,
    NUMCORE_PROPORTION_ADJUSTED_WALD = 4
};

/* Variance of the statistic of proportions; any other number than 1: pooled, or theoretical for one sample. */
enum NumcoreProportionVariance { NUMCORE_PROPORTION_POOLED = 0, NUMCORE_PROPORTION_SEPARATE = 1 };

/* Which test `Cpp_TZ_Compute` makes; any other number than 1 means t. */
enum NumcoreMeanTest { NUMCORE_MEAN_Z = 1, NUMCORE_MEAN_T = 2 };

/* On what design; any other number means independent samples. */
enum NumcoreMeanDesign {
    NUMCORE_MEAN_ONE_SAMPLE = 1,  /* each column of numeric table 1 against the hypothesised mean */
    NUMCORE_MEAN_INDEPENDENT = 2, /* two samples: columns of tables 1 and 2, or by group (see byGroup) */
    NUMCORE_MEAN_PAIRED = 3       /* column c of numeric table 1 with column c of numeric table 2 */
};

/* Parameters of `Cpp_TZ_Compute`. */
typedef struct ST_TZParam {
    int32_t test;           /* NumcoreMeanTest */
    int32_t design;         /* NumcoreMeanDesign */
    int32_t alternative;    /* 0 two-sided, -1 lower, any other number upper */
    int16_t byGroup;        /* flag: the two samples are the two groups of text table 3's group column */
    int16_t equalVariances; /* flag: pooled variance (t, independent) */
    int16_t cochranCox;     /* flag: Cochran-Cox critical value (t, independent, two-sided) */
    int16_t givenVariances; /* flag: variance1 and variance2 are known (z) */
    int32_t reserved;
    double hypothesised; /* theoretical mean or difference of the means */
    double alpha;
    double variance1;
    double variance2;
    ResamplingOptions* resampling; /* or null; one seed for all tests, the counts are those of the last one */
} ST_TZParam;
NUMCORE_LAYOUT(sizeof(ST_TZParam) == 64);
NUMCORE_LAYOUT(offsetof(ST_TZParam, hypothesised) == 24);

/* Columns of the table of `Cpp_TZ_Compute`. */
enum NumcoreMeanTestColumn {
    NUMCORE_MEAN_N1 = 0, /* observations (pairs) that take part */
    NUMCORE_MEAN_N2,     /* of the second sample; the missing value without one */
    NUMCORE_MEAN_DIFFERENCE,
    NUMCORE_MEAN_STATISTIC,
    NUMCORE_MEAN_CRITICAL,
    NUMCORE_MEAN_DF, /* the missing value for z */
    NUMCORE_MEAN_P,
    NUMCORE_MEAN_LOWER,
    NUMCORE_MEAN_UPPER,
    NUMCORE_MEAN_STATUS, /* NumcoreTestStatus of the row */
    NUMCORE_MEAN_COLUMNS /* how many columns there are */
};

/* Results of `Cpp_TZ_Compute`. */
typedef struct ST_TZResults {
    SAFEARRAY* table; /* doubles, a row a test, NUMCORE_MEAN_COLUMNS columns; what does not fit is dropped */
    int32_t nTests;   /* out: how many tests there are */
    int32_t reserved;
} ST_TZResults;
NUMCORE_LAYOUT(sizeof(ST_TZResults) == 16);

NUMCORE_BEGIN_C

/* ---- Means ---- */

/** Student's t test of two samples: pooled, Welch's, or paired.
 *
 *  @param x1, n1, x2, n2      samples and their lengths
 *  @param weights1, weights2  n1 and n2 weights, or null
 *  @param D                   hypothesised difference of the means
 *  @param alpha               significance level, in (0, 1)
 *  @param equalVariances      flag: pooled variance; otherwise Welch's test
 *  @param cochranCox          flag: two-sided critical value of Cochran and Cox (independent samples): the mean
 *                             of the quantiles with n1' - 1 and n2' - 1 degrees of freedom, weighted by s1^2 /
 *                             n1' and s2^2 / n2'. Kept: counts here, not sums of weights
 *  @param paired              flag: pairs (x1[i], x2[i]) of which both values are present, weighted by
 * weights1; pairs beyond the shorter sample are left out. Kept: weights2 is ignored
 *  @param difference          out: mean 1 less mean 2, or the mean of the pairs' differences
 *  @param t                   out: (difference - D) / standard error. Kept: for a standard error below
 *                             2.220446049250313e-16, 0 where |difference| is below that too, else the overflow
 *                             marker where difference - D exceeds it, else minus that marker
 *  @param critical            out: quantile of Student's law
 *  @param df                  out: degrees of freedom: W1 + W2 - 2; Welch's; W1 - 1. Welch with both variances
 *                             0: W1 + W2 - 2
 *  @param pValue              out
 *  @param lower, upper        out: limits of the difference (not of difference - D)
 *  @param pairs               in/out or null: written when paired and requested
 *  @return 0; -1 too few: both n1' and n2' below 2, or a sample is empty (pooled), or one of them below 2
 * (Welch); all outputs but df are then missing. -1 also for fewer than 2 pairs: nothing is written. -2 the sums
 *          of the weights leave no degrees of freedom: t, critical, p-value and limits are missing
 *
 *  Student (1908), Biometrika 6:1-25; Welch (1947), Biometrika 34:28-35; paired variance by West (1979), Comm.
 *  ACM 22:532-535. */
NUMCORE_API int32_t TTest2SamplesNew(const double* x1, int32_t n1, const double* x2, int32_t n2,
                                     const double* weights1, const double* weights2, double D, double alpha,
                                     int32_t alternative, int16_t equalVariances, int16_t cochranCox,
                                     int16_t paired, ResamplingOptions* resampling, double* difference,
                                     double* t, double* critical, double* df, double* pValue, double* lower,
                                     double* upper, ST_PairOutput* pairs);
/** `TTest2SamplesNew` for a foreign caller. */
NUMCORE_API int32_t Cpp_TTest2SamplesNew(const double* x1, int32_t n1, const double* x2, int32_t n2,
                                         const double* weights1, const double* weights2, double D, double alpha,
                                         int32_t alternative, int16_t equalVariances, int16_t cochranCox,
                                         int16_t paired, ResamplingOptions* resampling, double* difference,
                                         double* t, double* critical, double* df, double* pValue, double* lower,
                                         double* upper, ST_PairOutput* pairs);
/** `TTest2SamplesNew` of two samples of one length n with one weight vector, by Student's law. */
NUMCORE_API int32_t TTest2Samples(const double* x1, int32_t n, const double* x2, const double* weights,
                                  double D, double alpha, int32_t alternative, int16_t equalVariances,
                                  int16_t cochranCox, int16_t paired, double* difference, double* t,
                                  double* critical, double* df, double* pValue, double* lower, double* upper);
/** `TTest2Samples` over automation arrays of doubles. Here and in the other VB_ forms weights may be null, and
 *  arrays of different lengths count as empty samples. */
NUMCORE_API int32_t VB_TTest2Samples(SAFEARRAY* x1, SAFEARRAY* x2, SAFEARRAY* weights, double D, double alpha,
                                     int32_t alternative, int16_t equalVariances, int16_t cochranCox,
                                     int16_t paired, double* difference, double* t, double* critical,
                                     double* df, double* pValue, double* lower, double* upper);

/** Student's t test of a mean against a theoretical one.
 *
 *  @param x, n       sample. Kept: every value that is not the missing value counts, NaN included, and n' is n
 *                    less the missing values whatever their weight
 *  @param weights    n weights, or null
 *  @param mu0        theoretical mean
 *  @param alpha      significance level, in (0, 1)
 *  @param difference out: mean less mu0, always written
 *  @param t          out: (mean - mu0) / sqrt(variance / n')
 *  @param df         out: n' - 1, always written
 *  @param lower, upper out: limits of the mean itself, not of the difference
 *  @return 0; -1 n' below 2; -2 a variance below 2.220446049250313e-16. Then t, p-value, critical value and
 * lower limit are missing and the upper limit is the overflow marker */
NUMCORE_API int32_t Cpp_TTestTheoreticalMean(const double* x, int32_t n, const double* weights, double mu0,
                                             double alpha, int32_t alternative, double* difference, double* t,
                                             double* critical, double* df, double* pValue, double* lower,
                                             double* upper);

/** z test of a mean against a theoretical one: `Cpp_TTestTheoreticalMean` with the normal law.
 *
 *  @param variance      known variance, read when givenVariance is true
 *  @param givenVariance flag: the variance is known; one observation is then enough. Otherwise it is estimated
 *  @return as `Cpp_TTestTheoreticalMean`, -2 also for a known variance that is not above its threshold */
NUMCORE_API int32_t Cpp_ZTestTheoreticalMean(const double* x, int32_t n, const double* weights, double mu0,
                                             double variance, int16_t givenVariance, double alpha,
                                             int32_t alternative, double* difference, double* z,
                                             double* critical, double* pValue, double* lower, double* upper);

/** z test of two samples, independent or paired.
 *
 *  Arguments and outputs as in `TTest2SamplesNew`, and:
 *  @param variance1, variance2 known variances, read when givenVariances is true. Paired: variance1 is that of
 *                        the differences and variance2 is not read
 *  @param givenVariances flag: the variances are known; otherwise they are estimated
 *  @param z              out: (difference - D) / standard error, which has n1' and n2' (kept: counts, not sums
 * of weights). For a standard error below 2.220446049250313e-16 the overflow marker where difference exceeds D,
 * else minus that marker (kept: no zero case, unlike t)
 *  @return 0; -1 n1' or n2' below 2: all outputs are missing; -1 also for fewer than 2 pairs: nothing is
 * written; -2 no standard error (a negative variance, weights without degrees of freedom): z, critical value,
 *          p-value and limits are missing */
NUMCORE_API int32_t Cpp_ZTest2SamplesNew(const double* x1, int32_t n1, const double* x2, int32_t n2,
                                         const double* weights1, const double* weights2, double D,
                                         double variance1, double variance2, int16_t givenVariances,
                                         double alpha, int32_t alternative, int16_t paired,
                                         ResamplingOptions* resampling, double* difference, double* z,
                                         double* critical, double* pValue, double* lower, double* upper,
                                         ST_PairOutput* pairs);
/** `Cpp_ZTest2SamplesNew` of two samples of one length n with one weight vector, by the normal law. */
NUMCORE_API int32_t ZTest2Samples(const double* x1, int32_t n, const double* x2, const double* weights,
                                  double D, double variance1, double variance2, int16_t givenVariances,
                                  double alpha, int32_t alternative, int16_t paired, double* difference,
                                  double* z, double* critical, double* pValue, double* lower, double* upper);
/** `ZTest2Samples` over automation arrays of doubles. */
NUMCORE_API int32_t VB_ZTest2Samples(SAFEARRAY* x1, SAFEARRAY* x2, SAFEARRAY* weights, double D,
                                     double variance1, double variance2, int16_t givenVariances, double alpha,
                                     int32_t alternative, int16_t paired, double* difference, double* z,
                                     double* critical, double* pValue, double* lower, double* upper);

/** t and z tests over a data set: each column of numeric table 1 alone, with its column of numeric table 2, or
 *  split by group.
 *
 *  @param data    numeric tables 1 and 2; observation weights weigh sample 1 (and both samples by group),
 * second weights sample 2. Rows marked to be dropped are left out. By group: the column groupColumn of text
 * table 3 must hold two different texts, the lower one by code unit being sample 1; rows without a text are
 * left out
 *  @param param   what to test
 *  @param results the table to fill and, out, the number of tests
 *  @return status of the first test that is not computed, 0 when all are; -1 also for null records, no column,
 * or not two groups; -101 memory ran short */
NUMCORE_API int32_t Cpp_TZ_Compute(ST_DataSet* data, const ST_TZParam* param, ST_TZResults* results);

/** Welch's analysis of variance: equal means of groups whose variances may differ.
 *
 *  @param values, n  observations
 *  @param groups     n group numbers, from 1; an observation with another number is left out
 *  @param weights    n weights, or null
 *  @param nGroups    how many groups
 *  @param alpha      significance level, in (0, 1)
 *  @param F          out: statistic
 *  @param critical   out: quantile of Fisher's law at 1 - alpha
 *  @param df1, df2   out: degrees of freedom, the second fractional
 *  @param pValue     out: upper tail
 *  @return 0; -1 fewer than two groups with observations, or one of them with weights of 1 or less in sum; -2
 * one of them without variance; all outputs are then missing
 *
 *  Welch (1951), Biometrika 38:330-336, the sums of weights standing for the group sizes. */
NUMCORE_API int32_t ComputeWelchANOVA(const double* values, const int32_t* groups, const double* weights,
                                      int32_t n, int32_t nGroups, double alpha, ResamplingOptions* resampling,
                                      double* F, double* critical, double* df1, double* df2, double* pValue);

/* ---- Variances ---- */

/** F test of the ratio of two variances, over samples of one length n.
 *
 *  @param x1, n, x2   samples of n values
 *  @param weights     n weights of both, or null
 *  @param R           hypothesised ratio
 *  @param alpha       significance level, in (0, 1)
 *  @param ratio       out: variance 1 over variance 2
 *  @param F           out: ratio / R
 *  @param critical    out: quantile of Fisher's law (lower tail)
 *  @param df1, df2    out: n1' - 1 and n2' - 1
 *  @param pValue      out
 *  @param lower, upper out: limits of the ratio; 0 and the overflow marker when open
 *  @return 0; -1 a sample has fewer than 2 observations: all outputs are missing; -2 both variances are 0, or
 * one cannot be computed: what depends on it is missing */
NUMCORE_API int32_t FTest2Samples(const double* x1, int32_t n, const double* x2, const double* weights,
                                  double R, double alpha, int32_t alternative, double* ratio, double* F,
                                  double* critical, double* df1, double* df2, double* pValue, double* lower,
                                  double* upper);
/** `FTest2Samples` over automation arrays of doubles. */
NUMCORE_API int32_t VB_FTest2Samples(SAFEARRAY* x1, SAFEARRAY* x2, SAFEARRAY* weights, double R, double alpha,
                                     int32_t alternative, double* ratio, double* F, double* critical,
                                     double* df1, double* df2, double* pValue, double* lower, double* upper);
/** `FTest2Samples` of samples with lengths and weights of their own.
 *
 *  @param weightedDf flag: degrees of freedom W1 - 1 and W2 - 1, as for repeated values, instead of n1' - 1 and
 *                    n2' - 1 */
NUMCORE_API int32_t Cpp_FTest2SamplesNew(const double* x1, int32_t n1, const double* x2, int32_t n2,
                                         const double* weights1, const double* weights2, double R, double alpha,
                                         int32_t alternative, int16_t weightedDf, ResamplingOptions* resampling,
                                         double* ratio, double* F, double* critical, double* df1, double* df2,
                                         double* pValue, double* lower, double* upper);
/** `FTest2Samples` of two variances that are given with the sizes of their samples.
 *
 *  @param variance1, variance2 variances, >= 0
 *  @param n1, n2               sample sizes, at least 2
 *  @return as `FTest2Samples`; -2 also for a negative variance */
NUMCORE_API int32_t FRatioTest(double variance1, int32_t n1, double variance2, int32_t n2, double R,
                               double alpha, int32_t alternative, double* ratio, double* F, double* critical,
                               double* df1, double* df2, double* pValue, double* lower, double* upper);

/** Chi-square test of a variance against a theoretical one.
 *
 *  @param x, n        sample; n' is n less the missing values
 *  @param weights     n weights, or null
 *  @param sigma2      theoretical variance
 *  @param alpha       significance level, in (0, 1)
 *  @param variance    out: s^2
 *  @param ratio       out: s^2 / sigma2
 *  @param chiSquare   out: df s^2 / sigma2
 *  @param critical    out: chi-square quantile
 *  @param df          out: n' - 1
 *  @param pValue      out, from 1 - `IncompleteGamma`
 *  @param lower, upper out: limits of the variance. Kept: the open lower limit is the missing value, not 0
 *  @return 0, always: there is no size check, what cannot be computed is missing */
NUMCORE_API int32_t Cpp_VarTestOneSample(const double* x, int32_t n, const double* weights, double sigma2,
                                         double alpha, int32_t alternative, double* variance, double* ratio,
                                         double* chiSquare, double* critical, double* df, double* pValue,
                                         double* lower, double* upper);

/** Bartlett's test of equal variances over columns of numeric table 1, a group each.
 *
 *  @param data        weights of a group: its column of numeric table 2 when that table is present (columns are
 *                     reused in turn when it has fewer), else the observation weights, else 1. Rows marked to
 * be dropped are left out
 *  @param firstGroup, lastGroup columns, from 1, inclusive; numbers outside the table are cut to it
 *  @param alpha       significance level, in (0, 1)
 *  @param statistic   out
 *  @param critical    out: chi-square quantile at 1 - alpha
 *  @param df          out: usable groups less 1. Not usable: a sum of weights of 1 or less, or no variance
 *  @param pValue      out: upper tail
 *  @return 0; -2 fewer than two usable groups, or none that enters the sums: all outputs are missing
 *
 *  Bartlett (1937), Proc. R. Soc. Lond. A 160:268-282. Kept: the sums take the groups with a variance above
 * 1e-12, a slightly different rule from that of the degrees of freedom, and the total degrees of freedom are
 * cut to a whole number after each addition. */
NUMCORE_API int32_t Cpp_BTestKSamplesNew(ST_DataSet* data, int32_t firstGroup, int32_t lastGroup, double alpha,
                                         ResamplingOptions* resampling, double* statistic, double* critical,
                                         double* df, double* pValue);
/** `Cpp_BTestKSamplesNew` of k samples of one length n, the columns of an n x k table, with one weight vector.
 */
NUMCORE_API int32_t BTestKSamples(const double* data, int32_t n, int32_t k, const double* weights, double alpha,
                                  double* statistic, double* critical, double* df, double* pValue);
/** `BTestKSamples` over automation arrays of doubles: a table with a column a group, and n weights or null. */
NUMCORE_API int32_t VB_BTestKSamples(SAFEARRAY* data, SAFEARRAY* weights, double alpha, double* statistic,
                                     double* critical, double* df, double* pValue);
/** `BTestKSamples` of two samples. */
NUMCORE_API int32_t BTest2Samples(const double* x1, int32_t n, const double* x2, const double* weights,
                                  double alpha, double* statistic, double* critical, double* df,
                                  double* pValue);
/** `BTest2Samples` over automation arrays of doubles. */
NUMCORE_API int32_t VB_BTest2Samples(SAFEARRAY* x1, SAFEARRAY* x2, SAFEARRAY* weights, double alpha,
                                     double* statistic, double* critical, double* df, double* pValue);

/** Levene's test of equal variances over columns of numeric table 1; data and groups as in
 *  `Cpp_BTestKSamplesNew`.
 *
 *  @param median   flag: deviations from the group's weighted median (Brown and Forsythe); otherwise from its
 *                  weighted mean. Weights scale the deviations; group sizes are counts
 *  @param F        out: analysis of variance of the deviations, by `GetLKStatistics`
 *  @param critical out: quantile of Fisher's law at 1 - alpha
 *  @param df1, df2 out
 *  @param pValue   out: upper tail
 *  @return that of `GetLKStatistics`; all outputs are missing unless it is 0
 *
 *  Levene (1960), in Contributions to Probability and Statistics, 278-292; Brown and Forsythe (1974), J. Am.
 * Stat. Assoc. 69:364-367. */
NUMCORE_API int32_t Cpp_LTestKSamplesNew(ST_DataSet* data, int32_t firstGroup, int32_t lastGroup, double alpha,
                                         int16_t median, ResamplingOptions* resampling, double* F,
                                         double* critical, double* df1, double* df2, double* pValue);
/** `Cpp_LTestKSamplesNew` of two columns, which need not stand side by side. */
NUMCORE_API int32_t Cpp_LTest2SamplesNew(ST_DataSet* data, int32_t firstGroup, int32_t secondGroup,
                                         double alpha, int16_t median, ResamplingOptions* resampling, double* F,
                                         double* critical, double* df1, double* df2, double* pValue);
/** `Cpp_LTestKSamplesNew` of k samples of one length n, the columns of an n x k table, with one weight vector.
 */
NUMCORE_API int32_t LTestKSamples(const double* data, int32_t n, int32_t k, const double* weights, double alpha,
                                  int16_t median, double* F, double* critical, double* df1, double* df2,
                                  double* pValue);
/** `LTestKSamples` over automation arrays of doubles: a table with a column a group, and n weights or null. */
NUMCORE_API int32_t VB_LTestKSamples(SAFEARRAY* data, SAFEARRAY* weights, double alpha, int16_t median,
                                     double* F, double* critical, double* df1, double* df2, double* pValue);
/** `LTestKSamples` of two samples. */
NUMCORE_API int32_t LTest2Samples(const double* x1, int32_t n, const double* x2, const double* weights,
                                  double alpha, int16_t median, double* F, double* critical, double* df1,
                                  double* df2, double* pValue);
/** `LTest2Samples` over automation arrays of doubles. */
NUMCORE_API int32_t VB_LTest2Samples(SAFEARRAY* x1, SAFEARRAY* x2, SAFEARRAY* weights, double alpha,
                                     int16_t median, double* F, double* critical, double* df1, double* df2,
                                     double* pValue);

/** One-way analysis of variance of deviations, the statistic of Levene's test.
 *
 *  @param deviations all deviations, group after group; none is missing
 *  @param sizes      nGroups group sizes; an empty group is left out
 *  @param F          out: mean square between the groups over that within them; the overflow marker where only
 *                    the latter is 0
 *  @param df1, df2   out: groups - 1 and deviations - groups
 *  @return 0; -1 no more deviations than groups; -2 fewer than two groups, or all deviations equal; all outputs
 *          are then missing */
NUMCORE_API int32_t GetLKStatistics(const double* deviations, const int32_t* sizes, int32_t nGroups, double* F,
                                    double* df1, double* df2);

/* ---- Proportions ---- */

/** z test of one or two proportions with its confidence interval.
 *
 *  @param nSamples   1, or any other number for two samples
 *  @param n1, n2     sample sizes; n2 is not read with one sample
 *  @param p1, p2     sample proportions; with one sample p2 is the theoretical one
 *  @param D          hypothesised difference
 *  @param alpha      significance level, in (0, 1)
 *  @param continuity flag: continuity correction of 1/2
 *  @param variance   NumcoreProportionVariance
 *  @param interval   NumcoreProportionInterval, read with one sample
 *  @param z          out. Kept: without variance (1e-12 or less) 0 where p1 - p2 - D is 0, else minus the
 *                    overflow marker whatever its sign
 *  @param critical   out: normal quantile. Kept: with one sample and a one-sided alternative it is multiplied
 * by the alternative code, so it is negative for the lower one
 *  @param pValue     out
 *  @param lower, upper out: two samples: limits of p1 - p2 - D, within [-1, 1]; one sample: limits of p1. Kept:
 * the open limits are -1 and 1 there as well; the adjusted interval is centred on p1; the correction is added
 * to the count of the Clopper-Pearson interval
 *  @return 0; -1 a size below 1 or a number that is not finite: all outputs are missing */
NUMCORE_API int32_t TestProportions(int32_t nSamples, int32_t n1, int32_t n2, double p1, double p2, double D,
                                    double alpha, int32_t alternative, int16_t continuity, int32_t variance,
                                    int32_t interval, double* z, double* critical, double* pValue,
                                    double* lower, double* upper);
/** `TestProportions` for a foreign caller. */
NUMCORE_API int32_t Cpp_TestProportions(int32_t nSamples, int32_t n1, int32_t n2, double p1, double p2,
                                        double D, double alpha, int32_t alternative, int16_t continuity,
                                        int32_t variance, int32_t interval, double* z, double* critical,
                                        double* pValue, double* lower, double* upper);

/** Wilson's score interval of a proportion.
 *
 *  @param critical   normal quantile; its absolute value is used
 *  @param p          sample proportion
 *  @param n          sample size
 *  @param correction continuity correction: the lower limit is that of p less it, the upper that of p plus it
 *  @param lower, upper out, within [0, 1]; missing for n < 1 or a number that is not finite
 *
 *  Wilson (1927), J. Am. Stat. Assoc. 22:209-212. */
NUMCORE_API void GetInfSupWilson(double critical, double p, int32_t n, double correction, double* lower,
                                 double* upper);
/** Exact interval of a proportion, alpha / 2 on each side.
 *
 *  @param count        successes, a fraction allowed
 *  @param n            sample size
 *  @param lower, upper out; 0 for a count of 0 or less, 1 for one of n or more; missing for n < 1 or a number
 * that is not finite
 *
 *  Clopper and Pearson (1934), Biometrika 26:404-413, by quantiles of the beta law. */
NUMCORE_API void GetInfSupClopper(double count, int32_t n, double alpha, double* lower, double* upper);

/** Chi-square test of k proportions: equal, or equal to given ones.
 *
 *  @param k           number of samples
 *  @param n           k sample sizes
 *  @param p           k sample proportions, in [0, 1]
 *  @param theoretical k given proportions, in [0, 1], or null to test equality
 *  @param alpha       significance level, in (0, 1)
 *  @param chiSquare   out: sum over the samples of n (p - p0)^2 / (p0 (1 - p0)), p0 the given or pooled
 * proportion
 *  @param critical    out: chi-square quantile at 1 - alpha
 *  @param df          out: k - 1 for equality, k for given proportions
 *  @param pValue      out: upper tail
 *  @return 0; -1 fewer than two samples (one, for given proportions), a size below 1, or no proportion; -2 a p0
 * of 0 or 1 (p0 (1 - p0) of 1e-12 or less); all outputs are then missing
 *
 *  Pearson (1900), Phil. Mag. 50:157-175; no continuity correction. */
NUMCORE_API int32_t TestKProportionsChi2(int32_t k, const int32_t* n, const double* p,
                                         const double* theoretical, double alpha, double* chiSquare,
                                         double* critical, double* df, double* pValue);

/** Marascuilo's procedure: simultaneous comparison of all pairs of k proportions.
 *
 *  @param k, n, p, alpha as in `TestKProportionsChi2`
 *  @param differences  out, k x k: |p_i - p_j|
 *  @param critical     out, k x k: sqrt(chi-square quantile at 1 - alpha with k - 1 degrees of freedom) times
 * the standard error sqrt(p_i (1 - p_i) / n_i + p_j (1 - p_j) / n_j)
 *  @param pValues      out, k x k: chi-square upper tail of (difference / standard error)^2; without a standard
 *                      error 0, or 1 for equal proportions. 1 on the diagonal
 *  @param significant  out, k x k: 1 where the difference exceeds its critical value, else 0
 *  @return 0; -1 fewer than two samples, a size below 1, or no proportion: nothing is written
 *
 *  Marascuilo (1966), Psychol. Bull. 65:280-290. */
NUMCORE_API int32_t TestKProportionsMarascuilo(int32_t k, const int32_t* n, const double* p, double alpha,
                                               double* differences, double* critical, double* pValues,
                                               int32_t* significant);

/** Monte Carlo test of two proportions.
 *
 *  Draws both counts of successes under the hypothesis from binomial laws with p2' = (n1 (p1 - D) + n2 p2) /
 * (n1 + n2), kept within [0, 1], and p1' = p2' + D, kept likewise, and counts the draws whose p1 - p2 - D is as
 * far out as the observed one: by size (two-sided), or upwards or downwards.
 *
 *  @param n1, n2       sample sizes
 *  @param p1, p2       sample proportions, in [0, 1]
 *  @param D            hypothesised difference
 *  @param alternative  as everywhere
 *  @param nSimulations number of draws, at least 1
 *  @param seed         in/out: draw i takes numbers 2 i and 2 i + 1 of this seed's stream, so that p depends on
 *                      seed and number of draws only; a chosen seed is written back. Null with seedGiven: seed
 * 0
 *  @param seedGiven    flag: use this seed; otherwise one is chosen
 *  @param difference   out: p1 - p2 - D
 *  @param pValue       out: (as far out + 1) / (nSimulations + 1)
 *  @param lower, upper out: 99 % limits of the p-value that infinitely many draws would give
 * (`GetInfSupClopper`)
 *  @return 0; -1 a size or number of draws below 1, or no proportion: all outputs are missing
 *
 *  Davison and Hinkley (1997), Bootstrap Methods and their Application, 4.2. */
NUMCORE_API int32_t Test2ProportionsMonte(int32_t n1, int32_t n2, double p1, double p2, double D,
                                          int32_t alternative, int32_t nSimulations, int32_t* seed,
                                          int16_t seedGiven, double* difference, double* pValue, double* lower,
                                          double* upper);

NUMCORE_END_C
