// Updating: West, D. H. D. (1979), Updating mean and variance estimates, Comm. ACM 22:532-535.

#include "correlation/pearson.hpp"

#include <algorithm>
#include <cmath>

#include "numcore/continuous_laws.h"
#include "numcore/correlation.h"
#include "suite/vmcore.hpp"

namespace numcore::correlation {
namespace {

/// Upper tail of |t|; the missing value when Student's law does not exist.
double studentTail(double t, double degreesOfFreedom) {
    const double lower = degreesOfFreedom > 0.0 ? CDFStudent(std::abs(t), degreesOfFreedom) : kMissing;
    return lower >= 0.0 && lower <= 1.0 ? 1.0 - lower : kMissing;
}

/// Kept: the tail of |t| serves every alternative.
double pValueOfTail(double q, std::int32_t alternative) {
    if (q == kMissing || alternative == kNoPValue) return kMissing;
    if (alternative == kTwoSided) return 2.0 * std::min(q, 1.0 - q);
    return alternative == kUpper ? 1.0 - q : q;
}

double statistic(double r, double degreesOfFreedom) {
    return r * std::sqrt(degreesOfFreedom / (1.0 - r * r));
}

bool hasStatistic(double r, std::int32_t alternative) {
    return std::abs(r) < 1.0 && alternative != kNoPearsonPValue;
}

double pearsonPValue(double r, double nPairs, std::int32_t alternative) {
    const double df = nPairs - 2.0;
    return pValueOfTail(hasStatistic(r, alternative) ? studentTail(statistic(r, df), df) : 0.0, alternative);
}

double correlationOf(const PairSums& sums) {
    const double product = sums.xx * sums.yy;
    if (!(product > 0.0)) return kMissing;
    const double root = std::isinf(product) ? std::sqrt(sums.xx) * std::sqrt(sums.yy) : std::sqrt(product);
    const double r = sums.xy / root;
    return std::isnan(r) ? kMissing : r;
}

}  // namespace

PairSums pearsonSums(std::span<const double> x, std::span<const double> y, const Rows& rows) {
    PairSums sums;
    double meanX = 0.0;
    double meanY = 0.0;
    forEachPair(x, y, rows, [&](std::size_t i) {
        const double w = rows.weight(i);
        sums.nPairs += 1;
        sums.weight += w;
        if (w == 0.0) return;  // Kept: counted all the same
        const double share = w / sums.weight;
        const double dx = x[i] - meanX;
        const double dy = y[i] - meanY;
        const double rest = w * (1.0 - share);
        sums.xx += dx * dx * rest;
        sums.yy += dy * dy * rest;
        sums.xy += dx * dy * rest;
        meanX += share * dx;
        meanY += share * dy;
    });
    return sums;
}

Coefficient pearsonOfSums(const PairSums& sums, const PearsonOptions& options) {
    Coefficient result{kMissing, kMissing, sums.nPairs};
    if (sums.nPairs == 0) return result;
    const auto nPairs = static_cast<double>(sums.nPairs);
    double divisor = sums.weight;
    if (options.unbiased) divisor -= options.frequency ? 1.0 : sums.weight / nPairs;
    const double r = correlationOf(sums);
    if (options.correlation) {
        result.value = r == kMissing ? r : std::clamp(r, -1.0, 1.0);
    } else {
        const double covariance = divisor > 0.0 ? sums.xy / divisor : kMissing;
        result.value = std::isnan(covariance) ? kMissing : covariance;
    }
    if (!options.withPValue || options.alternative == kNoPValue || r == kMissing) return result;
    // Kept: rounding above 1 and below -1 is treated differently.
    if (r > 1.0) {
        result.pValue = 1.0;
    } else if (r < -1.0) {
        result.pValue = 0.0;
    } else {
        result.pValue = pearsonPValue(r, nPairs, options.alternative);
    }
    return result;
}

bool isConstant(std::span<const double> values) {
    const auto first =
        std::find_if_not(values.begin(), values.end(), [](double v) { return vmcore::IsMissingValue(v); });
    return std::all_of(first, values.end(), [&](double v) { return v == *first || vmcore::IsMissingValue(v); });
}

std::vector<std::uint64_t> presenceBits(std::span<const double> cells) {
    std::vector<std::uint64_t> bits((cells.size() + 63) / 64);
    for (std::size_t i = 0; i < cells.size(); ++i) {
        bits[i / 64] |= std::uint64_t{cells[i] != kMissing} << (i % 64);
    }
    return bits;
}

}  // namespace numcore::correlation

void PVal_Pearson(std::int32_t alternative, double r, std::int32_t n, double* pvalue, double* t) {
    using namespace numcore::correlation;
    const double df = static_cast<double>(n) - 2.0;
    if (hasStatistic(r, alternative) && t != nullptr) *t = df >= 0.0 ? statistic(r, df) : numcore::kMissing;
    if (pvalue != nullptr) {
        *pvalue = std::isnan(r) || r == numcore::kMissing
                      ? numcore::kMissing
                      : pearsonPValue(r, static_cast<double>(n), alternative);
    }
}
