// Density, distribution and quantile of a chosen law.
#pragma once

#include "cli/laws/choose.hpp"
#include "cli/report.hpp"

namespace numcore::cli {

enum class Tail { kLower, kUpper };

/// What must be said about results that were computed.
struct Remarks {
    double bound = 0.0;           // what the probabilities that came out as 0 are below
    bool roundedToOne = false;    // a tail so near 1 that the other one says more
    bool subtracted = false;      // an upper tail as 1 - lower tail, small enough to have lost digits
    bool beyondMethod = false;    // an infinite quantile of a probability below 1
    bool notWhole = false;        // a discrete law's probability between whole numbers
    bool notProbability = false;  // a quantile of what is no probability
    bool noResult = false;        // the library's missing value
    std::string firstWithout{};   // the first value of these two kinds: "row 2, 1.2"
    bool off = false;             // a quantile that does not undo the distribution
    bool inverted = false;        // a quantile by halving: the library has none
    bool shapeSign = false;       // a quantile of the generalised extreme value law
};

bool hasDensity(const Law& law);
bool hasQuantile(const Law& law);

/// Density, or probability of a whole number: 0 outside the support. The library's markers for what it cannot
/// compute and what is infinite.
double densityAt(const ChosenLaw& chosen, double x);

/// P(X <= x) or P(X > x); 0 or 1 outside the support.
double distributionAt(const ChosenLaw& chosen, double x, Tail tail);

/// The x with P(X <= x) = p, or with P(X > x) = p; the ends of the support at 0 and 1.
double quantileAt(const ChosenLaw& chosen, double p, Tail tail);

/// The same x by halving on the distribution function: right for every law, in a hundred of its calls. The
/// missing value where the distribution function has none.
double invertDistribution(const ChosenLaw& chosen, double p, Tail tail);

/// The same as cells: a missing x gives a missing result; a probability that came out as 0 where it cannot be
/// 0 is a bound.
Cell densityCell(const ChosenLaw& chosen, double x, Remarks& remarks);
Cell distributionCell(const ChosenLaw& chosen, double x, Tail tail, Remarks& remarks);
Cell quantileCell(const ChosenLaw& chosen, double p, Tail tail, Remarks& remarks);

/// The remarks as sentences.
std::vector<std::string> sentences(const Remarks& remarks, const ChosenLaw& chosen);

}  // namespace numcore::cli
