// Sums of all pairs come from products of blocks, around the means of the columns. Updating, which the single
// pair does, takes over where that could lose digits or differ: weights that are not plain, cells that are not
// finite, pairs whose means lie far from those of their columns, and coefficients next to 1, whose p-value
// depends on the side to which they are rounded.

#include "correlation/pearson_matrix.hpp"

#include <bit>
#include <cmath>

#include "correlation/cross_sums.hpp"
#include "suite/parallel.hpp"
#include "suite/vmcore.hpp"

namespace numcore::correlation {
namespace {

constexpr double kNextToOne = 1.0 - 1e-12;
constexpr double kMostLost = 0.9;    // share of a sum of squares that centring the pair may take away
constexpr double kFewMissing = 0.5;  // share of the rows
constexpr double kLeastLeft = 0.01;  // share of a column's sum of squares that its pair must keep

/// What a column misses.
enum class Missing { kNone, kFew, kMany };

/// What the pairs of a column share.
struct Profile {
    double centre = 0.0;
    double rest = 0.0;     ///< mean less centre
    double squares = 0.0;  ///< of the deviations from the mean
    double weight = 0.0;   ///< of the cells
    Missing missing = Missing::kNone;
    bool isPlain = true;                 ///< all numbers
    std::vector<std::uint64_t> present;  ///< a bit a row, where pairs have to be counted
};

bool arePlain(std::span<const double> weights) {
    return std::all_of(weights.begin(), weights.end(),
                       [](double w) { return w == 0.0 || (w > vmcore::kWeightEpsilon && std::isfinite(w)); });
}

double sumOf(std::span<const double> weights, std::size_t n) {
    return weights.empty() ? static_cast<double>(n) : vmcore::V_Sum2(weights);
}

std::int64_t countBoth(const Profile& x, const Profile& y) {
    std::int64_t n = 0;
    for (std::size_t i = 0; i < x.present.size(); ++i) n += std::popcount(x.present[i] & y.present[i]);
    return n;
}

Profile profileOf(std::span<const double> cells, const vmcore::Summary& summary, bool weighted) {
    Profile profile;
    const auto nRows = static_cast<double>(cells.size());
    if (summary.nMissing > 0) {
        profile.missing =
            static_cast<double>(summary.nMissing) <= kFewMissing * nRows ? Missing::kFew : Missing::kMany;
    }
    profile.squares = summary.sumSquares;
    profile.weight = summary.weight;
    profile.isPlain = summary.nUsed == 0 || (std::isfinite(summary.mean) && std::isfinite(summary.sumSquares));
    if (summary.nUsed > 0) profile.centre = summary.mean;
    if (isConstant(cells)) {
        // Its deviations are 0 then, also where the mean is rounded.
        const auto found = std::find_if(cells.begin(), cells.end(), [](double x) { return x != kMissing; });
        profile.centre = found == cells.end() ? 0.0 : *found;
    } else if (summary.nUsed > 0) {
        profile.rest = summary.meanLost;
    }
    if (weighted && profile.missing != Missing::kNone) profile.present = presenceBits(cells);
    return profile;
}

/// A set of columns with their profiles, and those of them that the products of blocks serve.
class Side {
  public:
    explicit Side(const Table& table) : columns_(table, false), profiles_(columns_.size()) {
        plainWeights_ = arePlain(columns_.weights());
        if (!plainWeights_) return;
        std::vector<vmcore::ColumnView> views;
        for (std::size_t c = 0; c < columns_.size(); ++c) views.push_back({columns_[c], columns_.weights()});
        std::vector<vmcore::Summary> summaries(views.size());
        vmcore::summarizeColumns(views, summaries);
        parallelFor(std::ssize(views), columns_.nRows() * views.size() > kParallelFrom, [&](std::int64_t i) {
            const auto c = static_cast<std::size_t>(i);
            profiles_[c] = profileOf(columns_[c], summaries[c], !columns_.weights().empty());
        });
    }

    const SelectedColumns& columns() const { return columns_; }
    const Profile& profile(std::size_t c) const { return profiles_[c]; }
    bool isPlain(std::size_t c) const { return plainWeights_ && profiles_[c].isPlain; }

    std::vector<std::size_t> plainColumns(Missing missing) const {
        std::vector<std::size_t> found;
        for (std::size_t c = 0; c < profiles_.size(); ++c) {
            if (isPlain(c) && profiles_[c].missing == missing) found.push_back(c);
        }
        return found;
    }

    std::vector<CentredColumn> centred(const std::vector<std::size_t>& which) const {
        std::vector<CentredColumn> found;
        found.reserve(which.size());
        for (const std::size_t c : which) {
            const Profile& profile = profiles_[c];
            found.push_back({columns_[c], profile.centre, profile.weight, profile.rest});
        }
        return found;
    }

    /// Of pairs with columns that have missing cells, complete ones are counted as such.
    void countPresence() {
        for (std::size_t c = 0; c < profiles_.size(); ++c) {
            if (profiles_[c].present.empty()) profiles_[c].present = presenceBits(columns_[c]);
        }
    }

  private:
    SelectedColumns columns_;
    std::vector<Profile> profiles_;
    bool plainWeights_ = false;
};

PairSums completeSums(std::span<const double> sums, const Profile& x, const Profile& y, std::size_t n,
                      double weight) {
    return {static_cast<std::int64_t>(n), weight, sums[0] - weight * (x.rest * x.rest),
            sums[1] - weight * (y.rest * y.rest), sums[2] - weight * (x.rest * y.rest)};
}

PairSums maskedSums(std::span<const double> sums, std::int64_t nPairs) {
    const double weight = sums[0];
    if (!(weight > 0.0)) return {nPairs, weight, 0.0, 0.0, 0.0};
    return {nPairs, weight, sums[3] - sums[1] * (sums[1] / weight), sums[4] - sums[2] * (sums[2] / weight),
            sums[5] - sums[1] * (sums[2] / weight)};
}

bool hasLost(double centred, double raw) {
    return raw > 0.0 && !(centred >= (1.0 - kMostLost) * raw);
}

/// Whether a coefficient so near to 1 could be rounded to the other side.
bool isNextToOne(const PairSums& sums) {
    if (sums.xx == sums.yy && std::abs(sums.xy) == sums.xx) return false;
    return std::abs(sums.xy) > kNextToOne * std::sqrt(sums.xx) * std::sqrt(sums.yy);
}

bool isFinite(const PairSums& sums) {
    return std::isfinite(sums.xx) && std::isfinite(sums.yy) && std::isfinite(sums.xy);
}

/// All pairs of two sides; the same side twice for the pairs of one table.
class Matrix {
  public:
    Matrix(const Side& first, const Side& second, bool symmetric, const PearsonOptions& options,
           const Store& store)
        : first_(first), second_(second), symmetric_(symmetric), options_(options), store_(store) {
        weight_ = sumOf(weights(), first.columns().nRows());
    }

    void run() const {
        constexpr Missing kAll[] = {Missing::kNone, Missing::kFew, Missing::kMany};
        for (const Missing first : kAll) {
            for (const Missing second : kAll) {
                if (!symmetric_ || first <= second) runBlocks(first, second);
            }
        }
        runRest();
    }

  private:
    std::span<const double> weights() const { return first_.columns().weights(); }

    void runBlocks(Missing first, Missing second) const {
        const auto rows = first_.plainColumns(first);
        const auto columns = second_.plainColumns(second);
        const auto firstCells = first_.centred(rows);
        const auto secondCells = second_.centred(columns);
        const ColumnPairs pairs{firstCells, secondCells, symmetric_ && first == second, weights()};
        const Missing most = std::max(first, second);
        if (most == Missing::kNone) {
            forEachCompletePair(pairs, [&](std::size_t a, std::size_t b, std::span<const double> sums) {
                storeComplete(rows[a], columns[b], sums);
            });
        } else if (most == Missing::kFew) {
            forEachNearlyCompletePair(pairs, [&](std::size_t a, std::size_t b, std::span<const double> sums) {
                const bool isLost = sums[3] < kLeastLeft * first_.profile(rows[a]).squares ||
                                    sums[4] < kLeastLeft * second_.profile(columns[b]).squares;
                storeMasked(rows[a], columns[b], sums, isLost);
            });
        } else {
            forEachMaskedPair(pairs, [&](std::size_t a, std::size_t b, std::span<const double> sums) {
                storeMasked(rows[a], columns[b], sums, false);
            });
        }
    }

    void storeComplete(std::size_t i, std::size_t j, std::span<const double> sums) const {
        const PairSums found =
            completeSums(sums, first_.profile(i), second_.profile(j), first_.columns().nRows(), weight_);
        storeSums(i, j, found, isNextToOne(found));
    }

    /// isLost: digits of the sums are lost already.
    void storeMasked(std::size_t i, std::size_t j, std::span<const double> sums, bool isLost) const {
        const auto nPairs = weights().empty() ? static_cast<std::int64_t>(sums[0])
                                              : countBoth(first_.profile(i), second_.profile(j));
        const PairSums found = maskedSums(sums, nPairs);
        storeSums(i, j, found,
                  isLost || hasLost(found.xx, sums[3]) || hasLost(found.yy, sums[4]) || isNextToOne(found));
    }

    void storeSums(std::size_t i, std::size_t j, const PairSums& sums, bool isDoubtful) const {
        if (isDoubtful || !isFinite(sums)) return storeUpdated(i, j);
        put(i, j, pearsonOfSums(sums, options_));
    }

    void storeUpdated(std::size_t i, std::size_t j) const {
        put(i, j, pearsonPair(first_.columns()[i], second_.columns()[j], {weights(), {}}, options_));
    }

    void put(std::size_t i, std::size_t j, const Coefficient& found) const {
        if (symmetric_ && i > j) std::swap(i, j);
        store_(i, j, found);
    }

    void runRest() const {
        const bool isLarge = first_.columns().nRows() * second_.columns().size() > kParallelFrom;
        parallelFor(static_cast<std::int64_t>(first_.columns().size()), isLarge, [&](std::int64_t row) {
            const auto i = static_cast<std::size_t>(row);
            for (std::size_t j = symmetric_ ? i : 0; j < second_.columns().size(); ++j) {
                if (!first_.isPlain(i) || !second_.isPlain(j)) storeUpdated(i, j);
            }
        });
    }

    const Side& first_;
    const Side& second_;
    bool symmetric_;
    PearsonOptions options_;
    const Store& store_;
    double weight_;
};

}  // namespace

void pearsonMatrix(const Table& first, const Table* second, const PearsonOptions& options, const Store& store) {
    Side rows(first);
    const auto countIfWeighted = [](Side& side) {
        if (!side.columns().weights().empty()) side.countPresence();
    };
    countIfWeighted(rows);
    if (second == nullptr) {
        Matrix(rows, rows, true, options, store).run();
        return;
    }
    Side columns({second->columns, first.nRows, first.rows});
    countIfWeighted(columns);
    Matrix(rows, columns, false, options, store).run();
}

}  // namespace numcore::correlation
