// Names cut to fit a drawing.
#pragma once

#include <cstddef>
#include <string>

namespace numcore::cli::plot {

/// A name of at most so many columns, cut between characters with an ellipsis where it is longer.
std::string shortLabel(const std::string& name, std::size_t longest);

}  // namespace numcore::cli::plot
