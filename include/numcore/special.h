/* Special functions: plain functions of doubles, without allocation or state. */
#pragma once

#include "numcore/api.h"

NUMCORE_BEGIN_C

/** Standard normal quantile.
 *
 *  @param p probability; NaN gives NaN
 *  @return the quantile to about 1e-15 relative; 0 for p <= 0 and p >= 1 (kept: the publication flags an error)
 *
 *  Algorithm AS 241 (PPND16), Wichura (1988), Applied Statistics 37:477-484. */
NUMCORE_API double InvCDFNormalStd(double p);

NUMCORE_END_C
