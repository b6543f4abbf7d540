// The studentized range with both tails.
#pragma once

namespace numcore::distributions {

struct StudentizedRange {
    double lower = 0.0;    // P(largest of the ranges <= q)
    double upper = 0.0;    // P(largest of the ranges > q), with relative accuracy where it is small
    double density = 0.0;  // derivative of lower in q
};

/// The largest of `ranges` ranges, each of k normal variables, over an independent s = sqrt(chi-square / df);
/// infinite df: s = 1. The density is left at 0 unless asked for. The missing marker in all three outside the
/// domain of `ptukey`.
StudentizedRange studentizedRange(double q, double ranges, double k, double df, bool withDensity = false);

}  // namespace numcore::distributions
