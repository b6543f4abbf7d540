#include "cli/correlation/tables.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "numcore/api.h"

namespace numcore::cli {

namespace {

/// A variable with itself is no test.
bool isDiagonal(const Correlations& found, std::size_t i, std::size_t j) {
    return !found.rectangular && i == j;
}

/// One matrix for people or machines: which cells it has, and how one is shown.
struct MatrixStyle {
    const char* id;
    std::string title;
    ColumnKind kind;
    bool diagonal;  // belongs to the matrix
    bool whole;     // or else the triangle below the diagonal, when the matrix is symmetric
};

std::string marksFor(const CorrelatedPair& pair, const CorrelationRequest& request) {
    std::string marks;
    if (pair.pValue == NUMCORE_MISSING) return marks;
    for (const double level : markLevels(request.alpha)) {
        if (pair.pValue < level) marks += '*';
    }
    return marks;
}

Cell coefficientCell(const CorrelatedPair& pair, const CorrelationRequest& request) {
    if (pair.coefficient == NUMCORE_MISSING) return {};
    return Marked{pair.coefficient, request.covariance ? "" : marksFor(pair, request)};
}

/// Adds one matrix; the groups stand below one another.
template <class CellOf>
void addMatrix(const std::vector<GroupedCorrelations>& groups, const MatrixStyle& style,
               const std::string& groupsName, CellOf cellOf, Report& report) {
    const Correlations& first = groups.front().found;
    const bool triangle = !first.rectangular && !style.whole;
    // A triangle without diagonal has nothing in its first row and its last column.
    const std::size_t skipped = triangle && !style.diagonal ? 1 : 0;
    ReportTable table{style.id, style.title, {}, {}, 0, {}};
    if (!groupsName.empty()) table.columns.push_back({"group", groupsName, ColumnKind::kText});
    table.columns.push_back({"variable", "", ColumnKind::kText});
    table.nKeys = table.columns.size();
    for (std::size_t j = 0; j + skipped < first.columns.size(); ++j)
        table.columns.push_back({first.columns[j], first.columns[j], style.kind});
    for (const GroupedCorrelations& group : groups) {
        const Correlations& found = group.found;
        for (std::size_t i = skipped; i < found.rows.size(); ++i) {
            std::vector<Cell> row;
            if (!groupsName.empty()) row.emplace_back(group.group);
            row.emplace_back(found.rows[i]);
            for (std::size_t j = 0; j + skipped < found.columns.size(); ++j) {
                const bool outside = triangle && j > i;
                const bool without = isDiagonal(found, i, j) && !style.diagonal;
                CorrelatedPair pair = found.at(i, j);
                if (isDiagonal(found, i, j)) pair.pValue = NUMCORE_MISSING;
                row.push_back(outside || without ? Cell(std::string()) : cellOf(pair));
            }
            table.rows.push_back(std::move(row));
        }
    }
    report.tables.push_back(std::move(table));
}

/// All pairs of all groups use as many rows.
bool sameRows(const std::vector<GroupedCorrelations>& groups) {
    for (const GroupedCorrelations& group : groups) {
        const auto other = [&](const CorrelatedPair& pair) { return pair.n != group.found.pairs.front().n; };
        if (std::ranges::any_of(group.found.pairs, other)) return false;
    }
    return true;
}

void noteRows(const std::vector<GroupedCorrelations>& groups, Report& report) {
    std::string sizes;
    for (const GroupedCorrelations& group : groups) {
        const std::string name = group.group.empty() ? "" : fmt::format(" in {}", group.group);
        sizes += fmt::format("{}n = {}{}", sizes.empty() ? "" : ", ", group.found.pairs.front().n, name);
    }
    report.notes.push_back(sizes + " for every pair");
}

struct PairColumn {
    ReportColumn column;
    Cell (*cell)(const CorrelatedPair& pair, const CorrelationRequest& request);
};

const PairColumn kLower{{"lower", "Lower", ColumnKind::kCoefficient},
                        [](const CorrelatedPair& pair, const auto&) { return cellOf(pair.lower); }};
const PairColumn kUpper{{"upper", "Upper", ColumnKind::kCoefficient},
                        [](const CorrelatedPair& pair, const auto&) { return cellOf(pair.upper); }};
const PairColumn kPValue{{"p", "p", ColumnKind::kProbability},
                         [](const CorrelatedPair& pair, const auto&) { return cellOf(pair.pValue); }};
const PairColumn kSquared{{"squared", "Squared", ColumnKind::kCoefficient},
                          [](const CorrelatedPair& pair, const auto&) { return cellOf(pair.squared); }};
const PairColumn kSignificant{{"significant", "Significant", ColumnKind::kCount},
                              [](const CorrelatedPair& pair, const CorrelationRequest& request) {
                                  if (pair.pValue == NUMCORE_MISSING) return Cell();
                                  return Cell(std::int64_t{pair.pValue < request.alpha});
                              }};
const PairColumn kRows{{"n", "n", ColumnKind::kCount}, [](const CorrelatedPair& pair, const auto&) {
                           return Cell(static_cast<std::int64_t>(pair.n));
                       }};

const char* symbolOf(Coefficient coefficient) {
    switch (coefficient) {
        case Coefficient::kSpearman:
            return "rho";
        case Coefficient::kKendall:
            return "tau";
        default:
            return "r";
    }
}

std::vector<PairColumn> pairColumns(const CorrelationRequest& request, bool forMachines) {
    if (request.covariance)
        return {{{"covariance", "Covariance", ColumnKind::kNumber}, coefficientCell}, kRows};
    std::vector<PairColumn> columns{
        {{"coefficient", symbolOf(request.coefficient), ColumnKind::kCoefficient}, coefficientCell}};
    if (forMachines) return {columns[0], kPValue, kSignificant, kSquared, kLower, kUpper, kRows};
    if (request.intervals) columns.insert(columns.end(), {kLower, kUpper});
    columns.insert(columns.end(), {kPValue, kRows});
    return columns;
}

std::int64_t countOfMissing(const Correlations& found) {
    std::int64_t n = 0;
    for (std::size_t i = 0; i < found.rows.size(); ++i) {
        for (std::size_t j = 0; j < found.lastColumn(i); ++j)
            n += found.at(i, j).coefficient == NUMCORE_MISSING;
    }
    return n;
}

}  // namespace

const char* nameOf(Coefficient coefficient) {
    switch (coefficient) {
        case Coefficient::kSpearman:
            return "spearman";
        case Coefficient::kKendall:
            return "kendall";
        case Coefficient::kPolychoric:
            return "polychoric";
        case Coefficient::kPearson:
            break;
    }
    return "pearson";
}

const char* nameOf(Alternative alternative) {
    if (alternative == Alternative::kTwoSided) return "two-sided";
    return alternative == Alternative::kLess ? "less" : "greater";
}

std::string tableTitle(const CorrelationRequest& request, const std::vector<std::string>& heldConstant) {
    if (!heldConstant.empty())
        return fmt::format("Partial correlations given {}", fmt::join(heldConstant, ", "));
    if (request.covariance) return "Covariances";
    std::string name = nameOf(request.coefficient);
    name.front() = static_cast<char>(name.front() - 'a' + 'A');
    return name + " correlations";
}

std::vector<double> markLevels(double alpha) {
    constexpr double kUsual[] = {0.05, 0.01, 0.001};
    constexpr std::size_t kMost = 3;
    std::vector<double> levels{alpha};
    for (const double level : kUsual) {
        if (level < alpha && levels.size() < kMost) levels.push_back(level);
    }
    return levels;
}

std::string markLegend(const CorrelationRequest& request) {
    if (request.covariance) return {};
    std::string legend;
    std::string marks;
    for (const double level : markLevels(request.alpha)) {
        marks += '*';
        legend += fmt::format("{}{} p < {}", legend.empty() ? "" : ", ", marks, level);
    }
    return fmt::format("{} ({})", legend, nameOf(request.alternative));
}

void addCoefficients(const std::vector<GroupedCorrelations>& groups, const CorrelationRequest& request,
                     const std::string& title, const std::string& groupsName, bool forMachines,
                     Report& report) {
    const ColumnKind kind = request.covariance ? ColumnKind::kNumber : ColumnKind::kCoefficient;
    const char* id = request.covariance ? "covariances" : "coefficients";
    addMatrix(
        groups, {id, title, kind, true, forMachines}, groupsName,
        [&](const CorrelatedPair& pair) { return coefficientCell(pair, request); }, report);
}

void addMatrices(const std::vector<GroupedCorrelations>& groups, const CorrelationRequest& request,
                 const std::string& groupsName, bool forMachines, Report& report) {
    const bool whole = forMachines;
    const auto add = [&](const MatrixStyle& style, auto cell) {
        addMatrix(groups, style, groupsName, cell, report);
    };
    if (!request.covariance) {
        add({"p_values", fmt::format("p-values ({})", nameOf(request.alternative)), ColumnKind::kProbability,
             false, whole},
            [](const CorrelatedPair& pair) { return cellOf(pair.pValue); });
    }
    if (request.intervals) {
        const std::string level = fmt::format("{:.4g} %", 100.0 * (1.0 - request.alpha));
        add({"lower", "Lower limits, " + level, ColumnKind::kCoefficient, false, whole},
            [](const CorrelatedPair& pair) { return cellOf(pair.lower); });
        add({"upper", "Upper limits, " + level, ColumnKind::kCoefficient, false, whole},
            [](const CorrelatedPair& pair) { return cellOf(pair.upper); });
    }
    if (!forMachines && sameRows(groups)) return noteRows(groups, report);
    add({"n", "Rows of each pair (n)", ColumnKind::kCount, true, whole},
        [](const CorrelatedPair& pair) { return Cell(static_cast<std::int64_t>(pair.n)); });
}

void addPairs(const std::vector<GroupedCorrelations>& groups, const CorrelationRequest& request,
              const std::string& title, const std::string& groupsName, bool forMachines, Report& report) {
    ReportTable table{"pairs", title, {{"variable", "Variable", ColumnKind::kText}}, {}, 1, {}};
    table.columns.push_back({"with", "With", ColumnKind::kText});
    if (!groupsName.empty()) table.columns.push_back({"group", groupsName, ColumnKind::kText});
    table.nKeys = table.columns.size();
    const std::vector<PairColumn> columns = pairColumns(request, forMachines);
    for (const PairColumn& column : columns) table.columns.push_back(column.column);
    const Correlations& first = groups.front().found;
    const std::size_t nDiagonal = request.covariance && !first.rectangular ? 1 : 0;
    // A symmetric matrix is told row after row of its upper triangle, so that each variable leads its list.
    for (std::size_t i = 0; i < first.rows.size(); ++i) {
        const std::size_t begin = first.rectangular ? 0 : i + 1 - nDiagonal;
        for (std::size_t j = begin; j < first.columns.size(); ++j) {
            for (const GroupedCorrelations& group : groups) {
                std::vector<Cell> row{first.rows[i], first.columns[j]};
                if (!groupsName.empty()) row.emplace_back(group.group);
                for (const PairColumn& column : columns)
                    row.push_back(column.cell(group.found.at(i, j), request));
                table.rows.push_back(std::move(row));
            }
        }
    }
    report.tables.push_back(std::move(table));
}

void addDetails(const std::vector<GroupedCorrelations>& groups, const CorrelationRequest& request,
                const std::vector<std::string>& heldConstant, Report& report) {
    ReportTable table{"analysis", "Analysis", {}, {}, 0, {}, true};
    for (const char* id : {"group", "method", "covariance", "likelihood", "alternative", "alpha", "missing",
                           "exact", "continuity", "heldConstant", "rowsUsed", "rowsExcluded", "missingCells",
                           "notComputed", "notExact", "notConverged", "completeData"}) {
        table.columns.push_back({id, id, ColumnKind::kText});
    }
    const bool polychoric = request.coefficient == Coefficient::kPolychoric;
    const auto count = [](std::size_t n) { return static_cast<std::int64_t>(n); };
    for (const auto& [group, found] : groups) {
        table.rows.push_back(
            {group.empty() ? Cell() : Cell(group), std::string(nameOf(request.coefficient)),
             count(request.covariance),
             polychoric ? Cell(request.fullLikelihood ? "full" : "two-step") : Cell(),
             std::string(nameOf(request.alternative)), request.alpha,
             std::string(request.listwise ? "listwise" : "pairwise"), count(request.exact),
             count(request.continuity),
             heldConstant.empty() ? Cell() : Cell(fmt::format("{}", fmt::join(heldConstant, ", "))),
             count(found.nRowsUsed), count(found.nRowsExcluded), count(found.nMissing), countOfMissing(found),
             count(found.nNotExact), count(found.nNotConverged), count(found.complete)});
    }
    report.tables.push_back(std::move(table));
}

}  // namespace numcore::cli
