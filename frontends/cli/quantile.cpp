#include "cli/quantile.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <utility>

#include "caller/data_set.hpp"
#include "caller/text.hpp"
#include "cli/errors.hpp"
#include "cli/words.hpp"
#include "numcore/numcore.h"

namespace numcore::cli {

namespace {

/// Another program's name of a method.
struct Alias {
    const char* name;
    int method;
};

constexpr Alias kAliases[] = {
    // NumPy
    {"interpolated_inverted_cdf", 0},
    {"closest_observation", 1},
    {"inverted_cdf", 2},
    {"weibull", 3},
    {"averaged_inverted_cdf", 4},
    {"linear", 5},
    // R, and the numbers of Hyndman and Fan
    {"r4", 0},
    {"r3", 1},
    {"r1", 2},
    {"r6", 3},
    {"r2", 4},
    {"r7", 5},
    {"type4", 0},
    {"type3", 1},
    {"type1", 2},
    {"type6", 3},
    {"type2", 4},
    {"type7", 5},
    // SAS (PCTLDEF)
    {"sas1", 0},
    {"sas2", 1},
    {"sas3", 2},
    {"sas4", 3},
    {"sas5", 4},
    // Spreadsheets and others
    {"excel.exc", 3},
    {"excel.inc", 5},
    {"minitab", 3},
    {"spss", 3},
    {"stata", 4},
};

int methodOf(const std::string& given) {
    const std::string word = lowerCase(given);
    for (const QuantileMethod& method : quantileMethods()) {
        if (word == std::to_string(method.number) || word == method.name) return method.number;
    }
    for (const Alias& alias : kAliases) {
        if (word == alias.name) return alias.method;
    }
    std::string names;
    for (const QuantileMethod& method : quantileMethods()) {
        names += fmt::format("\n  {}  {}", method.number, method.name);
        for (const Alias& alias : kAliases) {
            if (alias.method == method.number && std::string_view(alias.name) != method.name) {
                names += fmt::format(", {}", alias.name);
            }
        }
    }
    throw UsageError(
        fmt::format("unknown quantile method {}; methods are all, or:{}", quotedForMessage(word), names));
}

/// A column per order, or three.
std::vector<ReportColumn> orderColumns(const QuantileRequest& request) {
    std::vector<ReportColumn> columns;
    for (const double p : request.orders) {
        columns.push_back({fmt::format("q{}", p), fmt::format("p={}", p), ColumnKind::kNumber});
        if (!request.confidence) continue;
        columns.push_back({fmt::format("q{}_lower", p), "lower", ColumnKind::kNumber});
        columns.push_back({fmt::format("q{}_upper", p), "upper", ColumnKind::kNumber});
    }
    return columns;
}

/// Quantiles of all columns of a sample by one method: a row per variable.
caller::Array computeTable(caller::DataSet& data, const QuantileRequest& request, int method, bool weighted) {
    ST_QuantileOptions options{};
    options.method = method;
    options.weighted = weighted ? NUMCORE_TRUE : NUMCORE_FALSE;
    options.interval = request.confidence ? NUMCORE_TRUE : NUMCORE_FALSE;
    options.largeSample = request.largeSample ? NUMCORE_TRUE : NUMCORE_FALSE;
    options.level = request.confidence.value_or(0.95);
    const std::size_t nPerOrder = request.confidence ? 3 : 1;
    caller::Array table = caller::Array::matrix(data.numeric1().nColumns(), request.orders.size() * nPerOrder);
    Cpp_GetQuantileTable(&data.record(), request.orders.data(),
                         static_cast<std::int32_t>(request.orders.size()), &options, table.get(), nullptr);
    return table;
}

/// Adds the rows of one sample to each variable's list.
void addRows(Sample sample, const QuantileRequest& request, const Cell* group,
             std::vector<std::vector<std::vector<Cell>>>& rowsOfVariable) {
    std::vector<caller::Array> cells;
    for (NumberColumn& column : sample.numbers) cells.push_back(std::move(column.cells));
    caller::DataSet data;
    data.setNumeric1(caller::NumericTable(std::move(cells)));
    if (sample.weighted()) data.setWeights(std::move(sample.weights));
    const bool weighted = data.record().weightsPresent == NUMCORE_TRUE;
    const bool showMethod = request.methods.size() > 1;
    for (const int method : request.methods) {
        const caller::Array table = computeTable(data, request, method, weighted);
        const std::size_t nColumns = table.size() / std::max<std::size_t>(1, table.nRows());
        for (std::size_t i = 0; i < sample.numbers.size(); ++i) {
            std::vector<Cell> row{sample.numbers[i].name};
            if (group != nullptr) row.push_back(*group);
            if (showMethod)
                row.push_back(
                    fmt::format("{} {}", method, quantileMethods()[static_cast<std::size_t>(method)].name));
            for (std::size_t k = 0; k < nColumns; ++k) row.push_back(cellOf(table.at(i, k)));
            rowsOfVariable[i].push_back(std::move(row));
        }
    }
}

}  // namespace

const std::vector<QuantileMethod>& quantileMethods() {
    static const std::vector<QuantileMethod> methods{{0, "interpolated_inverted_cdf"},
                                                     {1, "closest_observation"},
                                                     {2, "inverted_cdf"},
                                                     {3, "weibull"},
                                                     {4, "averaged_inverted_cdf"},
                                                     {5, "linear"}};
    return methods;
}

std::vector<int> parseMethods(const std::string& list) {
    std::vector<int> methods;
    for (const std::string& word : splitList(list)) {
        if (word == "all") {
            for (const QuantileMethod& method : quantileMethods()) methods.push_back(method.number);
        } else {
            methods.push_back(methodOf(word));
        }
    }
    return methods;
}

std::vector<double> parseOrders(const std::string& list) {
    std::vector<double> orders;
    for (const std::string& word : splitList(list)) {
        double p = 0.0;
        const bool percent = word.ends_with('%');
        const char* end = word.data() + word.size() - (percent ? 1 : 0);
        const auto [rest, status] = std::from_chars(word.data(), end, p);
        if (percent) p /= 100.0;
        if (status != std::errc() || rest != end || !(p >= 0.0 && p <= 1.0)) {
            throw UsageError(fmt::format("{} is not an order: a number from 0 to 1, or a percentage",
                                         quotedForMessage(word)));
        }
        orders.push_back(p);
    }
    return orders;
}

void quantiles(Sample sample, const QuantileRequest& request, Report& report) {
    for (const TextColumn& column : sample.texts) {
        report.notes.push_back(fmt::format("{} is left out: it holds texts", quotedForMessage(column.name)));
    }
    if (sample.numbers.empty()) throw DataError(report.file + ": no numeric column to take quantiles of");
    ReportTable table{"quantiles", "Quantiles", {{"variable", "Variable", ColumnKind::kText}}, {}, 1, {}};
    if (sample.grouped()) table.columns.push_back({"group", sample.groupsName, ColumnKind::kText});
    if (request.methods.size() > 1) table.columns.push_back({"method", "Method", ColumnKind::kText});
    table.nKeys = table.columns.size();
    std::ranges::copy(orderColumns(request), std::back_inserter(table.columns));
    std::vector<std::vector<std::vector<Cell>>> rows(sample.numbers.size());
    if (sample.grouped()) {
        for (const Group& group : groupsOf(sample)) {
            const Cell name = caller::toUtf8(caller::toUtf16(group.name));
            addRows(takeRows(sample, group.rows), request, &name, rows);
        }
    } else {
        addRows(std::move(sample), request, nullptr, rows);
    }
    for (auto& list : rows) std::ranges::move(list, std::back_inserter(table.rows));
    report.tables.push_back(std::move(table));
}

}  // namespace numcore::cli
