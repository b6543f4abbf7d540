#include "cli/laws/law.hpp"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "numcore/law_codes.h"

namespace numcore::cli {

namespace {

constexpr double kLargestWhole = 2147483647.0;  // counts are 32-bit integers in the library

/// Symbols of the form with the most parameters, and the name without the number of a form.
void takeFromLibrary(Law& law) {
    const numcore_law* row = numcore_law_of_code(law.codes.back());
    for (std::size_t i = 0; row != nullptr && i < law.parameters.size(); ++i) {
        law.parameters[i].symbol = row->parameters[i];
    }
    // The only form, or the last one: "gamma 3"; the normal law's forms have names of their own.
    law.name = row == nullptr ? "" : row->name;
    const bool numbered = law.codes.size() > 1 && law.name.size() > 2 && law.name[law.name.size() - 2] == ' ';
    if (numbered) law.name.resize(law.name.size() - 2);
}

std::vector<Law> collectLaws() {
    std::vector<Law> all = gammaAndBetaLaws();
    std::ranges::move(closedFormLaws(), std::back_inserter(all));
    std::ranges::move(discreteLaws(), std::back_inserter(all));
    for (Law& law : all) takeFromLibrary(law);
    std::ranges::sort(all, {}, [](const Law& law) { return *std::ranges::min_element(law.codes); });
    std::ranges::move(lawsWithoutCode(), std::back_inserter(all));
    return all;
}

}  // namespace

const char* describeDomain(Domain domain) {
    switch (domain) {
        case Domain::kReal:
            return "any number";
        case Domain::kPositive:
            return "above 0";
        case Domain::kPositiveOrInfinite:
            return "above 0, or inf";
        case Domain::kNonNegative:
            return "0 or above";
        case Domain::kProbability:
            return "from 0 to 1";
        case Domain::kInsideUnit:
            return "between 0 and 1";
        case Domain::kWhole:
            return "a whole number";
        case Domain::kCount:
            return "a whole number from 0";
        case Domain::kPositiveCount:
            break;
    }
    return "a whole number from 1";
}

bool isTooLarge(double value, Domain domain) {
    const bool count = domain == Domain::kWhole || domain == Domain::kCount || domain == Domain::kPositiveCount;
    return count && std::isfinite(value) && std::abs(value) > kLargestWhole;
}

bool inDomain(double value, Domain domain) {
    const bool whole = value == std::floor(value) && std::abs(value) <= kLargestWhole;
    if (!std::isfinite(value)) return domain == Domain::kPositiveOrInfinite && value > 0.0;
    switch (domain) {
        case Domain::kReal:
            return true;
        case Domain::kPositive:
        case Domain::kPositiveOrInfinite:
            return value > 0.0;
        case Domain::kNonNegative:
            return value >= 0.0;
        case Domain::kProbability:
            return value >= 0.0 && value <= 1.0;
        case Domain::kInsideUnit:
            return value > 0.0 && value < 1.0;
        case Domain::kWhole:
            return whole;
        case Domain::kCount:
            return whole && value >= 0.0;
        case Domain::kPositiveCount:
            break;
    }
    return whole && value >= 1.0;
}

const std::vector<Law>& laws() {
    static const std::vector<Law> all = collectLaws();
    return all;
}

}  // namespace numcore::cli
