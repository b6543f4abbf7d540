// Reading the records of a text into typed columns.
#pragma once

#include <cstddef>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "caller/array.hpp"
#include "cli/csv/cells.hpp"
#include "cli/csv/chunks.hpp"
#include "cli/csv/settings.hpp"
#include "cli/progress.hpp"

namespace numcore::cli {

enum class Target { kSkip, kNumbers, kTexts };

/// A column to be read. A missing number is the missing value, a missing text is empty.
struct LoadColumn {
    Target target = Target::kSkip;
    caller::Array numbers;
    std::vector<std::string_view> texts;
    std::size_t nNumbers = 0;  // cells of each kind
    std::size_t nTexts = 0;
    std::size_t nMissing = 0;
    std::size_t nOutOfRange = 0;
    const char* firstText = nullptr;  // the first cell that is no number, among numbers
    const char* firstOutOfRange = nullptr;
};

/// Texts whose doubled quotes were made single; views stay valid when it grows.
using TextStore = std::list<std::string>;

struct LoadResult {
    std::vector<LoadColumn> columns;
    std::vector<TextStore> stores;
    std::size_t nRows = 0;
    std::size_t nBlankLines = 0;
    std::size_t nFilled = 0;  // rows that were too short
};

/// Why a record cannot be read.
enum class RecordFault { kNone, kTooShort, kTooLong, kOpenQuote, kTrailingText, kZeroByte };

/// The record that stopped a load.
struct LoadFault {
    RecordFault fault = RecordFault::kNone;
    const char* place = nullptr;
    std::size_t nFields = 0;
    std::size_t column = 0;
};

/// Reads all records into the columns that are wanted (one target per column of the file).
/// On a fault the result is unusable and fault tells the first one.
LoadResult loadColumns(const ChunkPlan& plan, const std::vector<Target>& targets, const Dialect& dialect,
                       const CellReader& cells, bool fillRagged, Progress& progress, LoadFault& fault);

}  // namespace numcore::cli
