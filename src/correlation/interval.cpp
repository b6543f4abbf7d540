// Confidence interval of a coefficient by Fisher's transform.

#include <cmath>

#include "numcore/correlation.h"
#include "numcore/markers.hpp"
#include "numcore/special.h"

namespace {

/// The missing value when there are too few pairs.
double standardError(double r, double n, std::int32_t method) {
    switch (method) {
        case NUMCORE_COR_PEARSON:
            return n > 3.0 ? 1.0 / std::sqrt(n - 3.0) : numcore::kMissing;
        case NUMCORE_COR_SPEARMAN:
            return n > 3.0 ? std::sqrt((1.0 + r * r / 2.0) / (n - 3.0)) : numcore::kMissing;
        case NUMCORE_COR_KENDALL:
            return n > 4.0 ? std::sqrt(0.437 / (n - 4.0)) : numcore::kMissing;
        default:
            return 0.0;
    }
}

struct Limits {
    double lower = numcore::kMissing;
    double upper = numcore::kMissing;
};

Limits limitsOf(double r, std::int32_t n, double alpha, std::int32_t method) {
    // Kept: at 1 the interval is a point, at -1 there is none.
    if (r == 1.0) return {1.0, 1.0};
    const double ratio = (1.0 + r) / (1.0 - r);
    if (!(ratio > 0.0) || std::isnan(alpha)) return {};
    const double error = standardError(r, n, method);
    if (error == numcore::kMissing) return {};
    const double z = 0.5 * std::log(ratio);
    const double half = -InvCDFNormalStd(alpha / 2.0) * error;
    return {std::tanh(z - half), std::tanh(z + half)};
}

}  // namespace

void COR_ComputeCI_ST(double r, std::int32_t n, double alpha, std::int32_t method, double* lower,
                      double* upper) {
    const Limits limits = limitsOf(r, n, alpha, method);
    if (lower != nullptr) *lower = limits.lower;
    if (upper != nullptr) *upper = limits.upper;
}
