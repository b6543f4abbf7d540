// Reading discrete Bayesian networks in the Bayesian-network interchange format (BIF, version 0.15).
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "cli/csv/settings.hpp"
#include "cli/networks/network.hpp"

namespace numcore::cli {

/// The network of a text. Names may stand in quotes, blocks in any order; properties are skipped. Arcs may make
/// a cycle: findCycle tells. Throws DataError ("file:line:column: ...") for undeclared parents, variables given
/// twice, unknown states, missing rows, wrong counts of numbers, negative numbers, and tables too large to be
/// meant.
Network parseBif(std::string_view text, const std::string& file);

/// The network of a file in any encoding that the program reads; "-" is standard input. Throws DataError.
Network readBif(const std::string& file, std::optional<Encoding> encoding);

}  // namespace numcore::cli
