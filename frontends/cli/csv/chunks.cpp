#include "cli/csv/chunks.hpp"

#include <algorithm>
#include <cstring>

#include "cli/csv/fields.hpp"
#include "cli/parallel.hpp"

namespace numcore::cli {

namespace {

const char* behindNewline(const char* at, const char* end, char newline) {
    const void* found = at == end ? nullptr : std::memchr(at, newline, static_cast<std::size_t>(end - at));
    return found == nullptr ? end : static_cast<const char*>(found) + 1;
}

/// Line ends and quotes of one piece.
struct Survey {
    std::size_t nNewlines = 0;
    bool hasQuote = false;
};

std::vector<Survey> surveyPieces(std::string_view text, const Dialect& dialect, std::size_t chunkBytes) {
    const std::size_t nPieces = (text.size() + chunkBytes - 1) / chunkBytes;
    std::vector<Survey> pieces(nPieces);
    const auto work = [&](std::size_t i) {
        const std::string_view piece = text.substr(i * chunkBytes, chunkBytes);
        pieces[i].nNewlines = countByte(piece, dialect.newline);
        pieces[i].hasQuote = dialect.quote != '\0' && piece.find(dialect.quote) != std::string_view::npos;
    };
    forEachTask(nPieces, threadsFor(nPieces), work, [](std::size_t) {});
    return pieces;
}

/// Without quotes every line end ends a record: chunks end at the first one at or after each multiple of
/// chunkBytes, and the counts of the survey tell the rows.
void cutAtNewlines(std::string_view text, char newline, std::size_t chunkBytes,
                   const std::vector<Survey>& pieces, ChunkPlan& plan) {
    const char* begin = text.data();
    const char* end = begin + text.size();
    const char* at = begin;
    std::size_t firstRow = 0;
    std::size_t nNewlines = 0;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        nNewlines += pieces[i].nNewlines;
        const bool last = i + 1 == pieces.size();
        const char* stop = last ? end : std::max(at, behindNewline(begin + (i + 1) * chunkBytes, end, newline));
        if (stop == at) continue;
        plan.chunks.push_back({at, stop, firstRow});
        at = stop;
        firstRow = nNewlines + 1;
    }
    plan.nRows = nNewlines + 1;
}

/// With quotes a line end counts only outside them, which the beginning decides: one walk over all records.
void cutAtRecords(std::string_view text, const Dialect& dialect, std::size_t chunkBytes, ChunkPlan& plan) {
    const char* at = text.data();
    const char* end = at + text.size();
    std::size_t row = 0;
    while (at != end) {
        Chunk chunk{at, at, row};
        while (at != end && static_cast<std::size_t>(at - chunk.begin) < chunkBytes) {
            at = skipRecord(at, end, dialect);
            ++row;
        }
        chunk.end = at;
        plan.chunks.push_back(chunk);
    }
    plan.nRows = row;
}

}  // namespace

std::size_t countByte(std::string_view text, char byte) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), byte));
}

ChunkPlan planChunks(std::string_view text, const Dialect& dialect, std::size_t chunkBytes) {
    ChunkPlan plan;
    if (text.empty()) return plan;
    const std::vector<Survey> pieces = surveyPieces(text, dialect, chunkBytes);
    plan.hasQuotes = std::ranges::any_of(pieces, &Survey::hasQuote);
    if (plan.hasQuotes) {
        cutAtRecords(text, dialect, chunkBytes, plan);
    } else {
        cutAtNewlines(text, dialect.newline, chunkBytes, pieces, plan);
    }
    return plan;
}

}  // namespace numcore::cli
