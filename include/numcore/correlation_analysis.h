/* The correlation analysis: every table that the user asked for, from one data set, in one call. */
#pragma once

#include "numcore/records.h"

/* Family of coefficients. */
enum NumcoreCorrelationFamily {
    NUMCORE_COR_FAMILY_PEARSON = 1,
    NUMCORE_COR_FAMILY_SPEARMAN = 2,
    NUMCORE_COR_FAMILY_KENDALL = 3,
    NUMCORE_COR_FAMILY_POLYCHORIC = 4
};

/* What happens to rows with a missing value. */
enum NumcoreCorrelationMissing {
    NUMCORE_COR_PAIRWISE = 0, /* a pair of variables uses the rows where both are present */
    NUMCORE_COR_LISTWISE = 1  /* a row with a missing value in any variable takes no part */
};

/* Status of `Cpp_COR_Compute_ST`. */
enum NumcoreCorrelationStatus {
    NUMCORE_COR_DONE = 0,
    NUMCORE_COR_NO_DATA = -1,    /* no parameters, no numeric table, or no row */
    NUMCORE_COR_BAD_FAMILY = -2, /* a coefficient that is none of NumcoreCorrelationFamily */
    NUMCORE_COR_BAD_OPTION = -3, /* alpha outside (0, 1), or an unknown code for missing values */
    NUMCORE_COR_BAD_WEIGHTS = -4 /* a weight that is negative, infinite or no number */
};

/* What to compute. A record of zeros with coefficient and alpha filled in asks for the coefficients alone.
 * Flags are true only when -1. Fields are only ever added at the end, in the place of reserved ones: 0 there
 * means what it means today. */
typedef struct COR_Param {
    int32_t coefficient;     /* NumcoreCorrelationFamily */
    int32_t alternative;     /* 0 two-sided, -1 lower, 1 upper, 2 no p-values */
    int32_t missing;         /* NumcoreCorrelationMissing */
    int32_t decimals;        /* of the tables' format; below 0 as the values need */
    double alpha;            /* level of significance, and 1 - alpha that of the intervals; in (0, 1) */
    int16_t covariance;      /* flag, Pearson: covariances instead of coefficients */
    int16_t biased;          /* flag, Pearson: covariances divide by the sum of weights, not less 1 */
    int16_t analyticWeights; /* flag, Pearson: weights are precisions, not numbers of rows */
    int16_t pValues;         /* flag: p-values and significance */
    int16_t squared;         /* flag: squared coefficients */
    int16_t intervals;       /* flag: confidence intervals (polychoric: from the standard error) */
    int16_t exact;           /* flag, Kendall: exact p-values where they exist */
    int16_t continuity;      /* flag, Kendall: continuity correction of the normal law */
    int16_t rectangular;     /* flag: numeric table 1 with numeric table 2, instead of table 1 with itself */
    int16_t
        maximumLikelihood; /* flag, polychoric: thresholds and coefficient together, not one after the other */
    int16_t boldSignificant; /* flag: the host shows significant coefficients in bold */
    int16_t summaries; /* flag: categories of every variable, into the data set's categorical information */
    int32_t positiveColour; /* 0xBBGGRR of cells with a significant positive coefficient; -1 none */
    int32_t negativeColour; /* the same, negative */
    int32_t reserved[14];
} COR_Param;
NUMCORE_LAYOUT(sizeof(COR_Param) == 112);
NUMCORE_LAYOUT(offsetof(COR_Param, alpha) == 16 && offsetof(COR_Param, positiveColour) == 48);

/* What comes back. The caller supplies the arrays of the column sets, a column per variable and a row per
 * variable (rectangular: a row per variable of table 1, a column per variable of table 2); a set without arrays
 * is not wanted. What does not fit is dropped. Every set gets its labels, the names of the columns. */
typedef struct COR_Results {
    ST_MVectDbl coefficients;
    ST_MVectDbl pValues;
    ST_MVectLng significant; /* 1 where the p-value is below alpha */
    ST_MVectDbl squared;
    ST_MVectDbl lower;
    ST_MVectDbl upper;
    ST_MVectLng nPairs;      /* rows that both variables of a pair share, after exclusion */
    ST_MVectLng colours;     /* 0xBBGGRR of each coefficient's cell, -1 none */
    ST_TableFormats formats; /* of every table: `cCorr_Settings::FillTbF` */
    int32_t status;          /* as returned */
    int32_t coefficient;     /* family that ran */
    int32_t nRowsUsed;       /* rows that are not excluded */
    int32_t nRowsExcluded;   /* marked by the caller or, listwise, with a missing value */
    int32_t nMissing;        /* missing cells in the rows used */
    int32_t nNotComputed;    /* coefficients that are missing, each pair counted once */
    int32_t nNotExact;       /* Kendall: pairs whose exact p-value was asked for and is the normal one */
    int32_t nNotConverged;   /* polychoric: pairs whose iteration ended early */
    int16_t complete;        /* flag: no missing value and no weights, the kernel without such tests ran */
    int16_t reserved[15];
} COR_Results;
NUMCORE_LAYOUT(sizeof(COR_Results) == 504);

NUMCORE_BEGIN_C

/** Correlation analysis of a data set: coefficients of every pair of variables with what was asked of p-values,
 *  significance, squares, intervals, numbers of pairs, colours and formats.
 *
 *  Variables are the columns of numeric table 1 (rectangular: and of table 2); marked rows are excluded;
 *  observation weights count when their flag is true. Colours need the coefficients and their significance.
 *  The polychoric coefficient takes values as ordered categories, at most 200; its p-value is that of the
 *  coefficient over its standard error in the normal law, its limits are symmetric in Fisher's transform.
 *
 *  @param data     the data set
 *  @param labels   out: the names of the rows of the tables in its first column; may be null
 *  @param param    what to compute
 *  @param results  may be null: only the status is told
 *  @param messages 5900 texts of the host, or null
 *  @return NumcoreCorrelationStatus; below 0 every asked-for table is left as it was */
NUMCORE_API int32_t Cpp_COR_Compute_ST(ST_DataSet* data, ST_MVectStr* labels, COR_Param* param,
                                       COR_Results* results, char16_t** messages, SystemInfo* system,
                                       QUORIXInfo* host);

NUMCORE_END_C
