// Law of Kendall's S without ties. The number of inversions of n values is the sum of independent uniform
// counts 0 ... i - 1, i = 1 ... n: Kendall, M. G. (1938), A new measure of rank correlation, Biometrika
// 30:81-93.

#include <array>
#include <cmath>
#include <span>
#include <vector>

#include "numcore/correlation.h"
#include "numcore/markers.hpp"
#include "numcore/special.h"

namespace {

constexpr std::int32_t kTabled = 49;      // the coefficients ask for no more
constexpr std::int32_t kExactUpTo = 200;  // beyond it the normal law is right to 3e-4

constexpr std::int32_t mostInversions(std::int32_t n) {
    return n * (n - 1) / 2;
}

/// Number of probabilities up to the middle of the law of n values.
constexpr std::size_t halfLength(std::int32_t n) {
    return static_cast<std::size_t>(mostInversions(n)) / 2 + 1;
}

/// Probabilities of k inversions up to the middle, from those of one value less. The differences of the
/// window's ends are not negative there, so that nothing cancels.
void addValue(std::int32_t n, std::span<const double> fewer, std::vector<double>& out) {
    const auto most = static_cast<std::size_t>(mostInversions(n - 1));
    const auto before = [&](std::size_t k) {
        if (k > most) return 0.0;
        return fewer[std::min(k, most - k)];
    };
    const auto width = static_cast<std::size_t>(n);
    out.resize(halfLength(n));
    double probability = 0.0;
    for (std::size_t k = 0; k < out.size(); ++k) {
        probability += (before(k) - (k >= width ? before(k - width) : 0.0)) / n;
        out[k] = probability;
    }
}

std::vector<double> inversions(std::int32_t n) {
    std::vector<double> law = {1.0};
    std::vector<double> next;
    for (std::int32_t i = 2; i <= n; ++i) {
        addValue(i, law, next);
        law.swap(next);
    }
    return law;
}

double sumTo(std::span<const double> law, std::int32_t k) {
    double sum = 0.0;
    for (std::int32_t i = 0; i <= k; ++i) sum += law[static_cast<std::size_t>(i)];
    return sum;
}

/// P(inversions <= k) up to the middle, for all n up to kTabled.
class Table {
  public:
    Table() {
        std::vector<double> law = {1.0};
        std::vector<double> next;
        cumulative_[1] = law;
        for (std::int32_t n = 2; n <= kTabled; ++n) {
            addValue(n, law, next);
            law.swap(next);
            auto& sums = cumulative_[static_cast<std::size_t>(n)];
            sums = law;
            for (std::size_t k = 1; k < sums.size(); ++k) sums[k] += sums[k - 1];
        }
    }
    double atMost(std::int32_t n, std::int32_t k) const {
        return cumulative_[static_cast<std::size_t>(n)][static_cast<std::size_t>(k)];
    }

  private:
    std::array<std::vector<double>, kTabled + 1> cumulative_;
};

double atMostUpToMiddle(std::int32_t n, std::int32_t k) {
    static const Table kTable;
    return n <= kTabled ? kTable.atMost(n, k) : sumTo(inversions(n), k);
}

double exactUpperTail(std::int32_t S, std::int32_t n) {
    const std::int32_t most = mostInversions(n);
    if (S > most) return 0.0;
    if (S <= -most) return 1.0;
    const std::int32_t k = (most - S) / 2;  // S = most - 2 inversions
    return k <= most / 2 ? atMostUpToMiddle(n, k) : 1.0 - atMostUpToMiddle(n, most - k - 1);
}

}  // namespace

double CDFKendall(std::int32_t S, std::int32_t n) {
    if (n < 1) return numcore::kMissing;
    if (n <= kExactUpTo) return exactUpperTail(S, n);
    const double size = n;
    if (std::abs(static_cast<double>(S)) > size * (size - 1.0) / 2.0) return S > 0 ? 0.0 : 1.0;
    const double variance = size * (size - 1.0) * (2.0 * size + 5.0) / 18.0;
    return CDFNormalStd((1.0 - S) / std::sqrt(variance));
}
