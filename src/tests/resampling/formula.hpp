// The statistic of each test from the moments of its groups, and the moments from the observations.
#pragma once

#include <cstdint>
#include <span>

#include "tests/group_statistics.hpp"
#include "tests/resampling/resampling.hpp"

namespace numcore::tests {

struct Formula {
    Statistic statistic = Statistic::kT;
    std::span<const double> givenVariances{};  ///< one a group, or none

    /// NaN when there is none. Without spread the statistics of means are 0 for equal means and otherwise the
    /// overflow marker, or its negative.
    double operator()(std::span<const GroupMoments> groups) const;
};

/// Sum of term(number) over some of the observations, in four parts whose order is fixed.
template <class Term>
double sumOver(std::span<const std::uint32_t> numbers, const Term& term) {
    double part[4] = {};
    std::size_t i = 0;
    for (; i + 4 <= numbers.size(); i += 4) {
        for (std::size_t j = 0; j < 4; ++j) part[j] += term(numbers[i + j]);
    }
    for (; i < numbers.size(); ++i) part[0] += term(numbers[i]);
    return (part[0] + part[2]) + (part[1] + part[3]);
}

/// Moments of some of the observations; without spread their sum of squares is exactly 0.
///
/// @param weights  one a value; empty: unit weights
/// @param numbers  of the observations that count, repeats allowed
GroupMoments momentsOf(std::span<const double> values, std::span<const double> weights,
                       std::span<const std::uint32_t> numbers);

}  // namespace numcore::tests
