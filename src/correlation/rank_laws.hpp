// P-values of the rank coefficients.
#pragma once

#include <cstdint>

namespace numcore::correlation {

/// How far beyond S the upper tail of Spearman's law begins. Kept: coefficients that are given and those of
/// data differ.
enum class SpearmanStep { kOfCoefficient = 2, kOfData = 1 };

struct SpearmanTest {
    double pValue;
    double statistic;  ///< S = (n^3 - n)(1 - rho) / 6
};

/// @param weight  number of observations, or their sum of weights; the law takes its whole part
SpearmanTest spearmanTest(double rho, double weight, std::int32_t alternative, SpearmanStep step);

/// Whole part of a sum of weights as a count, bounded to 32 bits; 0 for NaN.
std::int32_t wholePart(double weight);

}  // namespace numcore::correlation
