// The options that commands share, for CLI11.
#pragma once

#include <string>
#include <vector>

#include "cli/options.hpp"

namespace CLI {
class App;
}

namespace numcore::cli {

// Headings of the help.
inline constexpr const char* kInputGroup = "Input";
inline constexpr const char* kSelectionGroup = "Selection";
inline constexpr const char* kOutputGroup = "Output";

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
};

/// How a file is to be read: separator, missing words, ...
void addInput(CLI::App& command, Options& options, RawOptions& raw);
/// Which columns: names, weights, groups.
void addSelection(CLI::App& command, Options& options);
/// Where and how results are written.
void addOutput(CLI::App& command, Options& options, RawOptions& raw);

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

/// A file or a law: quantile takes both. Sets the command and what it is about. Throws UsageError.
void decideQuantile(const RawOptions& raw, Options& options);

}  // namespace numcore::cli
