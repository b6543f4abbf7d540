// The incomplete beta ratio with both of its tails.
#pragma once

#include <cstdint>

namespace numcore::distributions {

struct BetaRatio {
    double lower = 0.0;      // I_x(a, b)
    double upper = 0.0;      // 1 - I_x(a, b), accurate where it is small
    std::int32_t error = 0;  // 0, or the publication's code; then both tails are 0
};

/// Both tails of the incomplete beta ratio; y is 1 - x, given separately because the caller may know it better.
///
/// ACM TOMS Algorithm 708, Didonato, A. R. and Morris, A. H. (1992), ACM Trans. Math. Softw. 18:360-373.
BetaRatio betaRatio(double a, double b, double x, double y);

}  // namespace numcore::distributions
