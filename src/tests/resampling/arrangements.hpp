// Arrangements of the observations of several groups: every one, drawn permutations, or bootstrap samples.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "suite/rngcore_tasks.hpp"
#include "tests/resampling/settings.hpp"

namespace numcore::tests {

/// Number of ways to deal the observations to groups of these sizes, or `limit` + 1 when there are more.
std::int64_t countArrangements(std::span<const std::int64_t> sizes, std::int64_t limit);

/// How a resample is made, and how many there are. Observations are numbered group after group.
class Arrangements {
  public:
    /// @param sizes  of the groups; the sum is from 1 to 2^31 - 1
    Arrangements(std::span<const std::int64_t> sizes, const ResamplingSettings& settings);

    /// Every arrangement is one of the resamples, once.
    bool complete() const { return complete_; }
    std::int64_t count() const { return count_; }
    std::size_t nObservations() const { return given_.size(); }
    std::size_t nGroups() const { return begin_.size(); }
    /// A group that is always drawn, never what the others leave: with two groups the smaller one.
    std::size_t drawnGroup() const { return drawnGroup_; }

    /// Walks over resamples; one thread's own.
    class Cursor {
      public:
        explicit Cursor(const Arrangements& arrangements);
        Cursor(const Cursor&) = delete;
        Cursor& operator=(const Cursor&) = delete;
        /// To resample i; when every arrangement is tried the next one is reached fastest. The data itself is
        /// arrangement 0.
        void moveTo(std::int64_t i);
        /// Numbers of the observations that are in a group now.
        std::span<const std::uint32_t> group(std::size_t g) const {
            return std::span(order_).subspan(all_.begin_[g], all_.size_[g]);
        }

      private:
        void unrank(std::int64_t i);
        void deal();
        void drawPermutation(std::int64_t i);
        void putBack();
        void drawBootstrap(std::int64_t i);

        const Arrangements& all_;
        std::int64_t at_ = -1;
        rngcore::TaskDraws draws_;
        std::span<const std::uint32_t> drawn_;
        std::vector<std::uint32_t> order_;
        std::vector<std::uint32_t>
            labels_;  // of each observation, the place of its group; every arrangement only
        std::vector<std::size_t> next_;
    };

  private:
    std::vector<std::uint32_t> boundsOfDraws() const;
    std::size_t nDrawn() const { return given_.size() - size_[places_.back()]; }

    std::vector<std::size_t> places_;   // the groups as they lie in the order: the largest last
    std::vector<std::size_t> size_;     // of each group
    std::vector<std::size_t> begin_;    // of each group in the order
    std::vector<std::size_t> first_;    // number of each group's first observation
    std::vector<std::uint32_t> given_;  // the data's own order
    std::size_t drawnGroup_ = 0;
    ResamplingMethod method_;
    std::int32_t seed_;
    std::int64_t count_ = 0;
    bool complete_ = false;
};

}  // namespace numcore::tests
