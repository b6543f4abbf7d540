// What the command line asks of a network, looked up in it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "caller/bayesian_network.hpp"
#include "cli/networks/network.hpp"
#include "cli/options.hpp"

namespace numcore::cli {

/// A query, and the states to which conditions are tied.
struct NetworkQueryAsked {
    caller::NetworkQuery query;
    std::vector<std::optional<std::size_t>> tied;  // of each node of query.given
};

struct NetworkQuestionAsked {
    caller::NetworkQuestion question;  // observations, likelihoods, memory; the queries as in `queries`
    std::vector<NetworkQueryAsked> queries;

    bool hasEvidence() const { return !question.observed.empty() || !question.likelihoods.empty(); }
};

/// Evidence, queries and memory bound from their texts. Throws UsageError for what the network does not have.
NetworkQuestionAsked readQuestion(const NetworkRequest& request, const Network& network);

/// Bytes from "1000", "500M", "2G" or "2GB", in powers of 1024. Throws UsageError.
double parseBytes(const std::string& text);

}  // namespace numcore::cli
