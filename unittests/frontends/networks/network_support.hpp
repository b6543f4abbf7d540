// Networks and questions for the tests of the bayes command.
#pragma once

#include <fstream>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "cli/networks/bif.hpp"
#include "cli/options.hpp"

namespace numcore::cli {

inline std::string networkFile(const std::string& name) {
    return std::string(NUMCORE_DATA_DIR "/networks/") + name + ".bif";
}

/// What other programs found for the networks of data/networks.
inline const nlohmann::json& referenceNetworks() {
    static const nlohmann::json all =
        nlohmann::json::parse(std::ifstream(NUMCORE_FRONTEND_REFERENCE_DIR "/networks.json"));
    return all.at("networks");
}

inline Options askAbout(const std::string& file) {
    Options options;
    options.command = Command::kBayes;
    options.file = file;
    return options;
}

/// A chain a -> b -> c, c with a table of its own; each rest of a block may be changed.
inline std::string chainText(const std::string& tableOfC = "(yes) 0.9, 0.1; (no) 0.2, 0.8;") {
    return "network chain { }\n"
           "variable a { type discrete [ 2 ] { yes, no }; }\n"
           "variable b { type discrete [ 2 ] { yes, no }; }\n"
           "variable c { type discrete [ 2 ] { low, high }; }\n"
           "probability ( a ) { table 0.3, 0.7; }\n"
           "probability ( b | a ) { (yes) 0.6, 0.4; (no) 0.1, 0.9; }\n"
           "probability ( c | b ) { " +
           tableOfC + " }\n";
}

}  // namespace numcore::cli
