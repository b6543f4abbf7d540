// What the command line can ask for.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "cli/csv/settings.hpp"

namespace CLI {
class App;
}

namespace numcore::cli {

enum class Command {
    kDescribe,
    kQuantile,
    kLaw,
    kDensity,
    kDistribution,
    kLawQuantile,
    kCorrelation,
    kReliability,
    kMantel,
    kBayes,
    kCompletion
};
enum class Format { kText, kCsv, kTsv, kJson, kMarkdown, kHtml };

struct SelectionOptions {
    std::vector<std::string> columns;  // selectors; none: every column
    std::vector<std::string> text;     // selectors of columns to be taken as text
    std::vector<std::string> with;     // selectors of the columns across
    std::vector<std::string> partial;  // selectors of columns held constant
    std::string weights;
    std::string by;
};

struct OutputOptions {
    std::optional<Format> format;
    std::string path;  // empty: standard output
    std::optional<int> digits;
    std::optional<int> width;
    std::size_t maxCategories = 50;
    bool quiet = false;
    bool verbose = false;
};

struct QuantileRequest {
    std::vector<double> orders;
    std::vector<int> methods;
    bool methodGiven = false;
    std::optional<double> confidence;
    bool largeSample = false;
};

/// A law with its values and parameters, as they are written.
struct LawRequest {
    std::string name;                    // empty: the list of laws
    std::vector<std::string> arguments;  // values unless a file has them, then parameters
    bool upper = false;
    bool both = false;
    std::string plot;  // SVG file; empty: none
};

enum class Coefficient { kPearson, kSpearman, kKendall, kPolychoric };
enum class Alternative { kTwoSided, kLess, kGreater };
enum class Layout { kByFormat, kMatrix, kPairs };

struct CorrelationRequest {
    Coefficient coefficient = Coefficient::kPearson;
    bool fullLikelihood = false;  // polychoric: thresholds and coefficient together
    bool covariance = false;
    bool listwise = false;
    Alternative alternative = Alternative::kTwoSided;
    double alpha = 0.05;
    bool intervals = false;
    bool exact = false;
    bool continuity = false;
    Layout layout = Layout::kByFormat;
    std::string plot;  // SVG file; empty: none
};

struct MantelRequest {
    std::vector<std::string> files;  // the third is held constant
    bool ranks = false;
    Alternative alternative = Alternative::kGreater;
    int nPermutations = 9999;
    std::optional<int> seed;
};

/// What is asked of a Bayesian network, as it is written.
struct NetworkRequest {
    std::vector<std::string> evidence;     // lists Node=state
    std::vector<std::string> likelihoods;  // lists Node=number:number:...
    std::vector<std::string> queries;      // Node,Node|Node=state,Node
    std::vector<std::string> joints;       // lists of nodes
    bool tree = false;
    bool check = false;
    std::string memory;  // bytes, or with K, M, G, T; empty: the library's bound
    std::string plot;    // SVG file; empty: none
};

struct Options {
    Command command = Command::kDescribe;
    std::string file;  // empty: none
    CsvOptions csv;
    SelectionOptions selection;
    OutputOptions output;
    QuantileRequest quantile;
    LawRequest law;
    CorrelationRequest correlation;
    MantelRequest mantel;
    NetworkRequest network;
    std::string shell;
};

/// Reads the arguments (the program's name first). Returns nothing when the program is to stop with exitCode:
/// help was printed, or an error. Throws UsageError for values that do not make sense.
std::optional<Options> parseOptions(const std::vector<std::string>& arguments, int& exitCode);

/// The completion script of a shell: bash, zsh or fish; throws UsageError for another one.
std::string completionScript(const std::string& shell);

}  // namespace numcore::cli
