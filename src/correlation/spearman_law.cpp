// Law of Spearman's sum of squared rank differences, and its p-values.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <vector>

#include "correlation/observations.hpp"
#include "correlation/rank_laws.hpp"
#include "numcore/continuous_laws.h"
#include "numcore/correlation.h"
#include "numcore/special.h"

namespace numcore::correlation {
namespace {

constexpr std::int32_t kExactBelow = 10;
constexpr std::int32_t kStudentFrom = 1201;
constexpr std::size_t kGreatestSum = 240;  // (n^2 - 1) n / 3 for n = 9
constexpr double kRoundingOfS = 1e-9;      // an S that comes from a coefficient is whole up to this

/// Orders of n values by their sum of squared rank differences: out[s] of them reach at least s.
using Tail = std::array<std::uint32_t, kGreatestSum + 2>;

/// Places are filled one after another; what matters of those filled is the set of values used and the sum.
Tail tailOfOrders(unsigned n) {
    std::vector<Tail> ways(std::size_t{1} << n, Tail{});
    ways[0][0] = 1;
    for (std::size_t used = 0; used + 1 < ways.size(); ++used) {
        const int place = __builtin_popcountll(used);
        for (unsigned value = 0; value < n; ++value) {
            const std::size_t with = used | (std::size_t{1} << value);
            if (with == used) continue;
            const auto difference = static_cast<std::size_t>(std::abs(place - static_cast<int>(value)));
            const std::size_t step = difference * difference;
            for (std::size_t s = 0; s + step <= kGreatestSum; ++s) ways[with][s + step] += ways[used][s];
        }
    }
    Tail tail = ways.back();
    for (std::size_t s = kGreatestSum; s-- > 0;) tail[s] += tail[s + 1];
    return tail;
}

/// Probability of at least S among the orders of n < 10 values.
double exactTail(std::int32_t n, double S) {
    static const auto kTails = [] {
        std::array<Tail, kExactBelow> tails;
        for (unsigned i = 0; i < tails.size(); ++i) tails[i] = tailOfOrders(i);
        return tails;
    }();
    const Tail& tail = kTails[static_cast<std::size_t>(n)];
    const double from = std::clamp(std::ceil(S - kRoundingOfS), 0.0, static_cast<double>(kGreatestSum + 1));
    return static_cast<double>(tail[static_cast<std::size_t>(from)]) / static_cast<double>(tail[0]);
}

double studentApproximation(double rho, std::int32_t n) {
    if (!(std::abs(rho) < 1.0)) return std::isnan(rho) ? kMissing : (rho > 0.0 ? 1.0 : 0.0);
    const double df = n - 2.0;
    return CDFStudent(rho * std::sqrt(df / (1.0 - rho * rho)), df);
}

double spearmanPValue(double rho, double weight, double S, std::int32_t alternative, SpearmanStep step) {
    const std::int32_t n = wholePart(weight);
    const double next = S + static_cast<double>(step);
    switch (alternative) {
        case kTwoSided:
            if (S <= (weight * weight - 1.0) * weight / 6.0) {
                return std::min(2.0 * (1.0 - CDFSpearman(rho, n, next)), 1.0);
            }
            return std::min(2.0 * CDFSpearman(rho, n, S), 1.0);
        case kLower:
            return CDFSpearman(rho, n, S);
        default:
            return 1.0 - CDFSpearman(rho, n, next);
    }
}

}  // namespace

std::int32_t wholePart(double weight) {
    if (std::isnan(weight)) return 0;
    return static_cast<std::int32_t>(std::clamp(weight, double{INT32_MIN}, double{INT32_MAX}));
}

SpearmanTest spearmanTest(double rho, double weight, std::int32_t alternative, SpearmanStep step) {
    if (alternative == kNoPValue || rho == kMissing || std::isnan(rho) || !(weight >= 0.0)) {
        return {kMissing, kMissing};
    }
    const double S = (weight * weight * weight - weight) * (1.0 - rho) / 6.0;
    return {spearmanPValue(rho, weight, S, alternative, step), S};
}

}  // namespace numcore::correlation

double CDFSpearman(double rho, std::int32_t n, double S) {
    using namespace numcore::correlation;
    if (n < 0 || std::isnan(S)) return numcore::kMissing;
    if (n >= kStudentFrom) return studentApproximation(rho, n);
    const std::int32_t largest = (n * n - 1) * n / 3;
    if (S > largest) return 0.0;
    if (n < kExactBelow) return exactTail(n, S);
    return std::isnan(rho) ? numcore::kMissing : CDFNormalStd(rho * std::sqrt(n - 1.0));
}

void PvalSpearman(double rho, std::int32_t alternative, std::int32_t n, double* pvalue,
                  std::int16_t signif_flag, double alpha, std::int32_t* signif, std::int16_t squared_flag,
                  double* squared, double* S) {
    using namespace numcore;
    const auto test = correlation::spearmanTest(rho, n, alternative, correlation::SpearmanStep::kOfCoefficient);
    if (pvalue != nullptr) *pvalue = test.pValue;
    if (S != nullptr) *S = test.statistic;
    if (isTrue(signif_flag) && signif != nullptr) {
        *signif = test.pValue != kMissing && alpha > test.pValue ? 1 : 0;
    }
    if (isTrue(squared_flag) && squared != nullptr) *squared = rho == kMissing ? kMissing : rho * rho;
}
