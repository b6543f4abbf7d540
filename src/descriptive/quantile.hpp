// Quantiles by the numbered methods, over spans.
#pragma once

#include <cstdint>
#include <span>

namespace numcore::descriptive {

/// Quantiles of the non-missing cells, an order each; `V_QuantileMethod` tells the rules.
void quantiles(std::span<const double> cells, std::int32_t method, std::span<const double> orders,
               std::span<double> out);
double quantile(std::span<const double> cells, std::int32_t method, double order);

/// Weighted quantile of the non-missing cells; cells beyond the weights are left out.
double weightedQuantile(std::span<const double> cells, std::span<const double> weights, double order);

/// Order statistics of two ranks, from 1, among the non-missing cells; a rank outside 1..m gives the missing
/// value.
struct RankPair {
    std::int64_t lower = 0;
    std::int64_t upper = 0;
};

/// Ranks of distribution-free limits of the quantile of order p among m values: from the binomial law, or from
/// its normal approximation. 0 and m + 1 stand for a limit that does not exist.
RankPair exactLimitRanks(std::int64_t m, double p, double level);
RankPair largeSampleLimitRanks(std::int64_t m, double p, double level);

}  // namespace numcore::descriptive
