#include "cli/tests/counts.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

#include "caller/text.hpp"
#include "cli/errors.hpp"
#include "cli/laws/values.hpp"
#include "cli/output/writers.hpp"
#include "cli/tests/samples.hpp"
#include "numcore/api.h"

namespace numcore::cli {

namespace {

enum class Trial : char { kMissing, kFailure, kSuccess };

/// The rows of the column as trials.
struct Trials {
    std::string column;
    std::string event;
    std::vector<Trial> rows;
};

DataError notTwo(const std::string& column, std::size_t nValues, const char* wanted, const Report& report) {
    return DataError(fmt::format("{}: column {} holds {}, not {}; --event names the one that is a success",
                                 report.file, quotedForMessage(column), counted(nValues, "different value"),
                                 wanted));
}

DataError noEvent(const std::string& column, const std::string& event, const Report& report) {
    return DataError(fmt::format("{}: column {} holds no {}", report.file, quotedForMessage(column),
                                 quotedForMessage(event)));
}

template <class Cells, class IsMissing, class IsEvent>
std::vector<Trial> trialsOf(const Cells& cells, IsMissing isMissing, IsEvent isEvent) {
    std::vector<Trial> out;
    out.reserve(cells.size());
    for (const auto& cell : cells)
        out.push_back(isMissing(cell) ? Trial::kMissing : isEvent(cell) ? Trial::kSuccess : Trial::kFailure);
    return out;
}

Trials takeNumbers(const NumberColumn& column, const std::string& event, const Report& report) {
    const auto cells = column.cells.asDoubles();
    std::set<double> values(cells.begin(), cells.end());
    values.erase(NUMCORE_MISSING);
    const bool binary = std::ranges::all_of(values, [](double value) { return value == 0.0 || value == 1.0; });
    if (event.empty() && !binary) throw notTwo(column.name, values.size(), "0 and 1", report);
    const std::optional<double> wanted = event.empty() ? std::optional(1.0) : parseNumber(event);
    if (!wanted || (!event.empty() && !values.contains(*wanted))) throw noEvent(column.name, event, report);
    return {column.name, exactNumber(*wanted),
            trialsOf(
                cells, [](double cell) { return cell == NUMCORE_MISSING; },
                [&](double cell) { return cell == *wanted; })};
}

Trials takeTexts(const TextColumn& column, const std::string& event, const Report& report) {
    std::set<std::string_view> values(column.cells.begin(), column.cells.end());
    values.erase("");
    if (event.empty() && values.size() != 2) throw notTwo(column.name, values.size(), "two", report);
    const std::string wanted = event.empty() ? std::string(*values.rbegin()) : event;
    if (!values.contains(wanted)) throw noEvent(column.name, event, report);
    return {column.name, caller::toUtf8(caller::toUtf16(wanted)),
            trialsOf(
                column.cells, [](std::string_view cell) { return cell.empty(); },
                [&](std::string_view cell) { return cell == wanted; })};
}

Trials takeTrials(const Sample& sample, const std::string& event, const Report& report) {
    const std::size_t nColumns = sample.numbers.size() + sample.texts.size();
    if (nColumns != 1) {
        throw DataError(fmt::format(
            "{}: proptest counts one column, here are {}; choose it by --columns, and groups by --by",
            report.file, nColumns));
    }
    return sample.texts.empty() ? takeNumbers(sample.numbers[0], event, report)
                                : takeTexts(sample.texts[0], event, report);
}

std::int32_t wholeCount(double count, const Report& report) {
    constexpr double kMost = std::numeric_limits<std::int32_t>::max();
    if (count == std::floor(count) && count <= kMost) return static_cast<std::int32_t>(count);
    throw DataError(fmt::format("{}: the weights add up to {}; they are counts of rows here, up to {:.0f}",
                                report.file, count, kMost));
}

CountSample countRows(const Trials& trials, const Sample& sample, const std::vector<std::size_t>& rows,
                      std::string name, const Report& report) {
    const auto weights = sample.weights.asDoubles();
    CountSample out;
    out.name = std::move(name);
    double nSuccesses = 0.0;
    double nTrials = 0.0;
    for (const std::size_t i : rows) {
        if (trials.rows[i] == Trial::kMissing) {
            ++out.nMissing;
            continue;
        }
        const double weight = sample.weighted() ? weights[i] : 1.0;
        nTrials += weight;
        if (trials.rows[i] == Trial::kSuccess) nSuccesses += weight;
    }
    out.successes = wholeCount(nSuccesses, report);
    out.trials = wholeCount(nTrials, report);
    if (out.trials < 1)
        throw DataError(fmt::format("{}: {} has no value in column {}", report.file, quotedForMessage(out.name),
                                    quotedForMessage(trials.column)));
    return out;
}

}  // namespace

CountedColumn countSuccesses(const Sample& sample, const TestRequest& request, Report& report) {
    const Trials trials = takeTrials(sample, request.event, report);
    CountedColumn out{trials.column, trials.event, {}};
    if (!sample.grouped()) {
        std::vector<std::size_t> rows(sample.nRows);
        for (std::size_t i = 0; i < rows.size(); ++i) rows[i] = i;
        out.samples.push_back(countRows(trials, sample, rows, trials.column, report));
        return out;
    }
    for (const Group& group : groupsToCompare(sample, request, report)) {
        out.samples.push_back(
            countRows(trials, sample, group.rows, caller::toUtf8(caller::toUtf16(group.name)), report));
    }
    return out;
}

}  // namespace numcore::cli
