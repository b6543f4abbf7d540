// Standard normal quantiles of a run of cells, compiled for several instruction sets, all with the bits of
// InvCDFNormalStd.
#pragma once

#include <cstddef>

namespace numcore::distributions {

/// Quantiles of n probabilities, in place or not.
using NormalQuantileKernel = void (*)(const double* p, std::size_t n, double* z);

/// For every x86-64 processor.
void baselineNormalQuantiles(const double* p, std::size_t n, double* z);
/// For processors with AVX2 only.
void avx2NormalQuantiles(const double* p, std::size_t n, double* z);

}  // namespace numcore::distributions
