#include "cli/laws/command.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "cli/errors.hpp"
#include "cli/laws/evaluate.hpp"
#include "cli/laws/law_plot.hpp"
#include "cli/laws/names.hpp"
#include "cli/laws/values.hpp"
#include "cli/output/sink.hpp"
#include "cli/read.hpp"
#include "cli/words.hpp"
#include "numcore/api.h"

namespace numcore::cli {

namespace {

/// The points at which a function is asked for; row numbers when they come from a file.
struct Points {
    std::vector<double> values;
    std::string columnName;  // empty: from the command line

    bool fromFile() const { return !columnName.empty(); }
};

const char* commandName(Command command) {
    switch (command) {
        case Command::kDensity:
            return "pdf";
        case Command::kDistribution:
            return "cdf";
        case Command::kLawQuantile:
            return "quantile";
        default:
            return "law";
    }
}

/// Where a column that should hold numbers has its first text.
std::string textsMessage(const TextColumn& column, const std::string& file, char decimalMark) {
    const auto isText = [decimalMark](std::string_view cell) {
        std::string number(cell);
        std::ranges::replace(number, decimalMark, '.');
        return !cell.empty() && !parseNumber(number);
    };
    const auto first = std::ranges::find_if(column.cells, isText);
    if (first == column.cells.end())
        return fmt::format("{}: column {} has no numbers", file, quotedForMessage(column.name));
    return fmt::format(
        "{}: column {} holds texts: row {} is {}, no number; correct it, or name it with --missing if it "
        "stands "
        "for no value",
        file, quotedForMessage(column.name), first - column.cells.begin() + 1, quotedForMessage(*first));
}

Points readColumn(const Options& options, Report& report) {
    const ReadSample read = readSample(options, report);
    const Sample& sample = read.sample;
    const std::size_t nColumns = sample.numbers.size() + sample.texts.size();
    if (nColumns != 1) throw UsageError(fmt::format("--column takes one column; here are {}", nColumns));
    if (sample.numbers.empty()) {
        throw DataError(textsMessage(sample.texts[0], printable(report.file), read.file.dialect().decimalMark));
    }
    const auto cells = sample.numbers[0].cells.asDoubles();
    return {{cells.begin(), cells.end()}, sample.numbers[0].name};
}

/// The points, and the words that are left for the parameters.
Points takePoints(const Options& options, const NamedLaw& named, std::vector<std::string>& words,
                  Report& report) {
    if (!options.file.empty()) return readColumn(options, report);
    const bool quantile = options.command == Command::kLawQuantile;
    if (words.empty()) {
        throw UsageError(fmt::format("no value: numcore {} {} {} {}", commandName(options.command),
                                     options.law.name, quantile ? "P" : "X", parameterUsage(*named.law)));
    }
    Points points{parseValues(words.front(), quantile), {}};
    words.erase(words.begin());
    if (!quantile) return points;
    for (const double p : points.values) {
        if (!(p >= 0.0 && p <= 1.0))
            throw UsageError(fmt::format("{} is no probability: a number from 0 to 1, or a percentage", p));
    }
    return points;
}

void checkOffered(const Law& law, Command command) {
    if (command != Command::kDensity || hasDensity(law)) return;
    throw UsageError(
        fmt::format("the {} law has no density in the library; it has {}", law.name, law.functions));
}

std::vector<Tail> tailsOf(const LawRequest& request) {
    if (request.both) return {Tail::kLower, Tail::kUpper};
    return {request.upper ? Tail::kUpper : Tail::kLower};
}

ReportColumn resultColumn(Command command, Tail tail, bool discrete) {
    const bool lower = tail == Tail::kLower;
    if (command == Command::kDensity) {
        return discrete ? ReportColumn{"probability", "P(X = x)"} : ReportColumn{"density", "Density"};
    }
    if (command == Command::kDistribution) {
        return lower ? ReportColumn{"lower", "P(X <= x)"} : ReportColumn{"upper", "P(X > x)"};
    }
    return lower ? ReportColumn{"quantile", "Quantile"} : ReportColumn{"upper_quantile", "Upper quantile"};
}

ReportTable emptyTable(const Options& options, const Points& points, bool discrete) {
    const Command command = options.command;
    const char* title = command == Command::kDensity        ? discrete ? "Probabilities" : "Density"
                        : command == Command::kDistribution ? "Distribution function"
                                                            : "Quantiles";
    ReportTable table{commandName(command), title, {}, {}, 0, {}};
    if (points.fromFile()) {
        table.columns.push_back({"row", "Row", ColumnKind::kCount});
        table.nKeys = 1;
    }
    const char* point = command == Command::kLawQuantile ? "p" : "x";
    table.columns.push_back({point, points.fromFile() ? points.columnName : point, ColumnKind::kValue});
    if (command == Command::kDensity) {
        table.columns.push_back(resultColumn(command, Tail::kLower, discrete));
        return table;
    }
    for (const Tail tail : tailsOf(options.law)) table.columns.push_back(resultColumn(command, tail, discrete));
    return table;
}

void addRows(const ChosenLaw& chosen, const Points& points, const Options& options, ReportTable& table,
             Remarks& remarks) {
    const std::vector<Tail> tails = tailsOf(options.law);
    table.rows.reserve(points.values.size());
    for (std::size_t i = 0; i < points.values.size(); ++i) {
        const double point = points.values[i];
        std::vector<Cell> row;
        row.reserve(table.columns.size());
        if (points.fromFile()) row.emplace_back(static_cast<std::int64_t>(i + 1));
        row.push_back(cellOf(point));
        if (options.command == Command::kDensity) {
            row.push_back(densityCell(chosen, point, remarks));
        } else {
            for (const Tail tail : tails) {
                row.push_back(options.command == Command::kDistribution
                                  ? distributionCell(chosen, point, tail, remarks)
                                  : quantileCell(chosen, point, tail, remarks));
            }
        }
        table.rows.push_back(std::move(row));
        if (remarks.firstWithout.empty() && (remarks.notProbability || remarks.noResult)) {
            remarks.firstWithout =
                points.fromFile() ? fmt::format("row {}, {}", i + 1, point) : fmt::format("{}", point);
        }
    }
}

void drawPlot(const ChosenLaw& chosen, const Options& options, const Points& points, Report& report) {
    if (options.law.plot.empty()) return;
    LawMarks marks{points.values, options.command == Command::kLawQuantile, options.law.upper};
    std::erase(marks.points, NUMCORE_MISSING);
    writeFile(options.law.plot, drawLaw(chosen, marks, report.notes));
}

/// The name of a function asks for one thing only.
void checkAsked(const NamedLaw& named, const Options& options) {
    if (!named.asked) return;
    const Asked& asked = *named.asked;
    const std::string& name = options.law.name;
    const char* command = asked.distribution ? "cdf" : asked.quantile ? "quantile" : "pdf";
    const bool other = (options.command == Command::kDensity && !asked.density) ||
                       (options.command == Command::kDistribution && !asked.distribution) ||
                       (options.command == Command::kLawQuantile && !asked.quantile);
    if (other) {
        throw UsageError(fmt::format("{} is for numcore {}; here write the law: numcore {} {}", name, command,
                                     commandName(options.command), commandWord(named.law->name)));
    }
    const bool lowerTail = !options.law.upper && !options.law.both;
    if (asked.upper && lowerTail)
        throw UsageError(fmt::format("{} is the upper tail: add --upper, or --both for each tail", name));
    if (asked.bothTails && lowerTail) {
        throw UsageError(fmt::format("{} joins both tails: add --upper and {}", name,
                                     asked.quantile ? "give half the probability" : "double the result"));
    }
}

Report explain(const Options& options) {
    const NamedLaw named = lawNamed(options.law.name);
    Report report = explainLaw(named, options.law.arguments);
    if (!options.law.plot.empty()) {
        drawPlot(chooseLaw(named, options.law.arguments), options, {}, report);
    }
    return report;
}

Report evaluate(const Options& options) {
    const NamedLaw named = lawNamed(options.law.name);
    checkAsked(named, options);
    checkOffered(*named.law, options.command);
    Report report;
    report.command = commandName(options.command);
    std::vector<std::string> words = options.law.arguments;
    const Points points = takePoints(options, named, words, report);
    const ChosenLaw chosen = chooseLaw(named, words);
    report.law = subjectOf(chosen);
    if (options.command != Command::kDensity) {
        report.law->tail = options.law.both ? "both" : options.law.upper ? "upper" : "lower";
    }
    report.title = fmt::format("{} law", chosen.name);
    if (chosen.nParameters > 0) report.title += ", " + chosen.parameterText();
    if (points.fromFile()) report.title += fmt::format(", {}", report.file);
    ReportTable table = emptyTable(options, points, chosen.law->discrete);
    Remarks remarks;
    addRows(chosen, points, options, table, remarks);
    report.tables.push_back(std::move(table));
    // The other tail is there to see.
    if (options.law.both) remarks.roundedToOne = false;
    std::ranges::copy(chosen.notes, std::back_inserter(report.notes));
    std::ranges::copy(sentences(remarks, chosen), std::back_inserter(report.notes));
    if (remarks.notProbability || remarks.noResult)
        report.warnings.push_back("some values have no result; the notes tell why");
    drawPlot(chosen, options, points, report);
    return report;
}

}  // namespace

bool isLawCommand(Command command) {
    return command == Command::kLaw || command == Command::kDensity || command == Command::kDistribution ||
           command == Command::kLawQuantile;
}

Report analyseLaw(const Options& options) {
    if (options.command != Command::kLaw) return evaluate(options);
    const bool list = options.law.name.empty() || lowerCase(options.law.name) == "list";
    if (!list) return explain(options);
    if (!options.law.arguments.empty())
        throw UsageError(
            "numcore law list takes nothing more; numcore law NAME PARAMETERS tells about one law");
    if (!options.law.plot.empty())
        throw UsageError("--plot draws one law: numcore law NAME PARAMETERS --plot FILE");
    return listLaws();
}

}  // namespace numcore::cli
