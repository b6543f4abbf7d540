#include "cli/output/writers.hpp"

namespace numcore::cli {

namespace {

/// Quotes a field where RFC 4180 asks for it.
std::string field(const std::string& text, char separator) {
    const bool blanks = !text.empty() && (text.front() == ' ' || text.back() == ' ');
    if (!blanks && text.find_first_of(std::string("\"\r\n") + separator) == std::string::npos) return text;
    std::string out = "\"";
    for (const char c : text) {
        if (c == '"') out += '"';
        out += c;
    }
    return out + "\"";
}

}  // namespace

std::string writeDelimited(const Report& report, char separator) {
    std::string out;
    for (const ReportTable& table : report.tables) {
        if (table.detail) continue;
        if (!out.empty()) out += "\n";
        const auto append = [&](std::size_t j, const std::string& text) {
            out += field(text, separator);
            out += j + 1 < table.columns.size() ? separator : '\n';
        };
        for (std::size_t j = 0; j < table.columns.size(); ++j) append(j, table.columns[j].id);
        for (const auto& row : table.rows) {
            for (std::size_t j = 0; j < row.size(); ++j) append(j, exactCell(row[j]));
        }
    }
    return out;
}

}  // namespace numcore::cli
