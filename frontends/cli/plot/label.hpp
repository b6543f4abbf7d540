// Names short enough for a label.
#pragma once

#include <string>

namespace numcore::cli::plot {

/// A name of at most so many columns of a terminal, cut behind a whole character.
std::string shortLabel(const std::string& name, int longest);

}  // namespace numcore::cli::plot
