/* The studentized range: the largest difference of k means in units of their estimated standard error. */
#pragma once

#include "numcore/api.h"

NUMCORE_BEGIN_C

/** Distribution function of the studentized range.
 *
 *  @param q      point
 *  @param ranges number of independent ranges of which the largest is taken, >= 1, at most 1e6, whole or not
 *  @param k      number of means in a range, >= 2, at most 1e6, whole or not
 *  @param df     degrees of freedom of the standard error, >= 1e-6; infinity: the range of normal variables
 *  @return P(largest range / s <= q), 0 for q < 1e-150, NaN for a NaN q; the missing value for parameters
 *          outside their domain. Relative error 1e-10 in both tails while ranges k is below
 *          some 1000; beyond, 1e-8 in absolute terms, without digits in a far lower tail. Of a small upper tail
 *          1 - ptukey keeps what a double near 1 can hold
 *
 *  Double integral by trapezoidal rules on analytic integrands (Goodwin, 1949, Proc. Cambridge Philos. Soc.
 *  45:241-245). Deliberate difference from the usual 16-point Gauss-Legendre panels, which are off by 1e-4 at
 *  2 degrees of freedom. */
NUMCORE_API double ptukey(double q, double ranges, double k, double df);

/** Quantile of the studentized range, the inverse of `ptukey` in q.
 *
 *  @param p probability, 0 to 1; the other arguments are those of `ptukey`
 *  @return q with `ptukey`(q) = p, by the smaller tail and as closely; 0 at p = 0 and for quantiles below
 *          1e-150, the overflow marker at p = 1 and for quantiles from 1e150 on; the missing value for
 * arguments outside their domain */
NUMCORE_API double qtukey(double p, double ranges, double k, double df);

NUMCORE_END_C
