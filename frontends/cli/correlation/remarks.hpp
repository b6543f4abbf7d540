// What the cor command says besides its tables.
#pragma once

#include <string>
#include <vector>

#include "cli/correlation/tables.hpp"

namespace numcore::cli {

/// A note for every variable that is constant or empty in a sample; the group's name tells where.
void noteConstantColumns(const Sample& sample, const std::string& group, std::vector<std::string>& notes);

/// Notes about p-values, limits and coefficients that are not what was asked for, or are not there.
void noteShortcomings(const std::vector<GroupedCorrelations>& groups, const CorrelationRequest& request,
                      bool weighted, bool forMachines, std::vector<std::string>& notes);

}  // namespace numcore::cli
