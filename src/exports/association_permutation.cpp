// Doors of the RV coefficient and the Mantel test.

#include <algorithm>
#include <numeric>
#include <vector>

#include "correlation/association/mantel.hpp"
#include "correlation/association/rv.hpp"
#include "exports/association_input.hpp"
#include "frame/entry_frame.hpp"
#include "numcore/association.h"
#include "suite/rngcore.hpp"

namespace inside = numcore::association;

using inside::cellsAt;
using numcore::isTrue;
using numcore::kMissing;
using numcore::vmcore::ConstMatrixView;

namespace {

constexpr ST_RVOptions kPlainRV = {0, 0, NUMCORE_TRUE, NUMCORE_FALSE, 0};
constexpr ST_MantelOptions kPlainMantel = {0, 0, NUMCORE_TRUE, NUMCORE_FALSE, 1};

template <class Options>
std::int32_t seedOf(const Options& options) {
    if (options.nPermutations < 1) return options.seed;
    return isTrue(options.seedGiven) ? options.seed : numcore::rngcore::chooseSeed();
}

double rvOf(const inside::RvInput& input, const ST_RVOptions& options, ST_RVResult* out) {
    const std::int32_t seed = seedOf(options);
    const inside::RvResult found = inside::rvCoefficient(input, options.nPermutations, seed);
    if (out != nullptr) {
        *out = {found.rv,
                found.expected,
                found.test.pValue,
                static_cast<std::int32_t>(found.test.nOrders),
                found.nUsed,
                seed,
                static_cast<std::int16_t>(found.test.complete ? NUMCORE_TRUE : NUMCORE_FALSE),
                0};
    }
    return found.rv;
}

// The first n cells of each column of a table, one column after the other.
std::vector<double> columnsOf(const numcore::cST_MVect<double>& table, std::int32_t n) {
    std::vector<double> cells;
    for (std::int32_t c = 0; c < table.columnCount(); ++c) {
        const auto column = table.cells(c);
        const std::size_t nTaken = std::min(column.size(), static_cast<std::size_t>(n));
        cells.insert(cells.end(), column.begin(), column.begin() + static_cast<std::ptrdiff_t>(nTaken));
        cells.resize(static_cast<std::size_t>(c + 1) * static_cast<std::size_t>(n), kMissing);
    }
    return cells;
}

bool isPermutation(std::span<const std::int32_t> order) {
    std::vector<bool> seen(order.size(), false);
    for (const std::int32_t i : order) {
        if (i < 0 || static_cast<std::size_t>(i) >= order.size() || seen[static_cast<std::size_t>(i)])
            return false;
        seen[static_cast<std::size_t>(i)] = true;
    }
    return true;
}

}  // namespace

double RVcoefficient(const double* x, int32_t n, int32_t p, const double* y, int32_t q, const double* weights,
                     const ST_RVOptions* options, ST_RVResult* result) {
    const bool readable = x != nullptr && y != nullptr && n >= 1 && p >= 1 && q >= 1;
    const ST_RVOptions& chosen = options == nullptr ? kPlainRV : *options;
    inside::RvInput input;
    if (readable) input = {{x, n, p}, {y, n, q}, cellsAt(weights, n), isTrue(chosen.standardize)};
    return rvOf(input, chosen, result);
}

double Cpp_RVcoefficient(const double* x, int32_t n, int32_t p, const double* y, int32_t q,
                         const double* weights, const ST_RVOptions* options, ST_RVResult* result) {
    return RVcoefficient(x, n, p, y, q, weights, options, result);
}

double ComputeRV(const double* x, int32_t n, int32_t p, const double* y, int32_t q) {
    return RVcoefficient(x, n, p, y, q, nullptr, nullptr, nullptr);
}

int32_t Cpp_RV_Compute(ST_DataSet* data, const ST_RVOptions* options, ST_RVResult* result) {
    if (data == nullptr || result == nullptr) return -1;
    const numcore::cST_DataSet set(data);
    const auto& first = *set.numeric1;
    const auto& second = *set.numeric2;
    const std::int32_t n = first.rowCount();
    if (first.columnCount() < 1 || second.columnCount() < 1 || n < 1 || second.rowCount() != n) return -1;
    const auto x = columnsOf(first, n);
    const auto y = columnsOf(second, n);
    // Rows beyond the weights have none.
    const auto given = set.observationWeights();
    std::vector<double> weights(given.begin(), given.end());
    if (!weights.empty()) weights.resize(static_cast<std::size_t>(n), 0.0);
    if (isTrue(set.rowMarksPresent)) {
        if (weights.empty()) weights.assign(static_cast<std::size_t>(n), 1.0);
        for (std::int32_t i = 0; i < n; ++i) {
            if (set.isMarked(i)) weights[static_cast<std::size_t>(i)] = 0.0;
        }
    }
    const double rv = RVcoefficient(x.data(), n, first.columnCount(), y.data(), second.columnCount(),
                                    weights.empty() ? nullptr : weights.data(), options, result);
    return rv == kMissing ? -2 : 0;
}

double GetZMantel(const double* a, const double* b, int32_t n, const int32_t* order) {
    if (a == nullptr || b == nullptr || n < 2) return kMissing;
    std::vector<std::int32_t> places(static_cast<std::size_t>(n));
    std::iota(places.begin(), places.end(), 0);
    if (order != nullptr) std::copy(order, order + n, places.begin());
    if (!isPermutation(places)) return kMissing;
    std::int64_t nUsed = 0;
    return inside::mantelSum({a, n, n}, {b, n, n}, places, nUsed);
}

int32_t RunMantelTest(const double* a, const double* b, int32_t n, const ST_MantelOptions* options,
                      ST_MantelResult* result) {
    return cRunMantelTest(a, b, nullptr, n, options, result);
}

int32_t cRunMantelTest(const double* a, const double* b, const double* control, int32_t n,
                       const ST_MantelOptions* options, ST_MantelResult* result) {
    if (a == nullptr || b == nullptr || result == nullptr || n < 2) return -1;
    const ST_MantelOptions& chosen = options == nullptr ? kPlainMantel : *options;
    const std::int32_t seed = seedOf(chosen);
    const inside::MantelInput input{
        {a, n, n}, {b, n, n}, control == nullptr ? ConstMatrixView() : ConstMatrixView(control, n, n)};
    const inside::MantelResult found =
        inside::mantelTest(input, isTrue(chosen.ranks), inside::Orders(n, chosen.nPermutations, seed),
                           inside::sideOfCode(chosen.alternative));
    *result = {found.z,
               found.rho,
               found.test.pValue,
               found.nPairs,
               static_cast<std::int32_t>(found.test.nOrders),
               seed,
               static_cast<std::int16_t>(found.test.complete ? NUMCORE_TRUE : NUMCORE_FALSE),
               {0, 0, 0}};
    return found.rho == kMissing ? -2 : 0;
}
