// Quantile of the beta law. Algorithm AS 109, Cran, G. W., Martin, K. J. and Thomas, G. E. (1977), Appl.
// Statist. 26:111-114, with the accuracy target of Remark AS R83.
#pragma once

namespace numcore::distributions {

/// A quantile x and its complement y = 1 - x, the smaller of the two not rounded beside 1.
struct BetaQuantile {
    double x = 0.0;
    double y = 0.0;
    bool found = false;  // false: no convergence
};

/// @param p          probability, 0 < p < 1
/// @param alpha,beta shapes, > 0 and finite
/// @param lowerTail  false: p is the probability above the quantile
BetaQuantile betaQuantile(double p, double alpha, double beta, bool lowerTail);

}  // namespace numcore::distributions
