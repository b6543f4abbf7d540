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

/// Sum of products of the weights of all pairs within groups of observations.
struct Runs {
    std::int64_t products = 0;
    std::int64_t nPairs = 0;
};

/// A group of observations as it grows.
class Run {
  public:
    void add(std::int64_t weight) {
        products_ += sum_ * weight;
        sum_ += weight;
        size_ += 1;
    }
    void addTo(Runs& runs) const {
        runs.products += products_;
        runs.nPairs += size_ * (size_ - 1) / 2;
    }

  private:
    std::int64_t products_ = 0;
    std::int64_t sum_ = 0;
    std::int64_t size_ = 0;
};

std::int64_t countWeight(std::span<const double> weights, std::uint32_t row) {
    return weights.empty() ? 1 : static_cast<std::int64_t>(weights[row]);
}

/// Pairs of observations that are equal in a column, of those where the other one is present too.
Runs tiedPairs(const RankedColumn& column, const RankedColumn& other, std::span<const double> weights) {
    Runs tied;
    if (!column.hasTies()) return tied;
    forEachGroup(column, [&](std::span<const std::uint32_t> rows) {
        if (rows.size() < 2) return;
        Run run;
        for (const std::uint32_t row : rows) {
            if (other.has(row)) run.add(countWeight(weights, row));
        }
        run.addTo(tied);
    });
    return tied;
}

/// Observations where both columns are present, ordered by x, then y.
template <class Item>
struct Ordered {
    std::vector<Item> items;
    std::vector<std::size_t> ends;  ///< of the distinct values of x; empty when none has more than one item
};

/// A value of x after the other; those that are equal are sorted by y.
template <class Item, class ItemOf>
Ordered<Item> orderedByRuns(const RankedColumn& x, const RankedColumn& y, ItemOf itemOf) {
    Ordered<Item> found;
    found.items.reserve(x.order.size());
    if (x.hasTies()) found.ends.reserve(x.nGroups);
    forEachGroup(x, [&](std::span<const std::uint32_t> rows) {
        const auto first = std::ssize(found.items);
        for (const std::uint32_t row : rows) {
            if (y.has(row)) found.items.push_back(itemOf(row));
        }
        if (!x.hasTies()) return;
        if (rows.size() > 1) {
            std::sort(found.items.begin() + first, found.items.end(),
                      [](const Item& a, const Item& b) { return yOf(a) < yOf(b); });
        }
        found.ends.push_back(found.items.size());
    });
    return found;
}

/// Counting sort by x of what is in the order of y.
template <class Item, class ItemOf>
Ordered<Item> orderedByCounting(const RankedColumn& x, const RankedColumn& y, ItemOf itemOf) {
    Ordered<Item> found;
    std::vector<std::size_t> places(std::size_t{x.nGroups} + 1, 0);
    for (const std::uint32_t row : y.order) {
        if (x.has(row)) ++places[x.group[row] + 1];
    }
    for (std::size_t g = 1; g < places.size(); ++g) places[g] += places[g - 1];
    found.items.resize(places.back());
    for (const std::uint32_t row : y.order) {
        if (x.has(row)) found.items[places[x.group[row]]++] = itemOf(row);
    }
    places.pop_back();
    found.ends = std::move(places);
    return found;
}

template <class Item>
Runs tiedInBoth(const Ordered<Item>& ordered) {
    Runs tied;
    std::size_t first = 0;
    for (const std::size_t end : ordered.ends) {
        while (first < end) {
            const std::uint32_t place = yOf(ordered.items[first]);
            Run run;
            for (; first < end && yOf(ordered.items[first]) == place; ++first)
                run.add(weightOf(ordered.items[first]));
            run.addTo(tied);
        }
    }
    return tied;
}

/// What the observations in the order of x tell.
struct Found {
    std::int64_t products = 0;  ///< of all pairs
    Runs tiedBoth;
    std::int64_t discordant = 0;
};

template <class Item, class ItemOf>
Found lookInOrder(const RankedColumn& x, const RankedColumn& y, ItemOf itemOf) {
    const bool isMostlyDistinct = x.nGroups > x.order.size() / 2;
    Ordered<Item> ordered =
        isMostlyDistinct ? orderedByRuns<Item>(x, y, itemOf) : orderedByCounting<Item>(x, y, itemOf);
    Run all;
    for (const Item& item : ordered.items) all.add(weightOf(item));
    Runs products;
    all.addTo(products);
    const Runs tiedBoth = tiedInBoth(ordered);
    return {products.products, tiedBoth, Inversions<Item>::count(ordered.items, y.nGroups)};
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
    const auto& yGroup = y.ranked.group;
    const auto [products, tiedBoth, discordant] =
        weights.empty()
            ? lookInOrder<std::uint32_t>(x.ranked, y.ranked, [&](std::uint32_t row) { return yGroup[row]; })
            : lookInOrder<WeightedPlace>(x.ranked, y.ranked, [&](std::uint32_t row) {
                  return WeightedPlace{yGroup[row], countWeight(weights, row)};
              });
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
