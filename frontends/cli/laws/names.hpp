// The names of laws.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace numcore::cli {

/// A name as it is compared: small letters and digits only.
std::string plainName(std::string_view name);

/// The message about a name that no law has, with the nearest names or what to take instead.
std::string unknownLaw(std::string_view name);

/// A law's name as one word of a command line: "negative-binomial-1".
std::string commandWord(std::string name);

/// One such word per law, for completion.
std::vector<std::string> lawWords();

}  // namespace numcore::cli
