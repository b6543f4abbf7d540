#include <fmt/format.h>

#include <utility>

#include "cli/correlation/tables.hpp"
#include "cli/errors.hpp"
#include "cli/output/sink.hpp"
#include "cli/output/writers.hpp"
#include "cli/tests/command.hpp"
#include "cli/tests/outcome.hpp"
#include "cli/tests/picture.hpp"
#include "cli/tests/variances.hpp"

namespace numcore::cli {

namespace {

constexpr const char* kNoSpread = "too few values, or values that do not vary, in a sample";

TestKind kindOf(VarianceTest test) {
    switch (test) {
        case VarianceTest::kFisher:
            return {"ratio", "Ratio", "f", "F", 2, 0.0, " / ", "the values of both samples do not vary"};
        case VarianceTest::kChiSquare:
            return {"variance", "Variance", "chi_square", "Chi-square",
                    1,          0.0,        " / ",        "the values do not vary"};
        case VarianceTest::kBartlett:
            return {nullptr, nullptr, "chi_square", "Chi-square", 1, 0.0, nullptr, kNoSpread};
        default:
            return {nullptr, nullptr, "f", "F", 2, 0.0, nullptr, kNoSpread};
    }
}

Design designOf(const Sample& sample, VarianceTest test) {
    if (test == VarianceTest::kChiSquare) return Design::kOneSample;
    return sample.grouped() ? Design::kGroups : Design::kColumns;
}

TestOutcome testOne(const Comparison& comparison, const TestRequest& request, VarianceTest test) {
    switch (test) {
        case VarianceTest::kFisher:
            return testRatio(comparison, request);
        case VarianceTest::kChiSquare:
            return testVariance(comparison.samples[0], request);
        case VarianceTest::kBartlett:
            return testBartlett(comparison, request);
        default:
            return testLevene(comparison, request);
    }
}

void requireSeveral(const Comparison& comparison, const char* what, const Report& report) {
    if (comparison.samples.size() > 1) return;
    throw DataError(
        fmt::format("{}: {} compares two samples or more, here is one column, {}; name others by "
                    "--columns, or groups by --by",
                    report.file, what, comparison.name()));
}

void explain(const std::vector<TestedComparison>& tested, const TestRequest& request, VarianceTest test,
             Report& report) {
    const char* side = nameOf(request.alternative);
    const Comparison& first = tested.front().comparison;
    if (test == VarianceTest::kFisher) {
        report.notes.push_back(fmt::format("ratio: variance of {} over variance of {}; {}",
                                           quotedForMessage(first.samples[0].name),
                                           quotedForMessage(first.samples[1].name), limitsOf(request.alpha)));
        notePValue(tested, request, fmt::format("{}, hypothesis: a ratio of {}", side, request.ratio), report);
    } else if (test == VarianceTest::kChiSquare) {
        report.notes.push_back(
            fmt::format("variance: in the square of the column's units; {}", limitsOf(request.alpha)));
        notePValue(tested, request, fmt::format("{}, hypothesis: a variance of {}", side, request.variances[0]),
                   report);
    } else {
        notePValue(tested, request, "upper tail, hypothesis: equal variances", report);
    }
}

void draw(const std::vector<Comparison>& comparisons, const std::string& groupsName, const std::string& method,
          const TestRequest& request, const Report& report) {
    if (request.plot.empty()) return;
    writeFile(request.plot,
              drawSamples({&comparisons, groupsName, method, report.file, request.alpha, {}, {}, {}}));
}

}  // namespace

void testVariances(Sample sample, const Options& options, Report& report) {
    const TestRequest& request = options.test;
    const std::string groupsName = sample.groupsName;
    VarianceTest test = request.varianceTest;
    if (test == VarianceTest::kChiSquare && sample.grouped())
        throw UsageError("--by does not go with --test chi2: it tests each column against --variance");
    const bool weighted = sample.weighted();
    noteTestSettings(request, report);
    const Design design = designOf(sample, test);
    const std::vector<Comparison> comparisons = takeComparisons(std::move(sample), design, request, report);
    if (test == VarianceTest::kByDesign) {
        test = comparisons[0].samples.size() == 2 ? VarianceTest::kFisher : VarianceTest::kLevene;
        if (test == VarianceTest::kLevene && request.alternative != Alternative::kTwoSided)
            throw UsageError("--alternative is about two samples; --groups a,b chooses two");
    }
    std::vector<TestedComparison> tested;
    for (const Comparison& comparison : comparisons) {
        if (test == VarianceTest::kFisher) requireTwo(comparison, groupsName, "the F test", report);
        if (test != VarianceTest::kChiSquare) requireSeveral(comparison, "vartest", report);
        tested.push_back({comparison, testOne(comparison, request, test)});
    }
    const TestKind kind = kindOf(test);
    noteFailures(tested, kind, report);
    addSamplesTable(comparisons, groupsName, true, report);
    addResultsTable(tested, kind, isForMachines(formatOf(options.output)), report);
    explain(tested, request, test, report);
    if (weighted && test == VarianceTest::kChiSquare)
        report.notes.emplace_back("degrees of freedom count rows, not their weights");
    if (weighted && test == VarianceTest::kLevene)
        report.notes.emplace_back("weights scale the deviations; degrees of freedom count rows");
    draw(comparisons, groupsName, tested[0].outcome.method, request, report);
}

void analyseVariance(Sample sample, const Options& options, Report& report) {
    const TestRequest& request = options.test;
    const std::string groupsName = sample.groupsName;
    noteTestSettings(request, report);
    const Design design = sample.grouped() ? Design::kGroups : Design::kColumns;
    const std::vector<Comparison> comparisons = takeComparisons(std::move(sample), design, request, report);
    std::vector<TestedComparison> tested;
    for (const Comparison& comparison : comparisons) {
        requireSeveral(comparison, "anova", report);
        tested.push_back({comparison, testWelchAnova(comparison, request)});
    }
    const TestKind kind{nullptr, nullptr, "f", "F", 2, 0.0, nullptr, "a sample's values do not vary"};
    noteFailures(tested, kind, report);
    addSamplesTable(comparisons, groupsName, false, report);
    addResultsTable(tested, kind, isForMachines(formatOf(options.output)), report);
    notePValue(tested, request, "upper tail, hypothesis: equal means", report);
    draw(comparisons, groupsName, tested[0].outcome.method, request, report);
}

}  // namespace numcore::cli
