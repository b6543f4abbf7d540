/* The laws by their codes: the table of laws and the functions that dispatch on it. */
#pragma once

#include "numcore/api.h"

NUMCORE_BEGIN_C

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

/** The law of a code from 0 to 32; null for any other. */
NUMCORE_API const numcore_law* numcore_law_of_code(int32_t code);

NUMCORE_API double CDFGeneral(double x, int32_t code, double p1, double p2, double p3, double p4);

NUMCORE_API double InvCDFGeneral(double p, int32_t code, double p1, double p2, double p3, double p4);

NUMCORE_API double PDFGeneral(double x, int32_t code, double p1, double p2, double p3, double p4);

NUMCORE_END_C
