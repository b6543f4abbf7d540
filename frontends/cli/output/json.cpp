#include <cmath>
#include <nlohmann/json.hpp>

#include "cli/output/writers.hpp"
#include "numcore/api.h"

namespace numcore::cli {

namespace {

using Json = nlohmann::ordered_json;

Json jsonOf(const Cell& cell) {
    if (const auto* marked = std::get_if<Marked>(&cell)) return jsonOf(Cell(marked->value));
    if (const auto* text = std::get_if<std::string>(&cell)) return *text;
    if (const auto* count = std::get_if<std::int64_t>(&cell)) return *count;
    if (std::holds_alternative<Below>(cell)) return 0.0;
    const auto* number = std::get_if<double>(&cell);
    if (number == nullptr) return nullptr;
    // JSON has no such numbers.
    if (std::isnan(*number)) return "NaN";
    if (std::isinf(*number)) return *number > 0.0 ? "Infinity" : "-Infinity";
    return *number;
}

/// "decimal mark" as a key: decimalMark.
std::string keyOf(const std::string& name) {
    std::string key;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const bool wordStarts = i > 0 && name[i - 1] == ' ';
        if (name[i] != ' ') key += wordStarts ? static_cast<char>(name[i] - 'a' + 'A') : name[i];
    }
    return key;
}

Json jsonOf(const std::vector<std::pair<std::string, std::string>>& pairs) {
    Json out = Json::object();
    for (const auto& [name, value] : pairs) out[keyOf(name)] = value;
    return out;
}

Json jsonOf(const ReportTable& table) {
    Json columns = Json::array();
    for (const ReportColumn& column : table.columns)
        columns.push_back({{"id", column.id}, {"title", column.title}});
    Json rows = Json::array();
    for (const auto& row : table.rows) {
        Json object = Json::object();
        for (std::size_t j = 0; j < row.size(); ++j) object[table.columns[j].id] = jsonOf(row[j]);
        rows.push_back(std::move(object));
    }
    return {{"id", table.id}, {"title", table.title}, {"columns", columns}, {"rows", rows}};
}

Json jsonOf(const RowCounts& rows) {
    return {{"read", rows.read},
            {"used", rows.used},
            {"dropped", rows.dropped},
            {"withMissing", rows.withMissing},
            {"missingCells", rows.missingCells},
            {"blankLines", rows.blankLines}};
}

Json jsonOf(const ReportLaw& law) {
    Json parameters = Json::object();
    for (const auto& [symbol, value] : law.parameters) parameters[symbol] = jsonOf(Cell(value));
    Json out{{"name", law.name}, {"code", law.code ? Json(*law.code) : Json()}, {"parameters", parameters}};
    if (!law.tail.empty()) out["tail"] = law.tail;
    return out;
}

}  // namespace

std::string writeJson(const Report& report) {
    Json out;
    out["program"] = "numcore";
    out["version"] = numcore_version();
    out["command"] = report.command;
    if (report.law) out["law"] = jsonOf(*report.law);
    if (!report.file.empty()) {
        out["file"] = report.file;
        out["layout"] = jsonOf(report.layout);
        out["settings"] = jsonOf(report.settings);
        out["rows"] = jsonOf(report.rows);
    } else if (!report.settings.empty()) {
        out["settings"] = jsonOf(report.settings);
    }
    out["tables"] = Json::array();
    for (const ReportTable& table : report.tables) out["tables"].push_back(jsonOf(table));
    out["notes"] = report.notes;
    out["warnings"] = report.warnings;
    // A file name may hold bytes that are not UTF-8.
    return out.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace numcore::cli
