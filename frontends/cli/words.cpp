#include "cli/words.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>

#include "cli/errors.hpp"

namespace numcore::cli {

std::vector<std::string> splitList(const std::string& list) {
    std::vector<std::string> words;
    std::size_t at = 0;
    while (at <= list.size()) {
        const std::size_t comma = std::min(list.find(',', at), list.size());
        words.push_back(list.substr(at, comma - at));
        at = comma + 1;
    }
    return words;
}

std::string lowerCase(std::string_view text) {
    std::string out(text);
    std::ranges::transform(out, out.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return out;
}

std::size_t editDistance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0]++;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t replaced = diagonal + (a[i] != b[j]);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
        }
    }
    return row[b.size()];
}

std::string didYouMean(std::string_view word, const std::vector<std::string>& names) {
    constexpr std::size_t kLongest = 100;  // longer ones are no slips of a finger
    if (word.size() > kLongest) return {};
    const std::string* nearest = nullptr;
    std::size_t least = std::max<std::size_t>(1, word.size() / 3) + 1;
    for (const std::string& name : names) {
        const std::size_t distance = name.size() > 2 * kLongest ? least : editDistance(word, name);
        if (distance >= least) continue;
        least = distance;
        nearest = &name;
    }
    return nearest == nullptr ? std::string() : fmt::format("; did you mean {}?", quotedForMessage(*nearest));
}

}  // namespace numcore::cli
