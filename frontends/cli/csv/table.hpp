// A file of separated values: its header, its layout, and its columns as numbers or texts.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "caller/array.hpp"
#include "cli/csv/fields.hpp"
#include "cli/csv/input.hpp"
#include "cli/csv/load.hpp"
#include "cli/csv/settings.hpp"
#include "cli/progress.hpp"

namespace numcore::cli {

/// How a column is wanted: not at all, as what it holds, as numbers or as texts whatever it holds.
enum class Want { kSkip, kAsIs, kNumbers, kTexts };

/// One column that was read.
struct CsvColumn {
    std::string name;
    std::size_t index = 0;  // in the file, from 0
    Target kind = Target::kSkip;
    caller::Array numbers;
    std::vector<std::string_view> texts;
    std::size_t nMissing = 0;
};

/// The rows that were read. Texts are views into the file they were read from.
struct CsvData {
    std::vector<CsvColumn> columns;  // as many as the file has
    std::vector<TextStore> stores;
    std::size_t nRows = 0;
    std::size_t nBlankLines = 0;
    std::size_t nFilled = 0;
};

class CsvFile {
  public:
    /// Finds encoding, layout and header. name is what messages call the file. Throws DataError.
    CsvFile(Input input, std::string name, const CsvOptions& options);

    /// Column names, unique.
    const std::vector<std::string>& names() const { return names_; }
    const std::string& name() const { return name_; }
    const Dialect& dialect() const { return dialect_; }
    const Input& input() const { return input_; }
    const std::vector<std::string>& missingWords() const { return missingWords_; }
    std::vector<std::string>& warnings() { return warnings_; }

    /// Reads the wanted columns. A column wanted as it is holds numbers when every cell that is not missing is
    /// one, texts otherwise; a few texts among numbers are an error. Throws DataError.
    CsvData load(const std::vector<Want>& wants, Progress& progress);

    /// The line, from 1, of a place in the text.
    std::size_t lineOf(const char* place) const;
    /// The line of row i of the data (from 0), blank lines counted.
    std::size_t lineOfRow(std::size_t i) const;

  private:
    void readHeader();
    void checkHeader(const std::vector<Field>& fields, const char* place);
    bool lacksRowName(const std::vector<std::string>& names) const;
    void nameColumns(std::vector<std::string> names);
    std::vector<Target> guessTargets(const std::vector<Want>& wants, const CellReader& cells) const;
    LoadResult loadTargets(const std::vector<Target>& targets, const CellReader& cells, Progress& progress);
    [[noreturn]] void fail(const LoadFault& fault) const;
    [[noreturn]] void failNumber(const LoadColumn& column, std::size_t j) const;
    void warnOutOfRange(const LoadColumn& column, std::size_t j);

    Input input_;
    std::string name_;
    CsvOptions options_;
    std::vector<std::string> missingWords_;
    std::vector<std::string> warnings_;
    Dialect dialect_;
    std::vector<std::string> names_;
    std::string_view data_;  // the records behind the header
    ChunkPlan plan_;
    bool planned_ = false;
};

}  // namespace numcore::cli
