// The commands law, cdf, pdf, and quantile of a law.
#pragma once

#include "cli/laws/choose.hpp"
#include "cli/options.hpp"
#include "cli/report.hpp"

namespace numcore::cli {

bool isLawCommand(Command command);

/// What the options ask for; draws the law too when a plot is wanted.
Report analyseLaw(const Options& options);

/// The law of a report, without a tail.
ReportLaw subjectOf(const ChosenLaw& chosen);

/// All laws, a row per code.
Report listLaws();

/// One law: parameters, names, functions, moments, and examples. Its values too when it can be chosen with the
/// parameters given.
Report explainLaw(const NamedLaw& named, const std::vector<std::string>& parameters);

}  // namespace numcore::cli
