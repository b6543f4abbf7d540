/* Discrete laws.
 *
 * Every law has a probability mass PDF..., a distribution function CDF... = P(X <= x) and, but for the
 * hypergeometric law, a quantile InvCDF... = the first count whose cumulative probability reaches p, each with
 * the evaluation point first. They share these rules, the text of a law says where it differs:
 *  - a parameter outside its domain, NaN included, gives the missing value; a point of NaN gives NaN;
 *  - the mass is 0 where the point is not a whole number that the law can take;
 *  - quantiles that are 32-bit counts give 0xFFFFFFFF for bad input and for a count above 4294967294;
 *  - every function ends on every input, within some 50 microseconds also for counts of 1e15 and parameters of
 *    1e300.
 *
 * Masses are Stirling's formula times exp(-deviance), Loader (2000), Fast and accurate computation of binomial
 * probabilities: the same value as by logarithms of factorials, without the digits that their difference loses.
 * Distribution functions of counts add up masses outwards from the count, on the shorter side, each from its
 * neighbour; where that takes more than some 200 terms they are the incomplete beta ratio. Both tails keep
 * their relative accuracy, 1e-15 to 4e-15 near the mean and (1 + d) 5e-16 where the mass is of the order of
 * exp(-d).
 *
 * Quantiles add up masses from 0 where this takes at most 160 terms. Otherwise they start from a guess and
 * enclose the count with the distribution function, above p = 1/2 with the upper tail, so that they also end
 * where a sum from 0 would underflow, never reach p by rounding, or take for ever. A cumulative probability
 * within 16 units of 2^-52 (relative) of p counts as reaching p. */
#pragma once

#include "numcore/api.h"

NUMCORE_BEGIN_C

/* ---- UniformDisc ---- */

/** Mass of the discrete uniform law on floor(a), ..., floor(b): 1 / (floor(b) - floor(a) + 1) for a <= x <= b,
 *  0 elsewhere. Kept: x between the bounds need not be a whole number; the bounds are not checked. */
NUMCORE_API double PDFUniformDisc(double x, double a, double b);

/** Distribution function of the discrete uniform law: 0 for x < a, 1 for x >= b, between them
 *  (x - floor(a) + 1) / floor(b - a + 1).
 *
 *  Kept: x is not rounded down, so that the function rises between whole numbers, and with fractions in the
 * bounds it can exceed 1. */
NUMCORE_API double CDFUniformDisc(double x, double a, double b);

/** Quantile of the discrete uniform law: floor(floor(b - a + 1) p + 1) + floor(a) - 1, and floor(a) - 1 at p =
 * 0.
 *
 *  Kept: where floor(b - a + 1) p is a whole number, that is one more than the first value that reaches p; p =
 * 1 gives b + 1.
 *
 *  @return the missing value for p outside [0, 1] and a >= b */
NUMCORE_API double InvCDFUniformDisc(double p, double a, double b);

/** Quantile of the law on floor(a), ..., floor(b) with given weights, which are taken as they are, not divided
 * by their sum.
 *
 *  @param p        probability; above 1 it counts as 1
 *  @param weights  n weights, the first that of floor(a); not read beyond the range nor beyond n
 *  @param n        number of weights; the range ends with them when it is longer
 *  @param a, b     bounds
 *  @return the first value whose running sum of weights reaches p or 1; 0 when none does, when the range or the
 *  weights are empty, and for p of NaN */
NUMCORE_API double InvCDFUniformWDisc(double p, const double* weights, int32_t n, double a, double b);

/* ---- Bernoulli ---- */

/** Mass of the Bernoulli law: p at 1, 1 - p at 0, 0 elsewhere; p is not checked. */
NUMCORE_API double PDFBernoulli(double x, double p);

/** Distribution function of the Bernoulli law: 0 below 0, 1 - p on [0, 1), 1 from 1 on; p is not checked. */
NUMCORE_API double CDFBernoulli(double x, double p);

/** Quantile of the Bernoulli law: 0 for p <= 1 - p1, otherwise 1; neither is checked, NaN gives the missing
 *  value. */
NUMCORE_API double InvCDFBernoulli(double p, double p1);

/* ---- Binomial ---- */

/** Mass of the binomial law, C(n, k) p^k (1 - p)^(n - k).
 *
 *  @param k  successes
 *  @param n  trials, >= 0, rounded half away from zero
 *  @param p  probability of a success, in [0, 1]; kept: within 1e-12 of 0 or 1 it counts as such
 *
 *  The product itself for n <= 10. */
NUMCORE_API double PDFBinomial(double k, double n, double p);

/** Distribution function of the binomial law.
 *
 *  @param k  successes; kept: rounded half away from zero, not down
 *  @param n  trials, >= 0, rounded likewise
 *  @param p  probability of a success, in [0, 1]
 *  @return 1 for k >= n, then 0 for k < 0 or p = 1, and 1 for p = 0
 *
 *  The sum from 0 for n <= 10. */
NUMCORE_API double CDFBinomial(double k, double n, double p);

/** Quantile of the binomial law: n at p = 1.
 *
 *  @param p   probability, in [0, 1]
 *  @param n   trials, rounded half away from zero; 0 is bad input
 *  @param p1  probability of a success, in [0, 1]; within 1e-12 of 0 or 1 it counts as such */
NUMCORE_API uint32_t InvCDFBinomial(double p, double n, double p1);

/* ---- BinomialNeg1 ---- */

/** Mass of the negative binomial law of type 1: k failures before success number n,
 *  C(k + n - 1, n - 1) p^n (1 - p)^k.
 *
 *  @param k  failures
 *  @param n  successes, >= 1, rounded half away from zero
 *  @param p  probability of a success, 0 < p < 1
 *
 *  The product itself for k + n < 100. */
NUMCORE_API double PDFBinomialNeg1(double k, double n, double p);

/** Distribution function of the negative binomial law of type 1: the masses from 0 to floor(k), at most 1. */
NUMCORE_API double CDFBinomialNeg1(double k, double n, double p);

/** Quantile of the negative binomial law of type 1; 2147483647, an unbounded count, at p = 1.
 *
 *  @param p   probability, in [0, 1]
 *  @param n   successes, >= 1
 *  @param p1  probability of a success, 0 < p1 < 1 */
NUMCORE_API uint32_t InvCDFBinomialNeg1(double p, double n, double p1);

/* ---- BinomialNeg2 ---- */

/** Mass of the negative binomial law of type 2, with the mean k p and the variance k p (1 + p):
 *  Gamma(k + x) / (x! Gamma(k)) p^x / (1 + p)^(k + x).
 *
 *  @param x  count
 *  @param k  size, a real number > 0; below 1e-300 it counts as that
 *  @param p  mean over size, > 0
 *
 *  Type 1 is the case of a whole k with the probability of a success 1 / (1 + p). */
NUMCORE_API double PDFBinomialNeg2(double x, double k, double p);

/** Distribution function of the negative binomial law of type 2 at floor(x), the incomplete beta ratio
 *  I(k, floor(x) + 1) at 1 / (1 + p). */
NUMCORE_API double CDFBinomialNeg2(double x, double k, double p);

/** Quantile of the negative binomial law of type 2; 2147483647, an unbounded count, at p = 1.
 *
 *  @param p   probability, in [0, 1]
 *  @param k   size, > 0
 *  @param p1  mean over size, > 0 */
NUMCORE_API uint32_t InvCDFBinomialNeg2(double p, double k, double p1);

/* ---- Poisson ---- */

/** Mass of the Poisson law, e^-lambda lambda^k / k!.
 *
 *  @param k       count
 *  @param lambda  mean, > 0; infinity gives 0 */
NUMCORE_API double PDFPoisson(double k, double lambda);

/** Distribution function of the Poisson law: 0 for k < 0, e^-lambda at 0, otherwise
 *  1 - IncompleteGamma(lambda, k + 1).
 *
 *  Kept: the accuracy is that of IncompleteGamma and of the subtraction, about 1e-14 absolute; from k = 1000 on
 * it is the Wilson-Hilferty approximation, off by up to 5e-6. */
NUMCORE_API double CDFPoisson(int32_t k, double lambda);

/** Quantile of the Poisson law, from the masses themselves, not from CDFPoisson; 2147483647, an unbounded
 * count, at p = 1.
 *
 *  @param p       probability, in [0, 1]; 0 for p <= e^-lambda
 *  @param lambda  mean, > 0 */
NUMCORE_API uint32_t InvCDFPoisson(double p, double lambda);

/* ---- HyperG ---- */

/** Mass of the hypergeometric law: x marked items among n drawn without replacement from N of which K are
 * marked, C(K, x) C(N - K, n - x) / C(N, n).
 *
 *  @param x  marked items drawn
 *  @param N  items, a whole number from 0 to 2^53
 *  @param K  marked items, a whole number from 0 to N
 *  @param n  items drawn, a whole number from 0 to N
 *
 *  Saddle-point form over the four cells of the table, whose common deviation from their means is computed
 *  without rounding: relative accuracy about 1e-15 near the mean for any N. */
NUMCORE_API double PDFHyperG(double x, double N, double K, double n);

/** Distribution function of the hypergeometric law at floor(x).
 *
 *  Masses are added up outwards from x on the side where they fall, each from its neighbour. Where the standard
 *  deviation exceeds 500 and neighbours differ by less than 3 %, the sum is an integral over the smooth curve
 *  through the masses with the Euler-Maclaurin corrections, so that the time no longer grows with N. */
NUMCORE_API double CDFHyperG(double x, double N, double K, double n);

NUMCORE_END_C
