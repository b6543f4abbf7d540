// Monte Carlo test of two proportions: binomial counts drawn under the hypothesis.

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

#include "suite/parallel.hpp"
#include "suite/rngcore.hpp"
#include "tests/parametric/proportions.hpp"

namespace numcore::tests {
namespace {

constexpr double kTie = 1e-12;  // differences of shares this close are equal
constexpr std::int64_t kBlock = 4096;
constexpr std::int64_t kParallelDraws = 20000;
constexpr double kIntervalAlpha = 0.01;

/// Binomial law as a table of its distribution function, by inversion. The table leaves out counts further than
/// 10 standard deviations and 50 from the mean, whose probability no uniform of 53 bits can show.
class BinomialTable {
  public:
    BinomialTable(double n, double p) {
        const double mean = n * p;
        const double reach = 10.0 * std::sqrt(mean * (1.0 - p)) + 50.0;
        first_ = std::max(std::floor(mean - reach), 0.0);
        const double last = std::min(std::ceil(mean + reach), n);
        const double mode = std::clamp(std::floor((n + 1.0) * p), first_, last);
        cumulative_.assign(static_cast<std::size_t>(last - first_) + 1, 0.0);
        const auto iMode = static_cast<std::size_t>(mode - first_);
        cumulative_[iMode] = 1.0;
        // Probabilities beside the mode's, by ratios of neighbours.
        for (std::size_t i = iMode; i + 1 < cumulative_.size(); ++i) {
            const double count = first_ + static_cast<double>(i);
            cumulative_[i + 1] = cumulative_[i] * ((n - count) * p / ((count + 1.0) * (1.0 - p)));
        }
        for (std::size_t i = iMode; i > 0; --i) {
            const double count = first_ + static_cast<double>(i);
            cumulative_[i - 1] = cumulative_[i] * (count * (1.0 - p) / ((n - count + 1.0) * p));
        }
        std::partial_sum(cumulative_.begin(), cumulative_.end(), cumulative_.begin());
        for (double& value : cumulative_) value /= cumulative_.back();
    }

    double draw(double uniform) const {
        const auto found = std::upper_bound(cumulative_.begin(), cumulative_.end() - 1, uniform);
        return first_ + static_cast<double>(found - cumulative_.begin());
    }

  private:
    double first_ = 0.0;
    std::vector<double> cumulative_;
};

bool isAsFarOut(double drawn, double observed, Alternative alternative) {
    switch (alternative) {
        case Alternative::kTwoSided:
            return std::abs(drawn) >= std::abs(observed) - kTie;
        case Alternative::kLower:
            return drawn <= observed + kTie;
        default:
            return drawn >= observed - kTie;
    }
}

}  // namespace

MonteCarloTest monteCarloProportions(const Proportion& first, const Proportion& second, double hypothesised,
                                     Alternative alternative, std::int32_t nSimulations, std::int32_t seed) {
    MonteCarloTest test;
    if (!isProportion(first) || !isProportion(second) || !std::isfinite(hypothesised) || nSimulations < 1)
        return test;
    const double pooled = (first.n * (first.p - hypothesised) + second.n * second.p) / (first.n + second.n);
    const double share2 = std::clamp(pooled, 0.0, 1.0);
    const double share1 = std::clamp(share2 + hypothesised, 0.0, 1.0);
    const BinomialTable law1(first.n, share1);
    const BinomialTable law2(second.n, share2);
    test.status = kDone;
    test.difference = first.p - second.p - hypothesised;

    const std::int64_t nBlocks = (nSimulations + kBlock - 1) / kBlock;
    std::vector<std::int64_t> asFarOut(static_cast<std::size_t>(nBlocks), 0);
    parallelFor(nBlocks, nSimulations >= kParallelDraws, [&](std::int64_t block) {
        std::array<double, 2 * kBlock> uniforms;
        const std::int64_t start = block * kBlock;
        const auto n = static_cast<std::size_t>(std::min<std::int64_t>(kBlock, nSimulations - start));
        rngcore::fillUniform(seed, static_cast<std::uint64_t>(2 * start), std::span(uniforms).first(2 * n));
        for (std::size_t i = 0; i < n; ++i) {
            const double drawn =
                law1.draw(uniforms[2 * i]) / first.n - law2.draw(uniforms[2 * i + 1]) / second.n - hypothesised;
            if (isAsFarOut(drawn, test.difference, alternative)) ++asFarOut[static_cast<std::size_t>(block)];
        }
    });
    const auto nFarOut =
        static_cast<double>(std::accumulate(asFarOut.begin(), asFarOut.end(), std::int64_t{0}));
    test.pValue = (nFarOut + 1.0) / (nSimulations + 1.0);
    test.limits = clopperPearsonLimits(nFarOut, nSimulations, kIntervalAlpha);
    return test;
}

}  // namespace numcore::tests
