// Permutation tests: orders of n things, all of them or drawn ones, and how often a statistic is reached.
// Phipson, B. and Smyth, G. K. (2010), Permutation p-values should never be zero, Stat. Appl. Genet. Mol. Biol.
// 9(1):39.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "correlation/association/biserial.hpp"
#include "numcore/markers.hpp"

namespace numcore::association {

/// Orders of 0, ..., n - 1, each found by its number alone.
class Orders {
  public:
    /// All n! orders when that is at most nWanted, the first being the given one; otherwise nWanted orders
    /// drawn from the stream of the seed, order b from its numbers b (n - 1), ..., (b + 1)(n - 1) - 1.
    ///
    /// @param nWanted  below 1: no orders
    Orders(std::int32_t n, std::int32_t nWanted, std::int32_t seed);

    std::int64_t count() const { return count_; }
    bool complete() const { return complete_; }
    /// Order number b, from 0, into `order`, which has n places; `scratch` is kept between calls.
    void get(std::int64_t b, std::span<std::int32_t> order, std::vector<double>& scratch) const;

  private:
    void unrank(std::int64_t b, std::span<std::int32_t> order) const;

    std::int32_t n_;
    std::int32_t seed_;
    std::int64_t count_ = 0;
    bool complete_ = false;
};

struct PermutationResult {
    double pValue = kMissing;
    std::int64_t nOrders = 0;  ///< orders tried
    bool complete = false;     ///< every order was tried
};

/// Share of the orders whose statistic is at least as far out as the observed one; with drawn orders the
/// observed one counts as one more. Statistics that differ by rounding are equal. Two-sided compares absolute
/// values. The same for any number of threads.
///
/// @param observed   statistic of the given order; NaN or missing gives no p-value
/// @param statistic  of an order; called from several threads. NaN counts as reached.
PermutationResult permutationTest(const Orders& orders, std::int32_t n, double observed, Side side,
                                  const std::function<double(std::span<const std::int32_t>)>& statistic);

}  // namespace numcore::association
