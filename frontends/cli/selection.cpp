#include "cli/selection.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

#include "cli/errors.hpp"
#include "cli/words.hpp"

namespace numcore::cli {

namespace {

using Names = std::vector<std::string>;

UsageError unknownColumn(std::string_view word, const Names& names) {
    constexpr std::size_t kMostNames = 20;
    std::string text = fmt::format("no column {}", quotedForMessage(word));
    text += didYouMean(word, names);
    text += "\ncolumns:";
    for (std::size_t j = 0; j < std::min(names.size(), kMostNames); ++j)
        text += fmt::format(" {}", printable(names[j]));
    if (names.size() > kMostNames) text += fmt::format(" ... ({} columns)", names.size());
    return UsageError(text);
}

std::optional<std::size_t> findName(std::string_view word, const Names& names) {
    const auto found = std::ranges::find(names, word);
    if (found == names.end()) return std::nullopt;
    return static_cast<std::size_t>(found - names.begin());
}

/// A name, or a number from 1.
std::optional<std::size_t> findColumn(std::string_view word, const Names& names) {
    if (const auto named = findName(word, names)) return named;
    std::size_t number = 0;
    const auto [rest, status] = std::from_chars(word.data(), word.data() + word.size(), number);
    const bool whole = status == std::errc() && rest == word.data() + word.size();
    if (!whole || number < 1 || number > names.size()) return std::nullopt;
    return number - 1;
}

/// "a-b" with every dash tried, since names may hold dashes; "a-" goes to the last column.
std::optional<std::pair<std::size_t, std::size_t>> findRange(std::string_view word, const Names& names) {
    for (std::size_t dash = word.find('-'); dash != std::string_view::npos; dash = word.find('-', dash + 1)) {
        const auto first = findColumn(word.substr(0, dash), names);
        const std::string_view behind = word.substr(dash + 1);
        const auto last = behind.empty() ? std::optional(names.size() - 1) : findColumn(behind, names);
        if (first && last) return std::pair(*first, *last);
    }
    return std::nullopt;
}

void addSelector(std::string_view word, const Names& names, std::vector<std::size_t>& out) {
    if (const auto column = findColumn(word, names)) return out.push_back(*column);
    const auto range = findRange(word, names);
    if (!range) throw unknownColumn(word, names);
    for (std::size_t j = range->first;; j += range->first < range->second ? 1 : std::size_t(-1)) {
        out.push_back(j);
        if (j == range->second) break;
    }
}

/// Cuts a list at commas outside double quotes; words in quotes are names and nothing else.
void addList(std::string_view list, const Names& names, std::vector<std::size_t>& out) {
    while (!list.empty()) {
        if (list.front() == '"') {
            const std::size_t close = list.find('"', 1);
            const std::string_view word = list.substr(1, close == std::string_view::npos ? close : close - 1);
            const auto column = findName(word, names);
            if (!column) throw unknownColumn(word, names);
            out.push_back(*column);
            list.remove_prefix(std::min(list.size(), word.size() + 2));
        } else {
            const std::string_view word = list.substr(0, list.find(','));
            addSelector(word, names, out);
            list.remove_prefix(word.size());
        }
        if (!list.empty()) list.remove_prefix(1);
    }
}

/// What each column is for: one thing only.
class Parts {
  public:
    explicit Parts(const Names& names) : names_(names), parts_(names.size(), nullptr) {}

    void claim(std::size_t j, const char* part) {
        if (parts_[j] != nullptr && parts_[j] != part) {
            throw UsageError(
                fmt::format("column {} {} and {} too", quotedForMessage(names_[j]), parts_[j], part));
        }
        parts_[j] = part;
    }
    bool taken(std::size_t j) const { return parts_[j] != nullptr; }

  private:
    const Names& names_;
    std::vector<const char*> parts_;
};

/// The columns of several lists, each once.
std::vector<std::size_t> claimLists(const std::vector<std::string>& lists, const Names& names, Parts& parts,
                                    const char* part) {
    std::vector<std::size_t> out;
    for (const std::string& list : lists) {
        for (const std::size_t j : resolveColumns(list, names)) {
            parts.claim(j, part);
            if (std::ranges::find(out, j) == out.end()) out.push_back(j);
        }
    }
    return out;
}

std::size_t resolveOne(const std::string& word, const Names& names) {
    const auto column = findColumn(word, names);
    if (!column) throw unknownColumn(word, names);
    return *column;
}

}  // namespace

std::vector<std::size_t> resolveColumns(std::string_view list, const std::vector<std::string>& names) {
    std::vector<std::size_t> out;
    if (const auto whole = findName(list, names)) {
        out.push_back(*whole);
    } else {
        addList(list, names, out);
    }
    return out;
}

Selection selectColumns(const SelectionOptions& options, const std::vector<std::string>& names) {
    Selection selection;
    Parts parts(names);
    selection.wants.assign(names.size(), Want::kSkip);
    if (!options.weights.empty()) {
        selection.weights = resolveOne(options.weights, names);
        parts.claim(*selection.weights, "holds the weights");
    }
    if (!options.by.empty()) {
        selection.by = resolveOne(options.by, names);
        parts.claim(*selection.by, "holds the groups");
    }
    selection.partial = claimLists(options.partial, names, parts, "is held constant (--partial)");
    selection.with = claimLists(options.with, names, parts, "stands across (--with)");
    selection.analysed = claimLists(options.columns, names, parts, "is analysed (--columns)");
    for (std::size_t j = 0; options.columns.empty() && j < names.size(); ++j) {
        if (!parts.taken(j)) selection.analysed.push_back(j);
    }
    if (selection.analysed.empty()) throw UsageError("no column to analyse is left");
    for (const auto* list : {&selection.analysed, &selection.with, &selection.partial}) {
        for (const std::size_t j : *list) selection.wants[j] = Want::kAsIs;
    }
    for (const std::string& list : options.text) {
        for (const std::size_t j : resolveColumns(list, names)) {
            if (selection.wants[j] == Want::kAsIs) selection.wants[j] = Want::kTexts;
        }
    }
    if (selection.weights) selection.wants[*selection.weights] = Want::kNumbers;
    if (selection.by) selection.wants[*selection.by] = Want::kTexts;
    return selection;
}

}  // namespace numcore::cli
