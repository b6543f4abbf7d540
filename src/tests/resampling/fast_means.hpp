// Moments of two groups of a permutation from sums over the smaller group: what they have together is fixed.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "tests/group_statistics.hpp"
#include "tests/resampling/arrangements.hpp"

namespace numcore::tests {

class TwoGroupSums {
  public:
    /// @param values   centred at their common mean
    /// @param weights  empty: unit weights
    TwoGroupSums(std::span<const double> values, std::span<const double> weights);

    std::array<GroupMoments, 2> operator()(const Arrangements::Cursor& cursor, std::size_t drawnGroup) const;

  private:
    struct Sums {
        double weight = 0.0;
        double values = 0.0;
        double squares = 0.0;
    };
    Sums sumUnitWeights(std::span<const std::uint32_t> numbers) const;
    Sums sumWeighted(std::span<const std::uint32_t> numbers) const;

    std::span<const double> values_;
    std::span<const double> weights_;
    std::vector<Sums> terms_;  // of each observation, when there are weights
    Sums total_;
};

}  // namespace numcore::tests
