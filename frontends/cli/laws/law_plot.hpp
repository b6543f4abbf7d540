// A law's density and distribution as a picture.
#pragma once

#include <string>
#include <vector>

#include "cli/laws/choose.hpp"

namespace numcore::cli {

/// What was asked of the law: values, or probabilities of its lower or upper tail.
struct LawMarks {
    std::vector<double> points;
    bool probabilities = false;
    bool upper = false;
};

/// An SVG picture: the density, or the probabilities as bars, above the distribution function, with the points
/// that were asked for. Adds a note when some of them do not fit.
std::string drawLaw(const ChosenLaw& chosen, const LawMarks& marks, std::vector<std::string>& notes);

}  // namespace numcore::cli
