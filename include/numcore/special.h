/* Special functions: plain functions of doubles, without allocation or state.
 *
 * The point of evaluation comes first, before the shapes. Nothing but the returned value tells of an error: the
 * missing value outside a domain, the overflow marker for an infinite result, and what each function says. NaN
 * is not screened but flows through. Every call ends, whatever its arguments. */
#pragma once

#include "numcore/api.h"

NUMCORE_BEGIN_C

/** Regularised lower incomplete gamma function P(a, x).
 *
 *  @param x point, >= 0; 0 gives 0 for any a
 *  @param a shape, > 0
 *  @return P(a, x); NaN outside the domain, where the publication's series and fraction need not end
 *
 *  Algorithm AS 239, Shea (1988), Applied Statistics 37:466-473: relative error of the smaller tail below
 * 1e-13. Kept: above a = 1000 the normal approximation of Wilson and Hilferty, off by up to 5e-6; 1 for x >
 * 1e8; 0 (or 1, above the mean) where the logarithm of the smaller tail is below -88. */
NUMCORE_API double IncompleteGamma(double x, double a);

/** Regularised incomplete beta function I_x(a, b).
 *
 *  @param x point in [0, 1]
 *  @param a shape, >= 0
 *  @param b shape, >= 0, not 0 together with a
 *  @return I_x(a, b) to about 1e-13 relative, far tails included; 0 for bad arguments, so check the domain
 *          first; the limit for one infinite shape
 *
 *  ACM TOMS Algorithm 708, Didonato and Morris (1992), ACM Trans. Math. Softw. 18:360-373. */
NUMCORE_API double IncompleteBetaR(double x, double a, double b);

/** Incomplete beta function B_x(a, b) = I_x(a, b) B(a, b); arguments of `IncompleteBetaR` and a, b > 0. */
NUMCORE_API double IncompleteBeta(double x, double a, double b);

/** Continued fraction h of the incomplete beta function, I_x(a, b) = h x^a (1 - x)^b / (a B(a, b)).
 *
 *  @param x point in [0, 1); it converges fast for x < (a + 1) / (a + b + 2)
 *  @param a shape, > 0
 *  @param b shape, > 0
 *  @return the fraction to 3e-7; 0 when 100 steps do not suffice (kept: callers take it for a failure) and for
 * NaN
 *
 *  In two-step recurrence form, renormalised in each step: Abramowitz and Stegun (1964), 26.5.8. */
NUMCORE_API double Betacf(double x, double a, double b);

/** ln B(a, b), a and b > 0, to about 1e-14 of the larger of 1 and its size.
 *
 *  No check: an argument <= 0 puts the missing value of the log-gamma function into the sum.
 *
 *  Fullerton (1977), SLATEC library, DLBETA. */
NUMCORE_API double betaln(double a, double b);

/** Stirling correction ln Gamma(x) - [(x - 1/2) ln x - x + ln(2 pi) / 2] for x >= 10.
 *
 *  @return the correction to about 5e-15 relative; the missing value for x < 10 and from 3.74519403096316e306
 * on
 *
 *  Fullerton (1977), SLATEC library, D9LGMC; kept: the first five terms of its series. */
NUMCORE_API double GammaLnCorr(double x);

/** Sum of the first n terms of the Chebyshev series behind `GammaLnCorr` (x times the correction).
 *
 *  @param x point in [-1.1, 1.1], 2 (10 / argument)^2 - 1 for the correction
 *  @param n number of terms, 1 to 1000; the published series has 15, those beyond are 0
 *  @return the sum by Clenshaw's recurrence; the missing value for other n or x */
NUMCORE_API double chebyshev_eval(double x, int32_t n);

/** Error function erf(x), to 2 units in the last place; +-1 from |x| = 6.9 on.
 *
 *  Ooura (1996), package of gamma and error functions. */
NUMCORE_API double derf(double x);

/** Complementary error function erfc(x) = 1 - erf(x); relative error 4e-15 up to x = 6, 6e-14 up to 26.
 *
 *  Ooura (1996), package of gamma and error functions. */
NUMCORE_API double derfc(double x);

/** Standard normal density e^(-z^2 / 2) / sqrt(6.28318530717958); kept: 2 pi is cut to 15 digits. */
NUMCORE_API double PDFNormalStd(double z);

/** Standard normal distribution function.
 *
 *  @param z any number; NaN gives NaN
 *  @return Phi(z) to about 1e-15 relative; exactly 0 where it is below 1e-16 (kept; for z below about -8.2)
 *
 *  Cody (1969), Math. Comp. 23:631-637, as in his routine ANORM. */
NUMCORE_API double CDFNormalStd(double z);

/** Standard normal quantile.
 *
 *  @param p probability; NaN gives NaN
 *  @return the quantile to about 1e-15 relative; 0 for p <= 0 and p >= 1 (kept: the publication flags an error)
 *
 *  Algorithm AS 241 (PPND16), Wichura (1988), Applied Statistics 37:477-484. */
NUMCORE_API double InvCDFNormalStd(double p);

/** Gamma function.
 *
 *  @param x any number; NaN gives NaN
 *  @return Gamma(x) to about 1e-15 relative, the overflow marker for x > 170, at 0, -1, -2, ...
 *          and where 1 / x overflows
 *
 *  Power series of 1 / Gamma with 26 terms, Zhang and Jin (1996), Computation of Special Functions, GAMMA2. */
NUMCORE_API double GammaF(double x);

/** Digamma function, the derivative of ln Gamma(x), to about 1e-9 absolute.
 *
 *  @return the missing value for x <= 0; kept: -0.5772156649 - 1 / x up to x = 1e-5
 *
 *  Algorithm AS 103, Bernardo (1976), Applied Statistics 25:315-317. */
NUMCORE_API double Digamma(double x);

/** Trigamma function, the second derivative of ln Gamma(x), to about 6e-9 relative.
 *
 *  @return the missing value for x <= 0; kept: pi^2 / 6 within 1e-12 of 1, 1 / x^2 up to x = 1e-4
 *
 *  Algorithm AS 121, Schneider (1978), Applied Statistics 27:97-99. */
NUMCORE_API double Trigamma(double x);

/** Partial sum 1 + 2^-s + 3^-s + ... of the zeta function, the first term that changes it by no more than tol
 *  being the last one added.
 *
 *  @param s   exponent, > 1; the overflow marker for s <= 1, where the series diverges
 *  @param tol largest change that ends the sum; 0 or below: until the sum does not change any more
 *  @return the sum, below zeta(s) by about tol^(1 - 1/s) / (s - 1); NaN when s or tol is NaN
 *
 *  From the 1000th term on, the terms up to that last one are summed by the Euler-Maclaurin formula, Abramowitz
 *  and Stegun (1964), 23.1.30: the same partial sum (kept: it is not completed), at once. */
NUMCORE_API double RiemannZeta(double s, double tol);

/** Inverse hyperbolic tangent ln((1 + x) / (1 - x)) / 2; the missing value for x <= -1 and x >= 1. */
NUMCORE_API double ArctanH(double x);

/** Numerator coefficients of the diagonal Pade approximant of the exponential function; the denominator has the
 *  same ones with alternating signs.
 *
 *  @param degree       1 to 13; 3, 5, 7, 9 and 13 are those that matrix exponentials use
 *  @param coefficients out: degree + 1 whole numbers, the constant term first, the last one 1:
 *                      (2 m - j)! / ((m - j)! j!) for power j of degree m
 *  @return how many were written; 0 for another degree or a null pointer
 *
 *  Higham (2005), SIAM J. Matrix Anal. Appl. 26:1179-1193. */
NUMCORE_API int32_t GetPadeCoefficients(int32_t degree, double* coefficients);

NUMCORE_END_C
