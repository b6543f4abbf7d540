#include "cli/tests/outcome.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <utility>

#include "cli/correlation/tables.hpp"
#include "cli/errors.hpp"
#include "cli/moments.hpp"
#include "cli/tests/resampling.hpp"

namespace numcore::cli {

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

bool anyVariable(const auto& list, auto comparisonOf) {
    return std::ranges::any_of(list, [&](const auto& entry) { return !comparisonOf(entry).variable.empty(); });
}

double sumOf(const std::vector<double>& weights) {
    double sum = 0.0;
    for (const double weight : weights) sum += weight;
    return sum;
}

/// The missing value of a computed statistic or limit is minus infinity.
Cell signedCell(double value, double atMissing, bool computed) {
    if (!computed) return {};
    return value == NUMCORE_MISSING ? Cell(atMissing) : cellOf(value);
}

/// What a test that is not computed leaves of a number says nothing.
Cell cellIfComputed(const TestOutcome& outcome, double value) {
    return outcome.computed() ? cellOf(value) : Cell();
}

/// Columns of the results: heading and cell.
struct ResultColumn {
    ReportColumn column;
    Cell (*cell)(const TestedComparison& tested, const TestKind& kind);
};

std::vector<ResultColumn> estimateColumns(const TestKind& kind) {
    if (kind.estimateId == nullptr) return {};
    return {{{kind.estimateId, kind.estimateTitle, ColumnKind::kNumber},
             [](const TestedComparison& tested, const TestKind&) { return cellOf(tested.outcome.estimate); }},
            {{"lower", "Lower", ColumnKind::kNumber},
             [](const TestedComparison& tested, const TestKind& of) {
                 return signedCell(tested.outcome.lower, of.openLower, tested.outcome.computed());
             }},
            {{"upper", "Upper", ColumnKind::kNumber},
             [](const TestedComparison& tested, const TestKind&) { return cellOf(tested.outcome.upper); }}};
}

std::vector<ResultColumn> statisticColumns(const TestKind& kind) {
    std::vector<ResultColumn> columns{{{kind.statisticId, kind.statisticTitle, ColumnKind::kNumber},
                                       [](const TestedComparison& tested, const TestKind&) {
                                           return signedCell(tested.outcome.statistic, -kInfinity,
                                                             tested.outcome.computed());
                                       }}};
    if (kind.nDf > 0) {
        columns.push_back({{kind.nDf > 1 ? "df1" : "df", kind.nDf > 1 ? "df1" : "df", ColumnKind::kNumber},
                           [](const TestedComparison& tested, const TestKind&) {
                               return cellIfComputed(tested.outcome, tested.outcome.df);
                           }});
    }
    if (kind.nDf > 1) {
        columns.push_back(
            {{"df2", "df2", ColumnKind::kNumber}, [](const TestedComparison& tested, const TestKind&) {
                 return cellIfComputed(tested.outcome, tested.outcome.df2);
             }});
    }
    columns.push_back(
        {{"p", "p", ColumnKind::kProbability},
         [](const TestedComparison& tested, const TestKind&) { return cellOf(tested.outcome.pValue); }});
    columns.push_back(
        {{"critical", "Critical", ColumnKind::kNumber}, [](const TestedComparison& tested, const TestKind&) {
             return cellIfComputed(tested.outcome, tested.outcome.critical);
         }});
    return columns;
}

std::vector<ReportColumn> resampleColumns() {
    return {{"resamples", "Resamples", ColumnKind::kCount},   {"extreme", "Extreme", ColumnKind::kCount},
            {"exact", "Exact", ColumnKind::kCount},           {"seed", "Seed", ColumnKind::kCount},
            {"p_lower", "p lower", ColumnKind::kProbability}, {"p_upper", "p upper", ColumnKind::kProbability}};
}

bool isBelowBound(const TestedComparison& tested) {
    return tested.outcome.computed() && tested.outcome.pValue == 0.0;
}

void appendResampleCells(const TestOutcome& outcome, std::vector<Cell>& row) {
    const std::size_t nCells = resampleColumns().size();
    if (!outcome.resampled()) {
        row.insert(row.end(), nCells, Cell());
        return;
    }
    const bool exact = isExact(outcome.resampling);
    const PLimits limits = limitsOfP(outcome);
    row.emplace_back(outcome.resampling.nUsed);
    row.emplace_back(outcome.resampling.nExtreme);
    row.emplace_back(std::int64_t{exact});
    row.push_back(exact ? Cell() : Cell(std::int64_t{outcome.resampling.seed}));
    row.push_back(cellOf(limits.lower));
    row.push_back(cellOf(limits.upper));
}

/// The columns that name a test: its variable, and the two samples it compares.
void appendKeys(const Comparison& comparison, const TestKind& kind, bool withVariable, bool forMachines,
                std::vector<Cell>& row) {
    if (withVariable || forMachines) row.emplace_back(comparison.variable);
    const bool two = comparison.samples.size() == 2;
    const std::string first = two ? comparison.samples[0].name : "";
    const std::string second = two ? comparison.samples[1].name : "";
    if (forMachines) {
        row.emplace_back(first);
        row.emplace_back(second);
    } else if (two && kind.between != nullptr) {
        row.emplace_back(first + kind.between + second);
    }
}

ReportTable resultsTable(const std::vector<TestedComparison>& tested, const TestKind& kind, bool withVariable,
                         bool forMachines) {
    ReportTable table{"test", tested.front().outcome.method, {}, {}, 0, {}};
    if (withVariable || forMachines) table.columns.push_back({"variable", "Variable", ColumnKind::kText});
    if (forMachines) {
        table.columns.push_back({"first", "First", ColumnKind::kText});
        table.columns.push_back({"second", "Second", ColumnKind::kText});
    } else if (tested.front().comparison.samples.size() == 2 && kind.between != nullptr) {
        table.columns.push_back({"compared", "Compared", ColumnKind::kText});
    }
    table.nKeys = std::min<std::size_t>(table.columns.size(), 1);
    return table;
}

std::string sizesOf(const Comparison& comparison) {
    std::string out;
    for (const TestSample& sample : comparison.samples)
        out += fmt::format("{}{} has {}", out.empty() ? "" : ", ", quotedForMessage(sample.name),
                           counted(sample.values.size(), "value"));
    return out;
}

bool holdsInfinite(const TestSample& sample) {
    return std::ranges::any_of(sample.values, [](double value) { return std::isinf(value); });
}

std::string whyNot(const TestedComparison& tested, const TestKind& kind) {
    for (const TestSample& sample : tested.comparison.samples) {
        if (holdsInfinite(sample))
            return fmt::format("{} holds an infinite value", quotedForMessage(sample.name));
    }
    if (tested.outcome.status == -1) return "too few values: " + sizesOf(tested.comparison);
    return kind.noSpread;
}

bool isInfinite(double statistic) {
    return statistic == NUMCORE_MISSING || statistic == NUMCORE_OVERFLOW;
}

}  // namespace

std::string limitsOf(double alpha) {
    return fmt::format("limits of {:.10g} %", 100.0 * (1.0 - alpha));
}

void addSamplesTable(const std::vector<Comparison>& comparisons, const std::string& groupsName,
                     bool withVariance, Report& report) {
    ReportTable table{"samples", "Samples", {}, {}, 0, {}};
    const bool withVariable = !groupsName.empty();
    const bool weighted = comparisons.front().weighted();
    if (withVariable) table.columns.push_back({"variable", "Variable", ColumnKind::kText});
    table.columns.push_back(
        {withVariable ? "group" : "sample", withVariable ? groupsName : "Sample", ColumnKind::kText});
    table.nKeys = table.columns.size();
    table.columns.push_back({"n", "n", ColumnKind::kCount});
    table.columns.push_back({"missing", "Missing", ColumnKind::kCount});
    if (weighted) table.columns.push_back({"weight", "Weight", ColumnKind::kValue});
    table.columns.push_back({"mean", "Mean", ColumnKind::kNumber});
    table.columns.push_back({"sd", "Std. dev.", ColumnKind::kNumber});
    if (withVariance) table.columns.push_back({"variance", "Variance", ColumnKind::kNumber});
    for (const Comparison& comparison : comparisons) {
        for (const TestSample& sample : comparison.samples) {
            const Moments moments = momentsOf(sample.values, sample.weights);
            // One value has no deviation, though the summary gives 0.
            const double deviation = sample.n() < 2 ? NUMCORE_MISSING : moments.deviation;
            std::vector<Cell> row;
            if (withVariable) row.emplace_back(comparison.variable);
            row.emplace_back(sample.name);
            row.emplace_back(std::int64_t{sample.n()});
            row.emplace_back(static_cast<std::int64_t>(sample.nMissing));
            if (weighted) row.emplace_back(sumOf(sample.weights));
            row.push_back(cellOf(moments.mean));
            row.push_back(cellOf(deviation));
            if (withVariance)
                row.push_back(deviation == NUMCORE_MISSING ? Cell() : Cell(deviation * deviation));
            table.rows.push_back(std::move(row));
        }
    }
    report.tables.push_back(std::move(table));
}

void addResultsTable(const std::vector<TestedComparison>& tested, const TestKind& kind, bool forMachines,
                     Report& report) {
    const bool withVariable = anyVariable(
        tested, [](const TestedComparison& entry) -> const Comparison& { return entry.comparison; });
    ReportTable table = resultsTable(tested, kind, withVariable, forMachines);
    std::vector<ResultColumn> columns = estimateColumns(kind);
    std::ranges::move(statisticColumns(kind), std::back_inserter(columns));
    for (const ResultColumn& column : columns) table.columns.push_back(column.column);
    const bool resampled =
        std::ranges::any_of(tested, [](const TestedComparison& entry) { return entry.outcome.resampled(); });
    const bool bounded = forMachines && std::ranges::any_of(tested, isBelowBound);
    if (bounded) table.columns.push_back(kBoundColumn);
    if (forMachines) table.columns.push_back({"method", "Method", ColumnKind::kText});
    if (forMachines && resampled) std::ranges::move(resampleColumns(), std::back_inserter(table.columns));
    for (const TestedComparison& entry : tested) {
        std::vector<Cell> row;
        row.reserve(table.columns.size());
        appendKeys(entry.comparison, kind, withVariable, forMachines, row);
        for (const ResultColumn& column : columns) {
            const bool atBound = forMachines && column.column.id == "p" && isBelowBound(entry);
            row.push_back(atBound ? Cell(kFinestP) : column.cell(entry, kind));
        }
        if (bounded) row.emplace_back(std::int64_t{isBelowBound(entry)});
        if (forMachines) row.emplace_back(methodOf(entry.outcome));
        if (forMachines && resampled) appendResampleCells(entry.outcome, row);
        table.rows.push_back(std::move(row));
    }
    report.tables.push_back(std::move(table));
}

void noteFailures(const std::vector<TestedComparison>& tested, const TestKind& kind, Report& report) {
    const auto failed = [](const TestedComparison& entry) { return !entry.outcome.computed(); };
    if (std::ranges::all_of(tested, failed)) {
        const std::string place = report.file.empty() ? "" : report.file + ": ";
        throw DataError(
            fmt::format("{}no test of {}: {}", place, tested[0].comparison.name(), whyNot(tested[0], kind)));
    }
    for (const TestedComparison& entry : tested) {
        const std::string name = entry.comparison.name();
        if (failed(entry)) {
            report.notes.push_back(fmt::format("no test of {}: {}", name, whyNot(entry, kind)));
        } else if (isInfinite(entry.outcome.statistic)) {
            report.notes.push_back(
                fmt::format("{}: the values do not vary, so {} is infinite", name, kind.statisticTitle));
        }
    }
}

void noteTestSettings(const TestRequest& request, Report& report) {
    if (request.alternative != Alternative::kTwoSided)
        report.settings.emplace_back("alternative", nameOf(request.alternative));
    if (request.alpha != TestRequest{}.alpha)
        report.settings.emplace_back("alpha", fmt::format("{}", request.alpha));
}

void notePValue(const std::vector<TestedComparison>& tested, const TestRequest& request,
                const std::string& hypothesis, Report& report) {
    report.notes.push_back("p: " + hypothesis);
    if (!request.resample.wanted()) return;
    for (const TestedComparison& entry : tested) {
        if (!entry.outcome.computed()) continue;
        const std::string told = tellResampling(entry.outcome);
        report.notes.push_back(tested.size() == 1 ? "p: " + told
                                                  : fmt::format("p of {}: {}", entry.comparison.name(), told));
    }
}

}  // namespace numcore::cli
