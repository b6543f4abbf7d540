// Normal law.

#include <cmath>

#include "numcore/continuous_laws.h"
#include "numcore/markers.hpp"
#include "numcore/special.h"

double PDFNormal(double x, double mu, double sigma) {
    if (sigma == 0.0) return numcore::kMissing;
    return PDFNormalStd((x - mu) / sigma) / std::abs(sigma);
}

double CDFNormal(double x, double mu, double sigma) {
    if (sigma == 0.0) return numcore::kMissing;
    return CDFNormalStd((x - mu) / sigma);
}
