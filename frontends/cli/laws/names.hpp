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

/// One name per law, without blanks, for completion: "negative-binomial-1".
std::vector<std::string> lawWords();

}  // namespace numcore::cli
