#include "cli/networks/command.hpp"

#include <fmt/format.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "caller/text.hpp"
#include "cli/errors.hpp"
#include "cli/networks/bif.hpp"
#include "cli/networks/cycle.hpp"
#include "cli/networks/drawing.hpp"
#include "cli/networks/question.hpp"
#include "cli/networks/tables.hpp"
#include "cli/output/sink.hpp"
#include "cli/output/writers.hpp"

namespace numcore::cli {

namespace {

std::string shownFile(const Options& options) {
    return options.file == "-" ? "standard input" : printable(options.file);
}

caller::BayesianNetwork toLibrary(const Network& network) {
    std::vector<caller::NetworkNode> nodes;
    nodes.reserve(network.nodes.size());
    for (const NetworkNode& node : network.nodes) {
        caller::NetworkNode out{caller::toUtf16(node.name), {}, node.parents, node.table};
        out.states.reserve(node.states.size());
        for (const std::string& state : node.states) out.states.push_back(caller::toUtf16(state));
        nodes.push_back(std::move(out));
    }
    return caller::BayesianNetwork(std::move(nodes));
}

/// "984 bytes", "1.5 GiB".
std::string bytesText(double bytes) {
    constexpr const char* kUnits[] = {"KiB", "MiB", "GiB", "TiB", "PiB", "EiB"};
    if (bytes < 1024.0) return fmt::format("{:.0f} bytes", bytes);
    std::size_t unit = 0;
    for (bytes /= 1024.0; bytes >= 1024.0 && unit + 1 < std::size(kUnits); bytes /= 1024.0) ++unit;
    return fmt::format("{:.3g} {}", bytes, kUnits[unit]);
}

std::string tooLarge(const caller::NetworkForecast& forecast) {
    if (forecast.nCliques == 0)
        return fmt::format("the graph alone takes more than the {} allowed (--memory allows more)",
                           bytesText(forecast.bound));
    return fmt::format(
        "the tables of the junction tree take {:.6g} cells ({}), more than the {} allowed; the largest clique "
        "has "
        "{:.6g} cells (--memory allows more, --tree shows the cliques)",
        forecast.cells, bytesText(forecast.bytes), bytesText(forecast.bound), forecast.largest);
}

/// Turns what cannot be answered into errors; impossible evidence is an answer.
void checkStatus(const caller::NetworkAnswer& answer, const std::string& file) {
    switch (answer.status) {
        case NUMCORE_BYN_DONE:
        case NUMCORE_BYN_IMPOSSIBLE:
            return;
        case NUMCORE_BYN_TOO_LARGE:
            throw DataError(fmt::format("{}: {}", file, tooLarge(answer.forecast)));
        default:
            throw DataError(
                fmt::format("{}: the library refuses the network with status {}", file, answer.status));
    }
}

NetworkAnswers askBoth(const caller::BayesianNetwork& library, const NetworkQuestionAsked& asked) {
    NetworkAnswers answers;
    answers.after = library.ask(asked.question);
    if (!asked.hasEvidence()) {
        answers.before = answers.after;
        return answers;
    }
    caller::NetworkQuestion nothing;
    nothing.memory = asked.question.memory;
    answers.before = library.ask(nothing);
    return answers;
}

void addQueries(const Network& network, const NetworkQuestionAsked& asked, const caller::NetworkAnswer& answer,
                bool forMachines, const std::string& file, Report& report) {
    for (std::size_t i = 0; i < asked.queries.size(); ++i) {
        const caller::NetworkTable& table = answer.queries[i];
        if (table.status == NUMCORE_BYN_TOO_LARGE)
            throw DataError(
                fmt::format("{}: the table of query {} would not fit the memory allowed; ask for fewer "
                            "nodes, or allow more by --memory",
                            file, i + 1));
        report.tables.push_back(
            queryTable(network, asked.queries[i], table, i + 1, asked.hasEvidence(), forMachines));
    }
}

bool asksForMore(const NetworkRequest& request) {
    return request.tree || !request.evidence.empty() || !request.likelihoods.empty() ||
           !request.queries.empty() || !request.joints.empty() || !request.plot.empty();
}

void checkNetwork(const Network& network, const caller::BayesianNetwork& library,
                  const std::vector<std::size_t>& cycle, const std::string& file, Report& report) {
    std::optional<std::int32_t> exponentialCheck;
    if (network.nodes.size() <= kMostExponentialNodes) exponentialCheck = library.check();
    addCheckTables(network, cycle, exponentialCheck, report);
    if (!cycle.empty())
        report.warnings.push_back(
            fmt::format("{}: the arcs make a cycle: {}", file, cycleText(network, cycle)));
}

void refuseCycle(const Network& network, const std::vector<std::size_t>& cycle, const std::string& file) {
    if (cycle.empty()) return;
    throw DataError(fmt::format("{}: the arcs make a cycle: {}; probabilities take a network without one", file,
                                cycleText(network, cycle)));
}

/// The tree when its tables cannot be had; false when they can.
bool addRefusedTree(const Network& network, const caller::NetworkAnswer& answer, const std::string& file,
                    Report& report) {
    if (answer.status != NUMCORE_BYN_TOO_LARGE || answer.tree.cliques.empty()) return false;
    addTreeTables(network, answer, report);
    report.warnings.push_back(fmt::format("{}: no probabilities: {}", file, tooLarge(answer.forecast)));
    return true;
}

}  // namespace

Report askNetwork(const Options& options) {
    const NetworkRequest& request = options.network;
    const std::string file = shownFile(options);
    Report report;
    report.command = "bayes";
    report.title = "Bayesian network";
    report.settings.emplace_back("file", file);
    const Network network = readBif(options.file, options.csv.encoding);
    report.warnings = network.warnings;
    const caller::BayesianNetwork library = toLibrary(network);
    const std::vector<std::size_t> cycle = findCycle(network);
    if (request.check) {
        checkNetwork(network, library, cycle, file, report);
        if (!asksForMore(request) || !cycle.empty()) return report;
    }
    refuseCycle(network, cycle, file);
    const NetworkQuestionAsked asked = readQuestion(request, network);
    checkDrawing(network, request);
    if (asked.hasEvidence()) report.settings.emplace_back("evidence", evidenceText(network, asked.question));
    const NetworkAnswers answers = askBoth(library, asked);
    if (request.tree && addRefusedTree(network, answers.after, file, report)) return report;
    checkStatus(answers.after, file);
    checkStatus(answers.before, file);
    if (answers.after.status == NUMCORE_BYN_IMPOSSIBLE) {
        report.warnings.push_back(
            fmt::format("{}: {}", file,
                        answers.before.status == NUMCORE_BYN_IMPOSSIBLE
                            ? "every joint state has weight 0: no probabilities"
                            : "the evidence has probability 0: no probabilities given it"));
    }
    report.tables.push_back(summaryTable(network, asked, answers));
    report.tables.push_back(marginalTable(network, asked, answers));
    addQueries(network, asked, answers.after, isForMachines(formatOf(options.output)), file, report);
    if (request.tree) addTreeTables(network, answers.after, report);
    if (!request.plot.empty())
        writeFile(request.plot, drawNetwork(network, asked, answers, request.tree, file));
    return report;
}

}  // namespace numcore::cli
