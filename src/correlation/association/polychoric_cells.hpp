// Cells of a bivariate normal law cut by two sets of thresholds, and the likelihood of a table of counts.
// Olsson, U. (1979), Maximum likelihood estimation of the polychoric correlation coefficient, Psychometrika
// 44:443-460.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "correlation/association/ordinal_table.hpp"

namespace numcore::association {

/// Correlation and thresholds of the latent law; thresholds ascend, one less than there are categories.
struct LatentLaw {
    double rho = 0.0;
    std::vector<double> rows;
    std::vector<double> columns;
};

/// Probabilities of the cells and their slopes in the correlation, column-major.
struct CellGrid {
    std::vector<double> probability;
    std::vector<double> slopeRho;
};

/// What the cells gain on one side when a threshold moves: at (k, j) the slope in row threshold k of cell
/// (k, j), and minus that of cell (k + 1, j). Column thresholds likewise.
struct ThresholdSlopes {
    std::vector<double> rows;     ///< (nRows - 1) x nColumns, column-major
    std::vector<double> columns;  ///< nRows x (nColumns - 1), column-major
};

/// Gradient of the log-likelihood and expected information per unit of weight; order of the parameters:
/// correlation, row thresholds, column thresholds.
struct Derivatives {
    std::vector<double> gradient;
    std::vector<double> information;  ///< symmetric, a row and a column per parameter
};

/// True when thresholds ascend strictly, none is NaN, and -1 <= rho <= 1.
bool isLaw(const LatentLaw& law);

/// @param law  as isLaw says; for |rho| = 1 the slopes in rho are 0
CellGrid cellsOf(const LatentLaw& law);
ThresholdSlopes thresholdSlopes(const LatentLaw& law);

/// Sum of count times the logarithm of the probability; minus infinity when a cell that holds counts is
/// impossible.
double logLikelihood(std::span<const double> counts, std::span<const double> probability);

/// The gradient of the log-likelihood in the correlation and its expected information for all counts.
struct CorrelationScore {
    double score = 0.0;
    double information = 0.0;
};
CorrelationScore correlationScore(const OrdinalTable& table, const CellGrid& cells);

Derivatives derivatives(const OrdinalTable& table, const LatentLaw& law);

}  // namespace numcore::association
