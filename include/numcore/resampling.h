/* Options of the tests that can resample: what the caller asks for, and what the run tells back. */
#pragma once

#include "numcore/records.h"

/* How resamples are made. Any other value counts as automatic. The arrangements of one sample, and of pairs,
 * are the signs of the distances from the hypothesis. */
enum NumcoreResamplingMethod {
    NUMCORE_RESAMPLE_AUTOMATIC = 0,   /* every arrangement when there are few, drawn permutations otherwise */
    NUMCORE_RESAMPLE_PERMUTATION = 1, /* drawn permutations, however few arrangements there are */
    NUMCORE_RESAMPLE_BOOTSTRAP = 2    /* observations drawn with replacement, the hypothesis imposed on them */
};

/* Bits of `ResamplingOptions.outcome`. */
enum NumcoreResamplingOutcome {
    NUMCORE_RESAMPLED = 1,         /* the p-value comes from resamples */
    NUMCORE_RESAMPLED_ALL = 2,     /* ... from every arrangement: it is exact */
    NUMCORE_RESAMPLED_STOPPED = 4, /* the time limit ended the run before nResamples */
    NUMCORE_RESAMPLED_BOUNDED = 8  /* nResamples or maxArrangements was more than the engine takes */
};

/* The four limits of the numbers in the record. */
#define NUMCORE_RESAMPLES_DEFAULT 9999
#define NUMCORE_RESAMPLES_LARGEST 100000000
#define NUMCORE_ARRANGEMENTS_DEFAULT 1000000
#define NUMCORE_ARRANGEMENTS_LARGEST 100000000

/** Options of resampling, and what the run tells back.
 *
 *  A record of zeros with the flag at -1 asks for the defaults and a seed of chance. What a run gives depends
 * on the data, on seed, method, maxArrangements and on the number of resamples: never on threads or time. A run
 * that the time limit ended is repeated, bit for bit, by nResamples = nUsed, timeLimit = 0, seedGiven = -1.
 *
 *  - useResampling    16-bit boolean: -1 takes p-value and critical value from resamples, not from the law
 *  - timeLimit        seconds after which no further resample is begun; 0, negative, NaN or infinite: none. At
 *                     least a few resamples are made. Arrangements that are all tried are not bounded by it.
 *  - method           NumcoreResamplingMethod
 *  - nResamples       resamples wanted; below 1 NUMCORE_RESAMPLES_DEFAULT; more than NUMCORE_RESAMPLES_LARGEST
 * are as many as that
 *  - maxArrangements  every arrangement is tried when there are at most so many; 0
 * NUMCORE_ARRANGEMENTS_DEFAULT, negative never, more than NUMCORE_ARRANGEMENTS_LARGEST as many as that
 *  - nUsed            out: resamples, or arrangements, behind the p-value; 0 when none could be made
 *  - nExtreme         out: those at least as extreme as the data, b. Of all m arrangements p is b / m (the
 * data's own counts); of m drawn resamples (b + 1) / (m + 1). The two-sided test of a variance ratio counts the
 * less frequent tail and doubles. Clopper-Pearson limits of b / m tell how well p is known.
 *  - seed             the seed, in and out: one of chance is written here
 *  - seedGiven        16-bit boolean: -1 uses `seed`, any other value takes one of chance
 *  - outcome          out: NumcoreResamplingOutcome bits; 0 when nothing was resampled */
typedef struct ResamplingOptions {
    int16_t useResampling;
    double timeLimit;
    int16_t method;
    int64_t nResamples;
    int64_t maxArrangements;
    int64_t nUsed;
    int64_t nExtreme;
    int32_t seed;
    int16_t seedGiven;
    int32_t outcome;
} ResamplingOptions;

NUMCORE_LAYOUT(sizeof(ResamplingOptions) == 72);
NUMCORE_LAYOUT(offsetof(ResamplingOptions, useResampling) == 0);
NUMCORE_LAYOUT(offsetof(ResamplingOptions, timeLimit) == 8);
NUMCORE_LAYOUT(offsetof(ResamplingOptions, method) == 16);
NUMCORE_LAYOUT(offsetof(ResamplingOptions, nResamples) == 24);
NUMCORE_LAYOUT(offsetof(ResamplingOptions, maxArrangements) == 32);
NUMCORE_LAYOUT(offsetof(ResamplingOptions, nUsed) == 40);
NUMCORE_LAYOUT(offsetof(ResamplingOptions, nExtreme) == 48);
NUMCORE_LAYOUT(offsetof(ResamplingOptions, seed) == 56);
NUMCORE_LAYOUT(offsetof(ResamplingOptions, seedGiven) == 60);
NUMCORE_LAYOUT(offsetof(ResamplingOptions, outcome) == 64);
