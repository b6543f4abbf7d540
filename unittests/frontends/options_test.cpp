#include "cli/options.hpp"
#include "cli/laws/values.hpp"

#include <gtest/gtest.h>

#include "cli/errors.hpp"

namespace numcore::cli {
namespace {

Options parse(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "numcore");
    int exitCode = 0;
    return parseOptions(arguments, exitCode).value();
}

TEST(Options, ReadsWhatBothCommandsShare) {
    const Options options = parse({"describe",  "-",       "-s",        "tab",    "--decimal",
                                   ",",         "--quote", "none",      "--skip", "2",
                                   "--missing", "-999,.x", "--missing", "-",      "--no-header",
                                   "--ragged",  "fill",    "-c",        "1-3",    "--columns=b,c",
                                   "-w",        "w",       "--by",      "g",      "--digits",
                                   "4",         "-f",      "md",        "-o",     "x.csv"});
    EXPECT_EQ(options.command, Command::kDescribe);
    EXPECT_EQ(options.file, "-");
    EXPECT_EQ(options.csv.separator, '\t');
    EXPECT_EQ(options.csv.decimalMark, ',');
    EXPECT_EQ(options.csv.quote, '\0');
    EXPECT_EQ(options.csv.skip, 2U);
    EXPECT_EQ(options.csv.missingWords, (std::vector<std::string>{"-999", ".x", "-"}));
    EXPECT_FALSE(options.csv.header);
    EXPECT_TRUE(options.csv.fillRagged);
    EXPECT_EQ(options.selection.columns, (std::vector<std::string>{"1-3", "b,c"}));
    EXPECT_EQ(options.selection.weights, "w");
    EXPECT_EQ(options.selection.by, "g");
    EXPECT_EQ(options.output.digits, 4);
    EXPECT_EQ(options.output.format, Format::kMarkdown);
}

TEST(Options, ReadsQuantileRequests) {
    const Options plain = parse({"quantile", "f.csv"});
    EXPECT_EQ(plain.command, Command::kQuantile);
    EXPECT_EQ(plain.quantile.orders, (std::vector<double>{0.25, 0.5, 0.75}));
    EXPECT_EQ(plain.quantile.methods, std::vector<int>{5});
    const Options full =
        parse({"quantile", "f.csv", "--p", "0.1,10%", "-p", "0.9", "-m", "r7,3", "--confidence", "0.9"});
    EXPECT_EQ(full.quantile.orders, (std::vector<double>{0.1, 0.9}));
    EXPECT_EQ(full.quantile.methods, (std::vector<int>{5, 3}));
    EXPECT_EQ(full.quantile.confidence, 0.9);
}

TEST(Options, TakesLawsWithValuesAndParameters) {
    const Options cdf =
        parse({"cdf", "norm", "-.5,1", "10", "sigma=2", "--upper", "--plot", "n.svg", "-f", "csv"});
    EXPECT_EQ(cdf.command, Command::kDistribution);
    EXPECT_EQ(cdf.law.name, "norm");
    EXPECT_EQ(cdf.law.arguments, (std::vector<std::string>{"-0.5,1", "10", "sigma=2"}));
    EXPECT_TRUE(cdf.law.upper);
    EXPECT_EQ(cdf.law.plot, "n.svg");
    EXPECT_EQ(parse({"cdf", "norm", "-1:1:0.5", "-2"}).law.arguments,
              (std::vector<std::string>{"-1:1:0.5", "-2"}));
    const std::vector<std::string> infinite = parse({"cdf", "norm", "-Inf,1", "-infinity"}).law.arguments;
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(parseValues(infinite[0], false), (std::vector<double>{-kInfinity, 1.0}));
    EXPECT_EQ(parseNumber(infinite[1]), -kInfinity);
    const Options column = parse({"pdf", "norm", "--file", "f.csv", "--column", "x", "-s", "tab"});
    EXPECT_EQ(column.command, Command::kDensity);
    EXPECT_EQ(column.file, "f.csv");
    EXPECT_EQ(column.selection.columns, std::vector<std::string>{"x"});
    EXPECT_EQ(column.csv.separator, '\t');
    EXPECT_EQ(parse({"pdf", "t", "--file", "f.csv", "--column", "x", "df=3"}).law.arguments,
              std::vector<std::string>{"df=3"})
        << "one column only";
    EXPECT_EQ(parse({"describe", "--columns", "x", "f.csv"}).file, "f.csv");
    EXPECT_EQ(parse({"law"}).law.name, "");
    EXPECT_EQ(parse({"law", "gamma", "2"}).law.arguments, std::vector<std::string>{"2"});
}

TEST(Options, ReadsCorrelationRequests) {
    const Options plain = parse({"cor", "f.csv"});
    EXPECT_EQ(plain.command, Command::kCorrelation);
    EXPECT_EQ(plain.correlation.coefficient, Coefficient::kPearson);
    EXPECT_FALSE(plain.correlation.listwise);
    const Options full = parse(
        {"cor",           "f.csv",  "-m",      "Kendall", "--exact", "--continuity", "--missing", "-9,listwise",
         "--alternative", "less",   "--alpha", "0.01",    "--ci",    "-c",           "1-3",       "--with",
         "a,b",           "--with", "c",       "--plot",  "m.svg",   "--layout",     "matrix"});
    EXPECT_EQ(full.correlation.coefficient, Coefficient::kKendall);
    EXPECT_TRUE(full.correlation.exact && full.correlation.continuity && full.correlation.intervals);
    EXPECT_TRUE(full.correlation.listwise);
    EXPECT_EQ(full.csv.missingWords, std::vector<std::string>{"-9"});
    EXPECT_EQ(full.correlation.alternative, Alternative::kLess);
    EXPECT_EQ(full.correlation.alpha, 0.01);
    EXPECT_EQ(full.selection.with, (std::vector<std::string>{"a,b", "c"}));
    EXPECT_EQ(full.correlation.layout, Layout::kMatrix);
    EXPECT_TRUE(parse({"cor", "f.csv", "-m", "polychoric-ml"}).correlation.fullLikelihood);
    EXPECT_EQ(parse({"alpha", "f.csv", "-b", "g"}).command, Command::kReliability);
    const Options mantel = parse({"mantel", "a.csv", "b.csv", "c.csv", "-m", "spearman", "--seed", "-4"});
    EXPECT_EQ(mantel.mantel.files, (std::vector<std::string>{"a.csv", "b.csv", "c.csv"}));
    EXPECT_TRUE(mantel.mantel.ranks);
    EXPECT_EQ(mantel.mantel.seed, -4);
    EXPECT_EQ(mantel.mantel.alternative, Alternative::kGreater);
}

TEST(Options, TellsFilesFromLaws) {
    const Options law = parse({"quantile", "student", "0.975", "10", "--both"});
    EXPECT_EQ(law.command, Command::kLawQuantile);
    EXPECT_EQ(law.law.arguments, (std::vector<std::string>{"0.975", "10"}));
    EXPECT_EQ(parse({"quantile", "t", "10", "--p", "0.9,0.95"}).law.arguments,
              (std::vector<std::string>{"0.9,0.95", "10"}));
    EXPECT_EQ(parse({"quantile", "t", "10", "--file", "f.csv", "--column", "p"}).file, "f.csv");
    EXPECT_EQ(parse({"quantile", "-"}).command, Command::kQuantile);
    EXPECT_EQ(parse({"quantile", "no/such.csv"}).command, Command::kQuantile)
        << "the reader tells what is wrong";
    EXPECT_EQ(parse({"quantile", NUMCORE_DATA_DIR "/iris.csv"}).command, Command::kQuantile);
}

TEST(Options, RefusesWhatMakesNoSense) {
    const std::vector<std::vector<std::string>> cases{
        {},
        {"describ", "f.csv"},
        {"describe"},
        {"describe", "a.csv", "b.csv"},
        {"describe", "f.csv", "--colour"},
        {"describe", "f.csv", "-s", ",,"},
        {"describe", "f.csv", "-s", "5"},
        {"describe", "f.csv", "-s", ",", "--decimal", ","},
        {"describe", "f.csv", "--decimal", ";"},
        {"describe", "f.csv", "--encoding", "ebcdic"},
        {"describe", "f.csv", "--format", "pdf"},
        {"describe", "f.csv", "--digits", "0"},
        {"describe", "f.csv", "--skip", "-1"},
        {"describe", "f.csv", "--ragged", "maybe"},
        {"quantile", "f.csv", "-w", "w", "-m", "5"},
        {"quantile", "f.csv", "--confidence", "95"},
        {"cor", "f.csv", "--alpha", "1"},
        {"cor", "f.csv", "-m", "all"},
        {"cor", "f.csv", "--exact"},
        {"cor", "f.csv", "--alternative", "both"},
        {"cor", "f.csv", "--missing", "pairwise", "--missing", "listwise"},
        {"cor", "f.csv", "--covariance", "-m", "spearman"},
        {"cor", "f.csv", "--covariance", "--ci"},
        {"cor", "f.csv", "--partial", "z", "-m", "kendall"},
        {"mantel", "a.csv"},
        {"mantel", "a.csv", "b.csv", "c.csv", "d.csv"},
        {"mantel", "-", "-"},
        {"quantile", "neither"},
        {"quantile", "f.csv", "0.5"},
        {"quantile", NUMCORE_DATA_DIR "/iris.csv", "0.5"},
        {"quantile", "f.csv", "--upper"},
        {"quantile", "normal", "0.5", "--method", "all"},
        {"cdf"},
        {"cdf", "normal", "1", "--upper", "--both"},
        {"pdf", "normal", "1", "--upper"},
    };
    for (const auto& arguments : cases) EXPECT_THROW(parse(arguments), UsageError) << arguments.size();
}

TEST(Completion, OffersTheOptionsThatExist) {
    for (const char* shell : {"bash", "zsh", "fish"}) {
        const std::string script = completionScript(shell);
        for (const char* word : {"describe", "quantile", "max-categories", "confidence", "markdown",
                                 "windows-1252", "cdf", "negative-binomial-1", "plot"}) {
            EXPECT_NE(script.find(word), std::string::npos) << shell << " " << word;
        }
    }
    const std::string bash = completionScript("bash");
    EXPECT_NE(bash.find("== law ]]; then\n        mapfile -t COMPREPLY < <(compgen -W 'list "),
              std::string::npos);
    EXPECT_NE(bash.find("cor\\ --method) mapfile -t COMPREPLY < <(compgen -W 'pearson "), std::string::npos);
    EXPECT_NE(bash.find("--plot) compopt -o filenames"), std::string::npos);
    EXPECT_THROW(completionScript("csh"), UsageError);
}

}  // namespace
}  // namespace numcore::cli
