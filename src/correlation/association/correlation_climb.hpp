// The correlation at which a likelihood is largest, from its slope.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace numcore::association {

struct Climb {
    double rho = 0.0;
    std::int32_t nSteps = 0;
    bool converged = false;
};

inline constexpr std::int32_t kClimbSteps = 100;
inline constexpr std::int32_t kSecantSteps = 25;  ///< as many as a maximum inside needs; then only bisection
inline constexpr double kClimbTolerance = 1e-13;
inline constexpr double kClimbStart = 0.99;  ///< a start nearer to 1 is moved here: the slope there says little

/// Root of the score in (-1, 1): scoring steps first, secant steps once two points tell the curvature,
/// bisection when a step leaves the bracket. A score that keeps its sign drives the result towards -1 or 1.
///
/// @param start    first correlation; not a number starts at 0
/// @param scoreAt  gives score and information (> 0) at a correlation
/// @return after kClimbSteps steps the last point, not converged
template <class ScoreAt>
Climb climbToMaximum(double start, const ScoreAt& scoreAt) {
    double low = -1.0;
    double high = 1.0;
    double rho = std::isnan(start) ? 0.0 : std::clamp(start, -kClimbStart, kClimbStart);
    double previousRho = 0.0;
    double previousScore = 0.0;
    for (std::int32_t nSteps = 1; nSteps <= kClimbSteps; ++nSteps) {
        const auto [score, information] = scoreAt(rho);
        if (score == 0.0) return {rho, nSteps, true};
        (score > 0.0 ? low : high) = rho;
        const double secant = nSteps > 1 ? (previousScore - score) / (rho - previousRho) : information;
        double next = rho + score / (secant > 0.0 ? secant : information);
        if (!(next > low && next < high) || nSteps > kSecantSteps) next = 0.5 * (low + high);
        if (std::abs(next - rho) <= kClimbTolerance || next == low || next == high) return {next, nSteps, true};
        previousRho = rho;
        previousScore = score;
        rho = next;
    }
    return {rho, kClimbSteps, false};
}

}  // namespace numcore::association
