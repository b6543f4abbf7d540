#include "correlation/spearman.hpp"

#include <algorithm>
#include <cmath>

#include "correlation/rank_laws.hpp"
#include "correlation/table.hpp"

namespace numcore::correlation {
namespace {

double rhoOfSums(double weight, double differences, double tiesX, double tiesY) {
    const double cubes = (weight * weight - 1.0) * weight;
    if (cubes == 0.0) return kMissing;
    const double untied = (1.0 - tiesX / cubes) * (1.0 - tiesY / cubes);
    if (!(untied > 0.0)) return kMissing;
    // What rounding would leave beside 1.
    if (differences == 0.0 && tiesX == tiesY) return 1.0;
    const double rho = (1.0 - ((tiesX + tiesY) / 12.0 + differences) * 6.0 / cubes) / std::sqrt(untied);
    return std::isnan(rho) ? kMissing : std::clamp(rho, -1.0, 1.0);
}

}  // namespace

SpearmanCoefficient spearmanOfSums(std::int64_t nPairs, double weight, double differences, double tiesX,
                                   double tiesY, std::int32_t alternative) {
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
    for (std::size_t i = 0; i < x.group.size(); ++i) {
        if (x.group[i] == kNoGroup || y.group[i] == kNoGroup) continue;
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
