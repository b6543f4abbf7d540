#include "cli/correlation/command.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "caller/text.hpp"
#include "cli/correlation/map.hpp"
#include "cli/correlation/remarks.hpp"
#include "cli/correlation/tables.hpp"
#include "cli/errors.hpp"
#include "cli/output/sink.hpp"
#include "cli/output/writers.hpp"

namespace numcore::cli {

namespace {

/// Columns of texts are left out; those that were asked for by a part of their own are an error.
void leaveOutTexts(Sample& sample, const CorrelationRequest& request, Report& report) {
    for (const TextColumn& column : sample.texts) {
        if (column.role == Role::kVariable) continue;
        throw DataError(fmt::format("{}: column {} of {} holds texts; it takes numbers", report.file,
                                    quotedForMessage(column.name),
                                    column.role == Role::kAcross ? "--with" : "--partial"));
    }
    if (!sample.texts.empty()) {
        const bool polychoric = request.coefficient == Coefficient::kPolychoric;
        report.notes.push_back(textsLeftOut(sample) +
                               (polychoric ? " (write ordered categories as numbers)" : ""));
    }
    sample.texts.clear();
    countMissing(sample, report.rows);
}

std::vector<std::string> namesOf(const Sample& sample, Role role) {
    std::vector<std::string> names;
    for (const NumberColumn& column : sample.numbers) {
        if (column.role == role) names.push_back(column.name);
    }
    return names;
}

void checkColumns(const Sample& sample, const Report& report) {
    const std::vector<std::string> variables = namesOf(sample, Role::kVariable);
    if (variables.empty()) throw DataError(report.file + ": no numeric column to correlate");
    if (variables.size() == 1 && namesOf(sample, Role::kAcross).empty()) {
        throw DataError(
            fmt::format("{}: one numeric column only, {}; a correlation takes two (--columns, --with)",
                        report.file, quotedForMessage(variables[0])));
    }
}

void checkMap(const Sample& sample, const CorrelationRequest& request) {
    const std::size_t largest =
        std::max(namesOf(sample, Role::kVariable).size(), namesOf(sample, Role::kAcross).size());
    if (request.plot.empty() || largest <= kLargestMap) return;
    throw DataError(fmt::format("--plot draws up to {} variables, here are {}; choose some by --columns",
                                kLargestMap, largest));
}

std::vector<GroupedCorrelations> correlateGroups(Sample sample, const CorrelationRequest& request,
                                                 Report& report) {
    std::vector<GroupedCorrelations> out;
    if (!sample.grouped()) {
        noteConstantColumns(sample, "", report.notes);
        out.push_back({"", correlate(std::move(sample), request)});
        return out;
    }
    for (const Group& group : groupsOf(sample)) {
        const std::string name = caller::toUtf8(caller::toUtf16(group.name));
        Sample part = takeRows(sample, group.rows);
        noteConstantColumns(part, name, report.notes);
        out.push_back({name, correlate(std::move(part), request)});
    }
    return out;
}

/// Rows that listwise deletion leaves out count as dropped.
void noteListwise(const std::vector<GroupedCorrelations>& groups, Report& report) {
    std::size_t nExcluded = 0;
    for (const GroupedCorrelations& group : groups) nExcluded += group.found.nRowsExcluded;
    countIncomplete(nExcluded, report);
}

void noteSettings(const CorrelationRequest& request, const std::vector<std::string>& heldConstant,
                  Report& report) {
    const auto add = [&](const char* name, std::string value) {
        report.settings.emplace_back(name, std::move(value));
    };
    add("method", std::string(nameOf(request.coefficient)) + (request.fullLikelihood ? "-ml" : ""));
    if (!heldConstant.empty()) add("partial", fmt::format("{}", fmt::join(heldConstant, ", ")));
    if (request.listwise) add("missing", "listwise");
    if (request.alternative != Alternative::kTwoSided) add("alternative", nameOf(request.alternative));
    if (request.alpha != CorrelationRequest{}.alpha) add("alpha", fmt::format("{}", request.alpha));
    if (request.exact) add("p-values", "exact");
    if (request.continuity) add("continuity correction", "yes");
}

}  // namespace

void correlations(Sample sample, const Options& options, Report& report) {
    const CorrelationRequest& request = options.correlation;
    const bool forMachines = isForMachines(formatOf(options.output));
    const bool weighted = sample.weighted();
    const std::string groupsName = sample.groupsName;
    leaveOutTexts(sample, request, report);
    checkColumns(sample, report);
    checkMap(sample, request);
    const std::vector<std::string> heldConstant = namesOf(sample, Role::kHeldConstant);
    noteSettings(request, heldConstant, report);
    const auto groups = correlateGroups(std::move(sample), request, report);
    noteListwise(groups, report);
    const std::string title = tableTitle(request, heldConstant);
    const bool asPairs = request.layout == Layout::kByFormat ? forMachines || request.intervals
                                                             : request.layout == Layout::kPairs;
    if (!asPairs || (!forMachines && request.layout == Layout::kByFormat))
        addCoefficients(groups, request, title, groupsName, forMachines, report);
    if (!asPairs) addMatrices(groups, request, groupsName, forMachines, report);
    if (asPairs) {
        const std::string limits = fmt::format("Limits of {:.4g} %", 100.0 * (1.0 - request.alpha));
        const bool beside = request.layout == Layout::kByFormat && !forMachines;
        addPairs(groups, request, beside ? limits : title, groupsName, forMachines, report);
    }
    addDetails(groups, request, heldConstant, report);
    const std::string legend = markLegend(request);
    if (!forMachines && !legend.empty()) report.notes.insert(report.notes.begin(), legend);
    noteShortcomings(groups, request, weighted, forMachines, report.notes);
    if (!request.plot.empty()) writeFile(request.plot, drawCorrelationMap(groups, request, title, report.file));
}

}  // namespace numcore::cli
