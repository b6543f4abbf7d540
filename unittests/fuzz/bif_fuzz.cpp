// Any bytes as a network file, or a text of the format's words that the bytes choose: the reader must either
// give a whole network or say what is wrong.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "cli/errors.hpp"
#include "cli/networks/bif.hpp"
#include "cli/networks/cycle.hpp"

namespace {

using namespace numcore::cli;

/// Words, and blocks that begin well, so that what follows is reached.
constexpr std::string_view kWords[] = {
    "network n { }\n",
    "variable a { type discrete [ 2 ] { x, y }; }\n",
    "variable b { type discrete { \"x\" y z }; }\n",
    "probability ( a ) { table 0.5 0.5; }\n",
    "probability ( b | a ) { ",
    "probability ( a b ) { ",
    "variable ",
    "probability ",
    "property ",
    "type discrete ",
    "table ",
    "default ",
    "(x) ",
    "(y, x) ",
    "0.2 0.3 0.5; ",
    "0.25 0.75; ",
    "1e999 ",
    "a ",
    "b ",
    "\"c d\" ",
    "{ ",
    "} ",
    "( ",
    ") ",
    "[ ",
    "] ",
    "| ",
    ", ",
    "; ",
    "// ",
    "/* ",
    "*/ ",
    "\n",
    "\"",
};

void require(bool condition) {
    if (!condition) std::abort();
}

std::string textFrom(const std::uint8_t* data, std::size_t size) {
    if (data[0] % 4 == 0) return {data + 1, data + size};
    std::string text;
    for (std::size_t i = 1; i < size; ++i) text += kWords[data[i] % std::size(kWords)];
    return text;
}

void checkNode(const Network& network, const NetworkNode& node) {
    std::size_t nRows = 1;
    for (const std::size_t parent : node.parents) {
        require(parent < network.nodes.size());
        nRows *= network.nodes[parent].states.size();
    }
    require(!node.states.empty() && node.nRows() == nRows && node.table.size() == nRows * node.states.size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    try {
        const Network network = parseBif(textFrom(data, size), "input");
        for (const NetworkNode& node : network.nodes) checkNode(network, node);
        require(findCycle(network).size() <= network.nodes.size());
    } catch (const DataError&) {
    }
    return 0;
}
