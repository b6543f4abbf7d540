// Which expansion serves where: ACM TOMS Algorithm 708, Didonato, A. R. and Morris, A. H. (1992), ACM Trans.
// Math. Softw. 18:360-373.
#include "distributions/special/beta_ratio.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

#include "distributions/special/beta_parts.hpp"
#include "numcore/special.h"

namespace numcore::distributions {
namespace {

using beta_parts::Arguments;
using beta_parts::kEpsilon;

// Errors of the publication.
constexpr std::int32_t kNegativeShape = 1;
constexpr std::int32_t kBothShapesZero = 2;
constexpr std::int32_t kBadX = 3;
constexpr std::int32_t kBadY = 4;
constexpr std::int32_t kNotComplements = 5;
constexpr std::int32_t kXAndAZero = 6;
constexpr std::int32_t kYAndBZero = 7;

constexpr double kComplementTolerance = 6.661338147750939e-16;
constexpr double kTinyShapes = 1e-3 * kEpsilon;
constexpr double kSmallShape = 1.0;
constexpr double kMiddleX = 0.5;
constexpr double kSeriesA = 0.2;
constexpr double kSeriesPower = 0.9;
constexpr double kUpperSeriesX = 0.3;
constexpr double kLowerSeriesX = 0.1;
constexpr double kLowerSeriesPower = 0.7;
constexpr double kGammaExpansionB = 15.0;
constexpr int kSteps = 20;
constexpr double kModerateB = 40.0;
constexpr double kSeriesMean = 0.7;
constexpr double kSeriesX = 0.7;
constexpr double kGammaExpansionA = 15.0;
constexpr double kErrorFunctionShapes = 100.0;
constexpr double kErrorFunctionDistance = 0.03;

std::int32_t argumentError(const Arguments& at) {
    if (at.a < 0.0 || at.b < 0.0) return kNegativeShape;
    if (at.a == 0.0 && at.b == 0.0) return kBothShapesZero;
    if (at.x < 0.0 || at.x > 1.0) return kBadX;
    if (at.y < 0.0 || at.y > 1.0) return kBadY;
    if (std::abs(((at.x + at.y) - 0.5) - 0.5) > kComplementTolerance) return kNotComplements;
    if (at.x == 0.0 && at.a == 0.0) return kXAndAZero;
    if (at.y == 0.0 && at.b == 0.0) return kYAndBZero;
    return 0;
}

BetaRatio fromLower(double lower) {
    return {lower, 0.5 + (0.5 - lower), 0};
}

BetaRatio fromUpper(double upper) {
    return {0.5 + (0.5 - upper), upper, 0};
}

BetaRatio exchanged(const BetaRatio& ratio) {
    return {ratio.upper, ratio.lower, ratio.error};
}

// The limit for 0 < x < 1; undefined where both shapes are infinite.
BetaRatio infiniteShape(double a, double b) {
    if (std::isinf(a) && std::isinf(b)) return fromLower(std::numeric_limits<double>::quiet_NaN());
    return fromLower(std::isinf(a) ? 0.0 : 1.0);
}

// I_x(a, b) - I_x(a + kSteps, b), and the rest by the expansion for large a.
double gammaExpansionAfterSteps(const Arguments& at, double base) {
    base += beta_parts::differenceOverSteps(at, kSteps);
    return beta_parts::gammaExpansion({at.a + kSteps, at.b, at.x, at.y}, base);
}

// x <= 1/2 and one of the shapes at most 1.
BetaRatio smallShape(const Arguments& at) {
    if (at.b < std::min(kEpsilon, kEpsilon * at.a)) return fromLower(beta_parts::seriesForTinyB(at));
    if (at.a < std::min(kEpsilon, kEpsilon * at.b) && at.b * at.x <= 1.0) {
        return fromUpper(beta_parts::upperForTinyA(at));
    }
    const bool bothSmall = std::max(at.a, at.b) <= 1.0;
    if (bothSmall ? at.a >= std::min(kSeriesA, at.b) || std::pow(at.x, at.a) <= kSeriesPower : at.b <= 1.0) {
        return fromLower(beta_parts::powerSeries(at));
    }
    if (at.x >= kUpperSeriesX) return fromUpper(beta_parts::powerSeries(at.swapped()));
    if (bothSmall) return fromUpper(gammaExpansionAfterSteps(at.swapped(), 0.0));
    if (at.x < kLowerSeriesX && std::pow(at.x * at.b, at.a) <= kLowerSeriesPower) {
        return fromLower(beta_parts::powerSeries(at));
    }
    if (at.b > kGammaExpansionB) return fromUpper(beta_parts::gammaExpansion(at.swapped(), 0.0));
    return fromUpper(gammaExpansionAfterSteps(at.swapped(), 0.0));
}

// a > 1, 1 < b < 40 and b x > 0.7: b is brought down to (0, 1].
double moderateB(const Arguments& at) {
    auto n = static_cast<int>(at.b);
    if (n == at.b) --n;
    const Arguments reduced = {at.a, at.b - n, at.x, at.y};
    const double difference = beta_parts::differenceOverSteps(reduced.swapped(), n);
    if (at.x <= kSeriesX) return difference + beta_parts::powerSeries(reduced);
    if (at.a > kGammaExpansionA) return beta_parts::gammaExpansion(reduced, difference);
    return gammaExpansionAfterSteps(reduced, difference);
}

// Both shapes above 1 and x not above the mean.
double largeShapes(const Arguments& at, double lambda) {
    if (at.b < kModerateB) return at.b * at.x <= kSeriesMean ? beta_parts::powerSeries(at) : moderateB(at);
    const double smaller = std::min(at.a, at.b);
    if (smaller > kErrorFunctionShapes && lambda <= kErrorFunctionDistance * smaller) {
        return beta_parts::errorFunctionExpansion(at, lambda);
    }
    return beta_parts::continuedFraction(at, lambda);
}

}  // namespace

BetaRatio betaRatio(double a, double b, double x, double y) {
    const Arguments at = {a, b, x, y};
    if (const std::int32_t error = argumentError(at); error != 0) return {0.0, 0.0, error};
    const double sum = a + b + x + y;
    if (std::isnan(sum)) return {sum, sum, 0};
    if (x == 0.0 || b == 0.0) return {0.0, 1.0, 0};
    if (y == 0.0 || a == 0.0) return {1.0, 0.0, 0};
    if (std::isinf(a) || std::isinf(b)) return infiniteShape(a, b);
    if (std::max(a, b) < kTinyShapes) return {b / (a + b), a / (a + b), 0};
    if (std::min(a, b) <= kSmallShape) {
        return x > kMiddleX ? exchanged(smallShape(at.swapped())) : smallShape(at);
    }
    const double lambda = beta_parts::distanceFromMean(at);
    if (lambda < 0.0) return exchanged(fromLower(largeShapes(at.swapped(), -lambda)));
    return fromLower(largeShapes(at, lambda));
}

}  // namespace numcore::distributions

double IncompleteBetaR(double x, double a, double b) {
    return numcore::distributions::betaRatio(a, b, x, 1.0 - x).lower;
}

double IncompleteBeta(double x, double a, double b) {
    return std::exp(betaln(a, b)) * IncompleteBetaR(x, a, b);
}
