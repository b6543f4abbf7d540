// Words of the command line: lists, likeness.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace numcore::cli {

/// The words between commas; an empty list is one empty word.
std::vector<std::string> splitList(const std::string& list);

/// ASCII letters made small.
std::string lowerCase(std::string_view text);

/// Smallest number of insertions, deletions and replacements of bytes between two words.
std::size_t editDistance(std::string_view a, std::string_view b);

/// "; did you mean 'name'?" with the most similar of the names; empty when none is similar.
std::string didYouMean(std::string_view word, const std::vector<std::string>& names);

}  // namespace numcore::cli
