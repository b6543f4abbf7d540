/* Special functions: plain functions of doubles, without allocation or state. */
#pragma once

#include "numcore/api.h"

NUMCORE_BEGIN_C

NUMCORE_API double IncompleteGamma(double x, double a);

NUMCORE_API double IncompleteBetaR(double x, double a, double b);

NUMCORE_API double IncompleteBeta(double x, double a, double b);

NUMCORE_API double Betacf(double x, double a, double b);

NUMCORE_API double betaln(double a, double b);

NUMCORE_API double GammaLnCorr(double x);

NUMCORE_API double chebyshev_eval(double x, int32_t n);

NUMCORE_API double derf(double x);

NUMCORE_API double derfc(double x);

NUMCORE_API double PDFNormalStd(double z);

NUMCORE_API double CDFNormalStd(double z);

NUMCORE_API double GammaF(double x);

NUMCORE_API double Digamma(double x);

NUMCORE_API double Trigamma(double x);

NUMCORE_API double RiemannZeta(double s, double tol);

NUMCORE_API double ArctanH(double x);

/** Standard normal quantile.
 *
 *  @param p probability; NaN gives NaN
 *  @return the quantile to about 1e-15 relative; 0 for p <= 0 and p >= 1 (kept: the publication flags an error)
 *
 *  Algorithm AS 241 (PPND16), Wichura (1988), Applied Statistics 37:477-484. */
NUMCORE_API double InvCDFNormalStd(double p);

NUMCORE_END_C
