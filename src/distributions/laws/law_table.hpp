// The table of laws: what whoever works on a law by its code knows of it. Adding a law takes one row.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "numcore/containers.hpp"
#include "numcore/law_codes.h"

namespace numcore::distributions {

/// A function of a law at x, or at the probability p, with up to four parameters; those beyond the law's own
/// are not read.
using LawFunction = double (*)(double x, double p1, double p2, double p3, double p4);

struct Law {
    numcore_law shown;
    NumcoreDataRule rule;
    LawFunction density;
    LawFunction distribution;
    LawFunction quantile;
    /// The number of parameters that goes with the law's displayed name.
    std::int32_t nAnnounced = shown.nParameters;
};

/// All laws, each at its code.
std::span<const Law> laws();

/// The law of a code; null for a code without one.
const Law* lawOfCode(std::int32_t code);

/// The law whose displayed name is exactly the text; null when there is none.
///
/// A displayed name is an entry of the messages, followed for some laws by a digit; entries count from 0, and
/// an empty one names no law. Where names are equal, the first in the order of comparison counts.
const Law* lawOfName(std::u16string_view name, const matrix<u16string>& messages);

}  // namespace numcore::distributions
