// Bernoulli law.

#include <cmath>

#include "numcore/discrete_laws.h"
#include "numcore/markers.hpp"

double PDFBernoulli(double x, double p) {
    if (x == 1.0) return p;
    if (x == 0.0) return 1.0 - p;
    return std::isnan(x) ? x : 0.0;
}

double CDFBernoulli(double x, double p) {
    if (x < 0.0) return 0.0;
    if (x < 1.0) return 1.0 - p;
    return std::isnan(x) ? x : 1.0;
}

double InvCDFBernoulli(double p, double p1) {
    if (std::isnan(p) || std::isnan(p1)) return numcore::kMissing;
    return p <= 1.0 - p1 ? 0.0 : 1.0;
}
