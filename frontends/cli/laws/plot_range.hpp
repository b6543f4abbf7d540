// The part of the line on which a law is drawn.
#pragma once

#include <span>

#include "cli/laws/choose.hpp"

namespace numcore::cli {

/// The range that holds nearly all of the law, less of a heavy tail; ends of the support that are near are
/// shown with some room. Points not too far away are taken in.
Interval plotRange(const ChosenLaw& chosen, std::span<const double> points);

}  // namespace numcore::cli
