// The program behind main.
#pragma once

#include <string>
#include <vector>

#include "cli/options.hpp"
#include "cli/report.hpp"

namespace numcore::cli {

/// Runs the program; returns its exit code. Errors and warnings go to standard error.
int run(const std::vector<std::string>& arguments);

/// Reads the file and computes what the options ask for.
Report analyse(const Options& options);

}  // namespace numcore::cli
