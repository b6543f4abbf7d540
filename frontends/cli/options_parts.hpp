// The options that commands share, for CLI11.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "cli/options.hpp"
#include "cli/words.hpp"

namespace CLI {
class App;
}

namespace numcore::cli {

// Headings of the help.
inline constexpr const char* kInputGroup = "Input";
inline constexpr const char* kSelectionGroup = "Selection";
inline constexpr const char* kOutputGroup = "Output";

/// Words of the parametric tests.
struct RawTests {
    std::string test;
    std::string center;
    std::string interval;
    std::string scheme;
    std::string variances;
    std::string successes;
    std::string trials;
    std::string proportions;
};

/// Values as the command line gives them, before they are checked.
struct RawOptions {
    std::string separator;
    std::string decimalMark;
    std::string quote;
    std::string encoding;
    std::string ragged = "error";
    std::vector<std::string> missing;
    bool noStandardMissing = false;
    bool noHeader = false;
    std::string format;
    std::vector<std::string> orders;
    std::vector<std::string> methods;
    std::string fileOrLaw;
    std::string coefficient;
    std::string alternative;
    std::string layout;
    RawTests tests;
};

/// The file that a command reads.
void addFile(CLI::App& command, Options& options);
/// How a file is to be read: separator, missing words, ...
void addInput(CLI::App& command, Options& options, RawOptions& raw);
/// Which columns: names, weights, groups.
void addSelection(CLI::App& command, Options& options);
/// Where and how results are written.
void addOutput(CLI::App& command, Options& options, RawOptions& raw);

/// The value that a word stands for, whatever its letters' case; known lists the words. Throws UsageError for
/// another one.
template <class Value>
Value named(const std::map<std::string, Value>& names, const std::string& given, const char* option,
            const char* known);
/// A word of --alternative. Throws UsageError.
Alternative alternativeNamed(const std::string& given);
/// Throws UsageError for a level outside (0, 1).
void checkAlpha(double alpha);
/// Throws UsageError for an option that was given: "--exact goes with --method kendall".
void refuse(bool given, const char* option, const char* why);

/// The commands law, cdf and pdf.
void addLawCommands(CLI::App& app, Options& options, RawOptions& raw);
/// What quantile takes for a law.
void addLawQuantiles(CLI::App& command, Options& options);

/// The commands cor, alpha and mantel.
void addCorrelationCommands(CLI::App& app, Options& options, RawOptions& raw);
/// Their values from their words. Throw UsageError.
void finishCorrelation(const RawOptions& raw, Options& options);
void finishMantel(const RawOptions& raw, Options& options);

/// The command bayes.
void addNetworkCommand(CLI::App& app, Options& options, RawOptions& raw);

/// The commands ttest, ztest, vartest, proptest and anova.
void addTestCommands(CLI::App& app, Options& options, RawOptions& raw);
/// Their values from their words. Throws UsageError.
void finishTest(const RawOptions& raw, Options& options);

/// A file or a law: quantile takes both. Sets the command and what it is about. Throws UsageError.
void decideQuantile(const RawOptions& raw, Options& options);

[[noreturn]] void refuseWord(const std::string& given, const char* option, const char* known);

template <class Value>
Value named(const std::map<std::string, Value>& names, const std::string& given, const char* option,
            const char* known) {
    const auto found = names.find(lowerCase(given));
    if (found == names.end()) refuseWord(given, option, known);
    return found->second;
}

}  // namespace numcore::cli
