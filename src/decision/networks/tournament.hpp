// The first of n items in an order that changes an item at a time.
#pragma once

#include <bit>
#include <cstddef>
#include <vector>

#include "decision/networks/lists.hpp"

namespace numcore::networks {

/// A tree of matches: after an item's key has changed, `update` replays its matches. `before(a, b)` is a strict
/// order of the items by their keys, which live with the caller.
template <class Before>
class Tournament {
  public:
    Tournament(std::size_t n, Before before)
        : before_(before), nLeaves_(std::bit_ceil(n == 0 ? 1 : n)), winners_(2 * nLeaves_, kNone) {
        for (std::size_t i = 0; i < n; ++i) winners_[nLeaves_ + i] = static_cast<Number>(i);
        for (std::size_t node = nLeaves_ - 1; node > 0; --node) play(node);
    }

    /// The first item; kNone when all are removed.
    Number first() const { return winners_[1]; }
    void update(Number item) { replay(nLeaves_ + static_cast<std::size_t>(item)); }
    void remove(Number item) {
        winners_[nLeaves_ + static_cast<std::size_t>(item)] = kNone;
        update(item);
    }

    static constexpr Number kNone = -1;

  private:
    void play(std::size_t node) {
        const Number a = winners_[2 * node];
        const Number b = winners_[2 * node + 1];
        winners_[node] = a == kNone || (b != kNone && before_(b, a)) ? b : a;
    }
    void replay(std::size_t node) {
        while (node > 1) play(node /= 2);
    }

    Before before_;
    std::size_t nLeaves_;
    std::vector<Number> winners_;
};

}  // namespace numcore::networks
