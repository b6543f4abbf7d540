#include "correlation/association/permutation_test.hpp"

#include <numeric>

#include "suite/parallel.hpp"
#include "suite/rngcore.hpp"

namespace numcore::association {
namespace {

constexpr std::int64_t kOrdersPerBlock = 32;
constexpr double kSameStatistic = 1e-12;

// n!, or a number above `limit` as soon as the product exceeds it.
std::int64_t factorialUpTo(std::int32_t n, std::int64_t limit) {
    std::int64_t product = 1;
    for (std::int64_t k = 2; k <= n && product <= limit; ++k) product *= k;
    return product;
}

bool isReached(double value, double observed, Side side) {
    if (std::isnan(value)) return true;
    const double slack = kSameStatistic * std::max(1.0, std::abs(observed));
    switch (side) {
        case Side::kTwoSided:
            return std::abs(value) >= std::abs(observed) - slack;
        case Side::kLower:
            return value <= observed + slack;
        default:
            return value >= observed - slack;
    }
}

}  // namespace

Orders::Orders(std::int32_t n, std::int32_t nWanted, std::int32_t seed) : n_(n), seed_(seed) {
    if (nWanted < 1 || n < 1) return;
    const std::int64_t all = factorialUpTo(n, nWanted);
    complete_ = all <= nWanted;
    count_ = complete_ ? all : nWanted;
}

void Orders::unrank(std::int64_t b, std::span<std::int32_t> order) const {
    // Digits of b to the bases 1, 2, ..., n: digit i tells which of the first i + 1 places i changes with.
    std::iota(order.begin(), order.end(), 0);
    for (std::int64_t i = 1; i < n_; ++i) {
        const std::int64_t other = i - b % (i + 1);
        b /= i + 1;
        std::swap(order[static_cast<std::size_t>(i)], order[static_cast<std::size_t>(other)]);
    }
}

void Orders::get(std::int64_t b, std::span<std::int32_t> order, std::vector<double>& scratch) const {
    if (complete_) {
        unrank(b, order);
        return;
    }
    // Durstenfeld, R. (1964), Algorithm 235: random permutation, Comm. ACM 7:420.
    std::iota(order.begin(), order.end(), 0);
    const auto nDraws = static_cast<std::size_t>(n_ - 1);
    scratch.resize(nDraws);
    rngcore::fillUniform(seed_, static_cast<std::uint64_t>(b) * nDraws, scratch);
    for (std::size_t i = nDraws; i > 0; --i) {
        const auto other = static_cast<std::size_t>(scratch[i - 1] * static_cast<double>(i + 1));
        std::swap(order[i], order[other]);
    }
}

PermutationResult permutationTest(const Orders& orders, std::int32_t n, double observed, Side side,
                                  const std::function<double(std::span<const std::int32_t>)>& statistic) {
    PermutationResult result;
    if (orders.count() == 0 || std::isnan(observed) || observed == kMissing) return result;
    const std::int64_t nBlocks = (orders.count() + kOrdersPerBlock - 1) / kOrdersPerBlock;
    std::vector<std::int64_t> reached(static_cast<std::size_t>(nBlocks), 0);
    parallelFor(nBlocks, nBlocks > 1, [&](std::int64_t block) {
        std::vector<std::int32_t> order(static_cast<std::size_t>(n));
        std::vector<double> scratch;
        const std::int64_t end = std::min(orders.count(), (block + 1) * kOrdersPerBlock);
        for (std::int64_t b = block * kOrdersPerBlock; b < end; ++b) {
            orders.get(b, order, scratch);
            if (isReached(statistic(order), observed, side)) ++reached[static_cast<std::size_t>(block)];
        }
    });
    const double total = static_cast<double>(std::accumulate(reached.begin(), reached.end(), std::int64_t{0}));
    const double nOrders = static_cast<double>(orders.count());
    result.pValue = orders.complete() ? total / nOrders : (total + 1.0) / (nOrders + 1.0);
    result.nOrders = orders.count();
    result.complete = orders.complete();
    return result;
}

}  // namespace numcore::association
