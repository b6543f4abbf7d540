// The numbers of the cor command, from the library.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "cli/options.hpp"
#include "cli/sample.hpp"

namespace numcore::cli {

/// A pair of variables. What cannot be computed is NUMCORE_MISSING.
struct CorrelatedPair {
    double coefficient;
    double pValue;
    double squared;
    double lower;
    double upper;
    std::size_t n;  // rows used
};

/// The coefficients of one sample: between all variables, or between those of the rows and those of the
/// columns.
struct Correlations {
    std::vector<std::string> rows;
    std::vector<std::string> columns;
    bool rectangular = false;
    std::vector<CorrelatedPair> pairs;  // row after row
    std::size_t nRowsUsed = 0;
    std::size_t nRowsExcluded = 0;  // listwise, with a missing value
    std::size_t nMissing = 0;       // missing cells in the rows used
    std::size_t nNotExact = 0;      // Kendall: pairs with a normal p-value although an exact one was asked for
    std::size_t nNotConverged = 0;  // polychoric
    bool complete = false;          // the kernel without tests for missing values and weights ran

    const CorrelatedPair& at(std::size_t i, std::size_t j) const { return pairs[i * columns.size() + j]; }
    /// The pairs that tell something: below the diagonal, or all of a rectangle.
    std::size_t lastColumn(std::size_t i) const { return rectangular ? columns.size() : i; }
};

/// Computes all pairs of a sample's variables, or of its variables with those across; with the columns held
/// constant when there are such. The sample's columns are used up.
Correlations correlate(Sample sample, const CorrelationRequest& request);

/// A p-value for the sign of the coefficient, from a two-sided one of Student's law; none below three rows.
/// (The library's own one-sided codes for Pearson take |t|, and a coefficient that rounding brings above 1
/// has a p-value of 1 there.)
double studentPValue(double coefficient, double twoSided, std::size_t n, Alternative alternative);

}  // namespace numcore::cli
