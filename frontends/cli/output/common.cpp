#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "cli/errors.hpp"
#include "cli/output/writers.hpp"
#include "cli/platform.hpp"

namespace numcore::cli {

std::string titleLine(const Report& report) {
    std::string line = printable(report.title.empty() ? report.file : report.title);
    for (const auto& [name, value] : report.settings) line += fmt::format(", {}: {}", name, printable(value));
    return line;
}

std::vector<std::string> footerLines(const Report& report) {
    if (report.file.empty()) return report.notes;
    const RowCounts& rows = report.rows;
    std::string line = fmt::format("{} read, {} used", counted(rows.read, "row"), rows.used);
    if (rows.dropped > 0) {
        line += fmt::format(", {} dropped ({})", rows.dropped, report.droppedWhy);
    } else {
        line += ", none dropped";
    }
    if (rows.withMissing > 0) {
        line += fmt::format("; {} with missing cells ({})", counted(rows.withMissing, "row"),
                            counted(rows.missingCells, "cell"));
    } else {
        line += "; no cell is missing";
    }
    std::vector<std::string> lines{line};
    if (rows.blankLines > 0) lines.push_back(counted(rows.blankLines, "blank line") + " skipped");
    lines.insert(lines.end(), report.notes.begin(), report.notes.end());
    return lines;
}

std::string missingLegend(const Report& report, std::string_view sign) {
    const auto isMissing = [](const Cell& cell) { return std::holds_alternative<std::monostate>(cell); };
    for (const ReportTable& table : report.tables) {
        if (table.detail) continue;
        for (const auto& row : table.rows) {
            if (std::ranges::any_of(row, isMissing)) return fmt::format("{} no value", sign);
        }
    }
    return {};
}

Format formatOf(const OutputOptions& options) {
    if (options.format) return *options.format;
    const std::string ending = pathFromUtf8(options.path).extension().string();
    constexpr std::pair<const char*, Format> kEndings[] = {
        {".csv", Format::kCsv},   {".tsv", Format::kTsv},     {".tab", Format::kTsv},
        {".json", Format::kJson}, {".md", Format::kMarkdown}, {".markdown", Format::kMarkdown},
        {".html", Format::kHtml}, {".htm", Format::kHtml}};
    const auto found =
        std::ranges::find(kEndings, ending, [](const auto& entry) { return std::string(entry.first); });
    return found == std::end(kEndings) ? Format::kText : found->second;
}

bool isForMachines(Format format) {
    return format == Format::kCsv || format == Format::kTsv || format == Format::kJson;
}

std::string render(const Report& report, Format format, const TextStyle& style) {
    switch (format) {
        case Format::kCsv:
            return writeDelimited(report, ',');
        case Format::kTsv:
            return writeDelimited(report, '\t');
        case Format::kJson:
            return writeJson(report);
        case Format::kMarkdown:
            return writeMarkdown(report, style);
        case Format::kHtml:
            return writeHtml(report, style);
        case Format::kText:
            break;
    }
    return writeText(report, style);
}

}  // namespace numcore::cli
