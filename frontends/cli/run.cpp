#include "cli/run.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <new>
#include <optional>

#include "cli/correlation/command.hpp"
#include "cli/describe.hpp"
#include "cli/errors.hpp"
#include "cli/laws/command.hpp"
#include "cli/mantel/command.hpp"
#include "cli/networks/command.hpp"
#include "cli/output/sink.hpp"
#include "cli/output/writers.hpp"
#include "cli/platform.hpp"
#include "cli/quantile.hpp"
#include "cli/read.hpp"
#include "cli/reliability.hpp"
#include "cli/tests/command.hpp"

namespace numcore::cli {

namespace {

const char* commandName(Command command) {
    switch (command) {
        case Command::kQuantile:
            return "quantile";
        case Command::kCorrelation:
            return "cor";
        case Command::kReliability:
            return "alpha";
        case Command::kTTest:
            return "ttest";
        case Command::kZTest:
            return "ztest";
        case Command::kVarianceTest:
            return "vartest";
        case Command::kProportionTest:
            return "proptest";
        case Command::kAnova:
            return "anova";
        default:
            return "describe";
    }
}

void noteSettings(const Options& options, const Sample& sample, Report& report) {
    if (sample.weighted()) report.settings.emplace_back("weights", sample.weightsName);
    if (sample.grouped()) report.settings.emplace_back("by", sample.groupsName);
    if (options.command != Command::kQuantile) return;
    const auto& methods = options.quantile.methods;
    if (sample.weighted()) {
        report.settings.emplace_back("method", "weighted");
    } else if (methods.size() == 1) {
        const QuantileMethod& method = quantileMethods()[static_cast<std::size_t>(methods[0])];
        report.settings.emplace_back("method", fmt::format("{} {}", method.number, method.name));
    }
    if (options.quantile.confidence) {
        report.settings.emplace_back("confidence", fmt::format("{}", *options.quantile.confidence));
    }
}

void say(const char* kind, const std::string& text) {
    fmt::print(stderr, "numcore: {}{}\n", kind, text);
}

TextStyle styleOf(const OutputOptions& options) {
    TextStyle style;
    style.digits = options.digits.value_or(6);
    style.digitsGiven = options.digits.has_value();
    if (options.width) {
        style.width = *options.width;
    } else if (options.path.empty()) {
        style.width = terminalWidth(stdout);
    }
    return style;
}

void speak(const Report& report, const Options& options, Format format) {
    if (options.output.quiet) return;
    if (options.output.verbose) {
        for (const auto& [name, value] : report.layout) say("", fmt::format("{}: {}", name, value));
    }
    for (const std::string& warning : report.warnings) {
        const std::string place = report.file.empty() ? "" : printable(report.file) + ": ";
        say("warning: ", place + warning);
    }
    // A format for machines has no place for them.
    if (format == Format::kCsv || format == Format::kTsv) {
        for (const std::string& line : footerLines(report)) say("", line);
    }
}

int runCommand(const Options& options) {
    if (options.command == Command::kCompletion) {
        writeStandardOutput(completionScript(options.shell));
        return kDone;
    }
    const Report report = analyse(options);
    const Format format = formatOf(options.output);
    const std::string text = render(report, format, styleOf(options.output));
    speak(report, options, format);
    if (options.output.path.empty()) {
        writeStandardOutput(text);
    } else {
        writeFile(options.output.path, text);
    }
    return report.warnings.empty() ? kDone : kDoneWithWarnings;
}

}  // namespace

Report analyse(const Options& options) {
    if (isLawCommand(options.command)) return analyseLaw(options);
    if (options.command == Command::kMantel) return testMatrices(options);
    if (options.command == Command::kBayes) return askNetwork(options);
    if (options.command == Command::kProportionTest && options.file.empty()) return testCounts(options);
    Report report;
    report.command = commandName(options.command);
    ReadSample read = readSample(options, report);
    noteSettings(options, read.sample, report);
    switch (options.command) {
        case Command::kQuantile:
            quantiles(std::move(read.sample), options.quantile, report);
            break;
        case Command::kCorrelation:
            correlations(std::move(read.sample), options, report);
            break;
        case Command::kReliability:
            reliability(std::move(read.sample), report);
            break;
        case Command::kTTest:
        case Command::kZTest:
            testMeans(std::move(read.sample), options, report);
            break;
        case Command::kVarianceTest:
            testVariances(std::move(read.sample), options, report);
            break;
        case Command::kProportionTest:
            testProportions(std::move(read.sample), options, report);
            break;
        case Command::kAnova:
            analyseVariance(std::move(read.sample), options, report);
            break;
        default:
            describe(std::move(read.sample), options.output.maxCategories, report);
    }
    return report;
}

int run(const std::vector<std::string>& arguments) {
    try {
        int exitCode = kDone;
        const std::optional<Options> options = parseOptions(arguments, exitCode);
        return options ? runCommand(*options) : exitCode;
    } catch (const OutputClosed&) {
        return kDone;
    } catch (const UsageError& error) {
        say("", error.what());
        return kWrongUsage;
    } catch (const DataError& error) {
        say("", error.what());
    } catch (const std::bad_alloc&) {
        say("", "not enough memory for this file");
    } catch (const std::exception& error) {
        say("", error.what());
    }
    return kBadData;
}

}  // namespace numcore::cli
