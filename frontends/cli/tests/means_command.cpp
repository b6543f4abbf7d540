#include <fmt/format.h>

#include <cmath>
#include <limits>
#include <utility>

#include "cli/correlation/tables.hpp"
#include "cli/errors.hpp"
#include "cli/output/sink.hpp"
#include "cli/output/writers.hpp"
#include "cli/tests/command.hpp"
#include "cli/tests/means.hpp"
#include "cli/tests/outcome.hpp"
#include "cli/tests/picture.hpp"

namespace numcore::cli {

namespace {

constexpr double kOpen = -std::numeric_limits<double>::infinity();
constexpr const char* kNoSpread = "the values do not vary";

TestKind kindOf(bool oneSample, bool normal) {
    return {oneSample ? "mean" : "difference",
            oneSample ? "Mean" : "Difference",
            normal ? "z" : "t",
            normal ? "z" : "t",
            normal ? 0 : 1,
            kOpen,
            " - ",
            kNoSpread};
}

Design designOf(const Sample& sample, const TestRequest& request) {
    if (sample.grouped()) return Design::kGroups;
    if (request.paired) return Design::kPairs;
    return request.mu || sample.numbers.size() == 1 ? Design::kOneSample : Design::kColumns;
}

/// Options that fit one sample or two only; the file decides which.
void checkDesign(const TestRequest& request, bool oneSample) {
    if (oneSample) {
        constexpr const char* kTwo = "is about two samples; here is one column and no --by";
        if (request.difference != 0.0) throw UsageError(fmt::format("--difference {} (--mu?)", kTwo));
        if (request.equalVariances) throw UsageError(fmt::format("--equal-variances {}", kTwo));
        if (request.cochranCox) throw UsageError(fmt::format("--cochran-cox {}", kTwo));
    }
    const std::size_t nWanted = oneSample || request.paired ? 1 : 2;
    if (!request.variances.empty() && request.variances.size() != nWanted) {
        throw UsageError(nWanted == 1 ? "--variance takes one number: here is one sample, or one of differences"
                                      : "--variances takes two numbers, one a sample: 4,9");
    }
}

/// The differences of pairs as a sample of their own, for the table.
TestSample differencesOf(const Comparison& comparison) {
    const TestSample& x = comparison.samples[0];
    const TestSample& y = comparison.samples[1];
    TestSample out{x.name + " - " + y.name, {}, x.weights, 0};
    out.values.reserve(x.values.size());
    for (std::size_t i = 0; i < x.values.size(); ++i) out.values.push_back(x.values[i] - y.values[i]);
    return out;
}

std::string meaningOf(const std::vector<Comparison>& comparisons, const TestRequest& request, bool oneSample) {
    const Comparison& first = comparisons.front();
    const std::string limits = limitsOf(request.alpha);
    if (oneSample) return fmt::format("mean: in the units of its column; {}", limits);
    const std::string of =
        request.paired ? fmt::format("mean of {} less {}", quotedForMessage(first.samples[0].name),
                                     quotedForMessage(first.samples[1].name))
                       : fmt::format("mean of {} less mean of {}", quotedForMessage(first.samples[0].name),
                                     quotedForMessage(first.samples[1].name));
    const std::string units = comparisons.size() == 1 && !first.variable.empty()
                                  ? quotedForMessage(first.variable)
                              : first.variable.empty() ? "the columns"
                                                       : "its variable";
    return fmt::format("difference: {}, in the units of {}; {}", of, units, limits);
}

std::string hypothesisOf(const TestRequest& request, bool oneSample) {
    return fmt::format("{}, hypothesis: a {} of {}", nameOf(request.alternative),
                       oneSample ? "mean" : "difference",
                       oneSample ? request.mu.value_or(0.0) : request.difference);
}

/// Where the library counts rows whatever their weight.
void noteWeights(bool weighted, bool oneSample, bool normal, Report& report) {
    if (weighted && (oneSample || normal))
        report.notes.emplace_back("standard errors count rows, not their weights");
}

}  // namespace

void testMeans(Sample sample, const Options& options, Report& report) {
    const TestRequest& request = options.test;
    const bool normal = options.command == Command::kZTest;
    const std::string groupsName = sample.groupsName;
    const bool weighted = sample.weighted();
    noteTestSettings(request, report);
    const Design design = designOf(sample, request);
    const bool oneSample = design == Design::kOneSample;
    checkDesign(request, oneSample);
    std::vector<Comparison> comparisons = takeComparisons(std::move(sample), design, request, report);
    std::vector<TestedComparison> tested;
    Pairs pairs;
    for (const Comparison& comparison : comparisons) {
        if (!oneSample) requireTwo(comparison, groupsName, normal ? "ztest" : "ttest", report);
        tested.push_back({comparison, oneSample ? testOneMean(comparison.samples[0], request, normal)
                                                : testTwoMeans(comparison, request, normal,
                                                               request.paired ? &pairs : nullptr)});
    }
    const TestKind kind = kindOf(oneSample, normal);
    noteFailures(tested, kind, report);
    std::vector<Comparison> shown = comparisons;
    if (request.paired) shown[0].samples.push_back(differencesOf(shown[0]));
    addSamplesTable(shown, groupsName, false, report);
    addResultsTable(tested, kind, isForMachines(formatOf(options.output)), report);
    report.notes.push_back(meaningOf(comparisons, request, oneSample));
    notePValue(tested, request, hypothesisOf(request, oneSample), report);
    noteWeights(weighted, oneSample, normal, report);
    if (request.plot.empty()) return;
    Picture picture{&comparisons, groupsName, tested[0].outcome.method, report.file, request.alpha, {}, {}, {}};
    picture.mu = request.mu;
    if (request.paired) {
        picture.pairs = std::move(pairs);
        picture.difference = tested[0].outcome;
    }
    writeFile(request.plot, drawSamples(picture));
}

}  // namespace numcore::cli
