// Sums and searches over counts that the discrete laws share.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "distributions/laws/law_domain.hpp"
#include "distributions/laws/noncentral_terms.hpp"
#include "numcore/special.h"

namespace numcore::distributions {

inline constexpr std::uint32_t kNoCount = 0xFFFFFFFF;         // bad input, or a quantile beyond 32 bits
inline constexpr std::uint32_t kUnboundedCount = 2147483647;  // the quantile at p = 1
inline constexpr double kLargestCount = 4294967294.0;

// A cumulative probability that misses p by no more than its own rounding reaches p: sums end in different last
// bits when they are added up in another order.
inline constexpr double kReachTolerance = 16.0 * std::numeric_limits<double>::epsilon();

/// Whether a count is one that a law can take.
inline bool isCount(double k) {
    return k >= 0.0 && std::floor(k) == k && std::isfinite(k);
}

/// 1 + r(0) + r(0) r(1) + ... up to where further terms cannot change the sum; for ratios below 1 that are soon
/// well below it. The limit is far above the few thousand terms of the longest sum in use.
template <class Ratio>
double sumOfProducts(Ratio ratio) {
    constexpr double kNegligible = 1e-18;
    constexpr double kMostTerms = 1e5;
    double term = 1.0;
    double sum = 1.0;
    for (double step = 0.0; term > kNegligible * sum && step < kMostTerms; step += 1.0) {
        term *= ratio(step);
        sum += term;
    }
    return sum;
}

/// A count as a quantile.
inline std::uint32_t toQuantile(double count) {
    return count <= kLargestCount ? static_cast<std::uint32_t>(count) : kNoCount;
}

/// Whether a tail that begins with this ratio of terms, or one around the mean, has at most 200 terms that
/// count.
inline bool isShortSum(double firstRatio, double variance) {
    constexpr double kShortVariance = 400.0;
    constexpr double kShortRatio = 0.8;
    return variance <= kShortVariance || firstRatio <= kShortRatio;
}

inline Tails fromLowerTail(double lower) {
    return {lower, 0.5 + (0.5 - lower)};
}
inline Tails fromUpperTail(double upper) {
    return {0.5 + (0.5 - upper), upper};
}

/// First count whose cumulative probability reaches p, summed upwards from the mass at 0; -1 when that is not
/// the way: masses that start so low that the mean lies beyond 160 terms, more terms than these, or p so near 1
/// that the upper tail has to decide.
///
/// @param last  largest count of the law, infinity for none
template <class Ratio>
double countBySummation(double p, double massAtZero, double last, Ratio ratio) {
    constexpr double kSmallestStart = 1e-70;
    constexpr double kNearOne = 1.0 - 1e-9;
    constexpr double kMostTerms = 160.0;
    if (massAtZero < kSmallestStart || p > kNearOne) return -1.0;
    const double target = p * (1.0 - kReachTolerance);
    double term = massAtZero;
    double sum = massAtZero;
    for (double k = 0.0; k < kMostTerms; k += 1.0) {
        if (sum >= target || k == last) return k;
        term *= ratio(k);
        sum += term;
    }
    return -1.0;
}

/// Guess of a quantile from the first three moments: Cornish, E. A. and Fisher, R. A. (1938), Rev. Int. Stat.
/// Inst. 5:307-320.
inline double guessCount(double p, double mean, double variance, double skewness) {
    const double z = InvCDFNormalStd(p);
    return std::floor(mean + std::sqrt(variance) * (z + skewness * (z * z - 1.0) / 6.0) + 0.5);
}

/// First count whose cumulative probability reaches p, 0 < p < 1, from a guess: steps that double until they
/// enclose it, then bisection, so that it ends after some 64 evaluations at the most. Above p = 1/2 the upper
/// tails decide, which keep their digits there.
///
/// @param last     largest count of the law, infinity for none
/// @param tailsAt  tails at a count from 0 to last - 1
/// @return kNoCount when the count has more than 32 bits
template <class TailsAt>
std::uint32_t countBySearch(double p, double guess, double last, TailsAt tailsAt) {
    const auto reaches = [&](double k) {
        if (k >= last) return true;
        const Tails tails = tailsAt(k);
        if (p <= 0.5) return tails.lower >= p * (1.0 - kReachTolerance);
        return tails.upper <= (1.0 - p) * (1.0 + kReachTolerance);
    };
    double reached = guess > 0.0 ? std::min(guess, kLargestCount) : 0.0;
    double missed = reached - 1.0;
    double step = 1.0;
    if (reaches(reached)) {
        while (missed >= 0.0 && reaches(missed)) {
            reached = missed;
            step *= 2.0;
            missed -= step;
        }
        missed = std::max(missed, -1.0);
    } else {
        do {
            missed = reached;
            if (missed == kLargestCount) return kNoCount;
            reached = std::min(missed + step, kLargestCount);
            step *= 2.0;
        } while (!reaches(reached));
    }
    while (reached - missed > 1.0) {
        const double middle = std::floor(0.5 * (reached + missed));
        (reaches(middle) ? reached : missed) = middle;
    }
    return static_cast<std::uint32_t>(reached);
}

}  // namespace numcore::distributions
