// Discrete uniform law on the whole numbers from a to b, and its weighted quantile.

#include <cmath>

#include "distributions/laws/law_domain.hpp"
#include "numcore/discrete_laws.h"

using namespace numcore;
using namespace numcore::distributions;

double PDFUniformDisc(double x, double a, double b) {
    if (x >= a && x <= b) return 1.0 / (std::floor(b) - std::floor(a) + 1.0);
    return std::isnan(x) ? x : 0.0;
}

double CDFUniformDisc(double x, double a, double b) {
    if (x < a) return 0.0;
    if (x >= b) return 1.0;
    return (x - std::floor(a) + 1.0) / std::floor(b - a + 1.0);
}

double InvCDFUniformDisc(double p, double a, double b) {
    if (!(a < b) || !isProbability(p)) return kMissing;
    const double below = std::floor(a) - 1.0;
    if (p == 0.0) return below;
    return std::floor(std::floor(b - a + 1.0) * p + 1.0) + below;  // Kept: p = 1 gives one past b
}

double InvCDFUniformWDisc(double p, const double* weights, int32_t n, double a, double b) {
    const double first = std::floor(a);
    const double count = std::floor(b) - first + 1.0;
    if (weights == nullptr || std::isnan(p) || std::isinf(first)) return 0.0;
    double sum = 0.0;
    for (int32_t i = 0; i < n && i < count; ++i) {
        sum += weights[i];
        if (sum >= p || sum >= 1.0) return first + i;
    }
    return 0.0;
}
