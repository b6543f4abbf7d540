// Laws from the words of the command line to the numbers that are printed.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "cli/errors.hpp"
#include "cli/laws/choose.hpp"
#include "cli/laws/command.hpp"
#include "cli/laws/evaluate.hpp"
#include "cli/laws/names.hpp"
#include "cli/laws/values.hpp"
#include "cli/output/writers.hpp"
#include "cli/run.hpp"
#include "numcore/api.h"
#include "numcore/law_codes.h"
#include "reference_table.hpp"

namespace numcore::cli {
namespace {

using numcore::testing::agrees;
using numcore::testing::readTable;
using numcore::testing::Row;

std::vector<std::string> wordsOf(const std::string& text) {
    std::vector<std::string> words;
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t blank = std::min(text.find(' ', at), text.size());
        words.push_back(text.substr(at, blank - at));
        at = blank + 1;
    }
    return words;
}

Options optionsOf(Command command, const std::string& law, const std::string& arguments) {
    Options options;
    options.command = command;
    options.law.name = law;
    options.law.arguments = wordsOf(arguments);
    return options;
}

/// The message with which a command is refused; empty when it is not.
std::string refusal(Command command, const std::string& law, const std::string& arguments) {
    try {
        analyse(optionsOf(command, law, arguments));
    } catch (const UsageError& error) {
        return error.what();
    }
    return {};
}

double numberOf(const Cell& cell) {
    const auto* number = std::get_if<double>(&cell);
    return number == nullptr ? NUMCORE_MISSING : *number;
}

double computed(const Row& row) {
    const std::string command = row.text("command");
    const ChosenLaw chosen = chooseLaw(lawNamed(row.text("law")), wordsOf(row.text("parameters")));
    if (command == "mean") return chosen.law->mean(chosen.parameters);
    if (command == "variance") return chosen.law->variance(chosen.parameters);
    const Tail tail = row.text("tail") == "upper" ? Tail::kUpper : Tail::kLower;
    Remarks remarks;
    if (command == "cdf") return numberOf(distributionCell(chosen, row["point"], tail, remarks));
    if (command == "pdf") return numberOf(densityCell(chosen, row["point"], remarks));
    return numberOf(quantileCell(chosen, row["point"], tail, remarks));
}

TEST(Laws, GiveTheNumbersOfAnotherProgram) {
    for (const Row& row : readTable(NUMCORE_FRONTEND_REFERENCE_DIR "/laws.csv")) {
        const double got = computed(row);
        EXPECT_TRUE(agrees(got, row["expected"], row["tolerance"]))
            << "line " << row.line() << ": " << row.text("command") << " " << row.text("law") << " "
            << row.text("point") << " " << row.text("parameters") << " " << row.text("tail") << ": " << got
            << ", expected " << row["expected"];
    }
}

TEST(Laws, FitTheLibrarysTable) {
    std::vector<bool> seen(33);
    for (const Law& law : laws()) {
        for (const int code : law.codes) {
            ASSERT_FALSE(seen.at(static_cast<std::size_t>(code))) << code;
            seen[static_cast<std::size_t>(code)] = true;
            const numcore_law* row = numcore_law_of_code(code);
            ASSERT_NE(row, nullptr);
            EXPECT_EQ(row->isDiscrete != 0, law.discrete) << law.name;
            for (int i = 0; i < row->nParameters; ++i) {
                EXPECT_EQ(law.parameters.at(static_cast<std::size_t>(i)).symbol, row->parameters[i])
                    << law.name;
            }
            EXPECT_EQ(findLaw(row->name).value().law, &law) << row->name;
            EXPECT_EQ(findLaw(std::to_string(code)).value().code, code);
        }
        // No name of one law finds another one.
        for (const Alias& alias : law.aliases) EXPECT_EQ(findLaw(alias.name).value().law, &law) << alias.name;
        EXPECT_EQ(findLaw(law.name).value().law, &law) << law.name;
        EXPECT_NO_THROW(chooseLaw(lawNamed(law.name), wordsOf(law.example))) << "example of " << law.name;
    }
    EXPECT_EQ(std::ranges::count(seen, true), 33);
}

TEST(LawNames, AreFoundAsOtherProgramsWriteThem) {
    for (const char* name : {"norm", "NORMAL", "Gaussian", "14", "nor-mal"}) {
        EXPECT_EQ(lawNamed(name).law, lawNamed("normal").law) << name;
    }
    EXPECT_EQ(lawNamed("Gen_Extreme").law->codes.front(), 23);
    EXPECT_EQ(lawNamed("gamma 2").code, 11);
    EXPECT_FALSE(lawNamed("gamma").code);
    for (const char* name : {"chisq.dist", "CHISQ.INV.RT", "pchisq", "qchisq", "dchisq"}) {
        EXPECT_EQ(lawNamed(name).law, lawNamed("chi-square").law) << name;
    }
    EXPECT_EQ(lawNamed("NORM.S.INV").law, lawNamed("normal").law);
    EXPECT_FALSE(findLaw("rnorm") || findLaw("t.s.dist") || findLaw("norm.csv") || findLaw("px") ||
                 findLaw("."));
    EXPECT_FALSE(findLaw("") || findLaw("--") || findLaw("33") || findLaw("-1"));
    const auto message = [](const char* name) { return refusal(Command::kDistribution, name, "1"); };
    EXPECT_NE(message("nromal").find("did you mean normal"), std::string::npos) << message("nromal");
    EXPECT_NE(message("hypergeo").find("did you mean hypergeometric"), std::string::npos);
    EXPECT_NE(message("geom").find("negative-binomial-1 with n = 1"), std::string::npos);
    EXPECT_NE(message("xyzzy").find("numcore law list shows all laws"), std::string::npos);
    EXPECT_EQ(message("xyzzy").find("did you mean"), std::string::npos);
}

TEST(LawNames, OfFunctionsAskForThatFunction) {
    EXPECT_EQ(refusal(Command::kDistribution, "pnorm", "1"), "");
    EXPECT_EQ(refusal(Command::kDensity, "NORM.DIST", "1 0 2"), "");
    EXPECT_EQ(refusal(Command::kLaw, "qgamma", "2"), "");
    EXPECT_NE(refusal(Command::kDistribution, "qnorm", "0.5").find("numcore cdf normal"), std::string::npos);
    EXPECT_NE(refusal(Command::kDistribution, "F.DIST.RT", "3 3 20").find("--upper"), std::string::npos)
        << "the other tail would be a wrong answer";
    EXPECT_NE(refusal(Command::kLawQuantile, "T.INV.2T", "0.05 10").find("half the probability"),
              std::string::npos);
    Options upper = optionsOf(Command::kDistribution, "F.DIST.RT", "3 3 20");
    upper.law.upper = true;
    EXPECT_NEAR(numberOf(analyse(upper).tables[0].rows[0][1]), 0.0548586186683, 1e-12);
    const auto nNotes = [](const char* name, const char* words) {
        return chooseLaw(lawNamed(name), wordsOf(words)).notes.size();
    };
    EXPECT_EQ(nNotes("pgamma", "2 3"), 1U) << "a rate there, a scale here";
    EXPECT_EQ(nNotes("HYPGEOM.DIST", "20 8 5"), 1U);
    EXPECT_EQ(nNotes("pweibull", "2 3"), 0U);
}

TEST(LawParameters, ChooseTheFormAndItsDefaults) {
    const auto chosen = [](const char* law, const char* words) {
        return chooseLaw(lawNamed(law), wordsOf(words));
    };
    EXPECT_EQ(chosen("gamma", "2").code, 10);
    EXPECT_EQ(chosen("gamma", "2 3").code, 11);
    EXPECT_EQ(chosen("gamma", "2 mu=1").parameters, (Values{2.0, 1.0, 1.0, 0.0}));
    EXPECT_EQ(chosen("gamma", "2 mu=1").code, 12);
    EXPECT_EQ(chosen("gamma3", "2").code, 12);
    EXPECT_EQ(chosen("normal", "").code, 15);
    EXPECT_EQ(chosen("normal", "sd=2").parameterText(), "mu = 0, sigma = 2");
    EXPECT_EQ(chosen("beta", "2 3").parameters, (Values{2.0, 3.0, 0.0, 1.0}));
    EXPECT_EQ(chosen("hypergeometric", "n=5 N=20 K=8").parameters, (Values{20.0, 8.0, 5.0, 0.0}));
    EXPECT_EQ(chosen("expon", "2").notes.size(), 1U) << "another program's name with another parameter";
    EXPECT_TRUE(chosen("exp", "2").notes.empty());
}

TEST(LawParameters, AreRefusedWithWhatTheLawNeeds) {
    struct Case {
        const char* law;
        const char* arguments;
        const char* message;
    };
    const Case cases[] = {
        {"normal", "1 0 -1", "the normal law needs sigma (its standard deviation) above 0"},
        {"normal", "1 0 1 2", "the normal law takes at most 2 parameters"},
        {"normal", "1 mu=1 mean=2", "mu is given twice"},
        {"gamma", "1 2 3 rate=1", "beta is given twice"},
        {"gamma", "1 2 rate=0", "rate=0 is not possible"},
        {"normal", "1 width=2", "the normal law has no parameter 'width'"},
        {"normal", "1 x", "'x' is not a number"},
        {"normal", "1 nan", "'nan' is not a number"},
        {"standard normal", "1 5", "the standard normal law takes 0 parameters only"},
        {"student", "1", "the student law needs nu"},
        {"student", "", "no value: numcore cdf student X nu"},
        {"binomial", "1 2.5 0.5", "a whole number from 1"},
        {"binomial", "1 1e10 0.5", "a whole number from 1, within 2147483647"},
        {"binomial", "1 10 1.5", "from 0 to 1"},
        {"poisson", "1 inf", "above 0"},
        {"triangular", "1 3 2 5", "the triangular law needs a <= m <= b and a < b; here a = 3, m = 2, b = 5"},
        {"hypergeometric", "1 5 8 2", "K <= N and n <= N"},
        {"normal", "1;2", "'1;2' is not a value"},
        {"normal", "0:1:-1", "'0:1:-1' is not a range"},
        {"normal", "0:1:0", "'0:1:0' is not a range"},
        {"normal", "0:1e9:1e-9", "'0:1e9:1e-9' has more than"},
    };
    for (const Case& c : cases) {
        const std::string message = refusal(Command::kDistribution, c.law, c.arguments);
        EXPECT_NE(message.find(c.message), std::string::npos) << c.law << " " << c.arguments << ": " << message;
    }
    EXPECT_NE(refusal(Command::kLawQuantile, "normal", "1.5").find("1.5 is no probability"), std::string::npos);
    EXPECT_NE(refusal(Command::kDensity, "tukey", "1 3 10").find("no density in the library"),
              std::string::npos);
}

TEST(LawValues, ReadListsRangesAndPercentages) {
    using List = std::vector<double>;
    EXPECT_EQ(parseValues("1,-2.5,+3e2", false), (List{1.0, -2.5, 300.0}));
    EXPECT_EQ(parseValues("0:0.5:0.1", false), (List{0.0, 0.1, 0.2, 0.3, 0.4, 0.5}))
        << "not 0.30000000000000004";
    EXPECT_EQ(parseValues("-1:1,7", false), (List{-1.0, 0.0, 1.0, 7.0}));
    EXPECT_EQ(parseValues("3:1:-1", false), (List{3.0, 2.0, 1.0}));
    EXPECT_EQ(parseValues("2.5%,0.5", true), (List{0.025, 0.5}));
    EXPECT_THROW(parseValues("2.5%", false), UsageError);
}

/// A law with the parameters of its example.
ChosenLaw exampleOf(const Law& law) {
    return chooseLaw(lawNamed(law.name), wordsOf(law.example));
}

TEST(LawResults, OfEveryLawHoldTogether) {
    for (const Law& law : laws()) {
        const ChosenLaw chosen = exampleOf(law);
        for (const double p : {0.02, 0.3, 0.45, 0.9}) {
            const double x = quantileAt(chosen, p, Tail::kLower);
            const double lower = distributionAt(chosen, x, Tail::kLower);
            EXPECT_NEAR(lower + distributionAt(chosen, x, Tail::kUpper), 1.0, 1e-12) << law.name << " at " << x;
            if (law.discrete) {
                EXPECT_GE(lower, p) << law.name;
                EXPECT_LT(distributionAt(chosen, x - 1.0, Tail::kLower), p) << law.name;
                EXPECT_NEAR(densityAt(chosen, x), lower - distributionAt(chosen, x - 1.0, Tail::kLower), 1e-12)
                    << law.name << " at " << x;
                continue;
            }
            // The library's own quantile of this law takes the shape with the other sign.
            if (chosen.code != 23) {
                EXPECT_NEAR(lower, p, 1e-5) << law.name;
            }
            EXPECT_NEAR(quantileAt(chosen, 1.0 - lower, Tail::kUpper), quantileAt(chosen, lower, Tail::kLower),
                        1e-4 * (1.0 + std::abs(x)))
                << law.name;
            if (!hasDensity(law)) continue;
            const double step = 1e-5 * (1.0 + std::abs(x));
            const double slope = (distributionAt(chosen, x + step, Tail::kLower) -
                                  distributionAt(chosen, x - step, Tail::kLower)) /
                                 (2.0 * step);
            EXPECT_NEAR(densityAt(chosen, x), slope, 1e-4 * (1.0 + slope)) << law.name << " at " << x;
        }
    }
}

TEST(LawResults, HalvingFindsTheSameQuantiles) {
    for (const Law& law : laws()) {
        const ChosenLaw chosen = exampleOf(law);
        if (!hasQuantile(law) || chosen.code == 23) continue;
        for (const double p : {0.02, 0.45, 0.97}) {
            const double x = quantileAt(chosen, p, Tail::kLower);
            EXPECT_NEAR(invertDistribution(chosen, p, Tail::kLower), x, 1e-5 * (1.0 + std::abs(x))) << law.name;
        }
    }
    const ChosenLaw draws = chooseLaw(lawNamed("hyper"), wordsOf("20 8 5"));
    EXPECT_EQ(quantileAt(draws, 1e-12, Tail::kLower), 0.0) << "the start of the support itself";
    EXPECT_EQ(quantileAt(draws, 1e-12, Tail::kUpper), 5.0);
    // Counts beyond 32 bits, which the library's functions do not take.
    const ChosenLaw many = chooseLaw(lawNamed("poisson"), {"1e12"});
    EXPECT_NEAR(distributionAt(many, 1e12, Tail::kLower), 0.5, 1e-5);
    EXPECT_NEAR(invertDistribution(many, 0.5, Tail::kLower), 1e12, 1e4);
    EXPECT_EQ(distributionAt(chooseLaw(lawNamed("poisson"), {"4"}), 1e10, Tail::kLower), 1.0);
    const ChosenLaw wide = chooseLaw(lawNamed("normal"), wordsOf("0 1e300"));
    EXPECT_TRUE(std::isfinite(invertDistribution(wide, 0.9, Tail::kLower)));
}

TEST(LawResults, KnowTheEndsOfTheSupport) {
    const auto chosen = [](const char* law, const char* words) {
        return chooseLaw(lawNamed(law), wordsOf(words));
    };
    const ChosenLaw exponential = chosen("exp", "2");
    EXPECT_EQ(distributionAt(exponential, -1.0, Tail::kLower), 0.0);
    EXPECT_EQ(distributionAt(exponential, -1.0, Tail::kUpper), 1.0);
    EXPECT_EQ(densityAt(exponential, -1.0), 0.0);
    const ChosenLaw normal = chosen("normal", "3 2");
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(quantileAt(normal, 0.0, Tail::kLower), -kInfinity);
    EXPECT_EQ(quantileAt(normal, 0.0, Tail::kUpper), kInfinity);
    EXPECT_EQ(distributionAt(normal, kInfinity, Tail::kLower), 1.0);
    const ChosenLaw dice = chosen("randint", "1 6");
    EXPECT_EQ(quantileAt(dice, 1.0, Tail::kLower), 6.0);
    EXPECT_EQ(quantileAt(dice, 0.0, Tail::kLower), 1.0);
    EXPECT_EQ(distributionAt(dice, 2.9, Tail::kLower), 2.0 / 6.0);
    EXPECT_EQ(densityAt(dice, 2.5), 0.0);
    EXPECT_EQ(densityAt(chosen("beta", "0.5 2"), 0.0), NUMCORE_OVERFLOW);
}

TEST(LawResults, AreBoundsWhereTheyAreTooSmall) {
    const Report report = analyse(optionsOf(Command::kDistribution, "normal", "-40"));
    EXPECT_EQ(report.tables[0].rows[0][1], Cell(Below{1e-300}));
    EXPECT_NE(writeText(report, {}).find("-40   < 1e-300\n"), std::string::npos) << writeText(report, {});
    EXPECT_EQ(writeDelimited(report, ','), "x,lower\n-40,0\n");
    const auto json = nlohmann::json::parse(writeJson(report));
    EXPECT_EQ(json["tables"][0]["rows"][0]["lower"], 0.0);
    EXPECT_NE(json["notes"][0].get<std::string>().find("< 1e-300"), std::string::npos);
    // The ends of the support are no bounds.
    const Report uniform = analyse(optionsOf(Command::kDistribution, "uniform", "-1,0,2"));
    for (const auto& row : uniform.tables[0].rows) EXPECT_TRUE(std::holds_alternative<double>(row[1]));
}

TEST(LawReports, ShowBothTailsInEveryFormat) {
    Options options = optionsOf(Command::kDistribution, "norm", "13,25 10 2");
    options.law.both = true;
    const Report report = analyse(options);
    EXPECT_EQ(writeText(report, {}),
              "normal law, mu = 10, sigma = 2\n\n"
              "Distribution function\n"
              " x  P(X <= x)     P(X > x)\n"
              "--------------------------\n"
              "13   0.933193  0.0668072\n"
              "25   1         3.19089e-14\n");
    const auto json = nlohmann::json::parse(writeJson(report));
    EXPECT_EQ(json["law"],
              nlohmann::json::parse(
                  R"({"name": "normal", "code": 14, "parameters": {"mu": 10, "sigma": 2}, "tail": "both"})"));
    EXPECT_FALSE(json.contains("rows") || json.contains("file")) << "no file was read";
    EXPECT_NEAR(json["tables"][0]["rows"][1]["upper"].get<double>(), 3.190891672910885e-14, 1e-24);
    EXPECT_NE(writeMarkdown(report, {}).find("| 13 | 0.933193 | 0.0668072 |"), std::string::npos);
    EXPECT_NE(writeHtml(report, {}).find("<th class=\"number\">P(X &lt;= x)</th>"), std::string::npos);
    EXPECT_TRUE(nlohmann::json::parse(
                    writeJson(analyse(optionsOf(Command::kDistribution, "tukey", "3 3 10"))))["law"]["code"]
                    .is_null());
}

TEST(LawReports, SayWhatIsNotAsItLooks) {
    const auto notes = [](Command command, const char* law, const char* arguments, bool upper) {
        Options options = optionsOf(command, law, arguments);
        options.law.upper = upper;
        std::string text;
        for (const std::string& note : analyse(options).notes) text += note + "\n";
        return text;
    };
    EXPECT_EQ(notes(Command::kDistribution, "normal", "1", false), "");
    EXPECT_NE(notes(Command::kDistribution, "normal", "6", false).find("not quite 1"), std::string::npos);
    EXPECT_NE(notes(Command::kDistribution, "ncx2", "90 3 2", true).find("1 - lower tail"), std::string::npos);
    EXPECT_EQ(notes(Command::kDistribution, "ncx2", "9 3 2", true), "");
    EXPECT_NE(notes(Command::kDensity, "binom", "1.5 10 0.3", false).find("whole numbers only"),
              std::string::npos);
    EXPECT_NE(notes(Command::kLawQuantile, "gev", "0.5 0.3", false).find("k = -0.3"), std::string::npos);
    EXPECT_NE(
        notes(Command::kLawQuantile, "chisq", "0.999999999999999 3", false).find("beyond what the method"),
        std::string::npos);
}

TEST(LawReports, TakeAColumnOfAFile) {
    Options options = optionsOf(Command::kDistribution, "normal", "42 sigma=33");
    options.file = NUMCORE_DATA_DIR "/airquality.csv";
    options.selection.columns = {"Ozone"};
    const Report report = analyse(options);
    ASSERT_EQ(report.tables[0].rows.size(), 153U);
    EXPECT_EQ(report.tables[0].columns[1].title, "Ozone");
    EXPECT_EQ(report.tables[0].rows[0][1], Cell(41.0));
    EXPECT_EQ(report.tables[0].rows[4], (std::vector<Cell>{std::int64_t{5}, Cell(), Cell()}))
        << "missing stays missing";
    EXPECT_EQ(report.rows.missingCells, 37U);
    options.command = Command::kLawQuantile;
    const Report quantiles = analyse(options);
    EXPECT_FALSE(quantiles.warnings.empty()) << "Ozone holds no probabilities";
    EXPECT_NE(quantiles.notes.back().find("the first: row 1, 41"), std::string::npos) << quantiles.notes.back();
    options.selection.columns.clear();
    EXPECT_THROW(analyse(options), UsageError) << "which column?";
    options.file = NUMCORE_DATA_DIR "/iris.csv";
    options.selection.columns = {"Species"};
    try {
        analyse(options);
        ADD_FAILURE() << "texts have no distribution";
    } catch (const DataError& error) {
        EXPECT_NE(std::string(error.what()).find("'Species' holds texts: row 1 is 'setosa'"), std::string::npos)
            << error.what();
    }
}

TEST(LawReports, ExplainEveryLaw) {
    EXPECT_EQ(analyse(optionsOf(Command::kLaw, "List", "")).tables[0].rows.size(), 40U);
    EXPECT_NE(refusal(Command::kLaw, "list", "2"), "");
    for (const Law& law : laws()) {
        const Report report = explainLaw(lawNamed(law.name), wordsOf(law.example));
        EXPECT_EQ(report.tables.size(), law.parameters.empty() ? 3U : 4U) << law.name;
        ASSERT_TRUE(report.law) << law.name;
        EXPECT_EQ(explainLaw(lawNamed(law.name), {}).title, law.name + " law");
    }
    const std::string text = writeText(explainLaw(lawNamed("expon"), {"0.5"}), {});
    for (const char* piece : {"lambda  rate, 1/scale  above 0", "5 exponential (lambda)", "1/lambda^2",
                              "standard deviation    2\n", "expon: scipy's expon takes loc and scale"}) {
        EXPECT_NE(text.find(piece), std::string::npos) << piece << "\n" << text;
    }
}

}  // namespace
}  // namespace numcore::cli
