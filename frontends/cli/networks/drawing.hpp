// The picture of a network.
#pragma once

#include <string>

#include "cli/networks/network.hpp"
#include "cli/networks/question.hpp"
#include "cli/networks/tables.hpp"

namespace numcore::cli {

/// Throws DataError when the network has more nodes than a picture shows. Nothing when no picture is wanted.
void checkDrawing(const Network& network, const NetworkRequest& request);

/// The network as SVG: in each node a bar for each state's probability, what is known of it marked; below it,
/// when it is wanted, the junction tree with its separators.
std::string drawNetwork(const Network& network, const NetworkQuestionAsked& asked,
                        const NetworkAnswers& answers, bool withTree, const std::string& file);

}  // namespace numcore::cli
