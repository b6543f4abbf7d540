// Step tables of empirical distribution functions, on spans; `numcore/empirical.h` tells what they hold.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace numcore::distributions {

/// A row of a step table.
struct StepRow {
    double value;
    double probability;
};

/// The rows of the step table of a weighted sample; none when no observation is left or the total weight is not
/// a positive number. No weights: 1 each; values beyond a shorter weight span are left out.
std::vector<StepRow> stepRows(std::span<const double> values, std::span<const double> weights, bool sort);

/// The columns of a step table of the same length.
struct StepColumns {
    std::span<const double> values;
    std::span<const double> probabilities;
};

/// Columns of a plain array of nRows rows, the second right after the first; empty when there is no such table.
StepColumns stepColumns(const double* table, std::int32_t nRows);

/// `VB_InvCDFEmpirical` and `Cpp_GetProbaVal`.
double quantileOfSteps(double p, const StepColumns& table);
double probabilityOfSteps(double x, const StepColumns& table);

}  // namespace numcore::distributions
