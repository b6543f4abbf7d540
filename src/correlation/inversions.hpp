// Pairs out of order. Of two places that differ, the highest digit in which they do tells their order: the
// places are shared out by their highest digit, in the order in which they stand, while those already seen with
// a greater digit are counted; then each share goes by its next digit.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace numcore::correlation {

/// An observation by the place of its value in y.
struct WeightedPlace {
    std::uint32_t y;
    std::int64_t weight;
};

inline std::int64_t weightOf(const WeightedPlace& place) {
    return place.weight;
}
inline std::uint32_t yOf(const WeightedPlace& place) {
    return place.y;
}

/// One of unit weight needs no more than the place.
inline std::uint32_t weightOf(std::uint32_t /*place*/) {
    return 1;
}
inline std::uint32_t yOf(std::uint32_t place) {
    return place;
}

template <class Item>
class Inversions {
  public:
    /// The weight of the pairs of items whose places in y are out of order; the items lose theirs.
    /// @param nPlaces  above every place
    static std::int64_t count(std::vector<Item>& items, std::uint32_t nPlaces) {
        const auto comesBefore = [](const Item& a, const Item& b) { return yOf(a) < yOf(b); };
        if (std::is_sorted(items.begin(), items.end(), comesBefore)) return 0;  // as a column with itself
        std::vector<Item> spare(items.size());
        const auto bits = static_cast<unsigned>(std::bit_width(nPlaces));
        return countByDigit(items, spare, bits > kDigitBits ? bits - kDigitBits : 0);
    }

  private:
    using Weight = decltype(weightOf(std::declval<Item>()));

    static constexpr unsigned kDigitBits = 4;
    static constexpr std::uint32_t kDigits = 1U << kDigitBits;
    static constexpr std::size_t kComparedUpTo = 32;

    /// All bits for the digits below each digit.
    static constexpr auto kBelow = [] {
        std::array<std::array<Weight, kDigits>, kDigits> masks{};
        for (std::uint32_t digit = 0; digit < kDigits; ++digit) {
            for (std::uint32_t d = 0; d < digit; ++d) masks[digit][d] = static_cast<Weight>(-1);
        }
        return masks;
    }();

    static std::uint32_t digitOf(const Item& item, unsigned shift) { return (yOf(item) >> shift) % kDigits; }

    /// Leaves the shares in spare.
    static std::int64_t countByDigit(std::span<Item> items, std::span<Item> spare, unsigned shift) {
        if (items.size() <= kComparedUpTo) return countByComparing(items);
        std::array<std::size_t, kDigits + 1> starts{};
        for (const Item& item : items) ++starts[digitOf(item, shift) + 1];
        for (std::uint32_t d = 0; d < kDigits; ++d) starts[d + 1] += starts[d];
        std::array<std::size_t, kDigits + 1> places = starts;
        std::array<Weight, kDigits> greater{};  // weight seen so far, by digit
        std::int64_t inverted = 0;
        for (const Item& item : items) {
            const std::uint32_t digit = digitOf(item, shift);
            const Weight weight = weightOf(item);
            inverted += std::int64_t{greater[digit]} * weight;
            for (std::uint32_t d = 0; d < kDigits; ++d) greater[d] += kBelow[digit][d] & weight;
            spare[places[digit]++] = item;
        }
        if (shift == 0) return inverted;
        const unsigned nextShift = shift > kDigitBits ? shift - kDigitBits : 0;
        for (std::uint32_t d = 0; d < kDigits; ++d) {
            const std::size_t size = starts[d + 1] - starts[d];
            inverted += countByDigit(spare.subspan(starts[d], size), items.subspan(starts[d], size), nextShift);
        }
        return inverted;
    }

    static std::int64_t countByComparing(std::span<const Item> items) {
        std::int64_t inverted = 0;
        for (std::size_t i = 1; i < items.size(); ++i) {
            const std::uint32_t place = yOf(items[i]);
            Weight greater = 0;
            for (std::size_t j = 0; j < i; ++j) greater += yOf(items[j]) > place ? weightOf(items[j]) : 0;
            inverted += std::int64_t{greater} * weightOf(items[i]);
        }
        return inverted;
    }
};

}  // namespace numcore::correlation
