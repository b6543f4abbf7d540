// Cutting a text into pieces of whole records that several threads can read.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "cli/csv/settings.hpp"

namespace numcore::cli {

/// Whole records, and the row where the first of them goes. Rows are places: blank lines and line ends inside
/// quotes leave some unused, before the next chunk's first row.
struct Chunk {
    const char* begin = nullptr;
    const char* end = nullptr;
    std::size_t firstRow = 0;
};

struct ChunkPlan {
    std::vector<Chunk> chunks;
    std::size_t nRows = 0;  // places for all records
    bool hasQuotes = false;
};

/// Cuts a text that begins with a record into chunks of about chunkBytes.
ChunkPlan planChunks(std::string_view text, const Dialect& dialect, std::size_t chunkBytes);

/// Number of bytes of a kind in a text.
std::size_t countByte(std::string_view text, char byte);

}  // namespace numcore::cli
