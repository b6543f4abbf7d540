#include "cli/sample.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <unordered_map>
#include <utility>

#include "caller/text.hpp"
#include "cli/csv/cells.hpp"
#include "cli/errors.hpp"
#include "numcore/api.h"

namespace numcore::cli {

namespace {

/// Keeps the listed elements, which ascend, in place.
template <class Range>
void keepRows(Range&& cells, const std::vector<std::size_t>& rows) {
    for (std::size_t i = 0; i < rows.size(); ++i) cells[i] = cells[rows[i]];
}

template <class Range>
auto gather(const Range& cells, const std::vector<std::size_t>& rows) {
    std::vector<std::remove_cvref_t<decltype(cells[0])>> out(rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) out[i] = cells[rows[i]];
    return out;
}

void checkWeights(std::span<const double> weights, const CsvFile& file, const std::string& name) {
    const auto bad = std::ranges::find_if(
        weights, [](double w) { return w != NUMCORE_MISSING && !(w >= 0.0 && std::isfinite(w)); });
    if (bad == weights.end()) return;
    const std::size_t line = file.lineOfRow(static_cast<std::size_t>(bad - weights.begin()));
    throw DataError(atLine(file.name(), line,
                           fmt::format("column {}: a weight of {}; weights are finite and 0 or above",
                                       quotedForMessage(name), *bad)));
}

/// Rows with a group and a weight above 0, when there are groups and weights.
std::vector<std::size_t> usableRows(const Sample& sample, std::size_t& nWithoutGroup,
                                    std::size_t& nWithoutWeight) {
    const auto weights = sample.weights.asDoubles();
    std::vector<std::size_t> rows;
    for (std::size_t i = 0; i < sample.nRows; ++i) {
        const bool weightless = sample.weighted() && !(weights[i] > 0.0);
        const bool groupless = sample.grouped() && sample.groups[i].empty();
        nWithoutWeight += weightless;
        nWithoutGroup += groupless && !weightless;
        if (!weightless && !groupless) rows.push_back(i);
    }
    return rows;
}

void dropRows(Sample& sample, Report& report) {
    std::size_t nWithoutGroup = 0;
    std::size_t nWithoutWeight = 0;
    if (sample.weighted() || sample.grouped()) {
        const auto rows = usableRows(sample, nWithoutGroup, nWithoutWeight);
        if (rows.size() < sample.nRows) {
            for (NumberColumn& column : sample.numbers) {
                keepRows(column.cells.asDoubles(), rows);
                column.cells.shrink(rows.size());
            }
            for (TextColumn& column : sample.texts) {
                keepRows(column.cells, rows);
                column.cells.resize(rows.size());
            }
            if (sample.weighted()) {
                keepRows(sample.weights.asDoubles(), rows);
                sample.weights.shrink(rows.size());
            }
            if (sample.grouped()) {
                keepRows(sample.groups, rows);
                sample.groups.resize(rows.size());
            }
            sample.nRows = rows.size();
        }
    }
    report.rows.used = sample.nRows;
    report.rows.dropped = report.rows.read - sample.nRows;
    if (nWithoutWeight > 0) report.droppedWhy = fmt::format("{} without a weight above 0", nWithoutWeight);
    if (nWithoutGroup > 0) {
        report.droppedWhy +=
            fmt::format("{}{} without a group", report.droppedWhy.empty() ? "" : ", ", nWithoutGroup);
    }
}

void takeColumns(CsvData& data, const std::vector<std::size_t>& places, Role role, Sample& sample) {
    for (const std::size_t j : places) {
        CsvColumn& column = data.columns[j];
        if (column.kind == Target::kNumbers) {
            sample.numbers.push_back({column.name, std::move(column.numbers), column.nMissing, role});
        } else {
            sample.texts.push_back({column.name, std::move(column.texts), column.nMissing, role});
        }
    }
}

std::optional<double> numberOf(std::string_view text) {
    static const CellReader reader('.', {});
    double value = 0.0;
    std::size_t ignored = 0;
    if (reader.read(text, value, ignored) != CellKind::kNumber) return std::nullopt;
    return value;
}

}  // namespace

void countMissing(const Sample& sample, RowCounts& counts) {
    std::vector<bool> incomplete(sample.nRows);
    counts.missingCells = 0;
    const auto note = [&](std::size_t i) {
        incomplete[i] = true;
        ++counts.missingCells;
    };
    for (const NumberColumn& column : sample.numbers) {
        const auto cells = column.cells.asDoubles();
        for (std::size_t i = 0; column.nMissing > 0 && i < sample.nRows; ++i) {
            if (cells[i] == NUMCORE_MISSING) note(i);
        }
    }
    for (const TextColumn& column : sample.texts) {
        for (std::size_t i = 0; column.nMissing > 0 && i < sample.nRows; ++i) {
            if (column.cells[i].empty()) note(i);
        }
    }
    counts.withMissing = static_cast<std::size_t>(std::ranges::count(incomplete, true));
}

Sample takeSample(CsvData data, const Selection& selection, const CsvFile& file, Report& report) {
    Sample sample;
    sample.nRows = data.nRows;
    report.rows.read = data.nRows;
    report.rows.blankLines = data.nBlankLines;
    takeColumns(data, selection.analysed, Role::kVariable, sample);
    takeColumns(data, selection.with, Role::kAcross, sample);
    takeColumns(data, selection.partial, Role::kHeldConstant, sample);
    if (selection.weights) {
        sample.weightsName = data.columns[*selection.weights].name;
        sample.weights = std::move(data.columns[*selection.weights].numbers);
        checkWeights(sample.weights.asDoubles(), file, sample.weightsName);
    }
    if (selection.by) {
        sample.groupsName = data.columns[*selection.by].name;
        sample.groups = std::move(data.columns[*selection.by].texts);
    }
    dropRows(sample, report);
    if (sample.nRows == 0) throw DataError(file.name() + ": no row is left: " + report.droppedWhy);
    countMissing(sample, report.rows);
    return sample;
}

std::vector<std::size_t> completeRows(const Sample& sample) {
    std::vector<std::size_t> rows;
    for (std::size_t i = 0; i < sample.nRows; ++i) {
        const auto missing = [i](const NumberColumn& column) {
            return column.cells.asDoubles()[i] == NUMCORE_MISSING;
        };
        if (std::ranges::none_of(sample.numbers, missing)) rows.push_back(i);
    }
    return rows;
}

void countDropped(std::size_t n, std::string_view why, Report& report) {
    if (n == 0) return;
    report.rows.used -= n;
    report.rows.dropped += n;
    report.droppedWhy += fmt::format("{}{} {}", report.droppedWhy.empty() ? "" : ", ", n, why);
}

void countIncomplete(std::size_t n, Report& report) {
    if (n == 0) return;
    countDropped(n, "with missing cells", report);
    report.rows.withMissing = report.rows.missingCells = 0;
}

std::string textsLeftOut(const Sample& sample) {
    std::string names;
    for (const TextColumn& column : sample.texts)
        names += (names.empty() ? "" : ", ") + quotedForMessage(column.name);
    if (names.empty()) return names;
    return names +
           (sample.texts.size() == 1 ? " is left out: it holds texts" : " are left out: they hold texts");
}

std::vector<Group> groupsOf(const Sample& sample) {
    std::unordered_map<std::string_view, std::vector<std::size_t>> rows;
    for (std::size_t i = 0; i < sample.nRows; ++i) rows[sample.groups[i]].push_back(i);
    std::vector<Group> groups;
    groups.reserve(rows.size());
    for (auto& [name, list] : rows) groups.push_back({name, std::move(list)});
    std::ranges::sort(groups, {}, &Group::name);
    if (std::ranges::all_of(groups, [](const Group& group) { return numberOf(group.name).has_value(); })) {
        std::ranges::stable_sort(groups, {}, [](const Group& group) { return *numberOf(group.name); });
    }
    return groups;
}

Sample takeRows(const Sample& sample, const std::vector<std::size_t>& rows) {
    Sample out;
    out.nRows = rows.size();
    for (const NumberColumn& column : sample.numbers) {
        const auto cells = gather(column.cells.asDoubles(), rows);
        out.numbers.push_back({column.name, caller::Array::doubles(cells), column.nMissing, column.role});
    }
    for (const TextColumn& column : sample.texts) {
        out.texts.push_back({column.name, gather(column.cells, rows), column.nMissing, column.role});
    }
    if (sample.weighted()) out.weights = caller::Array::doubles(gather(sample.weights.asDoubles(), rows));
    out.weightsName = sample.weightsName;
    return out;
}

caller::TextTable textTable(const std::vector<const TextColumn*>& columns) {
    std::vector<caller::Array> arrays;
    for (const TextColumn* column : columns) {
        arrays.push_back(caller::Array::texts(column->cells.size()));
        const auto cells = arrays.back().asTexts();
        for (std::size_t i = 0; i < cells.size(); ++i) {
            if (!column->cells[i].empty()) cells[i] = caller::newText(column->cells[i]);
        }
    }
    caller::TextTable table(std::move(arrays));
    for (std::size_t j = 0; j < columns.size(); ++j) table.setLabel(j, caller::toUtf16(columns[j]->name));
    return table;
}

}  // namespace numcore::cli
