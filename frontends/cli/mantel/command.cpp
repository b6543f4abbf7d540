#include "cli/mantel/command.hpp"

#include <fmt/format.h>

#include <string>
#include <vector>

#include "cli/codes.hpp"
#include "cli/correlation/tables.hpp"
#include "cli/errors.hpp"
#include "cli/mantel/distances.hpp"
#include "numcore/association.h"

namespace numcore::cli {

namespace {

std::vector<Distances> readMatrices(const Options& options, Report& report) {
    std::vector<Distances> matrices;
    for (const std::string& path : options.mantel.files) {
        matrices.push_back(readDistances(path, options, report));
        if (matrices.size() > 1 && matchObjects(matrices.front(), matrices.back())) {
            report.notes.push_back(
                fmt::format("{} is put into the order of {}", matrices.back().file, matrices.front().file));
        }
    }
    return matrices;
}

ST_MantelOptions optionsOf(const MantelRequest& request) {
    ST_MantelOptions options{};
    options.nPermutations = request.nPermutations;
    options.seed = request.seed.value_or(0);
    options.seedGiven = flagOf(request.seed.has_value());
    options.ranks = flagOf(request.ranks);
    options.alternative = codeOf(request.alternative);
    return options;
}

ST_MantelResult test(const std::vector<Distances>& matrices, const MantelRequest& request) {
    const ST_MantelOptions options = optionsOf(request);
    ST_MantelResult result{};
    result.z = result.rho = result.pValue = NUMCORE_MISSING;
    const double* control = matrices.size() > 2 ? matrices[2].cells.data() : nullptr;
    const std::int32_t status =
        cRunMantelTest(matrices[0].cells.data(), matrices[1].cells.data(), control,
                       static_cast<std::int32_t>(matrices[0].nObjects), &options, &result);
    if (status == -1)
        throw DataError(fmt::format("{}: a Mantel test takes two objects at least", matrices[0].file));
    if (status < 0) {
        throw DataError(fmt::format(
            "{}: the distances of the common pairs do not vary in one of the matrices{}", matrices[0].file,
            matrices.size() > 2 ? fmt::format(", or {} explains one of them wholly", matrices[2].file) : ""));
    }
    return result;
}

void noteSettings(const std::vector<Distances>& matrices, const MantelRequest& request, Report& report) {
    const auto add = [&](const char* name, const std::string& value) {
        report.settings.emplace_back(name, value);
    };
    add("first", matrices[0].file);
    add("second", matrices[1].file);
    if (matrices.size() > 2) add("held constant", matrices[2].file);
    add("method", request.ranks ? "spearman" : "pearson");
    add("alternative", nameOf(request.alternative));
}

ReportTable tableOf(const Distances& first, const ST_MantelResult& result, bool partial) {
    ReportTable table{"mantel",
                      partial ? "Partial Mantel test" : "Mantel test",
                      {{"objects", "Objects", ColumnKind::kCount},
                       {"pairs", "Pairs", ColumnKind::kCount},
                       {"z", "Sum of products", ColumnKind::kNumber},
                       {"coefficient", "r", ColumnKind::kCoefficient},
                       {"p", "p", ColumnKind::kProbability},
                       {"permutations", "Permutations", ColumnKind::kCount}},
                      {},
                      0,
                      {}};
    table.rows.push_back({static_cast<std::int64_t>(first.nObjects), result.nPairs, cellOf(result.z),
                          cellOf(result.rho), cellOf(result.pValue),
                          static_cast<std::int64_t>(result.nPermutations)});
    if (result.pValue != NUMCORE_MISSING && result.complete != NUMCORE_TRUE) {
        table.columns.push_back({"seed", "Seed", ColumnKind::kCount});
        table.rows[0].emplace_back(static_cast<std::int64_t>(result.seed));
    }
    return table;
}

}  // namespace

Report testMatrices(const Options& options) {
    const MantelRequest& request = options.mantel;
    Report report;
    report.command = "mantel";
    const std::vector<Distances> matrices = readMatrices(options, report);
    noteSettings(matrices, request, report);
    report.title = matrices.size() > 2 ? "Partial Mantel test" : "Mantel test";
    const ST_MantelResult result = test(matrices, request);
    report.tables.push_back(tableOf(matrices[0], result, matrices.size() > 2));
    for (const Distances& distances : matrices) {
        if (distances.nMissing > 0)
            report.notes.push_back(fmt::format("{}: {} without a distance skipped", distances.file,
                                               counted(distances.nMissing, "pair")));
    }
    if (result.pValue != NUMCORE_MISSING) {
        report.notes.emplace_back(
            result.complete == NUMCORE_TRUE
                ? "p-value: the share of all orders of the objects that give as much"
                : fmt::format("p-value: of drawn orders of the objects; --seed {} draws them again",
                              result.seed));
    }
    return report;
}

}  // namespace numcore::cli
