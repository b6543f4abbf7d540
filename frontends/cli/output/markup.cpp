#include <fmt/format.h>

#include "cli/errors.hpp"
#include "cli/output/writers.hpp"

namespace numcore::cli {

namespace {

constexpr const char* kMissingSign = "–";

std::string markdownText(const std::string& text) {
    std::string out;
    for (const char c : printable(text)) {
        if (std::string_view("\\|*_`<>[]").find(c) != std::string_view::npos) out += '\\';
        out += c;
    }
    return out;
}

std::string htmlText(const std::string& text) {
    std::string out;
    for (const char c : text) {
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            default:
                out += c;
        }
    }
    return out;
}

std::string cellText(const Cell& cell, ColumnKind kind, const TextStyle& style) {
    return std::holds_alternative<std::monostate>(cell) ? kMissingSign : readableCell(cell, kind, style);
}

/// Footer with the legend of the missing sign in front.
std::vector<std::string> closingLines(const Report& report) {
    std::vector<std::string> lines = footerLines(report);
    const std::string legend = missingLegend(report, kMissingSign);
    if (!legend.empty()) lines.insert(lines.begin(), legend);
    return lines;
}

constexpr const char* kHtmlHead = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width">
<title>{}</title>
<style>
body {{ font-family: sans-serif; margin: 2em; }}
table {{ border-collapse: collapse; margin-bottom: 1.5em; }}
caption {{ text-align: left; font-weight: bold; padding-bottom: 0.4em; }}
th, td {{ padding: 0.2em 0.8em; text-align: left; }}
th {{ border-bottom: 2px solid; }}
td {{ border-bottom: 1px solid #ccc; }}
.number {{ text-align: right; font-variant-numeric: tabular-nums; }}
</style>
</head>
<body>
<h1>{}</h1>
)";

}  // namespace

std::string writeMarkdown(const Report& report, const TextStyle& style) {
    std::string out = fmt::format("# {}\n", markdownText(titleLine(report)));
    for (const ReportTable& table : report.tables) {
        if (table.detail) continue;
        out += fmt::format("\n## {}\n\n|", table.title);
        for (const ReportColumn& column : table.columns)
            out += fmt::format(" {} |", markdownText(column.title));
        out += "\n|";
        for (const ReportColumn& column : table.columns) {
            out += column.kind == ColumnKind::kText ? " :--- |" : " ---: |";
        }
        out += "\n";
        for (const auto& row : table.rows) {
            out += "|";
            for (std::size_t j = 0; j < row.size(); ++j) {
                out += fmt::format(" {} |", markdownText(cellText(row[j], table.columns[j].kind, style)));
            }
            out += "\n";
        }
    }
    out += "\n";
    for (const std::string& line : closingLines(report)) out += markdownText(line) + "  \n";
    return out;
}

std::string writeHtml(const Report& report, const TextStyle& style) {
    const std::string title = htmlText(titleLine(report));
    std::string out = fmt::format(fmt::runtime(kHtmlHead), title, title);
    for (const ReportTable& table : report.tables) {
        if (table.detail) continue;
        const auto append = [&](const char* tag, std::size_t j, const std::string& text) {
            const bool number = table.columns[j].kind != ColumnKind::kText;
            out += fmt::format("<{0}{1}>{2}</{0}>", tag, number ? " class=\"number\"" : "", htmlText(text));
        };
        out += fmt::format("<table>\n<caption>{}</caption>\n<thead><tr>", htmlText(table.title));
        for (std::size_t j = 0; j < table.columns.size(); ++j) append("th", j, table.columns[j].title);
        out += "</tr></thead>\n<tbody>\n";
        for (const auto& row : table.rows) {
            out += "<tr>";
            for (std::size_t j = 0; j < row.size(); ++j)
                append("td", j, cellText(row[j], table.columns[j].kind, style));
            out += "</tr>\n";
        }
        out += "</tbody>\n</table>\n";
    }
    for (const std::string& line : closingLines(report)) out += fmt::format("<p>{}</p>\n", htmlText(line));
    return out + "</body>\n</html>\n";
}

}  // namespace numcore::cli
