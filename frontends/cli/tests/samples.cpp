#include "cli/tests/samples.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "caller/text.hpp"
#include "cli/errors.hpp"
#include "cli/words.hpp"
#include "numcore/api.h"

namespace numcore::cli {

namespace {

std::string nameOf(const Group& group) {
    return caller::toUtf8(caller::toUtf16(group.name));
}

std::string listOf(const std::vector<Group>& groups) {
    constexpr std::size_t kMost = 20;
    std::string out;
    for (std::size_t k = 0; k < std::min(groups.size(), kMost); ++k)
        out += (k == 0 ? "" : ", ") + quotedForMessage(groups[k].name);
    return groups.size() > kMost ? out + ", ..." : out;
}

Group takeGroup(const std::string& name, std::vector<Group>& groups, const std::string& groupsName) {
    const auto found = std::ranges::find(groups, name, &Group::name);
    if (found != groups.end()) return std::move(*found);
    throw UsageError(fmt::format("--groups: no group {} in column {}\ngroups: {}", quotedForMessage(name),
                                 quotedForMessage(groupsName), listOf(groups)));
}

/// The words of --groups: a word that is a group goes before a list.
std::vector<std::string> wordsOf(const std::vector<std::string>& lists, const std::vector<Group>& groups) {
    std::vector<std::string> words;
    for (const std::string& list : lists) {
        const bool whole = std::ranges::find(groups, list, &Group::name) != groups.end();
        for (const std::string& word : whole ? std::vector{list} : splitList(list)) {
            if (std::ranges::find(words, word) != words.end())
                throw UsageError(fmt::format("--groups names {} twice", quotedForMessage(word)));
            words.push_back(word);
        }
    }
    return words;
}

/// The present values of a column in some rows.
TestSample sampleOf(const NumberColumn& column, const std::vector<std::size_t>& rows, const Sample& from,
                    std::string name) {
    TestSample out{std::move(name), {}, {}, 0};
    const auto cells = column.cells.asDoubles();
    const auto weights = from.weights.asDoubles();
    out.values.reserve(rows.size());
    if (from.weighted()) out.weights.reserve(rows.size());
    for (const std::size_t i : rows) {
        if (cells[i] == NUMCORE_MISSING) {
            ++out.nMissing;
            continue;
        }
        out.values.push_back(cells[i]);
        if (from.weighted()) out.weights.push_back(weights[i]);
    }
    return out;
}

std::vector<std::size_t> allRows(const Sample& sample) {
    std::vector<std::size_t> rows(sample.nRows);
    for (std::size_t i = 0; i < rows.size(); ++i) rows[i] = i;
    return rows;
}

std::vector<Comparison> compareGroups(const Sample& sample, const std::vector<Group>& groups) {
    std::vector<Comparison> out;
    for (const NumberColumn& column : sample.numbers) {
        Comparison comparison{column.name, {}};
        for (const Group& group : groups)
            comparison.samples.push_back(sampleOf(column, group.rows, sample, nameOf(group)));
        out.push_back(std::move(comparison));
    }
    return out;
}

std::vector<Comparison> compareColumns(const Sample& sample, const std::vector<std::size_t>& rows) {
    Comparison comparison;
    for (const NumberColumn& column : sample.numbers)
        comparison.samples.push_back(sampleOf(column, rows, sample, column.name));
    return {std::move(comparison)};
}

std::vector<Comparison> takeAlone(const Sample& sample) {
    std::vector<Comparison> out;
    out.reserve(sample.numbers.size());
    for (const NumberColumn& column : sample.numbers)
        out.push_back({column.name, {sampleOf(column, allRows(sample), sample, column.name)}});
    return out;
}

}  // namespace

std::string Comparison::name() const {
    if (!variable.empty()) return quotedForMessage(variable);
    std::string out;
    for (const TestSample& sample : samples) out += (out.empty() ? "" : ", ") + quotedForMessage(sample.name);
    return out;
}

std::vector<Group> groupsToCompare(const Sample& sample, const TestRequest& request, Report& report) {
    std::vector<Group> groups = groupsOf(sample);
    if (!request.groups.empty()) {
        std::vector<Group> chosen;
        for (const std::string& word : wordsOf(request.groups, groups))
            chosen.push_back(takeGroup(word, groups, sample.groupsName));
        groups = std::move(chosen);
    }
    if (groups.size() < 2) {
        throw DataError(fmt::format("{}: one group only to compare, {} of column {}", report.file,
                                    listOf(groups), quotedForMessage(sample.groupsName)));
    }
    std::vector<std::size_t> rows;
    for (const Group& group : groups) rows.insert(rows.end(), group.rows.begin(), group.rows.end());
    if (rows.size() < sample.nRows) {
        std::ranges::sort(rows);
        countMissing(takeRows(sample, rows), report.rows);
        countDropped(sample.nRows - rows.size(), "in other groups", report);
    }
    return groups;
}

std::vector<Comparison> takeComparisons(Sample sample, Design design, const TestRequest& request,
                                        Report& report) {
    if (!sample.texts.empty()) report.notes.push_back(textsLeftOut(sample));
    sample.texts.clear();
    countMissing(sample, report.rows);
    if (sample.numbers.empty()) throw DataError(report.file + ": no numeric column to test");
    switch (design) {
        case Design::kOneSample:
            return takeAlone(sample);
        case Design::kColumns:
            return compareColumns(sample, allRows(sample));
        case Design::kPairs: {
            const std::vector<std::size_t> rows = completeRows(sample);
            countIncomplete(sample.nRows - rows.size(), report);
            return compareColumns(sample, rows);
        }
        case Design::kGroups:
            break;
    }
    return compareGroups(sample, groupsToCompare(sample, request, report));
}

void requireTwo(const Comparison& comparison, const std::string& groupsName, const char* test,
                const Report& report) {
    const std::vector<TestSample>& samples = comparison.samples;
    if (samples.size() == 2) return;
    if (groupsName.empty()) {
        throw DataError(fmt::format(
            "{}: {} compares two columns, here {}: {}; choose them by --columns", report.file, test,
            samples.size() == 1 ? "is one" : fmt::format("are {}", samples.size()), comparison.name()));
    }
    std::vector<Group> groups;
    groups.reserve(samples.size());
    for (const TestSample& sample : samples) groups.push_back({sample.name, {}});
    throw DataError(fmt::format("{}: {} compares two groups, column {} has {}: {}; choose two: --groups {},{}",
                                report.file, test, quotedForMessage(groupsName), samples.size(), listOf(groups),
                                printable(samples[0].name), printable(samples[1].name)));
}

}  // namespace numcore::cli
