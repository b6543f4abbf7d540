#include "cli/laws/evaluate.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "cli/laws/support.hpp"
#include "numcore/api.h"
#include "numcore/law_codes.h"

namespace numcore::cli {

namespace {

constexpr double kLargestCount = 2147483647.0;  // an unbounded quantile of a discrete law
constexpr double kNoCount = 4294967295.0;       // one that cannot be computed
constexpr double kSubtractionFloor = 1e-14;     // the same for 1 - lower tail
constexpr double kFewDigits = 1e-6;             // such a difference has lost half its digits below this
constexpr double kNearOne = 1.0 - 5e-7;         // shown as 1 with six digits

constexpr int kExtremeValueCode = 23;

double lowerTail(const ChosenLaw& chosen, double x) {
    const Law& law = *chosen.law;
    const Values& p = chosen.parameters;
    // Beyond the library's counts only the tail's own function reaches.
    if (law.discrete && x > kLargestCount) return 1.0 - law.upperTail(x, p);
    const double probability =
        law.coded() ? CDFGeneral(x, chosen.code, p[0], p[1], p[2], p[3]) : law.distribution(x, p);
    return probability == 0.0 && law.farLowerTail != nullptr ? law.farLowerTail(x, p) : probability;
}

double lowerQuantile(const ChosenLaw& chosen, double p) {
    const Values& v = chosen.parameters;
    return chosen.law->coded() ? InvCDFGeneral(p, chosen.code, v[0], v[1], v[2], v[3])
                               : chosen.law->quantile(p, v);
}

/// What a probability that came out as 0 is below.
double boundOf(const ChosenLaw& chosen, Tail tail) {
    const Law& law = *chosen.law;
    if (tail == Tail::kUpper && law.upperTail == nullptr) return kSubtractionFloor;
    return law.floor == nullptr ? kSmallestProbability : law.floor(chosen.parameters, tail == Tail::kUpper);
}

/// A quantile whose own tail probability is not the one that was asked for.
bool isOff(const ChosenLaw& chosen, double x, double p, Tail tail) {
    constexpr double kAllowed = 1e-4;
    if (chosen.law->discrete || !std::isfinite(x)) return false;
    const double back = distributionAt(chosen, x, tail);
    // 0 says nothing about a small p.
    return back > 0.0 && std::abs(back - p) > kAllowed * std::min(p, 1.0 - p);
}

bool isMarker(double value) {
    return value == NUMCORE_MISSING || value == NUMCORE_OVERFLOW;
}

}  // namespace

bool hasDensity(const Law& law) {
    return law.coded() || law.density != nullptr;
}

bool hasQuantile(const Law& law) {
    return law.coded() || law.quantile != nullptr;
}

double densityAt(const ChosenLaw& chosen, double x) {
    const Law& law = *chosen.law;
    const Interval support = law.support(chosen.parameters);
    if (x < support.lower || x > support.upper || std::isinf(x)) return 0.0;
    if (law.discrete && x != std::floor(x)) return 0.0;
    const Values& p = chosen.parameters;
    return law.coded() ? PDFGeneral(x, chosen.code, p[0], p[1], p[2], p[3]) : law.density(x, p);
}

double distributionAt(const ChosenLaw& chosen, double x, Tail tail) {
    const Law& law = *chosen.law;
    const Interval support = law.support(chosen.parameters);
    if (law.discrete) x = std::floor(x);
    const bool lower = tail == Tail::kLower;
    if (x < support.lower || x == -kInfinite) return lower ? 0.0 : 1.0;
    if (x >= support.upper) return lower ? 1.0 : 0.0;
    if (lower) return lowerTail(chosen, x);
    if (law.upperTail != nullptr) return law.upperTail(x, chosen.parameters);
    const double head = lowerTail(chosen, x);
    return isMarker(head) ? head : 1.0 - head;
}

double invertDistribution(const ChosenLaw& chosen, double p, Tail tail) {
    const Interval support = chosen.law->support(chosen.parameters);
    bool missing = false;
    const auto below = [&](double x) {
        const double probability = distributionAt(chosen, x, tail);
        missing |= probability == NUMCORE_MISSING;
        return tail == Tail::kLower ? probability < p : probability > p;
    };
    constexpr double kFarthest = 1e300;
    double low = std::isfinite(support.lower) ? support.lower : -1.0;
    double high = std::isfinite(support.upper) ? support.upper : std::max(low, 0.0) + 1.0;
    if (std::isfinite(support.lower)) {
        if (!below(low)) return missing ? NUMCORE_MISSING : low;
    } else {
        low = std::min(low, high - 1.0);
        while (!below(low) && low > -kFarthest) low = low * 2.0 - 1.0;
    }
    while (below(high) && high < kFarthest && high < support.upper) high = high * 2.0 + 1.0;
    constexpr int kHalvings = 200;
    for (int i = 0; i < kHalvings; ++i) {
        const double middle = low + (high - low) / 2.0;
        if (middle <= low || middle >= high) break;  // neighbours
        (below(middle) ? low : high) = middle;
    }
    return missing ? NUMCORE_MISSING : high;
}

double quantileAt(const ChosenLaw& chosen, double p, Tail tail) {
    const Law& law = *chosen.law;
    const Interval support = law.support(chosen.parameters);
    if (!(p >= 0.0 && p <= 1.0)) return NUMCORE_MISSING;
    const bool lower = tail == Tail::kLower;
    if (p == (lower ? 0.0 : 1.0)) return support.lower;
    if (p == (lower ? 1.0 : 0.0)) return support.upper;
    if (!hasQuantile(law)) return invertDistribution(chosen, p, tail);
    const bool upperForm = !lower && law.upperQuantile != nullptr;
    const double x =
        upperForm ? law.upperQuantile(p, chosen.parameters) : lowerQuantile(chosen, lower ? p : 1.0 - p);
    if (law.discrete && x == kNoCount) return NUMCORE_MISSING;
    if (law.discrete && x >= kLargestCount) return NUMCORE_OVERFLOW;
    return x;
}

Cell densityCell(const ChosenLaw& chosen, double x, Remarks& remarks) {
    if (x == NUMCORE_MISSING || std::isnan(x)) return {};
    remarks.notWhole |= chosen.law->discrete && x != std::floor(x);
    const double value = densityAt(chosen, x);
    remarks.noResult |= value == NUMCORE_MISSING;
    return cellOf(value);
}

Cell distributionCell(const ChosenLaw& chosen, double x, Tail tail, Remarks& remarks) {
    if (x == NUMCORE_MISSING || std::isnan(x)) return {};
    const double value = distributionAt(chosen, x, tail);
    const Interval support = chosen.law->support(chosen.parameters);
    const bool inside = x > support.lower && x < support.upper;
    remarks.noResult |= value == NUMCORE_MISSING;
    remarks.roundedToOne |= inside && value > kNearOne && value <= 1.0;
    remarks.subtracted |= inside && tail == Tail::kUpper && chosen.law->upperTail == nullptr &&
                          value < kFewDigits && value != NUMCORE_MISSING;
    if (!inside || value > 0.0 || value == NUMCORE_MISSING) return cellOf(value);
    remarks.bound = boundOf(chosen, tail);
    return Below{remarks.bound};
}

Cell quantileCell(const ChosenLaw& chosen, double p, Tail tail, Remarks& remarks) {
    if (p == NUMCORE_MISSING || std::isnan(p)) return {};
    if (p < 0.0 || p > 1.0) {
        remarks.notProbability = true;
        return {};
    }
    const double value = quantileAt(chosen, p, tail);
    remarks.noResult |= value == NUMCORE_MISSING;
    remarks.inverted |= !hasQuantile(*chosen.law);
    remarks.beyondMethod |= value == NUMCORE_OVERFLOW && p > 0.0 && p < 1.0;
    // Halving takes the upper tail itself where there is one.
    const bool ownTail =
        hasQuantile(*chosen.law) ? chosen.law->upperQuantile != nullptr : chosen.law->upperTail != nullptr;
    remarks.subtracted |= tail == Tail::kUpper && !ownTail && p < kFewDigits && p > 0.0;
    const bool inside = p > 0.0 && p < 1.0 && !isMarker(value);
    const bool otherShape = chosen.code == kExtremeValueCode && chosen.parameters[0] != 0.0;
    remarks.shapeSign |= inside && otherShape;
    remarks.off |= inside && !otherShape && isOff(chosen, value, p, tail);
    return cellOf(value);
}

std::vector<std::string> sentences(const Remarks& remarks, const ChosenLaw& chosen) {
    std::vector<std::string> out;
    const auto add = [&](bool said, std::string text) {
        if (said) out.push_back(std::move(text));
    };
    add(remarks.bound > 0.0,
        fmt::format("< {}: too small for the library to tell (0 in csv, tsv and json)", remarks.bound));
    add(remarks.roundedToOne,
        "a probability that looks like 1 is not quite 1: the other tail (--both) shows the rest");
    add(remarks.subtracted,
        fmt::format(
            "the {} law has no upper tail of its own: 1 - lower tail is right to 1e-14 or so, and small "
            "values have lost digits",
            chosen.name));
    add(remarks.beyondMethod,
        "an infinite quantile of a probability below 1: it is beyond what the method reaches");
    add(remarks.notWhole, fmt::format("the {} law has whole numbers only: 0 between them", chosen.name));
    add(remarks.notProbability,
        fmt::format("values below 0 or above 1 are no probabilities and have no quantile; the first: {}",
                    remarks.firstWithout));
    add(remarks.noResult,
        fmt::format("the library gives no value for some of these; the first: {}", remarks.firstWithout));
    add(remarks.off,
        "the library's quantile is off for some of these: its own tail probability (cdf) differs from the "
        "one asked for by more than 1e-4 of it");
    add(remarks.inverted, fmt::format("the library has no quantile of the {} law: by halving on its "
                                      "distribution function",
                                      chosen.name));
    add(remarks.shapeSign,
        fmt::format("this quantile takes the shape with the other sign: it undoes the distribution of k = {}",
                    -chosen.parameters[0]));
    return out;
}

}  // namespace numcore::cli
