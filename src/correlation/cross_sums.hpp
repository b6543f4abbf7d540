// Sums of products for all pairs of columns, by blocks of rows and panels of columns that stay in the cache.
#pragma once

#include <functional>
#include <span>
#include <vector>

namespace numcore::correlation {

struct CentredColumn {
    std::span<const double> cells;
    double centre;  ///< any number near the mean; deviations from it are summed
    double weight =
        0.0;            ///< sum of the weights of its cells; looked at for nearly complete columns only, as is
    double rest = 0.0;  ///< mean less centre
};

/// Receives the sums of columns i of the first and j of the second set; called by several threads at once, for
/// different pairs. For complete columns: the sums of squares of the first, of the second, and of products; for
/// masked ones: weight, x, y, xx, yy, xy.
using VisitSums = std::function<void(std::size_t i, std::size_t j, std::span<const double> sums)>;

/// Two sets of columns of the same rows.
struct ColumnPairs {
    std::span<const CentredColumn> first;
    std::span<const CentredColumn> second;
    bool symmetric;                   ///< second is first: only pairs i <= j are visited
    std::span<const double> weights;  ///< empty = unit weights
};

/// The order of all additions depends on the rows alone, not on the other columns, the processor or the
/// threads: the sums of equal columns are equal to the last bit.
void forEachCompletePair(const ColumnPairs& pairs, const VisitSums& visit);
/// The same for columns with missing cells.
void forEachMaskedPair(const ColumnPairs& pairs, const VisitSums& visit);
/// The same where most cells are present: the sums of each column less those over the rows where the other has
/// no value, which is quicker; digits are lost where those rows hold nearly all of a sum.
void forEachNearlyCompletePair(const ColumnPairs& pairs, const VisitSums& visit);

}  // namespace numcore::correlation
