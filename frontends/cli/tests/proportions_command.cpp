#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "cli/correlation/tables.hpp"
#include "cli/errors.hpp"
#include "cli/options_parts.hpp"
#include "cli/output/sink.hpp"
#include "cli/output/writers.hpp"
#include "cli/tests/command.hpp"
#include "cli/tests/counts.hpp"
#include "cli/tests/outcome.hpp"
#include "cli/tests/picture.hpp"
#include "cli/tests/proportions.hpp"

namespace numcore::cli {

namespace {

constexpr double kUsualHypothesis = 0.5;
constexpr const char* kNoSpread = "the hypothesis leaves no variation: the proportions are 0 or 1";

const char* nameOf(ProportionInterval interval) {
    switch (interval) {
        case ProportionInterval::kWald:
            return "Wald";
        case ProportionInterval::kClopperPearson:
            return "Clopper-Pearson";
        case ProportionInterval::kAdjusted:
            return "adjusted Wald";
        case ProportionInterval::kWilson:
            break;
    }
    return "Wilson";
}

TestKind kindOf(std::size_t nSamples, bool byChiSquare) {
    if (byChiSquare) return {nullptr, nullptr, "chi_square", "Chi-square", 1, 0.0, nullptr, kNoSpread};
    if (nSamples == 1) return {"proportion", "Proportion", "z", "z", 0, 0.0, nullptr, kNoSpread};
    return {"difference", "Difference", "z", "z", 0, -1.0, " - ", kNoSpread};
}

void checkSamples(const TestRequest& request, std::size_t nSamples, bool byChiSquare) {
    refuse(request.proportions.size() > 1 && request.proportions.size() != nSamples, "--p",
           "takes one number, or one a sample");
    constexpr const char* kTwo = "is about two samples";
    refuse(request.difference != 0.0 && (nSamples != 2 || byChiSquare), "--difference", kTwo);
    refuse(request.separateVariances && (nSamples != 2 || byChiSquare), "--separate-variances", kTwo);
    constexpr const char* kNoChiSquare = "does not go with the chi-square test";
    refuse(request.resample.wanted() && byChiSquare, "--resample", kNoChiSquare);
    refuse(request.continuity && byChiSquare, "--continuity", kNoChiSquare);
    refuse(request.alternative != Alternative::kTwoSided && byChiSquare, "--alternative", kNoChiSquare);
}

void addCountsTable(const std::vector<CountSample>& samples, const std::string& groupsName,
                    const TestRequest& request, Report& report) {
    const bool grouped = !groupsName.empty();
    ReportTable table{"samples",
                      "Samples",
                      {{grouped ? "group" : "sample", grouped ? groupsName : "Sample", ColumnKind::kText},
                       {"successes", "Successes", ColumnKind::kCount},
                       {"trials", "Trials", ColumnKind::kCount},
                       {"missing", "Missing", ColumnKind::kCount},
                       {"proportion", "Proportion", ColumnKind::kNumber},
                       {"lower", "Lower", ColumnKind::kNumber},
                       {"upper", "Upper", ColumnKind::kNumber}},
                      {},
                      1,
                      {}};
    for (const CountSample& sample : samples) {
        const ProportionLimits limits = limitsOfProportion(sample, request);
        table.rows.push_back({sample.name, std::int64_t{sample.successes}, std::int64_t{sample.trials},
                              static_cast<std::int64_t>(sample.nMissing), sample.proportion(),
                              cellOf(limits.lower), cellOf(limits.upper)});
    }
    report.tables.push_back(std::move(table));
}

void addPairsTable(const std::vector<CountSample>& samples, double alpha, bool forMachines, Report& report) {
    ReportTable table{"pairs",
                      "Pairs, by Marascuilo's procedure",
                      {{"first", "First", ColumnKind::kText},
                       {"second", "Second", ColumnKind::kText},
                       {"difference", "Difference", ColumnKind::kNumber},
                       {"critical", "Critical", ColumnKind::kNumber},
                       {"p", "p", ColumnKind::kProbability},
                       {"significant", "Significant", forMachines ? ColumnKind::kCount : ColumnKind::kText}},
                      {},
                      2,
                      {}};
    const std::vector<ProportionPair> pairs = comparePairs(samples, alpha);
    const auto isBelowBound = [](const ProportionPair& pair) { return pair.pValue == 0.0; };
    const bool bounded = forMachines && std::ranges::any_of(pairs, isBelowBound);
    if (bounded) table.columns.push_back(kBoundColumn);
    for (const ProportionPair& pair : pairs) {
        // The difference has the sign of the first less the second.
        const double difference = samples[pair.first].proportion() - samples[pair.second].proportion();
        table.rows.push_back({samples[pair.first].name, samples[pair.second].name, difference,
                              cellOf(pair.critical),
                              bounded && isBelowBound(pair) ? Cell(kFinestP) : cellOf(pair.pValue),
                              forMachines ? Cell(std::int64_t{pair.significant})
                                          : Cell(std::string(pair.significant ? "yes" : "no"))});
        if (bounded) table.rows.back().emplace_back(std::int64_t{isBelowBound(pair)});
    }
    report.tables.push_back(std::move(table));
}

std::string hypothesisOf(const TestRequest& request, std::size_t nSamples, bool byChiSquare) {
    const char* side = nameOf(request.alternative);
    if (byChiSquare) {
        return request.proportions.empty()
                   ? "upper tail, hypothesis: equal proportions"
                   : fmt::format("upper tail, hypothesis: {} {}",
                                 request.proportions.size() == 1 ? "each proportion is" : "the proportions are",
                                 fmt::join(request.proportions, ", "));
    }
    if (nSamples == 2) return fmt::format("{}, hypothesis: a difference of {}", side, request.difference);
    return fmt::format("{}, hypothesis: a proportion of {}", side,
                       request.proportions.empty() ? kUsualHypothesis : request.proportions[0]);
}

TestOutcome testSamples(const std::vector<CountSample>& samples, const TestRequest& request, bool byChiSquare) {
    if (byChiSquare) return testManyProportions(samples, request);
    if (samples.size() == 2) return testTwoProportions(samples, request);
    return testOneProportion(samples[0],
                             request.proportions.empty() ? kUsualHypothesis : request.proportions[0], request);
}

/// The proportions of the hypothesis, one a sample; the pooled one where it only calls them equal.
ProportionLevels levelsOf(const std::vector<CountSample>& samples, const TestRequest& request) {
    if (!request.proportions.empty()) {
        return {"hypothesis", request.proportions.size() == 1
                                  ? std::vector<double>(samples.size(), request.proportions[0])
                                  : request.proportions};
    }
    if (samples.size() == 1) return {"hypothesis", {kUsualHypothesis}};
    // Without a common proportion there is none to draw.
    if (request.difference != 0.0) return {"", {}};
    double nSuccesses = 0.0;
    double nTrials = 0.0;
    for (const CountSample& sample : samples) {
        nSuccesses += sample.successes;
        nTrials += sample.trials;
    }
    return {"pooled", std::vector<double>(samples.size(), nSuccesses / nTrials)};
}

void draw(const std::vector<CountSample>& samples, const std::string& groupsName, const TestOutcome& outcome,
          const TestRequest& request, const Report& report) {
    if (request.plot.empty()) return;
    ProportionPicture picture{&samples,    {}, levelsOf(samples, request), groupsName, outcome.method,
                              report.file, {}};
    picture.limits.reserve(samples.size());
    for (const CountSample& sample : samples) picture.limits.push_back(limitsOfProportion(sample, request));
    picture.limitsName = fmt::format("{} by {}", limitsOf(request.alpha), nameOf(request.interval));
    writeFile(request.plot, drawProportions(picture));
}

void reportCounts(const CountedColumn& found, const std::string& groupsName, const Options& options,
                  Report& report) {
    const TestRequest& request = options.test;
    const std::vector<CountSample>& samples = found.samples;
    const bool byChiSquare = samples.size() > 2 || (samples.size() == 2 && !request.proportions.empty());
    checkSamples(request, samples.size(), byChiSquare);
    Comparison comparison{found.column, {}};
    for (const CountSample& sample : samples) comparison.samples.push_back({sample.name, {}, {}, 0});
    const std::vector<TestedComparison> tested{{comparison, testSamples(samples, request, byChiSquare)}};
    const TestKind kind = kindOf(samples.size(), byChiSquare);
    const bool forMachines = isForMachines(formatOf(options.output));
    noteFailures(tested, kind, report);
    addCountsTable(samples, groupsName, request, report);
    addResultsTable(tested, kind, forMachines, report);
    if (byChiSquare && request.proportions.empty()) addPairsTable(samples, request.alpha, forMachines, report);
    if (!found.event.empty())
        report.notes.push_back(fmt::format("success: {} in column {}", quotedForMessage(found.event),
                                           quotedForMessage(found.column)));
    report.notes.push_back(
        fmt::format("samples: {}, two-sided, by {}", limitsOf(request.alpha), nameOf(request.interval)));
    if (samples.size() == 2 && !byChiSquare) {
        report.notes.push_back(fmt::format("difference: proportion of {} less proportion of {}; {}",
                                           quotedForMessage(samples[0].name), quotedForMessage(samples[1].name),
                                           limitsOf(request.alpha)));
    }
    notePValue(tested, request, hypothesisOf(request, samples.size(), byChiSquare), report);
    draw(samples, groupsName, tested[0].outcome, request, report);
}

}  // namespace

void testProportions(Sample sample, const Options& options, Report& report) {
    const std::string groupsName = sample.groupsName;
    noteTestSettings(options.test, report);
    const CountedColumn found = countSuccesses(sample, options.test, report);
    reportCounts(found, groupsName, options, report);
}

Report testCounts(const Options& options) {
    const TestRequest& request = options.test;
    Report report;
    report.command = "proptest";
    report.title = "Proportions";
    noteTestSettings(request, report);
    CountedColumn found;
    for (std::size_t i = 0; i < request.trials.size(); ++i) {
        found.samples.push_back({std::to_string(i + 1), static_cast<std::int32_t>(request.successes[i]),
                                 static_cast<std::int32_t>(request.trials[i]), 0});
    }
    reportCounts(found, "", options, report);
    return report;
}

}  // namespace numcore::cli
