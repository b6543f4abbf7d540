// RV coefficient of two sets of variables over the same observations. Escoufier, Y. (1973), Le traitement des
// variables vectorielles, Biometrics 29:751-760; Robert, P. and Escoufier, Y. (1976), A unifying tool for
// linear multivariate statistical methods: the RV-coefficient, Appl. Statist. 25:257-265.
#pragma once

#include <cstdint>
#include <span>

#include "correlation/association/permutation_test.hpp"
#include "suite/vmcore.hpp"

namespace numcore::association {

struct RvInput {
    vmcore::ConstMatrixView x;
    vmcore::ConstMatrixView y;
    std::span<const double> weights;  ///< empty = 1 each
    bool standardize = false;         ///< divide each variable by its deviation first
};

struct RvResult {
    double rv = kMissing;
    double expected = kMissing;  ///< mean over all orders of the observations (equal weights)
    std::int32_t nUsed = 0;
    PermutationResult test;
};

/// Observations with a cell that is missing or NaN, or with a weight not above the double epsilon, are left
/// out. A set without spread has no coefficient. Mean over all orders: Kazi-Aoual, F., Hitier, S., Sabatier, R.
/// and Lebreton, J.-D. (1995), Refined approximations to permutation tests for multivariate inference, Comput.
/// Statist. Data Anal. 20:643-656.
///
/// @param nOrders, seed  as in Orders; the test permutes the observations of y and is one-sided, RV being >= 0
RvResult rvCoefficient(const RvInput& input, std::int32_t nOrders, std::int32_t seed);

}  // namespace numcore::association
