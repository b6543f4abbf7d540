// Kendall coefficient of one pair of columns, and what the matrix shares with it.
//
// Kept: a pair of observations with |dx dy| <= epsilon is tied, and counts as untied in x alone when |dx| >
// epsilon. Sorting finds the same counts where differences are larger, and where the pairs that lie so close
// can be listed; otherwise all pairs are compared.
#pragma once

#include "correlation/observations.hpp"
#include "correlation/ranked_column.hpp"
#include "correlation/table.hpp"

namespace numcore::correlation {

inline constexpr std::size_t kKendallParallelFrom = 4096;  ///< cells

struct KendallOptions {
    std::int32_t alternative = kTwoSided;
    bool exact = false;  ///< where it applies
    bool continuity = false;
};

/// Options by a NumcoreKendallLaw; an unknown one is the normal law.
KendallOptions kendallOptions(std::int32_t alternative, std::int16_t law);

struct KendallCoefficient : Coefficient {
    double score = 0.0;  ///< S, concordant less discordant weight
};

/// A column in order, and its values that differ by little.
struct KendallColumn {
    std::span<const double> cells;
    RankedColumn ranked;
    double smallestStep = 0.0;  ///< between distinct values
    /// Rows whose values differ by at most the root of epsilon, but differ; unless there are too many.
    std::vector<std::pair<std::uint32_t, std::uint32_t>> nearby;
    bool canBeSorted = false;  ///< nearby is all there is, and no value is NaN
};

std::vector<KendallColumn> kendallColumns(const SelectedColumns& columns);

/// The weights, 0 for those that are not finite.
std::vector<double> usableWeights(std::span<const double> weights);

/// True when products of these weights are whole numbers whose sums 64 bits hold; empty = unit weights.
bool areCounts(std::span<const double> weights);

/// Coefficient of two columns of the same rows, pairwise.
KendallCoefficient kendallOfColumns(const KendallColumn& x, const KendallColumn& y,
                                    std::span<const double> weights, bool weightsAreCounts,
                                    const KendallOptions& options);

KendallCoefficient kendallPair(std::span<const double> x, std::span<const double> y, const Rows& rows,
                               const KendallOptions& options);

}  // namespace numcore::correlation
