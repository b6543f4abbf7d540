#include "cli/describe.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "caller/data_set.hpp"
#include "caller/forms.hpp"
#include "caller/text.hpp"
#include "cli/errors.hpp"
#include "numcore/numcore.h"

namespace numcore::cli {

namespace {

const ReportColumn kVariable{"variable", "Variable", ColumnKind::kText};

/// The columns of the library's summary, in its order.
const std::vector<ReportColumn> kSummary{
    {"n", "N", ColumnKind::kCount},
    {"missing", "Missing", ColumnKind::kCount},
    {"present", "Present", ColumnKind::kCount},
    {"minimum", "Minimum", ColumnKind::kValue},
    {"maximum", "Maximum", ColumnKind::kValue},
    {"mean", "Mean", ColumnKind::kNumber},
    {"sd", "Std. dev.", ColumnKind::kNumber},
};

std::vector<ReportColumn> withKeys(const std::vector<ReportColumn>& columns, const std::string& groupsName) {
    std::vector<ReportColumn> out{kVariable};
    if (!groupsName.empty()) out.push_back({"group", groupsName, ColumnKind::kText});
    out.insert(out.end(), columns.begin(), columns.end());
    return out;
}

Cell summaryCell(std::size_t statistic, double value) {
    return kSummary[statistic].kind == ColumnKind::kCount ? countOf(value) : cellOf(value);
}

std::string textOf(std::u16string_view text) {
    return caller::toUtf8(text);
}

caller::DataSet numericData(Sample& sample) {
    std::vector<caller::Array> cells;
    std::vector<std::u16string> names;
    for (NumberColumn& column : sample.numbers) {
        cells.push_back(std::move(column.cells));
        names.push_back(caller::toUtf16(column.name));
    }
    caller::NumericTable table(std::move(cells));
    table.setLabels(names);
    caller::DataSet data;
    data.setNumeric1(std::move(table));
    return data;
}

void addSummary(caller::DataSet& data, ReportTable& table) {
    const std::size_t nVariables = data.numeric1().nColumns();
    caller::DescStats stats(nVariables);
    caller::Host host;
    Cpp_GetDescriptive_ST(&data.record(), NUMCORE_FALSE, &stats.record(), host.system());
    for (std::size_t i = 0; i < nVariables; ++i) {
        std::vector<Cell> row{textOf(stats.labels().text(i))};
        for (std::size_t k = 0; k < kSummary.size(); ++k) row.push_back(summaryCell(k, stats.table().at(i, k)));
        table.rows.push_back(std::move(row));
    }
}

/// One call for all groups; the rows of each variable are then put into the order of the groups.
void addGroupedSummary(caller::DataSet& data, const Sample& sample, ReportTable& table) {
    const std::vector<Group> groups = groupsOf(sample);
    std::unordered_map<std::string, std::size_t> place;
    for (std::size_t g = 0; g < groups.size(); ++g) place[caller::toUtf8(caller::toUtf16(groups[g].name))] = g;
    const TextColumn groupColumn{sample.groupsName, sample.groups};
    data.setStrings3(textTable({&groupColumn}));
    const std::size_t nRows = data.numeric1().nColumns() * groups.size();
    caller::DataSet out;
    out.setStrings1(caller::TextTable(2, nRows)).setNumeric1(caller::NumericTable(kSummary.size(), nRows));
    caller::Host host;
    const std::int32_t nGiven = Cpp_GetStatsAndRestructure2_ST(&data.record(), 1, NUMCORE_FALSE, &out.record(),
                                                               nullptr, host.system(), host.host());
    table.rows.resize(nRows);
    for (std::size_t i = 0; i < static_cast<std::size_t>(std::max(nGiven, 0)) && i < nRows; ++i) {
        const std::string group = textOf(out.strings1().column(1).text(i));
        std::vector<Cell> row{textOf(out.strings1().column(0).text(i)), group};
        for (std::size_t k = 0; k < kSummary.size(); ++k) {
            row.push_back(summaryCell(k, out.numeric1().column(k).at(i)));
        }
        table.rows[i / groups.size() * groups.size() + place[group]] = std::move(row);
    }
}

void describeNumbers(Sample& sample, Report& report) {
    if (sample.numbers.empty()) return;
    caller::DataSet data = numericData(sample);
    if (sample.weighted()) data.setWeights(caller::Array::doubles(sample.weights.asDoubles()));
    ReportTable table{
        "quantitative", "Quantitative variables", withKeys(kSummary, sample.groupsName), {}, 1, {}};
    if (sample.grouped()) {
        table.nKeys = 2;
        addGroupedSummary(data, sample, table);
    } else {
        addSummary(data, table);
    }
    report.tables.push_back(std::move(table));
}

/// Number of different texts of each column.
std::vector<std::size_t> countCategories(caller::DataSet& data, std::size_t nVariables) {
    caller::QualiInfo info(nVariables);
    Cpp_GetMaxCat_ST(&data.record().strings1, static_cast<std::int32_t>(nVariables), &info.record());
    std::vector<std::size_t> counts;
    for (std::size_t j = 0; j < nVariables; ++j) counts.push_back(info.nCategories(j));
    return counts;
}

caller::DataSet textData(const std::vector<const TextColumn*>& columns, const Sample& sample) {
    caller::DataSet data;
    data.setStrings1(textTable(columns));
    if (sample.weighted()) data.setWeights(caller::Array::doubles(sample.weights.asDoubles()));
    return data;
}

/// The library's qualitative summary of text columns, with the group in front of each row when there is one.
/// Each row goes to its variable's list.
void addCategories(caller::DataSet& data, const std::vector<std::size_t>& nCategories, const Cell* group,
                   std::vector<std::vector<std::vector<Cell>>>& rowsOfVariable) {
    const std::size_t nVariables = nCategories.size();
    std::size_t nRows = 0;
    for (const std::size_t n : nCategories) nRows += n;
    caller::QualiInfo info(nVariables);
    info.allocate(nCategories.empty() ? 0 : *std::ranges::max_element(nCategories));
    Cpp_GetQualiDataInfo_ST(&data.record(), &info.record());
    caller::DataSet out;
    out.setStrings1(caller::TextTable(2, nRows)).setNumeric1(caller::NumericTable(3, nRows));
    Cpp_ComputeQualiStats_ST(&info.record(), nullptr, &out.record());
    std::size_t i = 0;
    for (std::size_t variable = 0; variable < nVariables; ++variable) {
        const std::string name = textOf(data.strings1().label(variable));
        for (std::size_t k = 0; k < nCategories[variable]; ++k, ++i) {
            std::vector<Cell> row{name};
            if (group != nullptr) row.push_back(*group);
            row.push_back(textOf(out.strings1().column(1).text(i)));
            row.push_back(countOf(out.numeric1().column(0).at(i)));
            row.push_back(countOf(out.numeric1().column(1).at(i)));
            row.push_back(cellOf(out.numeric1().column(2).at(i)));
            rowsOfVariable[variable].push_back(std::move(row));
        }
    }
}

void describeTexts(const Sample& sample, std::size_t maxCategories, Report& report) {
    std::vector<const TextColumn*> columns;
    for (const TextColumn& column : sample.texts) columns.push_back(&column);
    if (columns.empty()) return;
    caller::DataSet data = textData(columns, sample);
    std::vector<std::size_t> nCategories = countCategories(data, columns.size());
    const std::size_t nBefore = columns.size();
    for (std::size_t j = columns.size(); j-- > 0;) {
        if (nCategories[j] <= maxCategories) continue;
        report.notes.insert(report.notes.begin(),
                            fmt::format("{} is left out: {} different texts (--max-categories {} shows them)",
                                        quotedForMessage(columns[j]->name), nCategories[j], nCategories[j]));
        columns.erase(columns.begin() + static_cast<std::ptrdiff_t>(j));
        nCategories.erase(nCategories.begin() + static_cast<std::ptrdiff_t>(j));
    }
    if (columns.empty()) return;
    const std::vector<ReportColumn> columnsOfTable{{"category", "Category", ColumnKind::kText},
                                                   {"count", "Count", ColumnKind::kCount},
                                                   {"frequency", "Frequency", ColumnKind::kCount},
                                                   {"percentage", "Percent", ColumnKind::kNumber}};
    ReportTable table{
        "qualitative", "Qualitative variables", withKeys(columnsOfTable, sample.groupsName), {}, 1, {}};
    std::vector<std::vector<std::vector<Cell>>> rows(columns.size());
    if (sample.grouped()) {
        table.nKeys = 2;
        for (const Group& group : groupsOf(sample)) {
            const Sample part = takeRows(sample, group.rows);
            std::vector<const TextColumn*> cells;
            for (const TextColumn& column : part.texts) {
                const auto same = [&](const TextColumn* kept) { return kept->name == column.name; };
                if (std::ranges::any_of(columns, same)) cells.push_back(&column);
            }
            caller::DataSet groupData = textData(cells, part);
            const Cell name = caller::toUtf8(caller::toUtf16(group.name));
            addCategories(groupData, countCategories(groupData, cells.size()), &name, rows);
        }
    } else {
        if (columns.size() < nBefore) data = textData(columns, sample);
        addCategories(data, nCategories, nullptr, rows);
    }
    for (auto& list : rows) std::ranges::move(list, std::back_inserter(table.rows));
    report.tables.push_back(std::move(table));
}

}  // namespace

void describe(Sample sample, std::size_t maxCategories, Report& report) {
    describeNumbers(sample, report);
    sample.numbers.clear();
    describeTexts(sample, maxCategories, report);
}

}  // namespace numcore::cli
