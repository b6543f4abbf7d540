// Distribution-free confidence limits of quantiles: two order statistics around the quantile.
// Conover, W. J. (1999), Practical Nonparametric Statistics, 3rd ed., section 3.2; Hahn, G. J. and Meeker, W.
// Q. (1991), Statistical Intervals, section 5.2.

#include <algorithm>
#include <array>
#include <cmath>

#include "descriptive/quantile.hpp"
#include "numcore/descriptive.hpp"
#include "numcore/special.h"
#include "suite/basecore.hpp"
#include "suite/parallel.hpp"
#include "suite/vmcore.hpp"

namespace numcore {
namespace descriptive {
namespace {

bool isUsable(std::int64_t m, double p, double level) {
    return m >= 1 && p > 0.0 && p < 1.0 && level > 0.0 && level < 1.0;
}

double logBinomialMass(double k, double m, double p) {
    return basecore::GammaLn(m + 1.0) - basecore::GammaLn(k + 1.0) - basecore::GammaLn(m - k + 1.0) +
           k * std::log(p) + (m - k) * std::log1p(-p);
}

/// Number of values at the low end of the binomial law (m, p) whose mass adds up to at most `limit`. The sum
/// starts where what lies below is beyond double precision.
std::int64_t ranksWithin(std::int64_t m, double p, double limit) {
    constexpr double kReach = 10.0;  // standard deviations: the mass beyond is below any limit in use
    const double size = static_cast<double>(m);
    const double deviation = std::sqrt(size * p * (1.0 - p));
    const double start = std::max(0.0, std::floor(size * p - kReach * deviation - kReach));
    double mass = std::exp(logBinomialMass(start, size, p));
    double sum = mass;
    double k = start;
    while (sum <= limit && k < size) {
        mass *= (size - k) / (k + 1.0) * p / (1.0 - p);
        sum += mass;
        k += 1.0;
    }
    return static_cast<std::int64_t>(k);
}

}  // namespace

RankPair exactLimitRanks(std::int64_t m, double p, double level) {
    if (!isUsable(m, p, level)) return {0, m + 1};
    const double outside = (1.0 - level) / 2.0;
    // The upper end is the lower end of the mirrored law.
    return {ranksWithin(m, p, outside), m + 1 - ranksWithin(m, 1.0 - p, outside)};
}

RankPair largeSampleLimitRanks(std::int64_t m, double p, double level) {
    if (!isUsable(m, p, level)) return {0, m + 1};
    const double z = InvCDFNormalStd((1.0 + level) / 2.0);
    const double centre = static_cast<double>(m) * p;
    const double reach = z * std::sqrt(centre * (1.0 - p));
    return {std::max<std::int64_t>(static_cast<std::int64_t>(std::floor(centre - reach)), 0),
            std::min(static_cast<std::int64_t>(std::ceil(centre + reach)) + 1, m + 1)};
}

}  // namespace descriptive

namespace {

using LimitRanks = descriptive::RankPair (*)(std::int64_t, double, double);

QuantileLimits limitsByRanks(const matrix<double>* x, std::int32_t n, double p, double level,
                             LimitRanks limitRanks) {
    if (x == nullptr || n < 1) return {};
    const auto cells = x->span().first(static_cast<std::size_t>(std::min(n, x->size())));
    const std::int64_t m = vmcore::countPresent(cells);
    if (m < 1) return {};
    const descriptive::RankPair ranks = limitRanks(m, p, level);
    const std::array<std::int64_t, 2> wanted = {std::clamp<std::int64_t>(ranks.lower - 1, 0, m - 1),
                                                std::clamp<std::int64_t>(ranks.upper - 1, 0, m - 1)};
    std::array<double, 2> found{};
    vmcore::selectRanks(cells, wanted, found);
    return {ranks.lower >= 1 ? found[0] : kMissing, ranks.upper <= m ? found[1] : kMissing};
}

constexpr std::int64_t kParallelFrom = 100000;  // cells; below, starting threads costs more than it gains

/// Table columns per order: the quantile, and its two limits when they are asked for.
std::int32_t widthOf(const ST_QuantileOptions& options) {
    return isTrue(options.interval) ? 3 : 1;
}

void writeQuantiles(const cST_DataSet& data, std::int32_t c, const matrix<double>& p,
                    const ST_QuantileOptions& options, matrix<double>& table) {
    const auto cells = std::as_const(*data.numeric1).cells(c);
    const auto weights = data.observationWeights();
    std::vector<double> found(static_cast<std::size_t>(p.size()));
    if (isTrue(options.weighted) && !weights.empty()) {
        for (std::size_t i = 0; i < found.size(); ++i) {
            found[i] = descriptive::weightedQuantile(cells, weights, p.span()[i]);
        }
    } else {
        descriptive::quantiles(cells, options.method, p.span(), found);
    }
    // Two threads may meet at the spare element of a short table, never at a cell: so look before writing.
    for (std::int32_t i = 0; i < p.size() && c < table.rows(); ++i) {
        const std::int32_t column = i * widthOf(options);
        if (column < table.columns()) table.at(c, column) = found[static_cast<std::size_t>(i)];
    }
}

void writeLimits(const cST_MVect<double>& variables, std::int32_t c, const matrix<double>& p,
                 const ST_QuantileOptions& options, matrix<double>& table) {
    const auto limits = isTrue(options.largeSample) ? V_ConfQuantilesLargeSample : V_ConfQuantilesNonParam1;
    for (std::int32_t i = 0; i < p.size() && c < table.rows(); ++i) {
        const QuantileLimits around = limits(&variables.column(c), variables.length(c), p[i], options.level);
        const std::int32_t column = i * widthOf(options);
        if (column + 1 < table.columns()) table.at(c, column + 1) = around.lower;
        if (column + 2 < table.columns()) table.at(c, column + 2) = around.upper;
    }
}

}  // namespace

QuantileLimits V_ConfQuantilesNonParam1(const matrix<double>* x, std::int32_t n, double p, double level) {
    return limitsByRanks(x, n, p, level, descriptive::exactLimitRanks);
}

QuantileLimits V_ConfQuantilesLargeSample(const matrix<double>* x, std::int32_t n, double p, double level) {
    return limitsByRanks(x, n, p, level, descriptive::largeSampleLimitRanks);
}

std::int32_t GetQuantileTable(cST_DataSet& data, const matrix<double>& p, const ST_QuantileOptions& options,
                              matrix<double>& table, matrix<u16string>& labels) {
    if (p.size() < 1) return -1;
    const cST_MVect<double>& variables = *data.numeric1;
    std::int64_t nCells = 0;
    for (std::int32_t c = 0; c < variables.columnCount(); ++c) {
        labels[c] = u16string(variables.label(c));
        nCells += variables.length(c);
    }
    parallelFor(variables.columnCount(), nCells >= kParallelFrom, [&](std::int64_t i) {
        const auto c = static_cast<std::int32_t>(i);
        writeQuantiles(data, c, p, options, table);
        if (isTrue(options.interval)) writeLimits(variables, c, p, options, table);
    });
    return 0;
}

}  // namespace numcore
