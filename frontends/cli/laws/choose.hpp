// From the words of the command line to a law with its parameters.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/laws/function_names.hpp"
#include "cli/laws/law.hpp"

namespace numcore::cli {

/// A law found by a name, a code, or another program's name.
struct NamedLaw {
    const Law* law = nullptr;
    std::optional<int> code;       // when the name is that of one form: "gamma 2", 11
    const Alias* alias = nullptr;  // the name that was used, when it has a note
    std::optional<Asked> asked{};  // when the name is that of a function: pnorm
};

/// A law with the values of its parameters, in the form (code) that the parameters ask for.
struct ChosenLaw {
    const Law* law = nullptr;
    int code = -1;  // -1: a law without code
    std::string name;
    std::size_t nParameters = 0;  // of the form
    Values parameters{};
    std::vector<std::string> notes;

    /// "mu = 10, sigma = 2".
    std::string parameterText() const;
};

/// Nothing when no law or function of a law is called so. Case, blanks, dashes, underscores and points do not
/// matter.
std::optional<NamedLaw> findLaw(std::string_view name);

/// The same; throws UsageError that suggests the nearest names.
NamedLaw lawNamed(std::string_view name);

/// Takes parameters in the law's order, then by name ("sigma=2"). Throws UsageError that tells what the law
/// needs.
ChosenLaw chooseLaw(const NamedLaw& named, const std::vector<std::string>& parameters);

/// "k beta mu" as a command line has them: "k [beta] [mu]".
std::string parameterUsage(const Law& law);

}  // namespace numcore::cli
