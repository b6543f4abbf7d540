// A probability law as the program knows it: what the library's table of laws says, and what people need
// besides.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace numcore::cli {

/// Parameters in the law's order; those it does not have are 0.
using Values = std::array<double, 4>;
using LawFunction = double (*)(double, const Values&);
using Moment = double (*)(const Values&);

/// The numbers that a parameter may be.
enum class Domain {
    kReal,
    kPositive,
    kPositiveOrInfinite,
    kNonNegative,
    kProbability,
    kInsideUnit,
    kWhole,
    kCount,
    kPositiveCount
};

/// "above 0", "a whole number from 1".
const char* describeDomain(Domain domain);
bool inDomain(double value, Domain domain);
/// A whole number that the library's 32-bit counts do not reach.
bool isTooLarge(double value, Domain domain);

struct Parameter {
    std::string symbol;  // a coded law's come from the library
    const char* meaning = "";
    Domain domain = Domain::kReal;
    double fallback = 0.0;
    bool optional = false;
    const char* otherNames = "";    // separated by blanks
    const char* inverseNames = "";  // of 1/parameter: a rate where the law takes a scale
};

/// A law's name in another program. A note tells how that program's law differs.
struct Alias {
    const char* name;
    const char* note = nullptr;
};

struct Interval {
    double lower;
    double upper;
};

/// A law with all its forms: the gamma law has codes 10, 11 and 12 for one, two and three parameters.
struct Law {
    std::vector<int> codes{};  // ascending numbers of parameters; none: a law without code
    std::string name{};        // a coded law's comes from the library
    std::vector<Alias> aliases{};
    std::vector<Parameter> parameters{};
    const char* order = nullptr;  // a condition that joins parameters, in words
    bool (*ordered)(const Values&) = nullptr;
    bool discrete = false;
    Interval (*support)(const Values&) = nullptr;
    const char* functions = "";  // the library's, separated by blanks
    /// A law without code: null for what the library does not have. A coded law goes by its code.
    LawFunction density = nullptr;
    LawFunction distribution = nullptr;
    LawFunction quantile = nullptr;
    /// The lower tail where the distribution function comes out as 0; null: it is told as a bound.
    LawFunction farLowerTail = nullptr;
    /// The upper tail and its quantile without a subtraction from 1; null: 1 - lower tail.
    LawFunction upperTail = nullptr;
    LawFunction upperQuantile = nullptr;
    /// Below it a lower or an upper tail comes out as 0; null: about the smallest double.
    double (*floor)(const Values&, bool upper) = nullptr;
    Moment mean = nullptr;  // the missing value where there is none
    Moment variance = nullptr;
    const char* meanText = nullptr;
    const char* varianceText = nullptr;
    const char* example = "";  // parameters
    std::vector<const char*> notes{};

    bool coded() const { return !codes.empty(); }
};

/// All laws: those with codes in the order of their first code, then the others.
const std::vector<Law>& laws();

/// The rows of laws().
std::vector<Law> gammaAndBetaLaws();
std::vector<Law> closedFormLaws();
std::vector<Law> discreteLaws();
std::vector<Law> lawsWithoutCode();

}  // namespace numcore::cli
