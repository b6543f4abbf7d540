// Standard normal quantiles of a whole column.
#pragma once

#include <span>

namespace numcore::distributions {

/// z[i] = InvCDFNormalStd(p[i]), bit for bit, on whatever processor and number of threads; shared among threads
/// from some ten thousand cells on. z is as long as p and may be the same memory.
void normalQuantiles(std::span<const double> p, std::span<double> z);

}  // namespace numcore::distributions
