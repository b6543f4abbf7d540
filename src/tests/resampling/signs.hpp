// Sums of observations whose signs change: the resamples of one group.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace numcore::tests {

/// Observation i is negative when bit i % 64 of word i / 64 is set.
class SignedSums {
  public:
    explicit SignedSums(std::span<const double> terms);

    std::size_t nWords() const { return nWords_; }
    double operator()(std::span<const std::uint64_t> signs) const;

  private:
    static constexpr std::size_t kTogether = 4;  // terms whose 16 sums are kept
    static constexpr std::size_t kFromOneWord = 64 / kTogether;
    static constexpr std::size_t kSums = 16;

    std::size_t nWords_;
    std::vector<double> sums_;
};

}  // namespace numcore::tests
