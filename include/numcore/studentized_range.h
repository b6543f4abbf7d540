/* The studentized range. */
#pragma once

#include "numcore/api.h"

NUMCORE_BEGIN_C

NUMCORE_API double ptukey(double q, double ranges, double k, double df);

NUMCORE_API double qtukey(double p, double ranges, double k, double df);

NUMCORE_END_C
