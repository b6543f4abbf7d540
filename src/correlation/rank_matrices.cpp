#include "correlation/rank_matrices.hpp"

#include "correlation/cross_sums.hpp"
#include "correlation/spearman.hpp"
#include "suite/parallel.hpp"
#include "suite/vmcore.hpp"

namespace numcore::correlation {
namespace {

constexpr std::size_t kRowsSharedWithin = 4096;

/// What a column needs once for all its pairs: ranks around their mean when it is complete; its order when
/// there are columns that are not.
struct SpearmanColumn {
    bool isComplete = false;
    std::vector<double> centredRanks;
    Ties ties;
    RankedColumn ranked;
};

std::vector<SpearmanColumn> spearmanColumns(const SelectedColumns& columns, double weight, bool keepOrder) {
    std::vector<SpearmanColumn> found(columns.size());
    const bool isLarge = columns.size() * columns.nRows() > kParallelFrom;
    parallelForWith<RankingSpace>(std::ssize(found), isLarge, [&](std::int64_t i, RankingSpace& space) {
        SpearmanColumn& column = found[static_cast<std::size_t>(i)];
        RankedColumn ranked = rankColumn(columns[static_cast<std::size_t>(i)], space);
        column.isComplete = ranked.isComplete();
        if (column.isComplete) {
            MidRanks ranks = midRanks(ranked, nullptr, columns.weights());
            for (double& rank : ranks.ranks) rank -= (weight + 1.0) / 2.0;
            column.centredRanks = std::move(ranks.ranks);
            column.ties = ranks.ties;
        }
        if (keepOrder) column.ranked = std::move(ranked);
    });
    return found;
}

bool isAnyMissing(const SelectedColumns& columns) {
    for (std::size_t c = 0; c < columns.size(); ++c) {
        if (vmcore::countPresent(columns[c]) < std::ssize(columns[c])) return true;
    }
    return false;
}

std::vector<std::size_t> completeOnes(const std::vector<SpearmanColumn>& columns) {
    std::vector<std::size_t> found;
    for (std::size_t c = 0; c < columns.size(); ++c) {
        if (columns[c].isComplete) found.push_back(c);
    }
    return found;
}

std::vector<CentredColumn> ranksOf(const std::vector<SpearmanColumn>& columns,
                                   const std::vector<std::size_t>& which) {
    std::vector<CentredColumn> found;
    found.reserve(which.size());
    for (const std::size_t c : which) found.push_back({columns[c].centredRanks, 0.0});
    return found;
}

/// Calls body(i, j) for the cells of a matrix, shared among threads; only for those with i <= j when it is
/// symmetric.
template <class Body>
void forEachCell(std::size_t nFirst, std::size_t nSecond, bool symmetric, bool inParallel, const Body& body) {
    parallelFor(static_cast<std::int64_t>(nFirst * nSecond), inParallel, [&](std::int64_t k) {
        const auto cell = static_cast<std::size_t>(k);
        std::size_t i = cell % nFirst;
        std::size_t j = cell / nFirst;
        // A pair has two cells, of which one acts: now the upper and now the lower, so that each stretch of
        // cells has the same work.
        if (symmetric && (i + j) % 2 == 1) std::swap(i, j);
        if (!symmetric || i <= j) body(i, j);
    });
}

}  // namespace

void spearmanMatrix(const Table& first, const Table* second, std::int32_t alternative, const Store& store) {
    const SelectedColumns rows(first, true);
    const bool symmetric = second == nullptr;
    const SelectedColumns others(symmetric ? Table{} : Table{second->columns, first.nRows, first.rows}, true);
    const SelectedColumns& columns = symmetric ? rows : others;
    const auto weights = rows.weights();
    const double weight = weights.empty() ? static_cast<double>(rows.nRows()) : vmcore::V_Sum2(weights);
    const bool keepOrder = isAnyMissing(rows) || (!symmetric && isAnyMissing(columns));
    const auto x = spearmanColumns(rows, weight, keepOrder);
    const auto ofSecond =
        symmetric ? std::vector<SpearmanColumn>() : spearmanColumns(columns, weight, keepOrder);
    const auto& y = symmetric ? x : ofSecond;

    const auto completeX = completeOnes(x);
    const auto completeY = completeOnes(y);
    const auto ranksX = ranksOf(x, completeX);
    const auto ranksY = ranksOf(y, completeY);
    const auto nRows = static_cast<std::int64_t>(rows.nRows());
    forEachCompletePair(
        {ranksX, ranksY, symmetric, weights}, [&](std::size_t a, std::size_t b, std::span<const double> sums) {
            const std::size_t i = completeX[a];
            const std::size_t j = completeY[b];
            const double differences = sums[0] + sums[1] - 2.0 * sums[2];
            store(i, j, spearmanOfSums(nRows, weight, differences, x[i].ties, y[j].ties, alternative));
        });
    if (!keepOrder) return;
    forEachCell(x.size(), y.size(), symmetric, rows.nRows() * x.size() > kParallelFrom,
                [&](std::size_t i, std::size_t j) {
                    if (x[i].isComplete && y[j].isComplete) return;
                    store(i, j, spearmanOfColumns(x[i].ranked, y[j].ranked, weights, alternative));
                });
}

void kendallMatrix(const Table& first, const Table* second, const KendallOptions& options, const Store& store) {
    const SelectedColumns rows(first, false);
    const bool symmetric = second == nullptr;
    const SelectedColumns others(symmetric ? Table{} : Table{second->columns, first.nRows, first.rows}, false);
    const auto x = kendallColumns(rows);
    const auto ofSecond = symmetric ? std::vector<KendallColumn>() : kendallColumns(others);
    const auto& y = symmetric ? x : ofSecond;
    const auto weights = usableWeights(rows.weights());
    const bool weightsAreCounts = areCounts(weights);
    // Where all observations of long columns are compared, the threads share the work within each pair.
    const bool sharePairs = weightsAreCounts || rows.nRows() < kRowsSharedWithin;
    forEachCell(x.size(), y.size(), symmetric, sharePairs && rows.nRows() * x.size() > kKendallParallelFrom,
                [&](std::size_t i, std::size_t j) {
                    store(i, j, kendallOfColumns(x[i], y[j], weights, weightsAreCounts, options));
                });
}

}  // namespace numcore::correlation
