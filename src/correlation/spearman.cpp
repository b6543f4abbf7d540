#include "correlation/spearman.hpp"

#include <algorithm>
#include <cmath>

#include "correlation/rank_laws.hpp"
#include "correlation/table.hpp"

namespace numcore::correlation {
namespace {

/// (1 - ((Tx + Ty) / 12 + D) 6 / N3) / sqrt((1 - Tx / N3)(1 - Ty / N3)) with N3 = W^3 - W, as multiplied by N3:
/// that is 0 for weights that sum to 1 and negative below, where the ranks have spread all the same.
double rhoOfSums(double weight, double differences, const Ties& tiesX, const Ties& tiesY) {
    if (tiesX.nGroups < 2 || tiesY.nGroups < 2) return kMissing;
    const double cubes = (weight * weight - 1.0) * weight;
    const double spreadX = cubes - tiesX.cubes;
    const double spreadY = cubes - tiesY.cubes;
    if (!(spreadX > 0.0 && spreadY > 0.0)) return kMissing;
    // What rounding would leave beside 1.
    if (differences == 0.0 && tiesX.cubes == tiesY.cubes) return 1.0;
    const double product = spreadX * spreadY;
    const double root = std::isinf(product) ? std::sqrt(spreadX) * std::sqrt(spreadY) : std::sqrt(product);
    const double rho = (0.5 * (spreadX + spreadY) - 6.0 * differences) / root;
    return std::isnan(rho) ? kMissing : std::clamp(rho, -1.0, 1.0);
}

}  // namespace

SpearmanCoefficient spearmanOfSums(std::int64_t nPairs, double weight, double differences, const Ties& tiesX,
                                   const Ties& tiesY, std::int32_t alternative) {
    const double rho = rhoOfSums(weight, differences, tiesX, tiesY);
    const SpearmanTest test = spearmanTest(rho, weight, alternative, SpearmanStep::kOfData);
    return {{rho, test.pValue, nPairs}, test.statistic};
}

SpearmanCoefficient spearmanOfColumns(const RankedColumn& x, const RankedColumn& y,
                                      std::span<const double> weights, std::int32_t alternative) {
    const MidRanks ranksX = midRanks(x, &y, weights);
    const MidRanks ranksY = midRanks(y, &x, weights);
    std::int64_t nPairs = 0;
    double differences = 0.0;
    for (std::size_t i = 0; i < x.nRows; ++i) {
        if (!x.has(i) || !y.has(i)) continue;
        const double difference = ranksX.ranks[i] - ranksY.ranks[i];
        differences += (weights.empty() ? 1.0 : weights[i]) * difference * difference;
        nPairs += 1;
    }
    return spearmanOfSums(nPairs, ranksX.weight, differences, ranksX.ties, ranksY.ties, alternative);
}

SpearmanCoefficient spearmanPair(std::span<const double> x, std::span<const double> y, const Rows& rows,
                                 std::int32_t alternative) {
    const SelectedColumns pair({{x, y}, std::min(x.size(), y.size()), rows}, true);
    RankingSpace space;
    const RankedColumn first = rankColumn(pair[0], space);
    return spearmanOfColumns(first, rankColumn(pair[1], space), pair.weights(), alternative);
}

}  // namespace numcore::correlation
