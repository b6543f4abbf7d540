// The blocks of a network file, before names are looked up: they may stand in any order.
#pragma once

#include <string>
#include <vector>

#include "cli/networks/bif_text.hpp"

namespace numcore::cli {

struct BifVariable {
    BifToken name;
    std::vector<BifToken> states;
};

enum class BifEntryKind {
    kRow,      // (state, ...) p, q;
    kTable,    // table p, q, ...;
    kDefault,  // default p, q;
};

struct BifEntry {
    BifEntryKind kind;
    std::size_t at;
    std::vector<BifToken> states;  // of the parents
    std::vector<double> numbers;
};

struct BifProbability {
    BifToken node;
    std::vector<BifToken> parents;
    std::vector<BifEntry> entries;
};

struct BifBlocks {
    std::string networkName;
    std::vector<BifVariable> variables;
    std::vector<BifProbability> probabilities;
};

/// The blocks of a file. Properties are skipped; commas and bars between names and numbers may be left out.
/// Throws DataError with line and column.
BifBlocks readBlocks(const BifSource& source);

}  // namespace numcore::cli
