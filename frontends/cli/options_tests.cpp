// The command lines of ttest, ztest, vartest, proptest and anova.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>

#include "cli/errors.hpp"
#include "cli/laws/values.hpp"
#include "cli/options_parts.hpp"

namespace numcore::cli {

namespace {

constexpr const char* kTestGroup = "Test";
constexpr const char* kResampleGroup = "Resampling";

constexpr const char* kMeanFooter =
    R"(Two columns, or the two groups of --by in each column, are compared: the first less the second. --groups b,a
names the two groups and their order. With --mu, or one column alone, a mean is tested against a number.
Limits have the level 1 - alpha; those of a one-sided test are open on one side.

Examples:
  numcore ttest sleep.csv --columns drug1,drug2 --paired
  numcore ttest toothgrowth.csv --columns len --by supp
  numcore ttest airquality.csv --columns Wind,Temp --mu 10 --resample 9999 --seed 1
  numcore ttest plantgrowth.csv --by group --groups trt2,ctrl --resample 9999 --seed 1)";

constexpr const char* kZFooter =
    R"(As ttest, with the normal law and known variances, or estimated ones when none is given.

Examples:
  numcore ztest sleep.csv --columns drug1,drug2 --variances 4,4
  numcore ztest iris.csv --columns Sepal.Width --mu 3 --variance 0.2)";

constexpr const char* kVarianceFooter =
    R"(f compares the variances of two samples, chi2 one with --variance, bartlett and levene those of two or more
samples: columns, or the groups of --by. Without --test it is chi2 where --variance is given, f for two samples,
levene for more.

Examples:
  numcore vartest toothgrowth.csv --columns len --by supp
  numcore vartest insectsprays.csv --by spray --test bartlett
  numcore vartest iris.csv --by Species --center mean
  numcore vartest sleep.csv --columns drug1 --variance 4)";

constexpr const char* kProportionFooter =
    R"(One sample is tested against --p (0.5), two with each other, three or more by chi-square and pair by pair.
Samples are given as counts, or as the groups of --by in a column of 0 and 1 or of two texts.

Examples:
  numcore proptest --success 15,25 --trials 50,50
  numcore proptest --success 38 --trials 60 --p 0.5 --interval clopper --resample 9999 --seed 1
  numcore proptest --success 15,25,40 --trials 50,50,60 --plot shares.svg
  numcore proptest haireyecolor.csv --columns Hair --event Black --by Sex --weights Freq)";

constexpr const char* kAnovaFooter =
    R"(Welch's analysis of variance does not take the groups' variances for equal.

Examples:
  numcore anova plantgrowth.csv --by group
  numcore anova insectsprays.csv --columns count --by spray --plot sprays.svg)";

/// Adds options of one heading.
class Adder {
  public:
    Adder(CLI::App& command, const char* group) : command_(command), group_(group) {}
    template <class Target>
    CLI::Option* option(const char* name, Target& target, const char* help) {
        return command_.add_option(name, target, help)->group(group_);
    }
    void flag(const char* name, bool& target, const char* help) {
        command_.add_flag(name, target, help)->group(group_);
    }

  private:
    CLI::App& command_;
    const char* group_;
};

void addSamples(CLI::App& command, Options& options) {
    addSelection(command, options);
    command.get_option("--by")->description("Column of groups to compare");
    command.add_option("--groups", options.test.groups, "The groups of --by to compare, in this order: a,b")
        ->expected(1)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->group(kSelectionGroup);
}

void addAlternative(Adder& test, Options& options, RawOptions& raw) {
    test.option("--alternative", raw.alternative, "two-sided (the default), less or greater");
    test.option("--alpha", options.test.alpha, "Level of significance; limits have 1 - alpha (0.05)");
}

void addDraws(Adder& resampling, ResampleRequest& request) {
    resampling
        .option("--resample", request.nResamples, "Take the p-value from so many resamples, not from the law")
        ->check(CLI::Range(1, 100'000'000));
    resampling.option("--seed", request.seed, "Seed of the resamples (a new one each time, and told)");
}

void addResampling(CLI::App& command, Options& options, RawOptions& raw) {
    ResampleRequest& request = options.test.resample;
    Adder resampling(command, kResampleGroup);
    addDraws(resampling, request);
    resampling.option("--scheme", raw.tests.scheme, "permutation (the default) or bootstrap");
    resampling
        .option("--exact-limit", request.exactLimit,
                "Try all arrangements when there are no more than these (1000000); 0 never")
        ->check(CLI::Range(0, 100'000'000));
    resampling.option("--time-limit", request.timeLimit,
                      "Seconds after which no further resample is begun (none)");
}

void addPlot(Adder& test, Options& options) {
    test.option("--plot", options.test.plot, "SVG file to draw the samples to");
}

/// What ttest and ztest share.
void addMeans(CLI::App& command, Options& options, RawOptions& raw) {
    addFile(command, options);
    addInput(command, options, raw);
    addSamples(command, options);
    Adder test(command, kTestGroup);
    test.option("--mu", options.test.mu, "Test the mean of each column against this number");
    test.option("--difference", options.test.difference, "Hypothesised difference of the two means (0)");
    test.flag("--paired", options.test.paired, "The rows of the two columns are pairs");
}

void addTTest(CLI::App& app, Options& options, RawOptions& raw) {
    CLI::App* command = app.add_subcommand("ttest", "Student's t test of one or two means");
    addMeans(*command, options, raw);
    Adder test(*command, kTestGroup);
    test.flag("--equal-variances", options.test.equalVariances, "Pooled variance instead of Welch's test");
    test.flag("--cochran-cox", options.test.cochranCox,
              "Critical value and limits of Cochran and Cox (two-sided, two samples)");
    addAlternative(test, options, raw);
    addPlot(test, options);
    addResampling(*command, options, raw);
    addOutput(*command, options, raw);
    command->footer(kMeanFooter);
    command->callback([&options] { options.command = Command::kTTest; });
}

void addZTest(CLI::App& app, Options& options, RawOptions& raw) {
    CLI::App* command = app.add_subcommand("ztest", "z test of one or two means");
    addMeans(*command, options, raw);
    Adder test(*command, kTestGroup);
    test.option("--variance,--variances", raw.tests.variances,
                "Known variance, of the differences when --paired; of two samples: 4,9");
    addAlternative(test, options, raw);
    addPlot(test, options);
    addResampling(*command, options, raw);
    addOutput(*command, options, raw);
    command->footer(kZFooter);
    command->callback([&options] { options.command = Command::kZTest; });
}

void addVarianceTest(CLI::App& app, Options& options, RawOptions& raw) {
    CLI::App* command = app.add_subcommand("vartest", "Tests of variances: F, chi-square, Bartlett, Levene");
    addFile(*command, options);
    addInput(*command, options, raw);
    addSamples(*command, options);
    Adder test(*command, kTestGroup);
    test.option("--test", raw.tests.test, "f, chi2, bartlett or levene");
    test.option("--variance", raw.tests.variances, "chi2: test each column's variance against this one");
    test.option("--ratio", options.test.ratio, "f: hypothesised ratio of the variances (1)");
    test.option("--center", raw.tests.center, "levene: deviations from the median (the default) or mean");
    addAlternative(test, options, raw);
    addPlot(test, options);
    addResampling(*command, options, raw);
    addOutput(*command, options, raw);
    command->footer(kVarianceFooter);
    command->callback([&options] { options.command = Command::kVarianceTest; });
}

void addProportionTest(CLI::App& app, Options& options, RawOptions& raw) {
    CLI::App* command = app.add_subcommand("proptest", "Tests of proportions, from counts or a column");
    command->add_option("FILE", options.file, "CSV or TSV file (- standard input), without --success");
    addInput(*command, options, raw);
    addSamples(*command, options);
    Adder test(*command, kTestGroup);
    test.option("--success", raw.tests.successes, "Counts of successes, one a sample: 15,25");
    test.option("--trials", raw.tests.trials, "Their numbers of trials: 50,50");
    test.option("--event", options.test.event, "What counts as a success in the column (1, or the last text)");
    test.option("--p", raw.tests.proportions, "Proportion to test against (one sample, 0.5); or one a sample");
    test.option("--difference", options.test.difference, "Hypothesised difference of the two proportions (0)");
    test.flag("--continuity", options.test.continuity, "Continuity correction (one or two samples)");
    test.flag("--separate-variances", options.test.separateVariances,
              "Variance from each proportion instead of the pooled one (two samples)");
    test.option("--interval", raw.tests.interval,
                "Limits of a proportion: wilson (the default), wald, clopper,\n"
                "agresti (adjusted Wald)");
    addAlternative(test, options, raw);
    addPlot(test, options);
    Adder resampling(*command, kResampleGroup);
    addDraws(resampling, options.test.resample);
    addOutput(*command, options, raw);
    command->footer(kProportionFooter);
    command->callback([&options] { options.command = Command::kProportionTest; });
}

void addAnova(CLI::App& app, Options& options, RawOptions& raw) {
    CLI::App* command = app.add_subcommand("anova", "Welch's analysis of variance: equal means of groups");
    addFile(*command, options);
    addInput(*command, options, raw);
    addSamples(*command, options);
    Adder test(*command, kTestGroup);
    test.option("--alpha", options.test.alpha, "Level of significance; limits of means have 1 - alpha (0.05)");
    addPlot(test, options);
    addResampling(*command, options, raw);
    addOutput(*command, options, raw);
    command->footer(kAnovaFooter);
    command->callback([&options] { options.command = Command::kAnova; });
}

std::vector<double> numbersOf(const std::string& list, const char* option) {
    std::vector<double> numbers;
    if (list.empty()) return numbers;
    for (const std::string& word : splitList(list)) {
        const std::optional<double> number = parseNumber(word);
        if (!number || !std::isfinite(*number))
            throw UsageError(fmt::format("{} takes numbers, not {}", option, quotedForMessage(word)));
        numbers.push_back(*number);
    }
    return numbers;
}

void readWords(const RawTests& raw, TestRequest& request) {
    if (!raw.test.empty()) {
        request.varianceTest = named<VarianceTest>({{"f", VarianceTest::kFisher},
                                                    {"chi2", VarianceTest::kChiSquare},
                                                    {"bartlett", VarianceTest::kBartlett},
                                                    {"levene", VarianceTest::kLevene}},
                                                   raw.test, "--test", "f, chi2, bartlett, levene");
    }
    if (!raw.center.empty()) {
        request.fromMeans =
            named<bool>({{"median", false}, {"mean", true}}, raw.center, "--center", "median, mean");
    }
    if (!raw.interval.empty()) {
        request.interval =
            named<ProportionInterval>({{"wilson", ProportionInterval::kWilson},
                                       {"wald", ProportionInterval::kWald},
                                       {"clopper", ProportionInterval::kClopperPearson},
                                       {"agresti", ProportionInterval::kAdjusted}},
                                      raw.interval, "--interval", "wilson, wald, clopper, agresti");
    }
    if (!raw.scheme.empty()) {
        request.resample.bootstrap = named<bool>({{"permutation", false}, {"bootstrap", true}}, raw.scheme,
                                                 "--scheme", "permutation, bootstrap");
    }
    request.variances = numbersOf(raw.variances, "--variance");
    request.successes = numbersOf(raw.successes, "--success");
    request.trials = numbersOf(raw.trials, "--trials");
    request.proportions = numbersOf(raw.proportions, "--p");
}

void checkResampling(const RawTests& raw, const ResampleRequest& request) {
    constexpr const char* kAlone = "goes with --resample";
    refuse(!(request.timeLimit >= 0.0), "--time-limit", "takes seconds, 0 or more");
    if (request.wanted()) return;
    refuse(request.seed.has_value(), "--seed", kAlone);
    refuse(!raw.scheme.empty(), "--scheme", kAlone);
    refuse(request.exactLimit.has_value(), "--exact-limit", kAlone);
    refuse(request.timeLimit > 0.0, "--time-limit", kAlone);
}

void checkMeans(const Options& options) {
    const TestRequest& request = options.test;
    const bool grouped = !options.selection.by.empty();
    refuse(request.paired && grouped, "--paired", "takes two columns, not groups (--by)");
    if (request.mu) {
        constexpr const char* kOneSample = "is about two samples; with --mu there is one";
        refuse(grouped, "--by", kOneSample);
        refuse(request.paired, "--paired", kOneSample);
        refuse(request.difference != 0.0, "--difference", kOneSample);
        refuse(request.equalVariances, "--equal-variances", kOneSample);
        refuse(request.cochranCox, "--cochran-cox", kOneSample);
    }
    constexpr const char* kIndependent = "is about independent samples, not --paired ones";
    refuse(request.paired && request.equalVariances, "--equal-variances", kIndependent);
    refuse(request.paired && request.cochranCox, "--cochran-cox", kIndependent);
    refuse(request.cochranCox && request.alternative != Alternative::kTwoSided, "--cochran-cox",
           "goes with --alternative two-sided");
    refuse(request.cochranCox && request.resample.wanted(), "--cochran-cox",
           "does not go with --resample, whose resamples give the critical value");
    if (!std::isfinite(request.mu.value_or(0.0)) || !std::isfinite(request.difference))
        throw UsageError("--mu and --difference take finite numbers");
}

void checkVariances(const RawOptions& raw, TestRequest& request) {
    if (request.varianceTest == VarianceTest::kByDesign && !request.variances.empty())
        request.varianceTest = VarianceTest::kChiSquare;
    const bool chiSquare = request.varianceTest == VarianceTest::kChiSquare;
    const bool fisher = request.varianceTest == VarianceTest::kFisher;
    const bool byDesign = request.varianceTest == VarianceTest::kByDesign;
    refuse(!request.variances.empty() && !chiSquare, "--variance", "goes with --test chi2");
    refuse(chiSquare && request.variances.size() != 1, "--test chi2", "takes one --variance to test against");
    refuse(request.ratio != 1.0 && !fisher && !byDesign, "--ratio", "goes with --test f");
    refuse(!(request.ratio > 0.0 && std::isfinite(request.ratio)), "--ratio", "takes a number above 0");
    refuse(!raw.tests.center.empty() && request.varianceTest != VarianceTest::kLevene && !byDesign, "--center",
           "goes with --test levene");
    if (byDesign && !raw.tests.center.empty()) request.varianceTest = VarianceTest::kLevene;
    if (byDesign && request.ratio != 1.0) request.varianceTest = VarianceTest::kFisher;
    const bool several =
        request.varianceTest == VarianceTest::kBartlett || request.varianceTest == VarianceTest::kLevene;
    refuse(several && !raw.alternative.empty(), "--alternative", "goes with --test f or chi2");
    refuse(chiSquare && request.resample.wanted(), "--resample", "does not go with --test chi2");
}

void checkProportions(const Options& options) {
    const TestRequest& request = options.test;
    const bool counts = !request.successes.empty() || !request.trials.empty();
    if (counts == !options.file.empty())
        throw UsageError("proptest takes a FILE, or --success and --trials: one of them");
    if (counts && request.successes.size() != request.trials.size()) {
        throw UsageError(fmt::format("--success has {} and --trials {}: one of each for every sample",
                                     counted(request.successes.size(), "count"), request.trials.size()));
    }
    for (std::size_t i = 0; i < request.trials.size(); ++i) {
        constexpr double kMost = 2147483647.0;
        const double n = request.trials[i];
        const double k = request.successes[i];
        if (!(n >= 1.0 && n <= kMost && n == std::floor(n) && k >= 0.0 && k <= n && k == std::floor(k)))
            throw UsageError(
                fmt::format("{} successes in {} trials: whole numbers, no more successes than trials", k, n));
    }
    const auto within = [](double p) { return p >= 0.0 && p <= 1.0; };
    refuse(!std::ranges::all_of(request.proportions, within), "--p", "takes proportions from 0 to 1");
    refuse(!(std::abs(request.difference) < 1.0), "--difference", "takes a number between -1 and 1");
    if (!counts) return;
    constexpr const char* kColumn = "is about a column of a FILE";
    refuse(!options.selection.by.empty(), "--by", kColumn);
    refuse(!options.selection.columns.empty(), "--columns", kColumn);
    refuse(!options.selection.weights.empty(), "--weights", kColumn);
    refuse(!request.event.empty(), "--event", kColumn);
}

}  // namespace

bool isTestCommand(Command command) {
    return command == Command::kTTest || command == Command::kZTest || command == Command::kVarianceTest ||
           command == Command::kProportionTest || command == Command::kAnova;
}

void addTestCommands(CLI::App& app, Options& options, RawOptions& raw) {
    addTTest(app, options, raw);
    addZTest(app, options, raw);
    addVarianceTest(app, options, raw);
    addProportionTest(app, options, raw);
    addAnova(app, options, raw);
}

void finishTest(const RawOptions& raw, Options& options) {
    TestRequest& request = options.test;
    readWords(raw.tests, request);
    if (!raw.alternative.empty()) request.alternative = alternativeNamed(raw.alternative);
    checkAlpha(request.alpha);
    refuse(!request.groups.empty() && options.selection.by.empty(), "--groups", "goes with --by");
    checkResampling(raw.tests, request.resample);
    if (options.command == Command::kTTest || options.command == Command::kZTest) checkMeans(options);
    if (options.command == Command::kVarianceTest) checkVariances(raw, request);
    if (options.command == Command::kProportionTest) checkProportions(options);
    refuse(std::ranges::any_of(request.variances, [](double variance) { return !(variance > 0.0); }),
           "--variance", "takes numbers above 0");
}

}  // namespace numcore::cli
