// The empirical distribution on containers; `numcore/empirical.h` tells what the step table holds.
#pragma once

#include <cstdint>
#include <cstdio>
#include <vector>

#include "numcore/containers.hpp"
#include "numcore/empirical.h"

namespace numcore {

/// `VB_BuildCDFEmpirical` on containers.
///
/// @param n       observations; no more than values has
/// @param weights empty: 1 each; observations beyond its end are left out
/// @param table   two columns; an empty one gets the rows it needs; of another, what does not fit is dropped
///                and what lies beyond is left alone
/// @param nRows   out: rows written
NUMCORE_API void BuildCDFEmpirical(const matrix<double>& values, std::int32_t n, const matrix<double>& weights,
                                   std::int16_t sort, matrix<double>& table, std::int32_t& nRows);

/// `VB_InvCDFEmpirical` on a container; of its rows, nRows are looked at.
NUMCORE_API double InvCDFEmpirical(double p, const matrix<double>& table, std::int32_t nRows);

/// `Cpp_GetProbaVal` on a container; of its rows, nRows are looked at.
NUMCORE_API double SearchForProbInEmpCDF(double x, const matrix<double>& table, std::int32_t nRows);

/// A sample as a distribution of its own, as resampling uses it. For one thread at a time.
///
/// Where nothing else is said, a result that needs values is the missing value when there are none.
class NUMCORE_API EmpDist {
  public:
    /// Appends a value; a missing one is left out. @return 0
    std::int32_t insert(double x);
    /// Sorts ascending, NaN last; `CDF` and `InvCDF` read sorted values. @return 0
    std::int32_t DoSort();

    /// Share of the values that are at most x; NaN gives the missing value.
    double CDF(double x) const;
    /// The value at 0-based position floor(n p); the last one at p = 1. p outside [0, 1] or NaN gives -1.
    double InvCDF(double p) const;

    /// Computes mean and standard deviation, unless they are known since the last `insert`.
    void calcDescStat();
    double getDescMu();
    /// Standard deviation with divisor n - 1; 0 for a variance that is not positive, one value included.
    double getDescSigma();

    /// Bias correction of a BCa interval around the estimate x: the normal quantile of `CDF(x)`.
    /// Efron (1987), Journal of the American Statistical Association 82:171-185; `accelerator` too.
    double biasCorr(double x) const;
    /// Acceleration of a BCa interval from jackknife values: sum (m - x)^3 / (6 (sum (m - x)^2)^(3/2)), m their
    /// mean; the missing value when all are equal.
    double accelerator();

    /// Writes the values for diagnosis, one a line.
    void print(std::FILE* out = stdout) const;

  private:
    std::vector<double> values_;
    bool described_ = false;
    double mu_ = kMissing;
    double sigma_ = kMissing;
};

}  // namespace numcore
