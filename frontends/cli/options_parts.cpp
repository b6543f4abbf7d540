#include "cli/options_parts.hpp"

#include <fmt/format.h>

#include <CLI/CLI.hpp>

#include "cli/errors.hpp"

namespace numcore::cli {

namespace {

std::string wordList(const char* const* begin, const char* const* end) {
    std::string out;
    for (; begin != end; ++begin) out += std::string(out.empty() ? "" : " ") + *begin;
    return out;
}

}  // namespace

void addFile(CLI::App& command, Options& options) {
    command.add_option("FILE", options.file, "CSV or TSV file; - reads standard input")->required();
}

void addInput(CLI::App& command, Options& options, RawOptions& raw) {
    const auto add = [&](const char* name, auto& target, const std::string& help) {
        return command.add_option(name, target, help)->group(kInputGroup);
    };
    add("-s,--separator", raw.separator,
        "Field separator: a character, or comma, semicolon, tab, bar, space (guessed)");
    add("--decimal", raw.decimalMark, "Decimal mark: . or , (guessed)");
    add("--quote", raw.quote, "Quote character, or none (guessed)");
    add("--encoding", raw.encoding, "utf-8, utf-16le, utf-16be, latin-1 or windows-1252 (guessed)");
    add("--skip", options.csv.skip, "Lines to skip before the header")->check(CLI::NonNegativeNumber);
    add("--missing", raw.missing,
        "Words for missing cells, separated by commas, besides the empty cell and\n" +
            wordList(std::begin(kMissingWords), std::end(kMissingWords)))
        ->expected(1)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    command
        .add_flag("--no-standard-missing", raw.noStandardMissing,
                  "Only the empty cell and the words of --missing")
        ->group(kInputGroup);
    command.add_flag("--no-header", raw.noHeader, "The first line is data; columns are column1, column2, ...")
        ->group(kInputGroup);
    add("--ragged", raw.ragged, "Rows of the wrong length: error, or fill short ones with missing cells")
        ->check(CLI::IsMember({"error", "fill"}));
    add("--text", options.selection.text, "Columns to take as text even if they hold numbers")
        ->expected(1)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

void addSelection(CLI::App& command, Options& options) {
    command
        .add_option("-c,--columns,--column", options.selection.columns,
                    "Columns by name, number or range: Ozone,2,4-6,Wind-Temp,9-\n"
                    "(a name with a comma in double quotes)")
        ->expected(1)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->group(kSelectionGroup);
    command.add_option("-w,--weights", options.selection.weights, "Column of frequency weights")
        ->group(kSelectionGroup);
    command.add_option("-b,--by", options.selection.by, "Column of groups: results for each")
        ->group(kSelectionGroup);
}

void addOutput(CLI::App& command, Options& options, RawOptions& raw) {
    const auto add = [&](const char* name, auto& target, const std::string& help) {
        return command.add_option(name, target, help)->group(kOutputGroup);
    };
    add("-f,--format", raw.format,
        "text, csv, tsv, json, markdown or html (text, or by the ending of --output)");
    add("-o,--output", options.output.path, "File to write, replaced only when all went well");
    add("--digits", options.output.digits,
        "Significant digits for people (6); csv, tsv and json are always exact")
        ->check(CLI::Range(1, 17));
    add("--width", options.output.width,
        "Columns of the page; wider tables are cut (the terminal's; 0 no limit)")
        ->check(CLI::Range(0, 1'000'000));
    command.add_flag("-q,--quiet", options.output.quiet, "No warnings, notes and progress on standard error")
        ->group(kOutputGroup);
    command.add_flag("-v,--verbose", options.output.verbose, "Tell what was guessed about the file")
        ->group(kOutputGroup);
}

void refuseWord(const std::string& given, const char* option, const char* known) {
    throw UsageError(fmt::format("{} knows no {}; known are {}", option, quotedForMessage(given), known));
}

Alternative alternativeNamed(const std::string& given) {
    const std::map<std::string, Alternative> names{
        {"two-sided", Alternative::kTwoSided}, {"two.sided", Alternative::kTwoSided},
        {"less", Alternative::kLess},          {"lower", Alternative::kLess},
        {"greater", Alternative::kGreater},    {"upper", Alternative::kGreater}};
    return named(names, given, "--alternative", "two-sided, less, greater");
}

void checkAlpha(double alpha) {
    if (!(alpha > 0.0 && alpha < 1.0))
        throw UsageError(fmt::format("--alpha takes a level between 0 and 1, not {}", alpha));
}

void refuse(bool given, const char* option, const char* why) {
    if (given) throw UsageError(fmt::format("{} {}", option, why));
}

}  // namespace numcore::cli
