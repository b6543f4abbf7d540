#include "correlation/association/polychoric_cells.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "distributions/laws/normal_tail.hpp"
#include "numcore/noncentral_laws.h"

namespace numcore::association {
namespace {

using distributions::normalDensity;
using distributions::normalLowerTail;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// Smaller probabilities are rounding.
constexpr double kSmallestCell = 1e-18;
// Differences of lower orthants lose digits below: such cells are seen from the corner nearest to them.
constexpr double kFewDigits = 1e-3;

std::vector<double> withEnds(std::span<const double> thresholds) {
    std::vector<double> limits;
    limits.reserve(thresholds.size() + 2);
    limits.push_back(-kInfinity);
    limits.insert(limits.end(), thresholds.begin(), thresholds.end());
    limits.push_back(kInfinity);
    return limits;
}

// Second differences of a function over the grid of limits: one value per cell, column-major.
template <class Corner>
std::vector<double> overCells(std::span<const double> rows, std::span<const double> columns,
                              const Corner& corner) {
    const std::size_t nRows = rows.size() - 1;
    std::vector<double> left(rows.size());
    std::vector<double> right(rows.size());
    std::vector<double> cells;
    cells.reserve(nRows * (columns.size() - 1));
    for (std::size_t i = 0; i < rows.size(); ++i) left[i] = corner(rows[i], columns[0]);
    for (std::size_t j = 1; j < columns.size(); ++j) {
        for (std::size_t i = 0; i < rows.size(); ++i) right[i] = corner(rows[i], columns[j]);
        for (std::size_t i = 0; i < nRows; ++i)
            cells.push_back((right[i + 1] - right[i]) - (left[i + 1] - left[i]));
        left.swap(right);
    }
    return cells;
}

// Probability of a cell as a difference of orthants, of the four directions the one of the smallest orthants.
double cellFromCorner(double lowX, double highX, double lowY, double highY, double rho) {
    double smallest = kInfinity;
    double probability = 0.0;
    for (const double signX : {1.0, -1.0}) {
        for (const double signY : {1.0, -1.0}) {
            const double nearX = std::min(signX * lowX, signX * highX);
            const double farX = std::max(signX * lowX, signX * highX);
            const double nearY = std::min(signY * lowY, signY * highY);
            const double farY = std::max(signY * lowY, signY * highY);
            const double seen = signX * signY * rho;
            const double whole = CDFBiNormalStd(farX, farY, seen);
            if (whole >= smallest) continue;
            smallest = whole;
            probability = (whole - CDFBiNormalStd(nearX, farY, seen)) -
                          (CDFBiNormalStd(farX, nearY, seen) - CDFBiNormalStd(nearX, nearY, seen));
        }
    }
    return probability;
}

// Probability of one variable below `limit` given that the other is at `point`, times the density there.
double densityBelow(double point, double limit, double rho) {
    const double spread = std::sqrt((1.0 - rho) * (1.0 + rho));
    if (spread > 0.0) return normalDensity(point) * normalLowerTail((limit - rho * point) / spread);
    return rho * point <= limit ? normalDensity(point) : 0.0;
}

bool ascends(std::span<const double> thresholds) {
    for (std::size_t k = 0; k < thresholds.size(); ++k) {
        if (std::isnan(thresholds[k]) || (k > 0 && !(thresholds[k - 1] < thresholds[k]))) return false;
    }
    return true;
}

// A cell's slopes in the parameters that it depends on: at most one correlation and four thresholds.
struct CellSlopes {
    std::array<std::size_t, 5> parameter{};
    std::array<double, 5> slope{};
    std::size_t n = 0;

    void add(std::size_t which, double value) {
        parameter[n] = which;
        slope[n++] = value;
    }
};

CellSlopes slopesOf(std::size_t i, std::size_t j, std::size_t nRows, std::size_t nColumns,
                    const CellGrid& cells, const ThresholdSlopes& edges) {
    const std::size_t nEdges = nRows - 1;
    CellSlopes of;
    of.add(0, cells.slopeRho[j * nRows + i]);
    if (i > 0) of.add(i, -edges.rows[j * nEdges + i - 1]);
    if (i < nEdges) of.add(i + 1, edges.rows[j * nEdges + i]);
    if (j > 0) of.add(nEdges + j, -edges.columns[(j - 1) * nRows + i]);
    if (j + 1 < nColumns) of.add(nEdges + j + 1, edges.columns[j * nRows + i]);
    return of;
}

}  // namespace

bool isLaw(const LatentLaw& law) {
    return std::abs(law.rho) <= 1.0 && ascends(law.rows) && ascends(law.columns);
}

CellGrid cellsOf(const LatentLaw& law) {
    const auto rows = withEnds(law.rows);
    const auto columns = withEnds(law.columns);
    CellGrid grid;
    grid.probability =
        overCells(rows, columns, [&](double a, double b) { return CDFBiNormalStd(a, b, law.rho); });
    for (std::size_t cell = 0; cell < grid.probability.size(); ++cell) {
        double& p = grid.probability[cell];
        const std::size_t i = cell % (rows.size() - 1);
        const std::size_t j = cell / (rows.size() - 1);
        if (p < kFewDigits) p = cellFromCorner(rows[i], rows[i + 1], columns[j], columns[j + 1], law.rho);
        if (p < kSmallestCell) p = 0.0;
    }
    if (std::abs(law.rho) < 1.0) {
        grid.slopeRho =
            overCells(rows, columns, [&](double a, double b) { return PDFBiNormalStd(a, b, law.rho); });
    } else {
        grid.slopeRho.assign(grid.probability.size(), 0.0);
    }
    return grid;
}

ThresholdSlopes thresholdSlopes(const LatentLaw& law) {
    const auto rows = withEnds(law.rows);
    const auto columns = withEnds(law.columns);
    ThresholdSlopes slopes;
    for (std::size_t j = 1; j < columns.size(); ++j) {
        for (const double a : law.rows)
            slopes.rows.push_back(densityBelow(a, columns[j], law.rho) -
                                  densityBelow(a, columns[j - 1], law.rho));
    }
    for (const double b : law.columns) {
        for (std::size_t i = 1; i < rows.size(); ++i)
            slopes.columns.push_back(densityBelow(b, rows[i], law.rho) - densityBelow(b, rows[i - 1], law.rho));
    }
    return slopes;
}

double logLikelihood(std::span<const double> counts, std::span<const double> probability) {
    double sum = 0.0;
    for (std::size_t cell = 0; cell < counts.size(); ++cell) {
        if (counts[cell] > 0.0) sum += counts[cell] * std::log(probability[cell]);
    }
    return sum;
}

CorrelationScore correlationScore(const OrdinalTable& table, const CellGrid& cells) {
    CorrelationScore sum;
    for (std::size_t cell = 0; cell < table.counts.size(); ++cell) {
        const double ratio = cells.slopeRho[cell] / std::max(cells.probability[cell], kSmallestCell);
        sum.score += table.counts[cell] * ratio;
        if (cells.probability[cell] > 0.0) sum.information += table.total * cells.slopeRho[cell] * ratio;
    }
    return sum;
}

Derivatives derivatives(const OrdinalTable& table, const LatentLaw& law) {
    const auto nRows = static_cast<std::size_t>(table.nRows);
    const auto nColumns = static_cast<std::size_t>(table.nColumns);
    const std::size_t nParameters = nRows + nColumns - 1;
    const CellGrid cells = cellsOf(law);
    const ThresholdSlopes edges = thresholdSlopes(law);
    Derivatives sums{std::vector<double>(nParameters, 0.0),
                     std::vector<double>(nParameters * nParameters, 0.0)};
    for (std::size_t cell = 0; cell < table.counts.size(); ++cell) {
        const CellSlopes of = slopesOf(cell % nRows, cell / nRows, nRows, nColumns, cells, edges);
        const double probability = std::max(cells.probability[cell], kSmallestCell);
        for (std::size_t s = 0; s < of.n; ++s) {
            sums.gradient[of.parameter[s]] += table.counts[cell] * of.slope[s] / probability;
            for (std::size_t t = 0; t < of.n && cells.probability[cell] > 0.0; ++t) {
                sums.information[of.parameter[t] * nParameters + of.parameter[s]] +=
                    of.slope[s] * of.slope[t] / probability;
            }
        }
    }
    return sums;
}

}  // namespace numcore::association
