#include "correlation/association/mantel.hpp"

#include <cmath>
#include <numeric>
#include <vector>

namespace numcore::association {
namespace {

constexpr double kNoSpread = 1e-12;

bool isPresent(double cell) {
    return !vmcore::IsMissingValue(cell) && !std::isnan(cell);
}

// The cells below the diagonal as a full symmetric matrix, row after row, so that a permuted row is one
// stretch; an absent cell is the missing value, and the diagonal too.
class Pairs {
  public:
    explicit Pairs(std::int32_t n) : n_(static_cast<std::size_t>(n)), cells_(n_ * n_, kMissing) {}

    explicit Pairs(vmcore::ConstMatrixView matrix) : Pairs(matrix.rows) {
        for (std::int32_t j = 0; j < matrix.columns; ++j) {
            for (std::int32_t i = j + 1; i < matrix.rows; ++i) {
                if (isPresent(matrix(i, j)))
                    set(static_cast<std::size_t>(i), static_cast<std::size_t>(j), matrix(i, j));
            }
        }
    }

    std::size_t n() const { return n_; }
    const double* row(std::size_t i) const { return cells_.data() + i * n_; }
    void set(std::size_t i, std::size_t j, double value) { cells_[i * n_ + j] = cells_[j * n_ + i] = value; }

    template <class Change>
    void forEach(const Change& change) const {
        for (std::size_t i = 1; i < n_; ++i) {
            for (std::size_t j = 0; j < i; ++j) change(i, j, row(i)[j]);
        }
    }

  private:
    std::size_t n_;
    std::vector<double> cells_;
};

Pairs ranked(const Pairs& pairs) {
    std::vector<double> cells;
    pairs.forEach([&](std::size_t, std::size_t, double cell) { cells.push_back(cell); });
    std::vector<double> ranks(cells.size());
    vmcore::V_GetRanksTies(cells, {}, ranks);
    Pairs out(static_cast<std::int32_t>(pairs.n()));
    auto next = ranks.begin();
    pairs.forEach([&](std::size_t i, std::size_t j, double) { out.set(i, j, *next++); });
    return out;
}

// Takes out the pairs that are not present in all three.
void keepCommon(Pairs& a, Pairs& b, Pairs& control) {
    for (std::size_t i = 1; i < a.n(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            if (isPresent(a.row(i)[j]) && isPresent(b.row(i)[j]) && isPresent(control.row(i)[j])) continue;
            for (Pairs* pairs : {&a, &b, &control}) pairs->set(i, j, kMissing);
        }
    }
}

struct Moments {
    double n = 0.0;
    double meanA = 0.0;
    double meanB = 0.0;
    double squaresA = 0.0;
    double squaresB = 0.0;
    double products = 0.0;

    double rho() const {
        const double scale = squaresA * squaresB;
        return scale > 0.0 ? products / std::sqrt(scale) : std::nan("");
    }
};

// Moments of a and the permuted b over the pairs present in both. Sums of cells are taken from a first cell on,
// so that equal cells leave no squares behind.
Moments momentsOf(const Pairs& a, const Pairs& b, std::span<const std::int32_t> order) {
    Moments sums;
    const auto overPairs = [&](const auto& add) {
        for (std::size_t i = 1; i < a.n(); ++i) {
            const double* rowA = a.row(i);
            const double* rowB = b.row(static_cast<std::size_t>(order[i]));
            for (std::size_t j = 0; j < i; ++j) {
                const double cellB = rowB[static_cast<std::size_t>(order[j])];
                if (!vmcore::IsMissingValue(rowA[j]) && !vmcore::IsMissingValue(cellB)) add(rowA[j], cellB);
            }
        }
    };
    double firstA = 0.0;
    double firstB = 0.0;
    overPairs([&](double cellA, double cellB) {
        if (sums.n == 0.0) {
            firstA = cellA;
            firstB = cellB;
        }
        sums.n += 1.0;
        sums.meanA += cellA - firstA;
        sums.meanB += cellB - firstB;
    });
    sums.meanA = firstA + sums.meanA / sums.n;
    sums.meanB = firstB + sums.meanB / sums.n;
    overPairs([&](double cellA, double cellB) {
        sums.squaresA += (cellA - sums.meanA) * (cellA - sums.meanA);
        sums.squaresB += (cellB - sums.meanB) * (cellB - sums.meanB);
        sums.products += (cellA - sums.meanA) * (cellB - sums.meanB);
    });
    return sums;
}

// Sum of products of two complete matrices.
double productsOf(const Pairs& a, const Pairs& b, std::span<const std::int32_t> order) {
    double sum = 0.0;
    for (std::size_t i = 1; i < a.n(); ++i) {
        const double* rowA = a.row(i);
        const double* rowB = b.row(static_cast<std::size_t>(order[i]));
        double rowSum = 0.0;
        for (std::size_t j = 0; j < i; ++j) rowSum += rowA[j] * rowB[static_cast<std::size_t>(order[j])];
        sum += rowSum;
    }
    return sum;
}

std::vector<std::int32_t> givenOrder(std::size_t n) {
    std::vector<std::int32_t> order(n);
    std::iota(order.begin(), order.end(), 0);
    return order;
}

// What is left of `of` after its regression on `control` over the pairs present in both; false when nothing is.
bool takeResiduals(Pairs& of, const Pairs& control) {
    const auto order = givenOrder(of.n());
    const Moments sums = momentsOf(control, of, order);
    const double slope = sums.squaresA > 0.0 ? sums.products / sums.squaresA : 0.0;
    const double left = sums.squaresB - slope * sums.products;
    for (std::size_t i = 1; i < of.n(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            if (!vmcore::IsMissingValue(of.row(i)[j]))
                of.set(i, j, of.row(i)[j] - sums.meanB - slope * (control.row(i)[j] - sums.meanA));
        }
    }
    return left > kNoSpread * sums.squaresB;
}

void subtract(Pairs& from, double mean) {
    for (std::size_t i = 1; i < from.n(); ++i) {
        for (std::size_t j = 0; j < i; ++j) from.set(i, j, from.row(i)[j] - mean);
    }
}

PermutationResult test(Pairs& a, Pairs& b, const Moments& given, const Orders& orders, Side side) {
    const auto n = static_cast<std::int32_t>(a.n());
    const std::size_t nAll = a.n() * (a.n() - 1) / 2;
    if (given.n < static_cast<double>(nAll)) {
        return permutationTest(orders, n, given.rho(), side, [&](std::span<const std::int32_t> order) {
            return momentsOf(a, b, order).rho();
        });
    }
    // Complete matrices keep their moments: only the products change.
    subtract(a, given.meanA);
    subtract(b, given.meanB);
    const double scale = std::sqrt(given.squaresA * given.squaresB);
    return permutationTest(orders, n, given.rho(), side, [&](std::span<const std::int32_t> order) {
        return productsOf(a, b, order) / scale;
    });
}

}  // namespace

double mantelSum(vmcore::ConstMatrixView a, vmcore::ConstMatrixView b, std::span<const std::int32_t> order,
                 std::int64_t& nUsed) {
    double sum = 0.0;
    nUsed = 0;
    for (std::int32_t j = 0; j < a.columns; ++j) {
        for (std::int32_t i = j + 1; i < a.rows; ++i) {
            const std::int32_t toI = order[static_cast<std::size_t>(i)];
            const std::int32_t toJ = order[static_cast<std::size_t>(j)];
            // Below the diagonal, wherever the permutation puts the pair.
            const double cellB = toI > toJ ? b(toI, toJ) : b(toJ, toI);
            if (!isPresent(a(i, j)) || !isPresent(cellB)) continue;
            sum += a(i, j) * cellB;
            ++nUsed;
        }
    }
    return nUsed > 0 && std::isfinite(sum) ? sum : kMissing;
}

MantelResult mantelTest(const MantelInput& input, bool byRanks, const Orders& orders, Side side) {
    MantelResult result;
    const bool isPartial = input.control.data != nullptr;
    Pairs a(input.a);
    Pairs b(input.b);
    Pairs control = isPartial ? Pairs(input.control) : Pairs(0);
    if (isPartial) keepCommon(a, b, control);
    if (byRanks) {
        a = ranked(a);
        b = ranked(b);
        if (isPartial) control = ranked(control);
    }
    const auto order = givenOrder(a.n());
    result.z = mantelSum(input.a, input.b, order, result.nPairs);
    bool hasSpread = true;
    if (isPartial) hasSpread = takeResiduals(a, control) && takeResiduals(b, control);
    const Moments given = momentsOf(a, b, order);
    result.nPairs = static_cast<std::int64_t>(given.n);
    const double rho = given.rho();
    if (!hasSpread || !std::isfinite(rho)) return result;
    result.rho = std::fmin(1.0, std::fmax(-1.0, rho));
    result.test = test(a, b, given, orders, side);
    return result;
}

}  // namespace numcore::association
