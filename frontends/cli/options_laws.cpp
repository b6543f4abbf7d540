// The command line of laws.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <filesystem>

#include "cli/errors.hpp"
#include "cli/laws/choose.hpp"
#include "cli/laws/names.hpp"
#include "cli/options_parts.hpp"
#include "cli/platform.hpp"

namespace numcore::cli {

namespace {

constexpr const char* kLawGroup = "Law";

constexpr const char* kWords =
    R"(X is a value, a list 1,2.5,4, a range from:to:step, or a column (--file, --column).
Parameters stand in the law's order or by name (mu=10 sigma=2); numcore law NAME shows them.
Infinite values are inf in text, csv and tsv, "Infinity" in JSON; a value that does not exist is
a point, an empty cell, null.

Examples:
)";

constexpr const char* kCdfExamples = R"(  numcore cdf normal 13 10 2
  numcore cdf chisq 3.84 1 --upper
  numcore cdf gamma 0:10:0.5 shape=2 rate=0.5 --format csv
  numcore cdf t df=10 --file tests.csv --column statistic --both)";

constexpr const char* kPdfExamples = R"(  numcore pdf normal -3:3:0.5
  numcore pdf binomial 0:10 n=10 p=0.3 --plot binomial.svg)";

constexpr const char* kQuantileFooter =
    R"(A FILE that is there goes before a law of the same name: write the law in capitals or by its code,
or give the probabilities by --file.
P is a probability (0.975 or 97.5%), a list, a range from:to:step, or a column (--file, --column).
A law's parameters stand in its order or by name (mu=10 sigma=2); numcore law NAME shows them.

Examples:
  numcore quantile airquality.csv --p 0.1,0.5,0.9 --by Month
  numcore quantile student 0.975 10
  numcore quantile normal 2.5%,97.5% 100 15
  numcore quantile f 0.05 3 20 --upper)";

constexpr const char* kLawFooter = R"(Examples:
  numcore law list
  numcore law list --format csv --output laws.csv
  numcore law gamma
  numcore law gamma 2 3 --plot gamma.svg)";

void addPlot(CLI::App& command, Options& options) {
    command
        .add_option("--plot", options.law.plot,
                    "SVG file to draw density and distribution to, the points marked")
        ->group(kLawGroup);
}

void addColumn(CLI::App& command, Options& options) {
    command.add_option("--file", options.file, "Take the values from a CSV or TSV file; - is standard input")
        ->group(kLawGroup);
}

void addTails(CLI::App& command, Options& options, const char* upper, const char* both) {
    command.add_flag("--upper", options.law.upper, upper)->group(kLawGroup);
    command.add_flag("--both", options.law.both, both)->group(kLawGroup);
}

CLI::App* addFunction(CLI::App& app, const char* name, const char* help, const char* examples, Command code,
                      Options& options, RawOptions& raw) {
    CLI::App* command = app.add_subcommand(name, help);
    command->add_option("LAW", options.law.name, "A law's name or code: normal, t, chisq, 14, ...")->required();
    command->add_option("X", options.law.arguments, "Values, then the law's parameters");
    addColumn(*command, options);
    command->add_option("-c,--column", options.selection.columns, "Column of the file, by name or number")
        ->expected(1)
        ->allow_extra_args(false)
        ->group(kLawGroup);
    addPlot(*command, options);
    addInput(*command, options, raw);
    addOutput(*command, options, raw);
    command->footer(std::string(kWords) + examples);
    command->callback([&options, code] { options.command = code; });
    return command;
}

bool isFileHere(const std::string& name) {
    std::error_code ignored;
    const auto path = pathFromUtf8(name);
    return name == "-" ||
           (std::filesystem::exists(path, ignored) && !std::filesystem::is_directory(path, ignored));
}

bool looksLikeAPath(const std::string& name) {
    return name.find_first_of("/\\.") != std::string::npos;
}

bool hasLawOptions(const Options& options) {
    return !options.law.arguments.empty() || !options.law.plot.empty() || options.law.upper || options.law.both;
}

/// --p gives the probabilities of a law too.
void takeOrders(const RawOptions& raw, Options& options) {
    std::string list;
    for (const std::string& orders : raw.orders) list += (list.empty() ? "" : ",") + orders;
    if (!list.empty()) options.law.arguments.insert(options.law.arguments.begin(), list);
    const bool ofColumns = !raw.methods.empty() || options.quantile.confidence ||
                           options.quantile.largeSample || !options.selection.weights.empty() ||
                           !options.selection.by.empty();
    if (ofColumns) {
        throw UsageError(
            fmt::format("{} is a law; methods, limits, weights and groups are for a file's columns",
                        quotedForMessage(raw.fileOrLaw)));
    }
}

}  // namespace

void addLawCommands(CLI::App& app, Options& options, RawOptions& raw) {
    CLI::App* cdf = addFunction(app, "cdf", "Distribution function of a law: P(X <= x)", kCdfExamples,
                                Command::kDistribution, options, raw);
    addTails(*cdf, options, "The upper tail P(X > x)", "Both tails");
    addFunction(app, "pdf", "Density of a law, or probabilities of whole numbers", kPdfExamples,
                Command::kDensity, options, raw);

    CLI::App* law = app.add_subcommand("law", "The laws with their codes and parameters, or one of them");
    law->add_option("LAW", options.law.name, "A law's name or code; list: the table of all, as without a name");
    law->add_option("PARAMETERS", options.law.arguments, "Parameters: moments and quartiles with them");
    addPlot(*law, options);
    addOutput(*law, options, raw);
    law->footer(kLawFooter);
    law->callback([&options] { options.command = Command::kLaw; });
}

void addLawQuantiles(CLI::App& command, Options& options) {
    command.add_option("P", options.law.arguments, "For a law: probabilities, then the law's parameters");
    addColumn(command, options);
    addTails(command, options, "The x with P(X > x) = p", "The quantiles of both tails");
    addPlot(command, options);
    command.footer(kQuantileFooter);
}

void decideQuantile(const RawOptions& raw, Options& options) {
    const std::string& name = raw.fileOrLaw;
    const bool valuesFromFile = !options.file.empty();
    if (!valuesFromFile && (isFileHere(name) || (looksLikeAPath(name) && !findLaw(name)))) {
        if (hasLawOptions(options) && !isFileHere(name))
            throw UsageError(fmt::format("{} is no file here and no law", quotedForMessage(name)));
        if (hasLawOptions(options)) {
            const auto law = findLaw(name);
            const std::string other =
                law ? fmt::format("; for the law of this name write {}",
                                  law->law->coded() ? fmt::format("its code {}", law->law->codes.back())
                                                    : "it in capitals")
                    : "";
            throw UsageError(
                fmt::format("{} is a file: further words, --upper, --both and --plot are for laws{}",
                            quotedForMessage(name), other));
        }
        options.file = name;
        return;
    }
    if (!valuesFromFile && !findLaw(name)) {
        throw UsageError(
            fmt::format("{} is no file here and no law: quantile takes FILE --p 0.5, or LAW 0.5 PARAMETERS\n{}",
                        quotedForMessage(name), unknownLaw(name)));
    }
    options.command = Command::kLawQuantile;
    options.law.name = name;
    takeOrders(raw, options);
}

}  // namespace numcore::cli
