#include "cli/options.hpp"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <map>

#include "cli/completion.hpp"
#include "cli/errors.hpp"
#include "cli/laws/names.hpp"
#include "cli/options_parts.hpp"
#include "cli/output/sink.hpp"
#include "cli/quantile.hpp"
#include "cli/words.hpp"
#include "numcore/api.h"

namespace numcore::cli {

namespace {

constexpr const char* kExamples = R"(Examples:
  numcore describe airquality.csv
  numcore describe survey.csv --columns Age,Pulse,Smoke --by Sex
  numcore describe sales.csv --separator ';' --decimal , --missing -999 --output sales.html
  numcore quantile airquality.csv --p 0.1,0.5,0.9 --method all
  numcore cor airquality.csv --method spearman --plot map.svg
  numcore ttest toothgrowth.csv --columns len --by supp
  numcore cdf normal 1.96 --both
  numcore quantile student 0.975 10
  numcore cdf gamma 0:10:0.5 2 3 --format csv
  numcore pdf binomial 0:10 n=10 p=0.3 --plot binomial.svg
  numcore cdf chisq --file tests.csv --column statistic df=3 --upper
  numcore law weibull 2 3 --plot weibull.svg
  numcore bayes asia.bif --evidence xray=yes --plot asia.svg
  curl -s https://example.org/data.csv | numcore describe - --format json

Exit codes: 0 done, 1 wrong usage, 2 bad data, 3 done with warnings.)";

void addCommands(CLI::App& app, Options& options, RawOptions& raw) {
    app.allow_windows_style_options(false);  // a path may begin with a slash
    app.set_help_flag("-h,--help", "Show this help; numcore COMMAND --help shows a command's options");
    app.set_version_flag("--version", std::string("numcore ") + numcore_version());
    app.require_subcommand(1);
    app.footer(kExamples);

    CLI::App* describe =
        app.add_subcommand("describe", "Summaries of numeric columns, categories of text columns");
    addFile(*describe, options);
    addInput(*describe, options, raw);
    addSelection(*describe, options);
    addOutput(*describe, options, raw);
    describe
        ->add_option("--max-categories", options.output.maxCategories,
                     "Text columns with more different texts are left out (50)")
        ->check(CLI::NonNegativeNumber)
        ->group(kOutputGroup);
    describe->callback([&options] { options.command = Command::kDescribe; });

    CLI::App* quantile = app.add_subcommand("quantile", "Quantiles of numeric columns, or of a law");
    quantile
        ->add_option("FILE", raw.fileOrLaw,
                     "CSV or TSV file (- reads standard input); or a law, when no file has this name")
        ->required();
    addLawQuantiles(*quantile, options);
    addInput(*quantile, options, raw);
    addSelection(*quantile, options);
    quantile
        ->add_option("-p,--p", raw.orders, "Orders, separated by commas: 0.1,0.5 or 10%,50% (0.25,0.5,0.75)")
        ->expected(1)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->group("Quantiles");
    quantile
        ->add_option("-m,--method", raw.methods,
                     "Methods, separated by commas: 0 to 5, all, or a name: linear (5, the default),\n"
                     "weibull (3), r1 to r7, sas1 to sas5, excel.inc, excel.exc, spss, stata, ...")
        ->expected(1)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->group("Quantiles");
    quantile
        ->add_option("--confidence", options.quantile.confidence,
                     "Confidence limits of this level, such as 0.95")
        ->group("Quantiles");
    quantile
        ->add_flag("--large-sample", options.quantile.largeSample,
                   "Limits by the normal approximation instead of the binomial law")
        ->group("Quantiles");
    addOutput(*quantile, options, raw);
    quantile->callback([&options] { options.command = Command::kQuantile; });
    addCorrelationCommands(app, options, raw);
    addNetworkCommand(app, options, raw);
    addTestCommands(app, options, raw);
    addLawCommands(app, options, raw);

    CLI::App* completion = app.add_subcommand("completion", "Print a completion script for a shell");
    completion->add_option("SHELL", options.shell, "bash, zsh or fish")->required();
    completion->callback([&options] { options.command = Command::kCompletion; });
}

/// One character, or its name.
char characterOf(const std::string& option, const std::string& value) {
    static const std::map<std::string, char> names{{"comma", ','}, {"semicolon", ';'}, {"tab", '\t'},
                                                   {"\\t", '\t'},  {"bar", '|'},       {"pipe", '|'},
                                                   {"space", ' '}};
    if (const auto found = names.find(value); found != names.end()) return found->second;
    if (value.size() != 1)
        throw UsageError(fmt::format("{} takes one character, not {}", option, quotedForMessage(value)));
    return value[0];
}

Encoding encodingOf(const std::string& given) {
    const std::string value = lowerCase(given);
    static const std::map<std::string, Encoding> names{
        {"utf-8", Encoding::kUtf8},         {"utf8", Encoding::kUtf8},
        {"utf-16", Encoding::kUtf16Le},     {"utf-16le", Encoding::kUtf16Le},
        {"utf16le", Encoding::kUtf16Le},    {"utf-16be", Encoding::kUtf16Be},
        {"utf16be", Encoding::kUtf16Be},    {"latin-1", Encoding::kLatin1},
        {"latin1", Encoding::kLatin1},      {"iso-8859-1", Encoding::kLatin1},
        {"cp1252", Encoding::kWindows1252}, {"windows-1252", Encoding::kWindows1252}};
    const auto found = names.find(value);
    if (found != names.end()) return found->second;
    throw UsageError(
        fmt::format("unknown encoding {}; known are utf-8, utf-16le, utf-16be, latin-1, windows-1252",
                    quotedForMessage(value)));
}

Format formatNamed(const std::string& value) {
    static const std::map<std::string, Format> names{{"text", Format::kText},  {"csv", Format::kCsv},
                                                     {"tsv", Format::kTsv},    {"json", Format::kJson},
                                                     {"html", Format::kHtml},  {"markdown", Format::kMarkdown},
                                                     {"md", Format::kMarkdown}};
    const auto found = names.find(value);
    if (found != names.end()) return found->second;
    throw UsageError(fmt::format("unknown format {}; known are text, csv, tsv, json, markdown, html",
                                 quotedForMessage(value)));
}

void checkCharacters(const CsvOptions& csv) {
    const auto clash = [](const char* what) {
        throw UsageError(fmt::format("{} cannot be told from the rest of a number or line", what));
    };
    if (csv.separator &&
        (std::string_view("0123456789+-\r\n\"").find(*csv.separator) != std::string_view::npos ||
         std::isalpha(static_cast<unsigned char>(*csv.separator)) != 0 || *csv.separator == '\0' ||
         static_cast<unsigned char>(*csv.separator) >= 0x80)) {
        clash("this separator");
    }
    if (csv.separator && csv.decimalMark && *csv.separator == *csv.decimalMark) {
        throw UsageError("the separator and the decimal mark are the same");
    }
    if (csv.separator && csv.quote && *csv.separator == *csv.quote) {
        throw UsageError("the separator and the quote are the same");
    }
    if (csv.decimalMark && *csv.decimalMark != '.' && *csv.decimalMark != ',') {
        throw UsageError("--decimal takes . or ,");
    }
}

void finishInput(const RawOptions& raw, CsvOptions& csv) {
    if (!raw.separator.empty()) csv.separator = characterOf("--separator", raw.separator);
    if (!raw.decimalMark.empty()) csv.decimalMark = characterOf("--decimal", raw.decimalMark);
    if (!raw.quote.empty()) csv.quote = raw.quote == "none" ? '\0' : characterOf("--quote", raw.quote);
    if (!raw.encoding.empty()) csv.encoding = encodingOf(raw.encoding);
    csv.header = !raw.noHeader;
    csv.fillRagged = raw.ragged == "fill";
    csv.standardMissingWords = !raw.noStandardMissing;
    for (const std::string& list : raw.missing) {
        for (const std::string& word : CLI::detail::split(list, ',')) csv.missingWords.push_back(word);
    }
    checkCharacters(csv);
}

void finishQuantile(const RawOptions& raw, const SelectionOptions& selection, QuantileRequest& request) {
    const auto addNew = [](auto& list, const auto& values) {
        for (const auto& value : values) {
            if (std::ranges::find(list, value) == list.end()) list.push_back(value);
        }
    };
    for (const std::string& list : raw.orders) addNew(request.orders, parseOrders(list));
    if (request.orders.empty()) request.orders = {0.25, 0.5, 0.75};
    for (const std::string& list : raw.methods) addNew(request.methods, parseMethods(list));
    if (!request.methods.empty() && !selection.weights.empty()) {
        throw UsageError("weighted quantiles have one method; use --weights without --method");
    }
    if (request.methods.empty()) request.methods = {5};
    if (request.confidence && !(*request.confidence > 0.0 && *request.confidence < 1.0)) {
        throw UsageError("--confidence takes a level between 0 and 1");
    }
    if (request.largeSample && !request.confidence) request.confidence = 0.95;
}

void checkCommand(const CLI::App& app, const std::vector<std::string>& arguments) {
    const bool named = arguments.size() > 1 && !arguments[1].starts_with('-');
    std::string names;
    for (const CLI::App* command : app.get_subcommands({})) {
        if (named && command->get_name() == arguments[1]) return;
        names += (names.empty() ? "" : ", ") + command->get_name();
    }
    if (named)
        throw UsageError(
            fmt::format("unknown command {}; commands are {}", quotedForMessage(arguments[1]), names));
    if (arguments.size() < 2)
        throw UsageError(fmt::format("no command; commands are {}; numcore --help tells more", names));
}

}  // namespace

std::optional<Options> parseOptions(const std::vector<std::string>& arguments, int& exitCode) {
    Options options;
    RawOptions raw;
    CLI::App app("Statistics of tables, from the command line.", "numcore");
    addCommands(app, options, raw);
    // CLI11 takes the arguments from the back.
    std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
    if (!reversed.empty()) reversed.pop_back();
    for (std::string& word : reversed) {
        // CLI11 takes -1 for a number, but -.5 and -inf for options.
        if (word.size() > 2 && word.starts_with("-.") && word[2] >= '0' && word[2] <= '9') word.insert(1, "0");
        if (lowerCase(word.substr(0, 4)) == "-inf") word.insert(0, "+");
    }
    checkCommand(app, arguments);
    try {
        app.parse(std::move(reversed));
    } catch (const CLI::CallForHelp&) {
        // The help of the chosen command, when there is one.
        writeStandardOutput(app.help() + "\n");
        exitCode = kDone;
        return std::nullopt;
    } catch (const CLI::CallForVersion& version) {
        writeStandardOutput(std::string(version.what()) + "\n");
        exitCode = kDone;
        return std::nullopt;
    } catch (const CLI::ParseError& error) {
        throw UsageError(fmt::format("{}\nnumcore --help shows what there is", error.what()));
    }
    finishInput(raw, options.csv);
    if (!raw.format.empty()) options.output.format = formatNamed(raw.format);
    if (options.command == Command::kQuantile) decideQuantile(raw, options);
    if (options.command == Command::kQuantile) finishQuantile(raw, options.selection, options.quantile);
    if (options.command == Command::kCorrelation) finishCorrelation(raw, options);
    if (options.command == Command::kMantel) finishMantel(raw, options);
    if (isTestCommand(options.command)) finishTest(raw, options);
    if (options.law.upper && options.law.both) throw UsageError("--upper and --both: take one of them");
    return options;
}

std::string completionScript(const std::string& shell) {
    Options options;
    RawOptions raw;
    CLI::App app("", "numcore");
    addCommands(app, options, raw);
    const std::vector<std::string> words = lawWords();
    std::vector<CompletionCommand> commands;
    for (const CLI::App* command : app.get_subcommands({})) {
        CompletionCommand entry{command->get_name(), command->get_description(), {}, {}, false};
        const bool takesLaw = command->get_option_no_throw("LAW") != nullptr;
        entry.takesFile = command->get_option_no_throw("FILE") != nullptr ||
                          command->get_option_no_throw("NETWORK") != nullptr;
        if (takesLaw || command->get_option_no_throw("P") != nullptr) entry.words = words;
        if (command->get_name() == "law") entry.words.insert(entry.words.begin(), "list");
        for (const CLI::Option* option : command->get_options()) {
            for (const std::string& name : option->get_lnames()) {
                std::string help = option->get_description();
                help = help.substr(0, help.find_first_of("\n:;("));
                entry.options.push_back({name, help, option->get_expected_min() > 0});
            }
        }
        commands.push_back(std::move(entry));
    }
    return writeCompletion(shell, commands);
}

}  // namespace numcore::cli
