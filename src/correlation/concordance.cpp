#include "correlation/concordance.hpp"

#include <algorithm>
#include <cmath>

#include "correlation/inversions.hpp"
#include "suite/parallel.hpp"

namespace numcore::correlation {
namespace {

constexpr std::int64_t kRowsOfTask = 64;
constexpr std::size_t kCellsOfTask = 2048;
constexpr std::size_t kParallelRows = 512;

/// Observations where both columns are present, ordered by x, then y.
std::vector<Place> orderedPlaces(const RankedColumn& x, const RankedColumn& y,
                                 std::span<const double> weights) {
    const auto placeOf = [&](std::uint32_t row) {
        const std::int64_t weight = weights.empty() ? 1 : static_cast<std::int64_t>(weights[row]);
        return Place{x.group[row], y.group[row], weight};
    };
    std::vector<Place> ordered;
    if (x.nGroups == x.order.size()) {
        ordered.reserve(x.order.size());
        for (const std::uint32_t row : x.order) {
            if (y.group[row] != kNoGroup) ordered.push_back(placeOf(row));
        }
        return ordered;
    }
    // Counting sort by x of what is in the order of y.
    std::vector<std::uint32_t> places(std::size_t{x.nGroups} + 1, 0);
    for (const std::uint32_t row : y.order) {
        if (x.group[row] != kNoGroup) ++places[x.group[row] + 1];
    }
    for (std::size_t g = 1; g < places.size(); ++g) places[g] += places[g - 1];
    ordered.resize(places.back());
    for (const std::uint32_t row : y.order) {
        if (x.group[row] != kNoGroup) ordered[places[x.group[row]]++] = placeOf(row);
    }
    return ordered;
}

/// Sum of products of the weights of all pairs within runs of equal observations.
struct Runs {
    std::int64_t products = 0;
    std::int64_t nPairs = 0;
};

template <class Same>
Runs pairsWithinRuns(std::span<const Place> ordered, Same same) {
    Runs runs;
    for (std::size_t first = 0, end = 0; first < ordered.size(); first = end) {
        std::int64_t sum = 0;
        for (; end < ordered.size() && same(ordered[first], ordered[end]); ++end) {
            runs.products += sum * weightOf(ordered[end]);
            sum += weightOf(ordered[end]);
        }
        const auto size = static_cast<std::int64_t>(end - first);
        runs.nPairs += size * (size - 1) / 2;
    }
    return runs;
}

/// Pairs of observations that are equal in a column, of those where the other one is present too.
Runs tiedPairs(const RankedColumn& column, const RankedColumn& other, std::span<const double> weights) {
    Runs tied;
    const auto& order = column.order;
    if (column.nGroups == order.size()) return tied;
    for (std::size_t first = 0, end = 0; first < order.size(); first = end) {
        const std::uint32_t group = column.group[order[first]];
        std::int64_t sum = 0;
        std::int64_t size = 0;
        for (; end < order.size() && column.group[order[end]] == group; ++end) {
            if (other.group[order[end]] == kNoGroup) continue;
            const std::int64_t weight = weights.empty() ? 1 : static_cast<std::int64_t>(weights[order[end]]);
            tied.products += sum * weight;
            sum += weight;
            size += 1;
        }
        tied.nPairs += size * (size - 1) / 2;
    }
    return tied;
}

/// What the observations in the order of x tell.
struct Ordered {
    std::int64_t products = 0;  ///< of all pairs
    Runs tiedBoth;
    std::int64_t discordant = 0;
};

/// Of unit weights, where x has no ties.
Ordered orderedByDistinct(const RankedColumn& x, const RankedColumn& y) {
    std::vector<std::uint32_t> places;
    places.reserve(x.order.size());
    for (const std::uint32_t row : x.order) {
        if (y.group[row] != kNoGroup) places.push_back(y.group[row]);
    }
    const std::int64_t n = std::ssize(places);
    return {n * (n - 1) / 2, {}, Inversions<std::uint32_t>::count(places, y.nGroups)};
}

Ordered orderedByAny(const RankedColumn& x, const RankedColumn& y, std::span<const double> weights) {
    std::vector<Place> places = orderedPlaces(x, y, weights);
    const auto same = [](const Place& a, const Place& b) { return a.x == b.x && a.y == b.y; };
    const Runs all = pairsWithinRuns(places, [](const Place&, const Place&) { return true; });
    const Runs tiedBoth = pairsWithinRuns(places, same);
    if (!weights.empty()) return {all.products, tiedBoth, Inversions<Place>::count(places, y.nGroups)};
    std::vector<std::uint32_t> placesInY(places.size());
    std::transform(places.begin(), places.end(), placesInY.begin(), [](const Place& place) { return place.y; });
    return {all.products, tiedBoth, Inversions<std::uint32_t>::count(placesInY, y.nGroups)};
}

/// What listed near pairs change in counts that took every difference for one.
class NearPairs {
  public:
    NearPairs(const KendallColumn& x, const KendallColumn& y, std::span<const double> weights)
        : x_(x.cells), y_(y.cells), weights_(weights) {
        for (const auto& [i, j] : x.nearby) take(i, j);
        for (const auto& [i, j] : y.nearby) {
            if (!isNear(x_[i], x_[j])) take(i, j);
        }
    }
    const PairCounts& change() const { return change_; }

  private:
    static bool isNear(double a, double b) { return a != b && std::abs(a - b) <= kNear; }

    void take(std::uint32_t i, std::uint32_t j) {
        if (x_[i] == kMissing || x_[j] == kMissing || y_[i] == kMissing || y_[j] == kMissing) return;
        const double dx = x_[j] - x_[i];
        const double dy = y_[j] - y_[i];
        if (std::abs(dx * dy) > kTieEpsilon) return;
        const double weight = weights_.empty() ? 1.0 : weights_[i] * weights_[j];
        const bool differX = x_[i] != x_[j];
        const bool differY = y_[i] != y_[j];
        if (differX && !(std::abs(dx) > kTieEpsilon)) change_.untiedX -= weight;
        if (differY && !(std::abs(dy) > kTieEpsilon)) change_.untiedY -= weight;
        if (differX && differY) {
            change_.score -= (dx > 0.0) == (dy > 0.0) ? weight : -weight;
            change_.nTied += 1.0;
        }
    }

    std::span<const double> x_;
    std::span<const double> y_;
    std::span<const double> weights_;
    PairCounts change_{};
};

}  // namespace

bool stepsAreLarge(const KendallColumn& x, const KendallColumn& y) {
    return x.smallestStep > kTieEpsilon && y.smallestStep > kTieEpsilon &&
           x.smallestStep * y.smallestStep > kTieEpsilon;
}

PairCounts countBySorting(const KendallColumn& x, const KendallColumn& y, std::span<const double> weights) {
    const Runs tiedX = tiedPairs(x.ranked, y.ranked, weights);
    const Runs tiedY = tiedPairs(y.ranked, x.ranked, weights);
    const bool isPlain = weights.empty() && x.ranked.nGroups == x.ranked.order.size();
    const auto [products, tiedBoth, discordant] =
        isPlain ? orderedByDistinct(x.ranked, y.ranked) : orderedByAny(x.ranked, y.ranked, weights);
    const std::int64_t score = products - tiedX.products - tiedY.products + tiedBoth.products - 2 * discordant;
    PairCounts counts{static_cast<double>(products - tiedX.products),
                      static_cast<double>(products - tiedY.products), static_cast<double>(score),
                      static_cast<double>(tiedX.nPairs + tiedY.nPairs - tiedBoth.nPairs)};
    if (stepsAreLarge(x, y)) return counts;
    const NearPairs nearby(x, y, weights);
    counts.untiedX += nearby.change().untiedX;
    counts.untiedY += nearby.change().untiedY;
    counts.score += nearby.change().score;
    counts.nTied += nearby.change().nTied;
    return counts;
}

PairCounts countByComparing(std::span<const double> x, std::span<const double> y,
                            std::span<const double> weights) {
    const std::size_t n = x.size();
    const PairedCells cells{x.data(), y.data(), weights.empty() ? nullptr : weights.data()};
    const std::int64_t nTasks = (static_cast<std::int64_t>(n) + kRowsOfTask - 1) / kRowsOfTask;
    std::vector<PairCounts> parts(static_cast<std::size_t>(nTasks));
    parallelFor(nTasks, n >= kParallelRows, [&](std::int64_t k) {
        // Long and short tasks in turn, so that threads with consecutive ones have the same work.
        const std::int64_t task = k % 2 == 0 ? k / 2 : nTasks - 1 - k / 2;
        const auto first = static_cast<std::size_t>(task * kRowsOfTask);
        const std::size_t end = std::min(n, first + static_cast<std::size_t>(kRowsOfTask));
        PairCounts& counts = parts[static_cast<std::size_t>(k)];
        for (std::size_t from = first + 1; from < n; from += kCellsOfTask) {
            const std::size_t to = std::min(n, from + kCellsOfTask);
            for (std::size_t i = first; i < end; ++i) {
                if (i + 1 < to) kernels().countPairs(cells, i, std::max(from, i + 1), to, counts);
            }
        }
    });
    PairCounts counts{};
    for (const PairCounts& part : parts) {
        counts.untiedX += part.untiedX;
        counts.untiedY += part.untiedY;
        counts.score += part.score;
        counts.nTied += part.nTied;
    }
    return counts;
}

}  // namespace numcore::correlation
