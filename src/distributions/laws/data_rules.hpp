// Whether data can come from a law.
#pragma once

#include <cstdint>
#include <span>

#include "numcore/law_codes.h"

namespace numcore::distributions {

/// What `Cpp_CheckDistribConstraints2` finds in columns of nRows cells that stand one after another.
///
/// @param exempt a flag per column; columns beyond its end are looked at
ST_DistribCheck checkData(NumcoreDataRule rule, std::span<const double> cells, std::size_t nRows,
                          std::span<const std::int16_t> exempt);

}  // namespace numcore::distributions
