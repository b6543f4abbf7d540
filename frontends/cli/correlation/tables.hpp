// The tables of the cor command.
#pragma once

#include <string>
#include <vector>

#include "cli/correlation/compute.hpp"
#include "cli/report.hpp"

namespace numcore::cli {

/// The correlations of all rows, or of one group.
struct GroupedCorrelations {
    std::string group;  // empty: all rows
    Correlations found;
};

/// "Pearson correlations", "Covariances", "Partial correlations given Temp".
std::string tableTitle(const CorrelationRequest& request, const std::vector<std::string>& heldConstant);

/// Levels that marks stand for, the first is alpha: at most three.
std::vector<double> markLevels(double alpha);

/// The matrix of coefficients; for people with marks, a triangle where it is symmetric; exact and whole
/// otherwise.
void addCoefficients(const std::vector<GroupedCorrelations>& groups, const CorrelationRequest& request,
                     const std::string& title, const std::string& groupsName, bool forMachines, Report& report);

/// The matrices beside it: p-values, limits when asked, and the rows of each pair where they differ.
void addMatrices(const std::vector<GroupedCorrelations>& groups, const CorrelationRequest& request,
                 const std::string& groupsName, bool forMachines, Report& report);

/// A list with a row per pair and group. For machines with everything there is.
void addPairs(const std::vector<GroupedCorrelations>& groups, const CorrelationRequest& request,
              const std::string& title, const std::string& groupsName, bool forMachines, Report& report);

/// How the results came about: a row per group, for JSON.
void addDetails(const std::vector<GroupedCorrelations>& groups, const CorrelationRequest& request,
                const std::vector<std::string>& heldConstant, Report& report);

/// The sentence that tells what the marks mean; empty when none can stand.
std::string markLegend(const CorrelationRequest& request);

// Words for the command line and the output.
const char* nameOf(Coefficient coefficient);
const char* nameOf(Alternative alternative);

}  // namespace numcore::cli
