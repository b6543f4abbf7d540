#include "correlation/concordance.hpp"

#include <algorithm>
#include <cmath>

#include "suite/parallel.hpp"

namespace numcore::correlation {
namespace {

constexpr std::int64_t kRowsOfTask = 64;
constexpr std::size_t kCellsOfTask = 2048;
constexpr std::size_t kParallelRows = 512;

/// An observation by the places of its values.
struct Place {
    std::uint32_t x;
    std::uint32_t y;
    std::int64_t weight;
};

std::int64_t weightOf(const Place& place) {
    return place.weight;
}
std::int64_t weightOf(std::uint32_t /*place*/) {
    return 1;
}
std::uint32_t yOf(const Place& place) {
    return place.y;
}
std::uint32_t yOf(std::uint32_t place) {
    return place;
}

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

template <class Item, class Same>
Runs pairsWithinRuns(std::span<const Item> ordered, Same same) {
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

/// Sorts items by y and returns the weight of the pairs that were out of order.
template <class Item>
class Inversions {
  public:
    explicit Inversions(std::vector<Item>& items) : items_(items), spare_(items.size()) {}

    std::int64_t sort() {
        const std::size_t n = items_.size();
        const auto comesBefore = [](const Item& a, const Item& b) { return yOf(a) < yOf(b); };
        if (std::is_sorted(items_.begin(), items_.end(), comesBefore)) return 0;  // as a column with itself
        std::int64_t inverted = 0;
        for (std::size_t first = 0; first < n; first += kRun)
            inverted += insert(first, std::min(n, first + kRun));
        for (std::size_t width = kRun; width < n; width *= 2) {
            for (std::size_t first = 0; first < n; first += 2 * width) {
                inverted += merge(first, std::min(n, first + width), std::min(n, first + 2 * width));
            }
            items_.swap(spare_);
        }
        return inverted;
    }

  private:
    static constexpr std::size_t kRun = 8;

    std::int64_t insert(std::size_t first, std::size_t end) {
        std::int64_t inverted = 0;
        for (std::size_t i = first + 1; i < end; ++i) {
            const Item moved = items_[i];
            std::size_t j = i;
            for (; j > first && yOf(items_[j - 1]) > yOf(moved); --j) {
                inverted += weightOf(moved) * weightOf(items_[j - 1]);
                items_[j] = items_[j - 1];
            }
            items_[j] = moved;
        }
        return inverted;
    }

    // Without a branch in the loop: which side comes next is not to be foreseen.
    std::int64_t merge(std::size_t first, std::size_t middle, std::size_t end) {
        const Item* left = items_.data() + first;
        const Item* const leftEnd = items_.data() + middle;
        const Item* right = leftEnd;
        const Item* const rightEnd = items_.data() + end;
        Item* out = spare_.data() + first;
        std::int64_t remaining = 0;
        for (const Item* item = left; item != leftEnd; ++item) remaining += weightOf(*item);
        std::int64_t inverted = 0;
        while (left != leftEnd && right != rightEnd) {
            const Item a = *left;
            const Item b = *right;
            const bool takeRight = yOf(b) < yOf(a);
            *out++ = takeRight ? b : a;
            const std::int64_t chosen = -std::int64_t{takeRight};
            inverted += (remaining * weightOf(b)) & chosen;
            remaining -= weightOf(a) & ~chosen;
            right += takeRight ? 1 : 0;
            left += takeRight ? 0 : 1;
        }
        out = std::copy(left, leftEnd, out);
        std::copy(right, rightEnd, out);
        return inverted;
    }

    std::vector<Item>& items_;
    std::vector<Item> spare_;
};

struct SortedCounts {
    std::int64_t discordant;
    Runs tiedY;
};

template <class Item>
SortedCounts sortByY(std::vector<Item> items) {
    const std::int64_t discordant = Inversions<Item>(items).sort();
    const auto same = [](const Item& a, const Item& b) { return yOf(a) == yOf(b); };
    return {discordant, pairsWithinRuns<Item>(items, same)};
}

/// Observations of unit weight need no more than their places.
std::vector<std::uint32_t> placesInY(const std::vector<Place>& places) {
    std::vector<std::uint32_t> found(places.size());
    std::transform(places.begin(), places.end(), found.begin(), [](const Place& place) { return place.y; });
    return found;
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
    const std::vector<Place> places = orderedPlaces(x.ranked, y.ranked, weights);
    const auto sameX = [](const Place& a, const Place& b) { return a.x == b.x; };
    const auto same = [](const Place& a, const Place& b) { return a.x == b.x && a.y == b.y; };
    const Runs all = pairsWithinRuns<Place>(places, [](const Place&, const Place&) { return true; });
    const Runs tiedX = pairsWithinRuns<Place>(places, sameX);
    const Runs tiedBoth = pairsWithinRuns<Place>(places, same);
    const auto [discordant, tiedY] = weights.empty() ? sortByY(placesInY(places)) : sortByY(places);
    const std::int64_t score =
        all.products - tiedX.products - tiedY.products + tiedBoth.products - 2 * discordant;
    PairCounts counts{static_cast<double>(all.products - tiedX.products),
                      static_cast<double>(all.products - tiedY.products), static_cast<double>(score),
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
