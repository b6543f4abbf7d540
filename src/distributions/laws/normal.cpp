// Normal law.

#include <cmath>

#include "numcore/continuous_laws.h"
#include "numcore/markers.hpp"
#include "numcore/special.h"

namespace {

constexpr double kRootOfTruncatedTwoPi = 2.5066282746309994;  // of 6.28318530717958

}  // namespace

double PDFNormal(double x, double mu, double sigma) {
    if (sigma == 0.0) return numcore::kMissing;
    const double z = (x - mu) / sigma;
    return std::exp(-0.5 * z * z) / (kRootOfTruncatedTwoPi * std::abs(sigma));  // Kept: 2 pi cut to 15 digits
}

double CDFNormal(double x, double mu, double sigma) {
    if (sigma == 0.0) return numcore::kMissing;
    return CDFNormalStd((x - mu) / sigma);
}
