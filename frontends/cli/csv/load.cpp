#include "cli/csv/load.hpp"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "cli/csv/fields.hpp"
#include "cli/parallel.hpp"
#include "numcore/api.h"

namespace numcore::cli {

namespace {

/// Counts of one column in one chunk.
struct Tally {
    std::size_t nNumbers = 0;
    std::size_t nTexts = 0;
    std::size_t nMissing = 0;
    std::size_t nOutOfRange = 0;
    const char* firstText = nullptr;
    const char* firstOutOfRange = nullptr;
};

/// What one chunk gave.
struct ChunkResult {
    std::vector<Tally> tallies;
    TextStore store;
    std::size_t nRows = 0;
    std::size_t nBlankLines = 0;
    std::size_t nFilled = 0;
    LoadFault fault;
};

/// Reads the records of one chunk to their places.
class ChunkLoader {
  public:
    ChunkLoader(const Chunk& chunk, const std::vector<Target>& targets, const Dialect& dialect,
                const CellReader& cells, bool fillRagged, std::vector<LoadColumn>& columns, ChunkResult& result)
        : chunk_(chunk),
          targets_(targets),
          dialect_(dialect),
          cells_(cells),
          fillRagged_(fillRagged),
          columns_(columns),
          result_(result),
          row_(chunk.firstRow) {
        result_.tallies.resize(targets.size());
        for (LoadColumn& column : columns) numbers_.push_back(column.numbers.asDoubles().data());
    }

    void run() {
        const char* at = chunk_.begin;
        while (at != chunk_.end) {
            if (isBlankLine(at, chunk_.end, dialect_, at)) {
                ++result_.nBlankLines;
                continue;
            }
            at = readRow(at);
            if (result_.fault.fault != RecordFault::kNone) return;
            ++row_;
        }
        result_.nRows = row_ - chunk_.firstRow;
    }

  private:
    const char* readRow(const char* at) {
        const char* begin = at;
        const char* end = chunk_.end;
        for (std::size_t j = 0; j < targets_.size(); ++j) {
            at = readCell(at, j);
            const bool recordEnds = at == end || *at == dialect_.newline;
            if (recordEnds) {
                if (j + 1 < targets_.size()) fillRow(begin, j + 1);
                return at == end ? end : at + 1;
            }
            if (result_.fault.fault != RecordFault::kNone) return end;
            ++at;
        }
        return readSurplus(begin, at);
    }

    /// Reads one cell to its place; returns where its delimiter stands.
    const char* readCell(const char* at, std::size_t j) {
        if (targets_[j] == Target::kNumbers) {
            double value = 0.0;
            const auto parsed = fast_float::from_chars_advanced(at, chunk_.end, value, cells_.numberFormat());
            // The usual case: a plain number up to the delimiter.
            const char* stop = parsed.ptr + (parsed.ptr != chunk_.end && *parsed.ptr == '\r');
            if (parsed.ec == std::errc() && isDelimiter(stop) && std::abs(value) < NUMCORE_OVERFLOW &&
                !cells_.isMissingValue(value)) {
                numbers_[j][row_] = value;
                ++result_.tallies[j].nNumbers;
                return stop;
            }
        }
        Field field;
        const char* stop = scanField(at, chunk_.end, dialect_, field);
        if (field.open) setFault(RecordFault::kOpenQuote, at, j);
        if (field.trailing) setFault(RecordFault::kTrailingText, at, j);
        if (targets_[j] == Target::kNumbers) {
            storeNumber(at, field, j);
        } else if (targets_[j] == Target::kTexts) {
            storeText(at, field, j);
        }
        return stop;
    }

    bool isDelimiter(const char* at) const {
        return at == chunk_.end || *at == dialect_.separator || *at == dialect_.newline;
    }

    void storeNumber(const char* at, const Field& field, std::size_t j) {
        Tally& tally = result_.tallies[j];
        double value = NUMCORE_MISSING;
        const CellKind kind = classify(at, field, tally, value);
        if (kind == CellKind::kText && tally.firstText == nullptr) tally.firstText = at;
        numbers_[j][row_] = kind == CellKind::kNumber ? value : NUMCORE_MISSING;
    }

    void storeText(const char* at, const Field& field, std::size_t j) {
        Tally& tally = result_.tallies[j];
        double ignored = 0.0;
        const CellKind kind = classify(at, field, tally, ignored);
        if (kind == CellKind::kText && tally.firstText == nullptr) tally.firstText = at;
        if (std::memchr(field.text.data(), '\0', field.text.size()) != nullptr) {
            setFault(RecordFault::kZeroByte, at, j);
        }
        std::string_view text = field.text;
        if (field.doubled) text = result_.store.emplace_back(unquoted(field, dialect_.quote));
        columns_[j].texts[row_] = cells_.isMissingText(field.text) ? std::string_view() : text;
    }

    CellKind classify(const char* at, const Field& field, Tally& tally, double& value) {
        const std::size_t before = tally.nOutOfRange;
        const CellKind kind = cells_.read(field.text, value, tally.nOutOfRange);
        if (tally.nOutOfRange > before && tally.firstOutOfRange == nullptr) tally.firstOutOfRange = at;
        tally.nNumbers += kind == CellKind::kNumber;
        tally.nTexts += kind == CellKind::kText;
        tally.nMissing += kind == CellKind::kMissing;
        return kind;
    }

    /// The record ended early.
    void fillRow(const char* begin, std::size_t nFields) {
        if (!fillRagged_) return setFault(RecordFault::kTooShort, begin, 0, nFields);
        ++result_.nFilled;
        for (std::size_t j = nFields; j < targets_.size(); ++j) {
            if (targets_[j] == Target::kNumbers) numbers_[j][row_] = NUMCORE_MISSING;
            result_.tallies[j].nMissing += targets_[j] != Target::kSkip;
        }
    }

    /// The record goes on behind the last column: only empty fields may follow, and only when filling.
    const char* readSurplus(const char* begin, const char* at) {
        std::size_t nFields = targets_.size();
        bool empty = true;
        for (;;) {
            Field field;
            at = scanField(at, chunk_.end, dialect_, field);
            ++nFields;
            empty = empty && field.text.empty() && !field.open && !field.trailing;
            if (at == chunk_.end || *at++ == dialect_.newline) break;
        }
        if (!empty || !fillRagged_) setFault(RecordFault::kTooLong, begin, 0, nFields);
        return at;
    }

    void setFault(RecordFault fault, const char* place, std::size_t column, std::size_t nFields = 0) {
        if (result_.fault.fault == RecordFault::kNone) result_.fault = {fault, place, nFields, column};
    }

    const Chunk& chunk_;
    const std::vector<Target>& targets_;
    const Dialect dialect_;
    const CellReader& cells_;
    const bool fillRagged_;
    std::vector<LoadColumn>& columns_;
    ChunkResult& result_;
    std::vector<double*> numbers_;
    std::size_t row_;
};

/// Adds up the chunks' counts; chunks are in the order of the file.
void addTallies(const std::vector<ChunkResult>& chunks, std::vector<LoadColumn>& columns) {
    for (const ChunkResult& chunk : chunks) {
        for (std::size_t j = 0; j < columns.size(); ++j) {
            const Tally& tally = chunk.tallies[j];
            LoadColumn& column = columns[j];
            column.nNumbers += tally.nNumbers;
            column.nTexts += tally.nTexts;
            column.nMissing += tally.nMissing;
            column.nOutOfRange += tally.nOutOfRange;
            if (column.firstText == nullptr) column.firstText = tally.firstText;
            if (column.firstOutOfRange == nullptr) column.firstOutOfRange = tally.firstOutOfRange;
        }
    }
}

/// Closes the gaps that the chunks left between their rows.
std::size_t closeGaps(const ChunkPlan& plan, const std::vector<ChunkResult>& chunks,
                      std::vector<LoadColumn>& columns) {
    std::size_t nRows = 0;
    for (std::size_t k = 0; k < chunks.size(); ++k) {
        const std::size_t from = plan.chunks[k].firstRow;
        for (LoadColumn& column : columns) {
            if (from == nRows) break;
            const auto move = [&](auto cells) {
                const auto begin = cells.begin() + static_cast<std::ptrdiff_t>(from);
                std::copy(begin, begin + static_cast<std::ptrdiff_t>(chunks[k].nRows),
                          cells.begin() + static_cast<std::ptrdiff_t>(nRows));
            };
            if (column.target == Target::kNumbers) move(column.numbers.asDoubles());
            if (column.target == Target::kTexts) move(std::span(column.texts));
        }
        nRows += chunks[k].nRows;
    }
    for (LoadColumn& column : columns) {
        if (column.target == Target::kNumbers) column.numbers.shrink(nRows);
        if (column.target == Target::kTexts) column.texts.resize(nRows);
    }
    return nRows;
}

}  // namespace

LoadResult loadColumns(const ChunkPlan& plan, const std::vector<Target>& targets, const Dialect& dialect,
                       const CellReader& cells, bool fillRagged, Progress& progress, LoadFault& fault) {
    LoadResult result;
    result.columns.resize(targets.size());
    for (std::size_t j = 0; j < targets.size(); ++j) {
        result.columns[j].target = targets[j];
        if (targets[j] == Target::kNumbers) result.columns[j].numbers = caller::Array::doubles(plan.nRows);
        if (targets[j] == Target::kTexts) result.columns[j].texts.resize(plan.nRows);
    }
    Dialect used = dialect;
    if (!plan.hasQuotes) used.quote = '\0';
    const std::size_t nChunks = plan.chunks.size();
    std::vector<ChunkResult> chunks(nChunks);
    const auto work = [&](std::size_t k) {
        ChunkLoader(plan.chunks[k], targets, used, cells, fillRagged, result.columns, chunks[k]).run();
    };
    forEachTask(nChunks, threadsFor(nChunks), work,
                [&](std::size_t nDone) { progress.report(nDone, nChunks); });
    for (ChunkResult& chunk : chunks) {
        if (chunk.fault.fault != RecordFault::kNone) {
            fault = chunk.fault;
            return result;
        }
        result.nBlankLines += chunk.nBlankLines;
        result.nFilled += chunk.nFilled;
        result.stores.push_back(std::move(chunk.store));
    }
    addTallies(chunks, result.columns);
    result.nRows = closeGaps(plan, chunks, result.columns);
    return result;
}

}  // namespace numcore::cli
