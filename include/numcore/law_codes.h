/* The laws by their codes: the table of laws, the functions that dispatch on it, names, and which data a law
 * can have produced. */
#pragma once

#include "numcore/records.h"

/** One row of the table of laws; the texts are static. */
typedef struct numcore_law {
    int32_t code;
    int32_t nameEntry;   /* entry of the caller's message table that holds the displayed name */
    char nameSuffix;     /* digit after the name, or 0 */
    char isDiscrete;     /* 1 for a law on whole numbers */
    int16_t nParameters; /* 0 to 4 */
    const char* name;    /* English, lower case: "beta", "negative binomial 1" */
    const char* parameters[4];
} numcore_law;
NUMCORE_LAYOUT(sizeof(numcore_law) == 56);

/** What every value must be for a law to have produced it. NaN and infinities are no numbers. */
typedef enum NumcoreDataRule {
    NUMCORE_DATA_NUMBERS = 0, /* any number: codes 7, 8, 9, 12, 14, 15, 18, 19, 22, 23, 25, 26, 27, 29, 30 */
    NUMCORE_DATA_UNIT_INTERVAL = 1, /* in [0, 1]: codes 0, 32 */
    NUMCORE_DATA_NON_NEGATIVE = 2,  /* 0 or above: codes 4, 5, 6, 10, 11, 20, 21, 24 */
    NUMCORE_DATA_POSITIVE = 3,      /* above 0: codes 13, 16 */
    NUMCORE_DATA_WHOLE = 4,         /* a whole number: code 28 */
    NUMCORE_DATA_COUNTS = 5,        /* a whole number, 0 or above: codes 1, 2, 3, 17 */
    NUMCORE_DATA_ZERO_OR_ONE = 6    /* 0 or 1: code 31 */
} NumcoreDataRule;

/** What `Cpp_CheckDistribConstraints2` looks at. */
typedef struct ST_DistribSettings {
    int32_t code;          /* of the law */
    int32_t nColumns;      /* columns of the data */
    const int16_t* exempt; /* a flag per column, true for one that is not looked at; null: all are looked at */
} ST_DistribSettings;
NUMCORE_LAYOUT(sizeof(ST_DistribSettings) == 16);
NUMCORE_LAYOUT(offsetof(ST_DistribSettings, code) == 0);
NUMCORE_LAYOUT(offsetof(ST_DistribSettings, nColumns) == 4);
NUMCORE_LAYOUT(offsetof(ST_DistribSettings, exempt) == 8);

/** What `Cpp_CheckDistribConstraints2` found. */
typedef struct ST_DistribCheck {
    int32_t rule;   /* NumcoreDataRule of the law; -1 when there is no such law or no data */
    int32_t column; /* of the first value that breaks it, from 1, column by column; 0 when none does */
    int32_t row;    /* the same, its row */
} ST_DistribCheck;
NUMCORE_LAYOUT(sizeof(ST_DistribCheck) == 12);

NUMCORE_BEGIN_C

/** The law of a code from 0 to 32; null for any other.
 *
 *  The parameters are those that the law's functions read, in order; texts beyond their number are null. The
 *  beta law of code 0 has its bounds as third and fourth parameter in the dispatching functions, not counted
 *  here. */
NUMCORE_API const numcore_law* numcore_law_of_code(int32_t code);

/** Distribution function of the law of a code.
 *
 *  | code | law | p1 to p4 | | code | law | p1 to p4 |
 *  |---|---|---|---|---|---|---|
 *  | 0 | beta | alpha, beta, 0, 1 | | 17 | Poisson | lambda |
 *  | 1 | binomial | n, p | | 18 | Student | nu |
 *  | 2 | negative binomial 1 | n, p | | 19 | uniform | a, b |
 *  | 3 | negative binomial 2 | k, p | | 20 | Weibull | beta |
 *  | 4 | chi-square | nu | | 21 | Weibull | beta, gamma |
 *  | 5 | exponential | lambda | | 22 | Weibull | beta, gamma, mu |
 *  | 6 | Fisher | nu1, nu2 | | 23 | extreme value | k, beta, mu |
 *  | 7 | Gumbel | | | 24 | Erlang | k, lambda |
 *  | 8 | Gumbel | beta | | 25 | triangular | a, m, b |
 *  | 9 | Gumbel | beta, mu | | 26 | PERT | a, m, b |
 *  | 10 | gamma | k | | 27 | logistic | mu, s |
 *  | 11 | gamma | k, beta | | 28 | discrete uniform | a, b |
 *  | 12 | gamma | k, beta, mu | | 29 | beta on [c, d] | alpha, beta, c, d |
 *  | 13 | log-normal | mu, sigma | | 30 | trapezoidal | a, b, c, d |
 *  | 14 | normal | mu, sigma | | 31 | Bernoulli | p |
 *  | 15 | standard normal | | | 32 | arcsine | a |
 *  | 16 | Pareto | a, b | | | | |
 *
 *  Each calls the function of its law (`CDFWeibull3`, ...) with scale 1 and location 0 for parameters that
 *  the code does not have, and the lower tail; domains and markers are that function's. Parameters beyond the
 *  law's own are not read, except that codes 0 and 29 are one law, whose bounds are p3 and p4: for code 0 the
 *  caller passes 0 and 1. The fraction of a count is dropped: n of codes 1 and 2, k of code 24, x of code 17
 *  (where a count beyond 32 bits is the nearest one that has them, and NaN gives NaN). Code 14 makes no check
 *  of sigma (kept; `CDFNormal` does): sigma = 0 gives 0 below mu, 1 above and NaN at mu.
 *
 *  @return 0 for a code below 0 or above 32 */
NUMCORE_API double CDFGeneral(double x, int32_t code, double p1, double p2, double p3, double p4);

/** Quantile of the law of a code; codes and parameters as in `CDFGeneral`.
 *
 *  Code 14 is mu + sigma z with z from `InvCDFNormalStd`, hence mu for p outside (0, 1) (kept). The quantiles
 *  of codes 1, 2, 3 and 17 are unsigned integers, so that bad input gives 4294967295.
 *
 *  @return the missing value for a code below 0 or above 32 */
NUMCORE_API double InvCDFGeneral(double p, int32_t code, double p1, double p2, double p3, double p4);

/** Density of the law of a code, or probability of x when it is discrete; codes and parameters as in
 *  `CDFGeneral`.
 *
 *  @return 0 for a code below 0 or above 32 */
NUMCORE_API double PDFGeneral(double x, int32_t code, double p1, double p2, double p3, double p4);

/** Code and number of parameters of the law with a displayed name.
 *
 *  A displayed name is the text of the entry numbered nameEntry (from 0) of the caller's messages, followed
 *  directly by the digit nameSuffix if there is one. Names are compared exactly, as 16-bit characters, in the
 *  order of the codes 32, 31, 0, 29, 1, 2, 3, 4, 24, 5, 6, 8 to 12, 23, 7, 13, 14, 27, 15, 16, 26, 17, 18,
 *  25, 30, 19, 28, 20 to 22; the first match counts. An empty entry names no law.
 *
 *  @param name        zero-terminated; null matches nothing
 *  @param messages    6500 texts of the caller (BSTR, null ones are empty), or null: nothing matches
 *  @param code        out, left alone without a match; may be null
 *  @param nParameters out, left alone without a match; may be null. Kept: 3 for code 2, whose functions
 *                     read two */
NUMCORE_API void Cpp_GetDistCodeNParam(const char16_t* name, char16_t** messages, int32_t* code,
                                       int32_t* nParameters);

/** Tells whether columns of data can come from a law, whatever its parameters.
 *
 *  Missing cells are passed over. Laws whose bounds are parameters (uniform, beta on [c, d], the gamma and
 *  Weibull laws with a location, ...) admit any number.
 *
 *  @param settings the law and the columns
 *  @param data     n rows and settings->nColumns columns, column by column
 *  @param messages 7779 texts of the caller, not read: which text belongs to a rule is for the caller to
 *                  choose
 *  @param found    out, may be null
 *  @return NUMCORE_TRUE when every value looked at obeys the law's rule, also when there is none;
 *          NUMCORE_FALSE otherwise, and for null settings, an unknown code, or null data with n and
 *          nColumns above 0 */
NUMCORE_API int16_t Cpp_CheckDistribConstraints2(const ST_DistribSettings* settings, const double* data,
                                                 int32_t n, char16_t** messages, ST_DistribCheck* found);

NUMCORE_END_C
