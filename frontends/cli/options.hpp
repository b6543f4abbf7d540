// What the command line can ask for.
#pragma once

#include <cstddef>
#include <cstdint>
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
    kTTest,
    kZTest,
    kVarianceTest,
    kProportionTest,
    kAnova,
    kCompletion
};
/// ttest, ztest, vartest, proptest, anova.
bool isTestCommand(Command command);

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

enum class VarianceTest { kByDesign, kFisher, kChiSquare, kBartlett, kLevene };
enum class ProportionInterval { kWilson, kWald, kClopperPearson, kAdjusted };

struct ResampleRequest {
    std::int64_t nResamples = 0;  // 0: the law gives the p-value
    std::optional<int> seed;
    std::optional<std::int64_t> exactLimit;  // arrangements that are all tried; 0: never
    double timeLimit = 0.0;                  // seconds; 0: none
    bool bootstrap = false;

    bool wanted() const { return nResamples > 0; }
};

/// What the parametric tests ask for; each command reads its part.
struct TestRequest {
    std::vector<std::string> groups;  // of --by, the first one first
    std::optional<double> mu;         // mean of one sample
    double difference = 0.0;          // of two means or proportions
    double ratio = 1.0;               // of two variances
    std::vector<double> variances;    // known ones, or the one to test against
    bool paired = false;
    bool equalVariances = false;
    bool cochranCox = false;
    VarianceTest varianceTest = VarianceTest::kByDesign;
    bool fromMeans = false;  // Levene: deviations from means, not medians
    std::vector<double> successes;
    std::vector<double> trials;
    std::vector<double> proportions;  // to test against
    std::string event;                // the text that counts as a success
    bool continuity = false;
    bool separateVariances = false;
    ProportionInterval interval = ProportionInterval::kWilson;
    Alternative alternative = Alternative::kTwoSided;
    double alpha = 0.05;
    ResampleRequest resample;
    std::string plot;  // SVG file; empty: none
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
    TestRequest test;
    std::string shell;
};

/// Reads the arguments (the program's name first). Returns nothing when the program is to stop with exitCode:
/// help was printed, or an error. Throws UsageError for values that do not make sense.
std::optional<Options> parseOptions(const std::vector<std::string>& arguments, int& exitCode);

/// The completion script of a shell: bash, zsh or fish; throws UsageError for another one.
std::string completionScript(const std::string& shell);

}  // namespace numcore::cli
