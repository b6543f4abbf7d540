/* Continuous laws on the incomplete gamma and beta functions, and the normal laws.
 *
 * The point x or the probability p comes first, then the parameters. Densities and distribution functions are
 * right to some 1e-13 relative unless another is told, quantiles as far as their algorithm allows. In common:
 * - a parameter outside the domain told, infinite or not a number gives the missing value;
 * - p outside [0, 1] or not a number gives it in a quantile; a point that is not a number gives NaN;
 * - an infinite density or quantile is the overflow marker;
 * - tail -1 (NUMCORE_TRUE) means the lower tail P(X <= x), any other value the upper tail P(X > x). */
#pragma once

#include "numcore/api.h"

NUMCORE_BEGIN_C

/* ---- Normal ---- */

/** Normal density e^(-z^2 / 2) / (|sigma| sqrt(6.28318530717958)), z = (x - mu) / sigma.
 *
 *  @param x     point
 *  @param mu    mean
 *  @param sigma standard deviation; 0 gives the missing value, a sign is not looked at
 *
 *  Kept: 2 pi is cut to 15 digits, as in `PDFNormalStd`. */
NUMCORE_API double PDFNormal(double x, double mu, double sigma);

/** Normal distribution function, `CDFNormalStd`((x - mu) / sigma).
 *
 *  @param x     point
 *  @param mu    mean
 *  @param sigma standard deviation; 0 gives the missing value. Kept: no other check, so that a negative one
 *               gives the upper tail
 *  @return the probability; exactly 0 where it is below 1e-16 */
NUMCORE_API double CDFNormal(double x, double mu, double sigma);

/* ---- LogNormal ---- */

/** Density of a variable whose logarithm is normal.
 *
 *  @param x     point, >= 0; below 0 the missing value
 *  @param mu    mean of the logarithm
 *  @param sigma standard deviation of the logarithm, > 0
 *  @return the density; 0 at x = 0 */
NUMCORE_API double PDFLogNormal(double x, double mu, double sigma);

/** Distribution function of `PDFLogNormal`, `CDFNormalStd`((ln x - mu) / sigma).
 *
 *  @return the probability; 0 at x = 0 and, kept, where it is below 1e-16 */
NUMCORE_API double CDFLogNormal(double x, double mu, double sigma);

/** Quantile of `PDFLogNormal`, e^(mu + sigma `InvCDFNormalStd`(p)).
 *
 *  @return the quantile; 0 at p = 0, the overflow marker at p = 1 */
NUMCORE_API double InvCDFLogNormal(double p, double mu, double sigma);

/* ---- Student ---- */

/** Density of Student's t.
 *
 *  @param x  point
 *  @param nu degrees of freedom, > 0 */
NUMCORE_API double PDFStudent(double x, double nu);

/** Distribution function of Student's t.
 *
 *  @param x  point
 *  @param nu degrees of freedom, > 0
 *  @return with w = nu / (x^2 + nu) and t = I_w(nu / 2, 1/2) / 2: t below 0, 1 - t from 0 on, the lower
 *          tail with full relative accuracy. Kept: t is 1/2 where w is rounded to 1, for |x| below about
 *          1e-8 sqrt(nu), an absolute error of up to 4e-9 at few degrees of freedom and any for nu from
 *          about 1e16 on */
NUMCORE_API double CDFStudent(double x, double nu);

/** Quantile of Student's t.
 *
 *  @param p  probability
 *  @param nu degrees of freedom, > 0, infinity allowed; the expansion is meant for 1 and more
 *  @return the quantile: exact for nu = 1 and 2; beyond 1e20 `InvCDFNormalStd`; otherwise within 1e-5 from
 *          3 degrees of freedom on and 1e-6 from 10, but off by per cents between 1 and 2 and useless below
 *          (kept: no refinement). The overflow marker at p = 1; its negative twin, which is the missing
 *          value, at p = 0; the missing value for nu <= 1/2 and where the expansion has no value
 *
 *  CACM Algorithm 396, Hill (1970), Comm. ACM 13:619-620. Deliberate difference: the normal branch also for
 *  nu < 2.1 where the two-sided probability exceeds 1/2. */
NUMCORE_API double InvCDFStudent(double p, double nu);

/* ---- ChiSq ---- */

/** Chi-square density.
 *
 *  @param x  point; 0 below 0, and at 0 the limit (overflow marker for nu < 2, 1/2 for 2, 0 above)
 *  @param nu degrees of freedom, > 0 */
NUMCORE_API double PDFChiSq(double x, double nu);

/** Chi-square distribution function, `IncompleteGamma`(x / 2, nu / 2) with all that is said there.
 *
 *  @param x  point; 0 below 0
 *  @param nu degrees of freedom, > 0 */
NUMCORE_API double CDFChiSq(double x, double nu);

/** Chi-square quantile.
 *
 *  @param p  probability. Kept: below 1e-100 (also below 0) the quantile is 0, above 0.99999999999999 (also
 *            above 1) the overflow marker
 *  @param nu degrees of freedom, > 0
 *  @return the quantile, off by some 1e-8 and at most about 2e-6 relative for p in [0.001, 0.999]; far off
 *          (per cents, and huge numbers) for p below 1e-6 with some 20 and more degrees of freedom
 *
 *  Algorithm AS 91, Best and Roberts (1975), Appl. Statist. 24:385-388. Kept: the stopping test is the
 *  reverse of the published one. The first correction that changes the value by more than 5e-7 relative is
 *  the last; smaller ones go on up to 1000. A starting value below 5e-7 for small p is returned as it is. */
NUMCORE_API double InvCDFChiSq(double p, double nu);

/** Upper tail P(X > x) of the chi-square law, with full relative accuracy down to the smallest doubles up
 *  to 2000 degrees of freedom; above, the normal approximation of `IncompleteGamma`. 1 for x < 0. */
NUMCORE_API double pValChiSq(double x, double nu);

/* ---- Fisher ---- */

/** Density of Fisher's F.
 *
 *  @param x   point; 0 below 0, and at 0 the limit (overflow marker for nu1 < 2, 1 for 2, 0 above)
 *  @param nu1 degrees of freedom of the numerator, > 0
 *  @param nu2 degrees of freedom of the denominator, > 0 */
NUMCORE_API double PDFFisher(double x, double nu1, double nu2);

/** Distribution function of Fisher's F.
 *
 *  @param x    point
 *  @param nu1  degrees of freedom of the numerator, > 0
 *  @param nu2  degrees of freedom of the denominator, > 0
 *  @param tail -1 lower, else upper tail
 *  @return with w = nu2 / (nu1 x + nu2) the upper tail I_w(nu2 / 2, nu1 / 2) or its complement, each with
 *          full relative accuracy. Kept: the upper tail is 1 where w is rounded to 1 or beyond, that is
 *          also for x between -nu2 / nu1 and 0, and 0 where w is not positive, that is also for x below
 *          -nu2 / nu1 */
NUMCORE_API double CDFFisher(double x, double nu1, double nu2, int16_t tail);

/** Quantile of Fisher's F.
 *
 *  @param p    probability; kept: p <= 0 gives 0 whatever the tail
 *  @param nu1  degrees of freedom of the numerator, > 0
 *  @param nu2  degrees of freedom of the denominator, > 0
 *  @param tail -1: p is the lower tail; else the upper one
 *  @return the quantile from `InvCDFBeta`, about 1e-13; for nu2 or else nu1 above 400000 from `InvCDFChiSq`
 *          of the other one, with its accuracy. The overflow marker at p = 1 of the lower tail, 0 at p = 1
 *          of the upper one; the missing value without convergence */
NUMCORE_API double InvCDFFisher(double p, double nu1, double nu2, int16_t tail);

/** Upper tail P(F > f) of Fisher's F: `CDFFisher` with tail 0. */
NUMCORE_API double pValFisher(double f, double nu1, double nu2);

/* ---- Beta ---- */

/** Beta density on [0, 1].
 *
 *  @param x     point; 0 outside [0, 1] whatever the shapes, at the ends the limit (the overflow marker for
 *               a shape below 1, the other shape for a shape of 1, 0 above)
 *  @param alpha shape at 0, > 0
 *  @param beta  shape at 1, > 0 */
NUMCORE_API double PDFBeta(double x, double alpha, double beta);

/** Beta distribution function, the incomplete beta ratio of ACM TOMS Algorithm 708.
 *
 *  @param x     point
 *  @param alpha shape, >= 0
 *  @param beta  shape, >= 0; with both 0 the lower tail is 0
 *  @param tail  -1 lower, else upper tail, each with full relative accuracy */
NUMCORE_API double CDFBeta(double x, double alpha, double beta, int16_t tail);

/** Beta quantile.
 *
 *  @param p     probability
 *  @param alpha shape, >= 0; 0 gives the missing value for 0 < p < 1
 *  @param beta  shape, likewise
 *  @param tail  -1: p is the lower tail; else the upper one
 *  @return the quantile to about 1e-15 (what the distribution function resolves); the ends of [0, 1] for p
 *          = 0 and 1; the missing value without convergence
 *
 *  Algorithm AS 109, Cran, Martin and Thomas (1977), Appl. Statist. 26:111-114. Deliberate differences: a
 *  starting value outside [3e-308, 0.9999999999999998] becomes 0.5; at most 1000 steps, each shrunk at most
 *  1000 times by 3; they end when one changes x by less than 1e-15 relative, when the next one is bound to,
 *  or at the target 10^(-13 - 2.5 / shape^2 - 0.5 / tail^2), at least 1e-300, for the size of a step that
 *  is small beside x too. The smaller one of x and 1 - x is iterated, so that quantiles close to 0 keep
 *  their digits in either tail. Beyond the smallest double the quantile is that double; some just above it
 *  are not reached. */
NUMCORE_API double InvCDFBeta(double p, double alpha, double beta, int16_t tail);

/* ---- Beta4 ---- */

/** Density of the beta law stretched to [c, d]: `PDFBeta`((x - c) / (d - c)) / (d - c).
 *
 *  @param x     point
 *  @param alpha shape at c, > 0
 *  @param beta  shape at d, > 0
 *  @param c     lower end
 *  @param d     upper end, >= c; with d = c all probability is in that point, whatever the shapes */
NUMCORE_API double PDFBeta4(double x, double alpha, double beta, double c, double d);

/** Distribution function of `PDFBeta4`, lower tail: `CDFBeta` of (x - c) / (d - c). */
NUMCORE_API double CDFBeta4(double x, double alpha, double beta, double c, double d);

/** Quantile of `PDFBeta4`: c + (d - c) `InvCDFBeta`(p) of the lower tail. */
NUMCORE_API double InvCDFBeta4(double p, double alpha, double beta, double c, double d);

/* ---- Gamma3 ---- */

/** Gamma density.
 *
 *  @param x    point; below mu the missing value. Kept: 0 at mu, for shapes up to 1 as well
 *  @param k    shape, > 0
 *  @param beta scale, > 0; kept: 0 stands for a missing scale and is read as 1
 *  @param mu   location */
NUMCORE_API double PDFGamma3(double x, double k, double beta, double mu);

/** Gamma distribution function, `IncompleteGamma`((x - mu) / beta, k) with all that is said there.
 *
 *  Arguments as in `PDFGamma3`. */
NUMCORE_API double CDFGamma3(double x, double k, double beta, double mu);

/** Gamma quantile, mu + beta `InvCDFChiSq`(p, 2 k) / 2, with the accuracy of that.
 *
 *  @param p    probability; above 0.99999999999999 the quantile is the overflow marker
 *  @param k    shape, > 0
 *  @param beta scale, > 0; unlike in `PDFGamma3` 0 gives the missing value
 *  @param mu   location */
NUMCORE_API double InvCDFGamma3(double p, double k, double beta, double mu);

/* ---- Erlang ---- */

/** Density of the time to the k-th event.
 *
 *  @param x      point, >= 0; below 0 the missing value
 *  @param k      number of events, >= 1; a fraction is cut off
 *  @param lambda events per unit of time, > 0 */
NUMCORE_API double PDFErlang(double x, double k, double lambda);

/** Erlang distribution function: `CDFExponential` for k = 1, otherwise `IncompleteGamma`(lambda x, k).
 *
 *  Arguments as in `PDFErlang`. */
NUMCORE_API double CDFErlang(double x, double k, double lambda);

/** Erlang quantile, `InvCDFChiSq`(p, 2 k) / (2 lambda), with the accuracy of that. Parameters as in
 *  `PDFErlang`. */
NUMCORE_API double InvCDFErlang(double p, double k, double lambda);

/* ---- Pert ---- */

/** PERT density: `PDFBeta4` on [a, b] with the shapes (4 m + b - 5 a) / (b - a) and (5 b - a - 4 m) / (b -
 *  a).
 *
 *  @param x point
 *  @param a minimum
 *  @param m most likely value; beyond a quarter of the width outside [a, b] a shape is negative: the
 *           missing value
 *  @param b maximum, >= a; with b = a all probability is in that point */
NUMCORE_API double PDFPert(double x, double a, double m, double b);

/** PERT distribution function: `CDFBeta4` with the shapes of `PDFPert`. */
NUMCORE_API double CDFPert(double x, double a, double m, double b);

/** PERT quantile: `InvCDFBeta4` with the shapes of `PDFPert`. */
NUMCORE_API double InvCDFPert(double p, double a, double m, double b);

NUMCORE_END_C
