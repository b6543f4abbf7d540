// The command lines of cor, alpha and mantel.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>

#include "cli/errors.hpp"
#include "cli/options_parts.hpp"
#include "cli/words.hpp"

namespace numcore::cli {

namespace {

constexpr const char* kGroup = "Correlation";
constexpr const char* kTestGroup = "Test";

constexpr const char* kCorFooter =
    R"(Marks stand for --alpha and the usual levels below it. Limits are two-sided, of level 1 - alpha.
CSV, TSV and JSON hold a row per pair with everything; --layout matrix gives matrices there too.

Examples:
  numcore cor airquality.csv --columns Ozone-Temp
  numcore cor iris.csv --by Species --method spearman
  numcore cor mtcars.csv --columns mpg,hp --with wt,qsec --ci
  numcore cor airquality.csv --columns Ozone,Wind --partial Temp
  numcore cor airquality.csv --missing listwise --plot map.svg --format json)";

constexpr const char* kAlphaFooter = R"(Rows with a missing cell in an item are left out.

Example:
  numcore alpha questionnaire.csv --columns q1-q10)";

constexpr const char* kMantelFooter =
    R"(A file holds a square table of distances, with or without a first column of names; what is below the
diagonal is read, or what is above it when nothing stands below. Files with the same names in another order
are put into the order of FILE1.

Examples:
  numcore mantel genetic.csv geographic.csv
  numcore mantel genetic.csv geographic.csv climate.csv --method spearman --seed 1)";

void addLists(CLI::App& command, Options& options) {
    const auto add = [&](const char* name, std::vector<std::string>& lists, const char* help) {
        command.add_option(name, lists, help)
            ->expected(1)
            ->allow_extra_args(false)
            ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
            ->group(kSelectionGroup);
    };
    add("--with", options.selection.with, "Columns across: each of --columns with each of these");
    add("--partial", options.selection.partial, "Columns to hold constant (Pearson)");
}

void addCorrelation(CLI::App& app, Options& options, RawOptions& raw) {
    CLI::App* command = app.add_subcommand("cor", "Correlations between columns of numbers");
    CorrelationRequest& request = options.correlation;
    addFile(*command, options);
    addInput(*command, options, raw);
    command->get_option("--missing")
        ->description(
            "pairwise: a pair uses the rows where both have a value (the default); listwise: the rows\n"
            "where all have one; other words, separated by commas, are words for missing cells");
    addSelection(*command, options);
    addLists(*command, options);
    const auto add = [&](const char* name, auto& target, const char* help) {
        return command->add_option(name, target, help)->group(kGroup);
    };
    const auto addFlag = [&](const char* name, bool& target, const char* help) {
        command->add_flag(name, target, help)->group(kGroup);
    };
    add("-m,--method", raw.coefficient,
        "pearson (the default), spearman, kendall, polychoric, or polychoric-ml (full likelihood)");
    addFlag("--covariance", request.covariance, "Covariances instead of correlations (Pearson)");
    add("--alternative", raw.alternative, "two-sided (the default), less or greater");
    add("--alpha", request.alpha, "Level of significance (0.05)");
    addFlag("--ci", request.intervals, "Confidence limits");
    addFlag("--exact", request.exact, "Kendall: exact p-values, for values without ties in fewer than 50 rows");
    addFlag("--continuity", request.continuity, "Kendall: continuity correction of the normal law");
    add("--layout", raw.layout, "matrix (the default for people) or pairs (for csv, tsv and json)");
    add("--plot", request.plot, "SVG file to draw a map of the correlations to");
    addOutput(*command, options, raw);
    command->footer(kCorFooter);
    command->callback([&options] { options.command = Command::kCorrelation; });
}

void addReliability(CLI::App& app, Options& options, RawOptions& raw) {
    CLI::App* command = app.add_subcommand("alpha", "Cronbach's alpha of a scale, its items in columns");
    addFile(*command, options);
    addInput(*command, options, raw);
    addSelection(*command, options);
    addOutput(*command, options, raw);
    command->footer(kAlphaFooter);
    command->callback([&options] { options.command = Command::kReliability; });
}

void addMantel(CLI::App& app, Options& options, RawOptions& raw) {
    CLI::App* command = app.add_subcommand("mantel", "Mantel test of two distance matrices");
    command->add_option("FILE", options.mantel.files, "FILE1 FILE2 [FILE3]; the third is held constant")
        ->required()
        ->expected(2, 3);
    command
        ->add_option("-m,--method", raw.coefficient,
                     "pearson (the default), or spearman: ranks of the distances")
        ->group(kTestGroup);
    command->add_option("--alternative", raw.alternative, "greater (the default), less or two-sided")
        ->group(kTestGroup);
    command->add_option("--permutations", options.mantel.nPermutations, "Orders to draw (9999); 0 no test")
        ->check(CLI::Range(0, 100'000'000))
        ->group(kTestGroup);
    command->add_option("--seed", options.mantel.seed, "Seed of the orders (a new one each time, and told)")
        ->group(kTestGroup);
    addInput(*command, options, raw);
    addOutput(*command, options, raw);
    command->footer(kMantelFooter);
    command->callback([&options] { options.command = Command::kMantel; });
}

Coefficient coefficientOf(const std::string& given, CorrelationRequest& request) {
    const std::map<std::string, Coefficient> names{{"pearson", Coefficient::kPearson},
                                                   {"spearman", Coefficient::kSpearman},
                                                   {"kendall", Coefficient::kKendall},
                                                   {"polychoric", Coefficient::kPolychoric},
                                                   {"polychoric-ml", Coefficient::kPolychoric}};
    request.fullLikelihood = lowerCase(given) == "polychoric-ml";
    return named(names, given, "--method", "pearson, spearman, kendall, polychoric, polychoric-ml");
}

/// Takes the words of --missing that say which rows a pair uses out of the words for missing cells.
void takeDeletion(Options& options) {
    std::vector<std::string>& words = options.csv.missingWords;
    const auto take = [&words](const char* word) { return std::erase(words, word) > 0; };
    const bool pairwise = take("pairwise");
    options.correlation.listwise = take("listwise");
    if (pairwise && options.correlation.listwise)
        throw UsageError("--missing pairwise and listwise: take one of them");
}

void checkCorrelation(const Options& options, bool alternativeGiven) {
    const CorrelationRequest& request = options.correlation;
    const bool pearson = request.coefficient == Coefficient::kPearson;
    const bool kendall = request.coefficient == Coefficient::kKendall;
    checkAlpha(request.alpha);
    refuse(request.exact && !kendall, "--exact", "goes with --method kendall");
    refuse(request.continuity && !kendall, "--continuity", "goes with --method kendall");
    refuse(request.covariance && !pearson, "--covariance", "goes with --method pearson");
    const bool partial = !options.selection.partial.empty();
    refuse(partial && !pearson, "--partial", "goes with --method pearson");
    if (!request.covariance) return;
    const char* kNoTest = "is about correlations and does not go with --covariance";
    refuse(partial, "--partial", kNoTest);
    refuse(request.intervals, "--ci", kNoTest);
    refuse(alternativeGiven, "--alternative", kNoTest);
    refuse(!request.plot.empty(), "--plot", kNoTest);
}

}  // namespace

void addCorrelationCommands(CLI::App& app, Options& options, RawOptions& raw) {
    addCorrelation(app, options, raw);
    addReliability(app, options, raw);
    addMantel(app, options, raw);
}

void finishCorrelation(const RawOptions& raw, Options& options) {
    CorrelationRequest& request = options.correlation;
    if (!raw.coefficient.empty()) request.coefficient = coefficientOf(raw.coefficient, request);
    if (!raw.alternative.empty()) request.alternative = alternativeNamed(raw.alternative);
    if (!raw.layout.empty()) {
        request.layout = named<Layout>({{"matrix", Layout::kMatrix}, {"pairs", Layout::kPairs}}, raw.layout,
                                       "--layout", "matrix, pairs");
    }
    takeDeletion(options);
    checkCorrelation(options, !raw.alternative.empty());
}

void finishMantel(const RawOptions& raw, Options& options) {
    MantelRequest& request = options.mantel;
    if (!raw.coefficient.empty()) {
        request.ranks = named<bool>({{"pearson", false}, {"spearman", true}}, raw.coefficient, "--method",
                                    "pearson, spearman");
    }
    if (!raw.alternative.empty()) request.alternative = alternativeNamed(raw.alternative);
    if (std::ranges::count(request.files, "-") > 1)
        throw UsageError("standard input (-) can be one of the files only");
}

}  // namespace numcore::cli
