// Kendall, M. G. (1970), Rank Correlation Methods, 4th ed.: the coefficient with ties (3.3), the variance of S
// with ties in both columns (chapter 4).

#include "correlation/kendall.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "correlation/concordance.hpp"
#include "correlation/rank_laws.hpp"
#include "correlation/table.hpp"
#include "numcore/correlation.h"
#include "numcore/special.h"
#include "suite/parallel.hpp"

namespace numcore::correlation {
namespace {

constexpr double kExactBelow = 50.0;
constexpr double kRootByLogarithmFrom = 10001.0;
constexpr std::size_t kNearPerRow = 8;
constexpr std::size_t kLooksPerRow = 64;
constexpr double kLargestCountWeight = 2147483648.0;

/// Sums over the groups of equal values; t is the whole part of a group's weight. Whole numbers, in doubles so
/// that cubes of large groups cannot overflow.
struct TieSums {
    double forVariance = 0.0;  // t (t - 1)(2t + 5)
    double pairs = 0.0;        // t (t - 1)
    double triples = 0.0;      // t (t - 1)(t - 2)
    std::size_t nGroups = 0;
};

TieSums tieSums(const RankedColumn& column, const RankedColumn& other, std::span<const double> weights) {
    TieSums sums;
    const bool isPlain = weights.empty() && other.isComplete();
    if (isPlain && !column.hasTies()) {
        sums.nGroups = column.nGroups;
        return sums;
    }
    forEachGroup(column, [&](std::span<const std::uint32_t> rows) {
        if (rows.size() == 1 && weights.empty()) {
            sums.nGroups += std::size_t{other.has(rows[0])};
            return;
        }
        double weight = isPlain ? static_cast<double>(rows.size()) : 0.0;
        bool isUsed = isPlain;
        for (std::size_t k = 0; !isPlain && k < rows.size(); ++k) {
            if (!other.has(rows[k])) continue;
            weight += weights.empty() ? 1.0 : weights[rows[k]];
            isUsed = true;
        }
        sums.nGroups += std::size_t{isUsed};
        const double t = wholePart(weight);
        sums.forVariance += t * (t - 1.0) * (2.0 * t + 5.0);
        sums.pairs += t * (t - 1.0);
        sums.triples += t * (t - 1.0) * (t - 2.0);
    });
    return sums;
}

double varianceOfScore(double n, const TieSums& x, const TieSums& y) {
    double variance = (n * (n - 1.0) * (2.0 * n + 5.0) - x.forVariance - y.forVariance) / 18.0;
    if (n > 1.0) variance += x.pairs * y.pairs / (2.0 * n * (n - 1.0));
    if (n > 2.0) variance += x.triples * y.triples / (9.0 * n * (n - 1.0) * (n - 2.0));
    return variance;
}

double tauOf(const PairCounts& counts) {
    if (!(counts.untiedX >= 1.0 && counts.untiedY >= 1.0)) return kMissing;
    // Kept: the root goes through logarithms for many pairs. Equal counts are their own root.
    if (counts.untiedX == counts.untiedY) return counts.score / counts.untiedX;
    const double root = counts.untiedX + counts.untiedY < kRootByLogarithmFrom
                            ? std::sqrt(counts.untiedX * counts.untiedY)
                            : std::exp((std::log(counts.untiedX) + std::log(counts.untiedY)) / 2.0);
    return std::clamp(counts.score / root, -1.0, 1.0);
}

double exactPValue(double score, std::int32_t n, std::int32_t alternative) {
    const std::int32_t S = wholePart(score);
    switch (alternative) {
        case kTwoSided: {
            const double upper = CDFKendall(S, n);
            return 2.0 * std::min(upper, 1.0 - upper);
        }
        case kLower:
            return 1.0 - CDFKendall(S + 2, n);
        default:
            return CDFKendall(S, n);
    }
}

double normalPValue(double score, double variance, const KendallOptions& options) {
    if (!(variance > 0.0)) return kMissing;
    const double moved = std::max(std::abs(score) - (options.continuity ? 1.0 : 0.0), 0.0);
    const double lower = CDFNormalStd(std::copysign(moved, score) / std::sqrt(variance));
    switch (options.alternative) {
        case kTwoSided:
            return 2.0 * std::min(lower, 1.0 - lower);
        case kLower:
            return lower;
        default:
            return 1.0 - lower;
    }
}

std::int64_t countCommon(const RankedColumn& x, const RankedColumn& y) {
    if (x.isComplete()) return std::ssize(y.order);
    return std::count_if(y.order.begin(), y.order.end(), [&](std::uint32_t row) { return x.has(row); });
}

std::vector<std::size_t> commonRows(const RankedColumn& x, const RankedColumn& y) {
    std::vector<std::size_t> rows;
    for (std::size_t i = 0; i < x.nRows; ++i) {
        if (x.has(i) && y.has(i)) rows.push_back(i);
    }
    return rows;
}

std::vector<double> cellsAt(std::span<const double> cells, const std::vector<std::size_t>& rows) {
    std::vector<double> found(rows.size());
    for (std::size_t k = 0; k < rows.size(); ++k) found[k] = cells[rows[k]];
    return found;
}

PairCounts countPairs(const KendallColumn& x, const KendallColumn& y, std::span<const double> weights,
                      bool weightsAreCounts) {
    const bool canBeSorted = x.canBeSorted && y.canBeSorted;
    if (weightsAreCounts && (stepsAreLarge(x, y) || canBeSorted)) return countBySorting(x, y, weights);
    const auto rows = commonRows(x.ranked, y.ranked);
    return countByComparing(cellsAt(x.cells, rows), cellsAt(y.cells, rows),
                            weights.empty() ? std::vector<double>() : cellsAt(weights, rows));
}

/// Rows that differ by at most kNear; false when there are more than a few per row, or too many to look at.
/// @param sorted  the values in their order
bool listNear(std::span<const double> sorted, const std::vector<std::uint32_t>& order,
              std::vector<std::pair<std::uint32_t, std::uint32_t>>& nearby) {
    std::size_t nLooked = 0;
    for (std::size_t i = 0; i < sorted.size(); ++i) {
        for (std::size_t j = i + 1; j < sorted.size() && sorted[j] - sorted[i] <= kNear; ++j) {
            if (++nLooked > kLooksPerRow * sorted.size()) return false;
            if (sorted[j] == sorted[i]) continue;
            if (nearby.size() >= kNearPerRow * sorted.size()) return false;
            nearby.emplace_back(order[i], order[j]);
        }
    }
    return true;
}

KendallColumn kendallColumn(std::span<const double> cells, RankingSpace& space) {
    KendallColumn column{cells, rankColumn(cells, space), std::numeric_limits<double>::infinity(), {}, false};
    placeGroups(column.ranked);
    const auto& order = column.ranked.order;
    std::vector<double>& sorted = space.sorted;
    sorted.resize(order.size());
    std::transform(order.begin(), order.end(), sorted.begin(), [&](std::uint32_t row) { return cells[row]; });
    if (!sorted.empty() && std::isnan(sorted.back())) {
        column.smallestStep = 0.0;
        return column;
    }
    for (std::size_t k = 1; k < sorted.size(); ++k) {
        const double step = sorted[k] - sorted[k - 1];
        if (step > 0.0) column.smallestStep = std::min(column.smallestStep, step);
    }
    column.canBeSorted = column.smallestStep > kNear || listNear(sorted, order, column.nearby);
    return column;
}

}  // namespace

KendallOptions kendallOptions(std::int32_t alternative, std::int16_t law) {
    return {alternative, law == NUMCORE_KENDALL_EXACT || law == NUMCORE_KENDALL_EXACT_CONTINUITY,
            law == NUMCORE_KENDALL_CONTINUITY || law == NUMCORE_KENDALL_EXACT_CONTINUITY};
}

std::vector<KendallColumn> kendallColumns(const SelectedColumns& columns) {
    std::vector<KendallColumn> found(columns.size());
    const bool isLarge = columns.size() * columns.nRows() > kKendallParallelFrom;
    parallelForWith<RankingSpace>(std::ssize(found), isLarge, [&](std::int64_t i, RankingSpace& space) {
        const auto c = static_cast<std::size_t>(i);
        found[c] = kendallColumn(columns[c], space);
    });
    return found;
}

std::vector<double> usableWeights(std::span<const double> weights) {
    std::vector<double> usable(weights.begin(), weights.end());
    std::replace_if(
        usable.begin(), usable.end(), [](double w) { return !std::isfinite(w); }, 0.0);
    return usable;
}

bool areCounts(std::span<const double> weights) {
    double sum = 0.0;
    for (const double w : weights) {
        if (!(w >= 0.0 && w <= kLargestCountWeight && w == std::floor(w))) return false;
        sum += w;
    }
    return sum <= kLargestCountWeight;
}

KendallCoefficient kendallOfColumns(const KendallColumn& x, const KendallColumn& y,
                                    std::span<const double> weights, bool weightsAreCounts,
                                    const KendallOptions& options) {
    KendallCoefficient result;
    result.nPairs = countCommon(x.ranked, y.ranked);
    if (result.nPairs == 0) return result;
    const PairCounts counts = countPairs(x, y, weights, weightsAreCounts);
    result.value = tauOf(counts);
    result.score = counts.score;
    if (options.alternative == kNoPValue) return result;
    const TieSums tiesX = tieSums(x.ranked, y.ranked, weights);
    const TieSums tiesY = tieSums(y.ranked, x.ranked, weights);
    if (tiesX.nGroups == 1 || tiesY.nGroups == 1) {
        result.pValue = 0.0;  // Kept: of a constant column
        return result;
    }
    if (result.value == kMissing) return result;
    double weight = static_cast<double>(result.nPairs);
    if (!weights.empty()) {
        weight = 0.0;
        for (const std::size_t i : commonRows(x.ranked, y.ranked)) weight += weights[i];
    }
    const std::int32_t n = wholePart(weight);
    result.exact = options.exact && counts.nTied == 0.0 && weight < kExactBelow;
    result.pValue = result.exact ? exactPValue(counts.score, n, options.alternative)
                                 : normalPValue(counts.score, varianceOfScore(n, tiesX, tiesY), options);
    return result;
}

KendallCoefficient kendallPair(std::span<const double> x, std::span<const double> y, const Rows& rows,
                               const KendallOptions& options) {
    const SelectedColumns pair({{x, y}, std::min(x.size(), y.size()), rows}, false);
    const auto weights = usableWeights(pair.weights());
    const auto columns = kendallColumns(pair);
    return kendallOfColumns(columns[0], columns[1], weights, areCounts(weights), options);
}

}  // namespace numcore::correlation
