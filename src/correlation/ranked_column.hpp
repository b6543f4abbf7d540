// A column in order: what the rank coefficients of all its pairs share.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace numcore::correlation {

struct RankedColumn {
    std::size_t nRows = 0;
    std::vector<std::uint32_t> order;    ///< rows that are present, ascending by value, NaN last
    std::vector<std::uint64_t> present;  ///< a bit a row; empty when all are
    std::vector<std::uint64_t> firsts;   ///< a bit a place in the order: 1 where another value begins
    std::uint32_t nGroups = 0;
    std::vector<std::uint32_t> group;  ///< from placeGroups: where a row that is present is among these

    bool isComplete() const { return order.size() == nRows; }
    bool has(std::size_t row) const { return present.empty() || (present[row / 64] >> (row % 64) & 1) != 0; }
    bool hasTies() const { return nGroups < order.size(); }
    bool isFirst(std::size_t place) const { return (firsts[place / 64] >> (place % 64) & 1) != 0; }
};

/// Calls use(rows) for the rows of each distinct value, ascending by value.
template <class Use>
void forEachGroup(const RankedColumn& column, Use use) {
    const std::span<const std::uint32_t> order(column.order);
    for (std::size_t first = 0, end = 0; first < order.size(); first = end) {
        for (++end; end < order.size() && !column.isFirst(end);) ++end;
        use(order.subspan(first, end - first));
    }
}

/// Room that the ranking of a column takes, to be used again for the next one.
struct RankingSpace {
    std::vector<std::uint64_t> items;
    std::vector<std::uint64_t> spare;
    std::vector<double> sorted;
};

/// Equal values share a group, all NaN too; equal rows keep their order.
RankedColumn rankColumn(std::span<const double> cells, RankingSpace& space);

/// Tells each row its group.
void placeGroups(RankedColumn& column);

/// The groups of equal values that have weight.
struct Ties {
    double cubes = 0.0;  ///< sum of t^3 - t, t the weight of a group
    std::uint32_t nGroups = 0;
};

/// Weighted average ranks of the rows where another column is present.
struct MidRanks {
    std::vector<double> ranks;  ///< one a row; not set where either column is missing
    double weight = 0.0;        ///< of these rows
    Ties ties;
};

/// Average ranks as `V_GetRanksTies` gives them, from the order that is known.
/// @param other  null = all rows
MidRanks midRanks(const RankedColumn& column, const RankedColumn* other, std::span<const double> weights);

}  // namespace numcore::correlation
