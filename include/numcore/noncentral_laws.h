/* Noncentral laws and the bivariate normal law.
 *
 * Parameters outside their domain, NaN or infinite, give the missing value; a NaN point gives NaN. Degrees of
 * freedom and shapes reach from 1e-12 to 1e100, of Student to 1e50; noncentralities likewise. The
 * distribution functions are lower tails with relative accuracy however small they are. */
#pragma once

#include "numcore/api.h"

NUMCORE_BEGIN_C

/* ---- StudentNC ---- */

/** Density of the noncentral Student law, of (N + delta) / sqrt(Y / nu) with N standard normal and Y
 * chi-square.
 *
 *  @param x     point
 *  @param nu    degrees of freedom, > 0
 *  @param delta noncentrality
 *  @return the density, to 1e-12 in relative terms; 0 for |x| > 1e100
 *
 *  Average of the normal density over the law of s by the trapezoidal rule over ln s. */
NUMCORE_API double PDFStudentNC(double x, double nu, double delta);

/** Distribution function of `PDFStudentNC`.
 *
 *  @return P(T <= x), to 1e-12 in relative terms
 *
 *  Poisson mixture of incomplete beta ratios; where many of its terms matter, a contour integral through the
 *  saddle point; on the side away from delta an average of normal tails over the law of s. */
NUMCORE_API double CDFStudentNC(double x, double nu, double delta);

/** Quantile of `CDFStudentNC`, by Newton steps inside a bracket on the logarithm of the smaller tail.
 *
 *  @param p probability, 0 to 1
 *  @return the quantile; with delta = 0 that of Student's law without the error of `InvCDFStudent`. The
 * overflow marker at p = 1 and from 1e100 on; its negative twin, which is the missing value, at p = 0 and below
 *          -1e100; the missing value for p outside [0, 1] */
NUMCORE_API double InvCDFStudentNC(double p, double nu, double delta);

/* ---- chiSqNC ---- */

/** Distribution function of the noncentral chi-square law.
 *
 *  @param x      point; 0 up to 0
 *  @param nu     degrees of freedom, > 0
 *  @param lambda noncentrality, the sum of squared means, >= 0
 *  @return the lower tail, to 1e-12 in relative terms
 *
 *  Poisson mixture summed from its largest term; where many terms matter, the inversion integral of the moment
 *  generating function on a path through its saddle point (Rice, 1980, SIAM J. Sci. Statist. Comput.
 *  1:438-448). */
NUMCORE_API double CDFchiSqNC(double x, double nu, double lambda);

/* ---- FisherNC ---- */

/** Distribution function of the noncentral F law, (X / nu1) / (Y / nu2) with X noncentral chi-square.
 *
 *  @param x      point; 0 up to 0
 *  @param nu1    degrees of freedom of the numerator, > 0
 *  @param nu2    degrees of freedom of the denominator, > 0
 *  @param lambda noncentrality of the numerator, >= 0
 *  @return the lower tail, to 1e-12 in relative terms, by `CDFbetaNC` */
NUMCORE_API double CDFFisherNC(double x, double nu1, double nu2, double lambda);

/* ---- betaNC ---- */

/** Distribution function of the noncentral beta law, X / (X + Y) with X noncentral chi-square on 2 alpha and Y
 *  chi-square on 2 beta degrees of freedom.
 *
 *  @param x      point; 0 up to 0, 1 from 1 on
 *  @param alpha  first shape, > 0
 *  @param beta   second shape, > 0
 *  @param lambda noncentrality, >= 0
 *  @return the lower tail, to 1e-12 in relative terms, by the methods of `CDFchiSqNC` */
NUMCORE_API double CDFbetaNC(double x, double alpha, double beta, double lambda);

/* ---- BiNormal ---- */

/** Density of the bivariate normal law.
 *
 *  @param x, y           point
 *  @param mu1, mu2       means, finite
 *  @param sigma1, sigma2 standard deviations, > 0
 *  @param rho            correlation, -1 < rho < 1 */
NUMCORE_API double PDFBiNormal(double x, double y, double mu1, double mu2, double sigma1, double sigma2,
                               double rho);

/* ---- BiNormalStd ---- */

/** Density of the standard bivariate normal law, correlation -1 < rho < 1. */
NUMCORE_API double PDFBiNormalStd(double x, double y, double rho);

/** Distribution function of the standard bivariate normal law.
 *
 *  @param x, y point, infinities allowed
 *  @param rho  correlation, -1 <= rho <= 1
 *  @return P(X <= x, Y <= y) with an absolute error below 1e-15
 *
 *  Genz (2004), Statistics and Computing 14:251-260. */
NUMCORE_API double CDFBiNormalStd(double x, double y, double rho);

NUMCORE_END_C
