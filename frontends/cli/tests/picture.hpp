// Pictures of samples: boxes with means and their limits; of pairs: differences over means; proportions.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/tests/means.hpp"
#include "cli/tests/outcome.hpp"
#include "cli/tests/proportions.hpp"
#include "cli/tests/samples.hpp"

namespace numcore::cli {

struct Picture {
    const std::vector<Comparison>* comparisons;
    std::string groupsName;  // empty: the samples are columns
    std::string title;
    std::string file;
    double alpha;
    std::optional<double> mu;               // a mean to draw a line at
    std::optional<Pairs> pairs;             // of a paired test
    std::optional<TestOutcome> difference;  // its result
};

/// An SVG picture: a panel of boxes for each comparison, and below it the differences of the pairs when there
/// are any. Throws DataError for too many panels or boxes, and for values that are too far apart.
std::string drawSamples(const Picture& picture);

/// A proportion to draw a line at for each sample, with what it is.
struct ProportionLevels {
    const char* name;
    std::vector<double> values;  // empty: none
};

struct ProportionPicture {
    const std::vector<CountSample>* samples;
    std::vector<ProportionLimits> limits;  // one a sample
    ProportionLevels levels;
    std::string groupsName;  // empty: none
    std::string title;
    std::string file;  // empty: none
    std::string limitsName;
};

/// An SVG picture of one panel: each proportion with its limits, and the levels. Throws DataError for too many
/// samples.
std::string drawProportions(const ProportionPicture& picture);

}  // namespace numcore::cli
