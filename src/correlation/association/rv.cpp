#include "correlation/association/rv.hpp"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

namespace numcore::association {
namespace {

// Observations one after another, so that a permuted one is one stretch.
struct Rows {
    std::size_t n = 0;
    std::size_t nVariables = 0;
    std::vector<double> cells;

    const double* row(std::size_t i) const { return cells.data() + i * nVariables; }
    double* row(std::size_t i) { return cells.data() + i * nVariables; }
};

bool isComplete(vmcore::ConstMatrixView table, std::int32_t i) {
    for (std::int32_t j = 0; j < table.columns; ++j) {
        if (vmcore::IsMissingValue(table(i, j)) || std::isnan(table(i, j))) return false;
    }
    return true;
}

std::vector<std::int32_t> usedRows(const RvInput& input) {
    std::vector<std::int32_t> used;
    for (std::int32_t i = 0; i < input.x.rows; ++i) {
        const bool weighs =
            input.weights.empty() || input.weights[static_cast<std::size_t>(i)] > vmcore::kWeightEpsilon;
        if (weighs && isComplete(input.x, i) && isComplete(input.y, i)) used.push_back(i);
    }
    return used;
}

Rows gather(vmcore::ConstMatrixView table, std::span<const std::int32_t> used) {
    Rows rows{used.size(), static_cast<std::size_t>(table.columns), {}};
    for (const std::int32_t i : used) {
        for (std::int32_t j = 0; j < table.columns; ++j) rows.cells.push_back(table(i, j));
    }
    return rows;
}

// Subtracts the weighted means; the shares sum to 1. The first observation goes first, which leaves a constant
// variable at 0 exactly.
void centre(Rows& rows, std::span<const double> shares) {
    const std::vector<double> start(rows.row(0), rows.row(0) + rows.nVariables);
    std::vector<double> means(rows.nVariables, 0.0);
    for (std::size_t i = 0; i < rows.n; ++i) {
        for (std::size_t j = 0; j < rows.nVariables; ++j) {
            rows.row(i)[j] -= start[j];
            means[j] += shares[i] * rows.row(i)[j];
        }
    }
    for (std::size_t i = 0; i < rows.n; ++i) {
        for (std::size_t j = 0; j < rows.nVariables; ++j) rows.row(i)[j] -= means[j];
    }
}

// Divides centred variables by their weighted deviations; a constant one stays 0.
void scaleToOne(Rows& rows, std::span<const double> shares) {
    for (std::size_t j = 0; j < rows.nVariables; ++j) {
        double variance = 0.0;
        for (std::size_t i = 0; i < rows.n; ++i) variance += shares[i] * rows.row(i)[j] * rows.row(i)[j];
        const double deviation = std::sqrt(variance);
        for (std::size_t i = 0; i < rows.n && deviation > 0.0; ++i) rows.row(i)[j] /= deviation;
    }
}

// Covariances of the variables of a with those of b permuted; an empty order leaves b as it is.
std::vector<double> crossCovariance(const Rows& a, const Rows& b, std::span<const double> shares,
                                    std::span<const std::int32_t> order) {
    std::vector<double> products(a.nVariables * b.nVariables, 0.0);
    for (std::size_t i = 0; i < a.n; ++i) {
        const double* rowB = b.row(order.empty() ? i : static_cast<std::size_t>(order[i]));
        for (std::size_t j = 0; j < a.nVariables; ++j) {
            const double cell = shares[i] * a.row(i)[j];
            double* out = products.data() + j * b.nVariables;
            for (std::size_t k = 0; k < b.nVariables; ++k) out[k] += cell * rowB[k];
        }
    }
    return products;
}

double sumOfSquares(std::span<const double> values) {
    return std::inner_product(values.begin(), values.end(), values.begin(), 0.0);
}

Rows permuted(const Rows& rows, std::span<const std::int32_t> order) {
    Rows out = rows;
    for (std::size_t i = 0; i < rows.n; ++i) {
        const double* from = rows.row(static_cast<std::size_t>(order[i]));
        std::copy(from, from + rows.nVariables, out.row(i));
    }
    return out;
}

double ratio(double both, double ownX, double ownY) {
    const double scale = std::sqrt(ownX) * std::sqrt(ownY);
    return scale > 0.0 && std::isfinite(scale) ? both / scale : kMissing;
}

// The trace of a covariance matrix squared over the sum of its squared eigenvalues.
double effectiveDimension(std::span<const double> covariance, std::size_t n) {
    double trace = 0.0;
    for (std::size_t j = 0; j < n; ++j) trace += covariance[j * n + j];
    return trace * trace / sumOfSquares(covariance);
}

}  // namespace

RvResult rvCoefficient(const RvInput& input, std::int32_t nOrders, std::int32_t seed) {
    RvResult result;
    const auto used = usedRows(input);
    result.nUsed = static_cast<std::int32_t>(used.size());
    if (used.size() < 2) return result;
    std::vector<double> shares(used.size(), 1.0);
    for (std::size_t i = 0; i < used.size() && !input.weights.empty(); ++i)
        shares[i] = input.weights[static_cast<std::size_t>(used[i])];
    const bool equalWeights =
        std::all_of(shares.begin(), shares.end(), [&](double w) { return w == shares[0]; });
    const double weight = std::accumulate(shares.begin(), shares.end(), 0.0);
    for (double& share : shares) share /= weight;

    Rows x = gather(input.x, used);
    Rows y = gather(input.y, used);
    const auto prepare = [&](Rows& rows) {
        centre(rows, shares);
        if (input.standardize) scaleToOne(rows, shares);
    };
    prepare(x);
    prepare(y);
    const auto covarianceX = crossCovariance(x, x, shares, {});
    const auto covarianceY = crossCovariance(y, y, shares, {});
    const double ownX = sumOfSquares(covarianceX);
    const double ownY = sumOfSquares(covarianceY);
    result.rv = ratio(sumOfSquares(crossCovariance(x, y, shares, {})), ownX, ownY);
    if (result.rv == kMissing) return result;
    if (equalWeights) {
        const double dimensions =
            effectiveDimension(covarianceX, x.nVariables) * effectiveDimension(covarianceY, y.nVariables);
        result.expected = std::sqrt(dimensions) / (result.nUsed - 1.0);
    }
    // Equal weights leave means and covariances of a set as they are when its observations change places.
    result.test =
        permutationTest(Orders(result.nUsed, nOrders, seed), result.nUsed, result.rv, Side::kUpper,
                        [&](std::span<const std::int32_t> order) {
                            if (equalWeights)
                                return ratio(sumOfSquares(crossCovariance(x, y, shares, order)), ownX, ownY);
                            Rows moved = permuted(y, order);
                            prepare(moved);
                            return ratio(sumOfSquares(crossCovariance(x, moved, shares, {})), ownX,
                                         sumOfSquares(crossCovariance(moved, moved, shares, {})));
                        });
    return result;
}

}  // namespace numcore::association
