/* Continuous laws whose functions are closed formulas.
 *
 * Every law has a density PDF..., a distribution function CDF... = P(X <= x) and a quantile InvCDF..., each
 * with the evaluation point first. They share these rules, the text of a law says where it differs:
 *  - a parameter outside its domain, NaN included, and a probability p outside [0, 1] give the missing value;
 *  - an infinite quantile or density gives the overflow marker; a quantile of minus infinity, which has no
 * marker of its own, the missing value;
 *  - a point x of NaN gives NaN, an infinite x the limit;
 *  - functions are accurate to a few units in the last place, also where distribution functions are small,
 * unless stated otherwise. */
#pragma once

#include "numcore/api.h"

NUMCORE_BEGIN_C

/* ---- Exponential ---- */

/** Density of the exponential law, lambda e^(-lambda x).
 *
 *  @param x       point; x < 0 gives the missing value
 *  @param lambda  rate, > 0
 *  @return 0 where lambda x >= 700, although the density does not underflow there yet (kept) */
NUMCORE_API double PDFExponential(double x, double lambda);

/** Distribution function of the exponential law, 1 - e^(-lambda x); arguments as for the density; 1 where
 *  lambda x >= 700. */
NUMCORE_API double CDFExponential(double x, double lambda);

/** Quantile of the exponential law, -ln(1 - p) / lambda. */
NUMCORE_API double InvCDFExponential(double p, double lambda);

/* ---- Weibull3 ---- */

/** Density of the Weibull law, beta / gamma z^(beta - 1) e^(-z^beta) with z = (x - mu) / gamma.
 *
 *  @param x      point; 0 for x <= mu, also where the limit from above is not 0
 *  @param beta   shape, > 0
 *  @param gamma  scale, >= 0; 0 is read as 1 (kept: a scale left out means the standard law)
 *  @param mu     location */
NUMCORE_API double PDFWeibull3(double x, double beta, double gamma, double mu);

/** Distribution function of the Weibull law, 1 - e^(-z^beta); arguments as for the density. */
NUMCORE_API double CDFWeibull3(double x, double beta, double gamma, double mu);

/** Quantile of the Weibull law, mu + gamma (-ln(1 - p))^(1 / beta). Unlike the other two functions it does not
 *  read a scale of 0 as 1: gamma <= 0 gives the missing value. */
NUMCORE_API double InvCDFWeibull3(double p, double beta, double gamma, double mu);

/* ---- FisherTippett ---- */

/** Density of the Gumbel law for maxima, e^(y - e^y) / beta with y = -(x - mu) / beta; 0 where y >= 709.
 *
 *  @param x     point
 *  @param beta  scale, > 0
 *  @param mu    location */
NUMCORE_API double PDFFisherTippett(double x, double beta, double mu);

/** Distribution function of the Gumbel law, e^(-e^y); arguments as for the density.
 *
 *  Kept: where y >= 709, that is from 709 scales below mu downwards, the result is 1 although the limit is 0;
 *  -infinity gives 1 as well. */
NUMCORE_API double CDFFisherTippett(double x, double beta, double mu);

/** Quantile of the Gumbel law, mu - beta ln(-ln p). */
NUMCORE_API double InvCDFFisherTippett(double p, double beta, double mu);

/* ---- GEV ---- */

/** Density of the generalised extreme value law: the derivative of CDFGEV, 0 from the bound on.
 *
 *  @param x     point
 *  @param k     shape; 0 gives the Gumbel law. It enters as 1 - k z, z = (x - mu) / beta, so that k > 0 has the
 *               upper bound mu + beta / k and k < 0 that lower bound (many texts have the other sign)
 *  @param beta  scale, > 0
 *  @param mu    location
 *
 *  Evaluated through ln(1 - k z) / k without cancellation, so that it passes into the Gumbel law as k -> 0. */
NUMCORE_API double PDFGEV(double x, double k, double beta, double mu);

/** Distribution function of the generalised extreme value law, e^(-(1 - k z)^(1 / k)); 1 above an upper bound,
 * 0 below a lower one; arguments as for the density. k = 0 is CDFFisherTippett, with its 1 at the far left. */
NUMCORE_API double CDFGEV(double x, double k, double beta, double mu);

/** Quantile of the generalised extreme value law as it is defined here: mu + beta ((-ln p)^(-k) - 1) / k for
 *  0 < p < 1.
 *
 *  Kept: that is not the inverse of CDFGEV, which would be mu + beta (1 - (-ln p)^k) / k; it belongs to the law
 *  with the shape -k. The end values are those of CDFGEV: at p = 1 the bound for k > 0 and the overflow marker
 * for k < 0, at p = 0 the missing value for k > 0 and the bound for k < 0. */
NUMCORE_API double InvCDFGEV(double p, double k, double beta, double mu);

/* ---- Logistic ---- */

/** Density of the logistic law, e^(-z) / ((1 + e^(-z))^2 s) with z = (x - mu) / s.
 *
 *  @param x   point
 *  @param mu  location
 *  @param s   scale; not checked: a negative one gives the negative density of the mirrored law, 0 gives NaN */
NUMCORE_API double PDFLogistic(double x, double mu, double s);

/** Distribution function of the logistic law, 1 / (1 + e^(-z)); arguments as for the density. */
NUMCORE_API double CDFLogistic(double x, double mu, double s);

/** Quantile of the logistic law, mu + s ln(p / (1 - p)); the parameters are not checked. p = 1 gives the
 * overflow marker and p = 0 the missing value for s > 0. */
NUMCORE_API double InvCDFLogistic(double p, double mu, double s);

/* ---- Pareto ---- */

/** Density of the Pareto law, a b^a / x^(a + 1); 0 for x < b.
 *
 *  @param x  point
 *  @param a  shape, > 0
 *  @param b  scale and lower bound, > 0 */
NUMCORE_API double PDFPareto(double x, double a, double b);

/** Distribution function of the Pareto law, 1 - (b / x)^a. Kept: a parameter outside its domain gives 0, not
 * the missing value. */
NUMCORE_API double CDFPareto(double x, double a, double b);

/** Quantile of the Pareto law, b / (1 - p)^(1 / a). */
NUMCORE_API double InvCDFPareto(double p, double a, double b);

/* ---- Triangular ---- */

/** Density of the triangular law: 2 / (b - a) at the mode, linear on each side, 0 outside [a, b].
 *
 *  @param x  point
 *  @param a  lower bound
 *  @param m  mode
 *  @param b  upper bound; not a <= m <= b gives the missing value. a = b puts all mass on this point. */
NUMCORE_API double PDFTriangular(double x, double a, double m, double b);

/** Distribution function of the triangular law, piecewise quadratic; arguments as for the density. */
NUMCORE_API double CDFTriangular(double x, double a, double m, double b);

/** Quantile of the triangular law: a + sqrt(p (b - a)(m - a)) up to the mode, b - sqrt((1 - p)(b - a)(b - m))
 *  beyond it. */
NUMCORE_API double InvCDFTriangular(double p, double a, double m, double b);

/* ---- Trapezoidal ---- */

/** Density of the trapezoidal law: rising on [a, b], 2 / (c + d - b - a) on [b, c], falling on [c, d], 0
 * outside.
 *
 *  @param x           point
 *  @param a, b, c, d  bounds; not a <= b <= c <= d gives the missing value. a = d puts all mass on this point.
 */
NUMCORE_API double PDFTrapezoidal(double x, double a, double b, double c, double d);

/** Distribution function of the trapezoidal law; arguments as for the density. */
NUMCORE_API double CDFTrapezoidal(double x, double a, double b, double c, double d);

/** Quantile of the trapezoidal law: the inverse of the distribution function on each of its pieces. */
NUMCORE_API double InvCDFTrapezoidal(double p, double a, double b, double c, double d);

/* ---- Uniform ---- */

/** Density of the uniform law, 1 / (b - a) on [a, b] with both ends, 0 elsewhere; the bounds are not checked.
 */
NUMCORE_API double PDFUniform(double x, double a, double b);

/** Distribution function of the uniform law: 0 for x <= a, 1 for x >= b, (x - a) / (b - a) between; the bounds
 *  are not checked. */
NUMCORE_API double CDFUniform(double x, double a, double b);

/** Quantile of the uniform law, a + p (b - a); a >= b gives the missing value. */
NUMCORE_API double InvCDFUniform(double p, double a, double b);

/* ---- Arcsine ---- */

/** Density of the generalised arcsine law, sin(pi a) / pi x^(-a) (1 - x)^(a - 1): the beta law with the shapes
 *  1 - a and a.
 *
 *  @param x  point; 0 outside [0, 1], the overflow marker at 0 and 1
 *  @param a  shape, 0 < a < 1; 1/2 is the classical arcsine law */
NUMCORE_API double PDFArcsine(double x, double a);

/** Distribution function of the generalised arcsine law: (2 / pi) arcsin(sqrt(x)) for a = 1/2, otherwise the
 *  incomplete beta ratio I_x(1 - a, a). */
NUMCORE_API double CDFArcsine(double x, double a);

/** Quantile of the generalised arcsine law: sin(pi p / 2)^2 for a = 1/2, otherwise Newton's method on the
 *  logarithms of the incomplete beta ratio and of the distance from the nearer end of [0, 1].
 *
 *  Relative accuracy of that distance about 1e-13, divided by the smaller shape; the result is exact where the
 *  distance is below 2^-54. */
NUMCORE_API double InvCDFArcsine(double p, double a);

/* ---- ArcsineG ---- */

/** Density of the generalised arcsine law on [c, d]: PDFArcsine at (x - c) / (d - c), divided by d - c.
 *
 *  @param x     point; 0 outside [c, d], the overflow marker at c and d
 *  @param a     shape, 0 < a < 1
 *  @param c, d  bounds; not c < d gives the missing value */
NUMCORE_API double PDFArcsineG(double x, double a, double c, double d);

/** Distribution function of the generalised arcsine law on [c, d]; arguments as for the density. */
NUMCORE_API double CDFArcsineG(double x, double a, double c, double d);

/** Quantile of the generalised arcsine law on [c, d], c + (d - c) InvCDFArcsine(p, a). */
NUMCORE_API double InvCDFArcsineG(double p, double a, double c, double d);

NUMCORE_END_C
