#include "cli/reliability.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "caller/text.hpp"
#include "cli/errors.hpp"
#include "cli/moments.hpp"
#include "numcore/association.h"
#include "numcore/correlation.h"

namespace numcore::cli {

namespace {

/// The items of a scale, column after column; every row is complete.
struct Scale {
    std::vector<std::string> names;
    std::vector<double> cells;
    std::vector<double> weights;  // empty: none
    std::size_t nRows = 0;

    std::size_t nItems() const { return names.size(); }
    std::span<const double> item(std::size_t j) const { return std::span(cells).subspan(j * nRows, nRows); }
    const double* weightData() const { return weights.empty() ? nullptr : weights.data(); }
};

Scale scaleOf(const Sample& sample) {
    const std::vector<std::size_t> rows = completeRows(sample);
    Scale scale;
    scale.nRows = rows.size();
    for (const NumberColumn& column : sample.numbers) {
        scale.names.push_back(column.name);
        for (const std::size_t i : rows) scale.cells.push_back(column.cells.asDoubles()[i]);
    }
    for (const std::size_t i : rows) {
        if (sample.weighted()) scale.weights.push_back(sample.weights.asDoubles()[i]);
    }
    return scale;
}

double alphaOf(const Scale& scale, std::int32_t kind) {
    // Two items at least: of one the library's formula gives no number.
    if (scale.nItems() < 2 || scale.nRows == 0) return NUMCORE_MISSING;
    return GetCronbachAlpha(scale.cells.data(), static_cast<std::int32_t>(scale.nRows),
                            static_cast<std::int32_t>(scale.nItems()), scale.weightData(), kind);
}

Scale withoutItem(const Scale& scale, std::size_t j) {
    Scale rest = scale;
    const auto begin = rest.cells.begin() + static_cast<std::ptrdiff_t>(j * scale.nRows);
    rest.cells.erase(begin, begin + static_cast<std::ptrdiff_t>(scale.nRows));
    rest.names.erase(rest.names.begin() + static_cast<std::ptrdiff_t>(j));
    return rest;
}

/// Correlation of an item with the sum of the others.
double itemRestCorrelation(const Scale& scale, std::size_t j) {
    std::vector<double> rest(scale.nRows, 0.0);
    for (std::size_t k = 0; k < scale.nItems(); ++k) {
        for (std::size_t i = 0; k != j && i < scale.nRows; ++i) rest[i] += scale.item(k)[i];
    }
    constexpr std::int32_t kNoPValue = 2;
    double ignored = NUMCORE_MISSING;
    return Cpp_V_PearsonRho(scale.item(j).data(), static_cast<std::int32_t>(scale.nRows), rest.data(), nullptr,
                            scale.weightData(), NUMCORE_TRUE, NUMCORE_TRUE, NUMCORE_TRUE, &ignored, kNoPValue,
                            NUMCORE_FALSE);
}

ReportTable scaleTable(const std::string& groupsName) {
    ReportTable table{"reliability", "Cronbach's alpha", {}, {}, 0, {}};
    if (!groupsName.empty()) table.columns.push_back({"group", groupsName, ColumnKind::kText});
    table.nKeys = table.columns.size();
    table.columns.push_back({"items", "Items", ColumnKind::kCount});
    table.columns.push_back({"n", "Rows", ColumnKind::kCount});
    table.columns.push_back({"alpha", "Alpha", ColumnKind::kCoefficient});
    table.columns.push_back({"standardized", "Standardized", ColumnKind::kCoefficient});
    return table;
}

ReportTable itemTable(const std::string& groupsName) {
    ReportTable table{"items", "Items", {{"item", "Item", ColumnKind::kText}}, {}, 1, {}};
    if (!groupsName.empty()) table.columns.push_back({"group", groupsName, ColumnKind::kText});
    table.nKeys = table.columns.size();
    table.columns.push_back({"mean", "Mean", ColumnKind::kNumber});
    table.columns.push_back({"sd", "Std. dev.", ColumnKind::kNumber});
    table.columns.push_back({"item_rest", "r with rest", ColumnKind::kCoefficient});
    table.columns.push_back({"alpha_without", "Alpha without", ColumnKind::kCoefficient});
    table.columns.push_back({"standardized_without", "Standardized", ColumnKind::kCoefficient});
    return table;
}

struct Tables {
    ReportTable scale;
    std::vector<std::vector<std::vector<Cell>>> rowsOfItem;
};

void addScale(const Scale& scale, const std::string& group, Tables& tables, Report& report) {
    const Cell name = group;
    std::vector<Cell> row;
    if (!group.empty()) row.push_back(name);
    row.emplace_back(static_cast<std::int64_t>(scale.nItems()));
    row.emplace_back(static_cast<std::int64_t>(scale.nRows));
    row.push_back(cellOf(alphaOf(scale, NUMCORE_ITEMS_COVARIANCE)));
    row.push_back(cellOf(alphaOf(scale, NUMCORE_ITEMS_CORRELATION)));
    tables.scale.rows.push_back(std::move(row));
    const std::string where = group.empty() ? "" : fmt::format(" in group {}", quotedForMessage(group));
    if (scale.nRows < 2) {
        report.notes.push_back(fmt::format("no alpha{}: it takes two complete rows at least", where));
    }
    std::vector<Moments> moments;
    moments.reserve(scale.nItems());
    for (std::size_t j = 0; j < scale.nItems(); ++j) moments.push_back(momentsOf(scale.item(j), scale.weights));
    for (std::size_t j = 0; j < scale.nItems(); ++j) {
        const Scale rest = withoutItem(scale, j);
        const double correlation = itemRestCorrelation(scale, j);
        std::vector<Cell> cells{scale.names[j]};
        if (!group.empty()) cells.push_back(name);
        for (const double value :
             {moments[j].mean, moments[j].deviation, correlation, alphaOf(rest, NUMCORE_ITEMS_COVARIANCE),
              alphaOf(rest, NUMCORE_ITEMS_CORRELATION)}) {
            cells.push_back(cellOf(value));
        }
        tables.rowsOfItem[j].push_back(std::move(cells));
        if (std::ranges::any_of(scale.item(j), [](double value) { return std::isinf(value); })) {
            report.notes.push_back(
                fmt::format("{} holds an infinite value{}: it has no spread, the scale no alpha",
                            quotedForMessage(scale.names[j]), where));
        } else if (scale.nRows > 1 && moments[j].deviation == 0.0) {
            report.notes.push_back(fmt::format("{} is constant{}", quotedForMessage(scale.names[j]), where));
        } else if (correlation != NUMCORE_MISSING && correlation < 0.0) {
            report.notes.push_back(
                fmt::format("{} runs against the rest of the scale{}; should it be reversed?",
                            quotedForMessage(scale.names[j]), where));
        }
    }
}

}  // namespace

void reliability(Sample sample, Report& report) {
    if (!sample.texts.empty()) report.notes.push_back(textsLeftOut(sample));
    sample.texts.clear();
    countMissing(sample, report.rows);
    if (sample.numbers.size() < 2) {
        throw DataError(fmt::format("{}: {}; a scale takes two items or more (--columns)", report.file,
                                    counted(sample.numbers.size(), "numeric column")));
    }
    Tables tables{scaleTable(sample.groupsName), {}};
    tables.rowsOfItem.resize(sample.numbers.size());
    std::size_t nUsed = 0;
    const auto add = [&](const Sample& part, const std::string& group) {
        const Scale scale = scaleOf(part);
        nUsed += scale.nRows;
        addScale(scale, group, tables, report);
    };
    if (sample.grouped()) {
        for (const Group& group : groupsOf(sample))
            add(takeRows(sample, group.rows), caller::toUtf8(caller::toUtf16(group.name)));
    } else {
        add(sample, "");
    }
    countIncomplete(report.rows.used - nUsed, report);
    ReportTable items = itemTable(sample.groupsName);
    for (auto& list : tables.rowsOfItem) std::ranges::move(list, std::back_inserter(items.rows));
    report.tables.push_back(std::move(tables.scale));
    report.tables.push_back(std::move(items));
}

}  // namespace numcore::cli
