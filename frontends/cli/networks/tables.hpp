// The tables of the bayes command.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "caller/bayesian_network.hpp"
#include "cli/networks/network.hpp"
#include "cli/networks/question.hpp"
#include "cli/report.hpp"

namespace numcore::cli {

/// What a network answers: without evidence, and with it.
struct NetworkAnswers {
    caller::NetworkAnswer before;
    caller::NetworkAnswer after;  // the same as before when there is no evidence
};

/// Counts, and the probability of the evidence.
ReportTable summaryTable(const Network& network, const NetworkQuestionAsked& asked,
                         const NetworkAnswers& answers);

/// A row per state of every node.
ReportTable marginalTable(const Network& network, const NetworkQuestionAsked& asked,
                          const NetworkAnswers& answers);

/// P(nodes | given): a row per joint state; for people the states of the last node stand side by side.
ReportTable queryTable(const Network& network, const NetworkQueryAsked& asked,
                       const caller::NetworkTable& answer, std::size_t number, bool underEvidence,
                       bool forMachines);

/// Cliques, separators, order of elimination, sizes; details for JSON.
void addTreeTables(const Network& network, const caller::NetworkAnswer& answer, Report& report);

/// Counts, sums of rows, cycles, and what the library's own check tells, if it was asked.
void addCheckTables(const Network& network, const std::vector<std::size_t>& cycle,
                    std::optional<std::int32_t> libraryCheck, Report& report);

/// "a -> b -> a".
std::string cycleText(const Network& network, const std::vector<std::size_t>& cycle);

/// "xray=yes, dysp=0.8:0.2".
std::string evidenceText(const Network& network, const caller::NetworkQuestion& question);

/// The number of a node's parents, over all nodes.
std::size_t countArcs(const Network& network);

}  // namespace numcore::cli
