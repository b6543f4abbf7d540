#include "cli/read.hpp"

#include <string>
#include <utility>

#include "cli/errors.hpp"
#include "cli/progress.hpp"
#include "cli/selection.hpp"

namespace numcore::cli {

namespace {

std::string nameOfCharacter(char c) {
    if (c == '\0') return "none";
    if (c == '\t') return "tab";
    return c == ' ' ? "space" : printable(std::string(1, c));
}

void noteLayout(const CsvFile& file, const CsvOptions& options, Report& report) {
    const Dialect& dialect = file.dialect();
    std::string missing = "empty cells";
    for (const std::string& word : file.missingWords()) missing += " " + word;
    const char* mark = file.input().hadByteOrderMark() ? " with byte order mark" : "";
    report.layout = {{"encoding", encodingName(file.input().encoding()) + std::string(mark)},
                     {"separator", nameOfCharacter(dialect.separator)},
                     {"decimal mark", nameOfCharacter(dialect.decimalMark)},
                     {"quote", nameOfCharacter(dialect.quote)},
                     {"header", options.header ? "yes" : "no"},
                     {"skipped lines", std::to_string(options.skip)},
                     {"columns", std::to_string(file.names().size())},
                     {"missing", missing}};
}

}  // namespace

ReadSample readSample(const Options& options, Report& report) {
    Progress progress(!options.output.quiet);
    report.file = options.file == "-" ? "standard input" : options.file;
    CsvFile file(Input::open(options.file, progress), printable(report.file), options.csv);
    const Selection selection = selectColumns(options.selection, file.names());
    CsvData data = file.load(selection.wants, progress);
    std::vector<TextStore> stores = std::move(data.stores);
    noteLayout(file, options.csv, report);
    Sample sample = takeSample(std::move(data), selection, file, report);
    report.warnings = file.warnings();
    return {std::move(file), std::move(stores), std::move(sample)};
}

}  // namespace numcore::cli
