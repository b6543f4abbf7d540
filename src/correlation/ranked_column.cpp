// Rows and the upper half of the bits of their values are packed into one number and sorted by radix, least
// significant digit first; what those bits leave equal is sorted by the rest of them.

#include "correlation/ranked_column.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <utility>

#include "correlation/observations.hpp"
#include "numcore/markers.hpp"

namespace numcore::correlation {
namespace {

constexpr unsigned kRowBits = 32;
constexpr unsigned kDigitBits = 11;
constexpr unsigned kDigits = 3;
constexpr std::size_t kBuckets = std::size_t{1} << kDigitBits;
constexpr std::size_t kRadixFrom = 1500;  // fewer are sorted by comparing

/// Integers in the order of the values: both zeros are one, all NaN are one and last.
std::uint64_t keyOf(double value) {
    if (std::isnan(value)) return ~std::uint64_t{0};
    const auto bits = std::bit_cast<std::uint64_t>(value + 0.0);
    constexpr std::uint64_t kSign = std::uint64_t{1} << 63;
    return (bits & kSign) != 0 ? ~bits : bits | kSign;
}

std::uint64_t packed(double value, std::size_t row) {
    return keyOf(value) >> kRowBits << kRowBits | row;
}
std::uint32_t rowOf(std::uint64_t item) {
    return static_cast<std::uint32_t>(item);
}
std::size_t digitOf(std::uint64_t item, unsigned digit) {
    return static_cast<std::size_t>(item >> (kRowBits + digit * kDigitBits)) & (kBuckets - 1);
}
bool haveSameUpperHalf(std::uint64_t a, std::uint64_t b) {
    return (a ^ b) >> kRowBits == 0;
}

void sortByRadix(std::vector<std::uint64_t>& items, std::vector<std::uint64_t>& spare) {
    std::array<std::array<std::uint32_t, kBuckets>, kDigits> counts{};
    for (const std::uint64_t item : items) {
        for (unsigned d = 0; d < kDigits; ++d) ++counts[d][digitOf(item, d)];
    }
    spare.resize(items.size());
    for (unsigned d = 0; d < kDigits; ++d) {
        auto& places = counts[d];
        if (places[digitOf(items.front(), d)] == items.size()) continue;
        std::uint32_t place = 0;
        for (std::uint32_t& count : places) place += std::exchange(count, place);
        for (const std::uint64_t item : items) spare[places[digitOf(item, d)]++] = item;
        items.swap(spare);
    }
}

/// Sorts what is in order of the upper halves; equal values stay in the order of their rows.
void sortEqualHalves(std::vector<std::uint64_t>& items, std::span<const double> cells) {
    const auto comesBefore = [&](std::uint64_t a, std::uint64_t b) {
        const std::uint64_t first = keyOf(cells[rowOf(a)]);
        const std::uint64_t second = keyOf(cells[rowOf(b)]);
        return first < second || (first == second && rowOf(a) < rowOf(b));
    };
    for (auto first = items.begin(), end = first; first != items.end(); first = end) {
        bool inOrder = true;
        for (++end; end != items.end() && haveSameUpperHalf(*first, *end); ++end) {
            inOrder = inOrder && comesBefore(*(end - 1), *end);
        }
        if (!inOrder) std::sort(first, end, comesBefore);
    }
}

}  // namespace

RankedColumn rankColumn(std::span<const double> cells, RankingSpace& space) {
    std::vector<std::uint64_t>& items = space.items;
    items.clear();
    items.reserve(cells.size());
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (cells[i] != kMissing) items.push_back(packed(cells[i], i));
    }
    if (items.size() < kRadixFrom) {
        std::sort(items.begin(), items.end());
    } else {
        sortByRadix(items, space.spare);
    }
    sortEqualHalves(items, cells);

    RankedColumn column;
    if (items.size() < cells.size()) column.present = presenceBits(cells);
    column.nRows = cells.size();
    column.order.resize(items.size());
    column.firsts.resize((items.size() + 63) / 64);
    for (std::size_t k = 0; k < items.size(); ++k) {
        const std::uint32_t row = rowOf(items[k]);
        const bool isEqual = k > 0 && haveSameUpperHalf(items[k], items[k - 1]) &&
                             keyOf(cells[row]) == keyOf(cells[rowOf(items[k - 1])]);
        if (!isEqual) {
            column.firsts[k / 64] |= std::uint64_t{1} << (k % 64);
            ++column.nGroups;
        }
        column.order[k] = row;
    }
    return column;
}

void placeGroups(RankedColumn& column) {
    column.group.assign(column.nRows, 0);
    std::uint32_t group = 0;
    forEachGroup(column, [&](std::span<const std::uint32_t> rows) {
        for (const std::uint32_t row : rows) column.group[row] = group;
        ++group;
    });
}

MidRanks midRanks(const RankedColumn& column, const RankedColumn* other, std::span<const double> weights) {
    MidRanks result;
    result.ranks.resize(column.nRows);
    const auto isUsed = [&](std::uint32_t row) { return other == nullptr || other->has(row); };
    forEachGroup(column, [&](std::span<const std::uint32_t> rows) {
        double t = 0.0;
        for (const std::uint32_t row : rows) {
            if (isUsed(row)) t += weights.empty() ? 1.0 : weights[row];
        }
        const double rank = result.weight + (t + 1.0) / 2.0;
        for (const std::uint32_t row : rows) result.ranks[row] = rank;
        result.weight += t;
        if (!(t > 0.0)) return;
        result.ties.cubes += t * t * t - t;
        ++result.ties.nGroups;
    });
    return result;
}

}  // namespace numcore::correlation
