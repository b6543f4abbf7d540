// Names of functions in other programs that say a law and what is asked of it: pnorm, CHISQ.DIST.RT.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "cli/laws/law.hpp"

namespace numcore::cli {

/// What such a function computes.
struct Asked {
    bool density = false;
    bool distribution = false;
    bool quantile = false;
    bool upper = false;      // the upper tail
    bool bothTails = false;  // the two tails together
};

struct FunctionName {
    std::string law;  // a law's name
    Asked asked;
    const Alias* difference = nullptr;  // how the function's parameters differ
};

/// R's dLAW, pLAW and qLAW, and a spreadsheet's LAW.DIST, LAW.S.DIST, LAW.DIST.RT, LAW.DIST.2T, LAW.INV and
/// their like. Nothing for other names; the law may be none that exists.
std::optional<FunctionName> splitFunctionName(std::string_view name);

}  // namespace numcore::cli
