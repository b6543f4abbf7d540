#include "cli/csv/table.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <utility>

#include "caller/text.hpp"
#include "cli/csv/dialect.hpp"
#include "cli/csv/fields.hpp"
#include "cli/errors.hpp"

namespace numcore::cli {

namespace {

constexpr std::size_t kChunkBytes = std::size_t{1} << 20;
constexpr std::size_t kMostColumns = 100'000;
constexpr std::size_t kSampleRecords = 1000;
constexpr double kFewTexts = 0.05;  // a smaller share of texts among numbers is a mistake in the file

std::string_view skipLines(std::string_view text, std::size_t nLines, char newline) {
    for (std::size_t i = 0; i < nLines; ++i) {
        const std::size_t at = text.find(newline);
        if (at == std::string_view::npos) return text.substr(text.size());
        text.remove_prefix(at + 1);
    }
    return text;
}

/// Few texts among numbers: more likely a mistake than a column of texts.
bool hasFewTexts(std::size_t nNumbers, std::size_t nTexts) {
    return nTexts > 0 && nNumbers > 0 &&
           static_cast<double>(nTexts) < kFewTexts * static_cast<double>(nNumbers + nTexts);
}

bool looksLikeNumbers(const std::vector<Field>& fields, const CellReader& cells) {
    double value = 0.0;
    std::size_t ignored = 0;
    return std::ranges::all_of(fields, [&](const Field& field) {
        return cells.read(field.text, value, ignored) == CellKind::kNumber;
    });
}

}  // namespace

CsvFile::CsvFile(Input input, std::string name, const CsvOptions& options)
    : input_(std::move(input)), name_(std::move(name)), options_(options) {
    if (options.standardMissingWords) missingWords_.assign(std::begin(kMissingWords), std::end(kMissingWords));
    missingWords_.insert(missingWords_.end(), options.missingWords.begin(), options.missingWords.end());
    input_.decode(options.encoding, warnings_);
    if (input_.text().empty()) throw DataError(name_ + ": the file is empty");
    readHeader();
}

void CsvFile::readHeader() {
    const std::string_view text = skipLines(input_.text(), options_.skip, guessNewline(input_.text()));
    dialect_ = guessDialect(text, options_, missingWords_);
    const char* at = text.data();
    const char* end = at + text.size();
    while (at != end && isBlankLine(at, end, dialect_, at)) {
    }
    if (at == end) throw DataError(name_ + ": the file holds blank lines only");
    std::vector<Field> fields;
    const char* behind = readRecord(at, end, dialect_, fields);
    checkHeader(fields, at);
    std::vector<std::string> names(fields.size());
    if (options_.header) {
        // Through 16 bits and back: malformed bytes become U+FFFD.
        std::ranges::transform(fields, names.begin(), [this](const Field& field) {
            return caller::toUtf8(caller::toUtf16(unquoted(field, dialect_.quote)));
        });
        at = behind;
    }
    data_ = {at, static_cast<std::size_t>(end - at)};
    if (options_.header && lacksRowName(names)) names.insert(names.begin(), "row");
    nameColumns(std::move(names));
}

void CsvFile::checkHeader(const std::vector<Field>& fields, const char* place) {
    if (fields.back().open) fail({RecordFault::kOpenQuote, fields.back().text.data(), 0, fields.size() - 1});
    if (fields.size() > kMostColumns) {
        throw DataError(
            atLine(name_, lineOf(place),
                   fmt::format("{} fields, more than {}; is the separator '{}' right (--separator)?",
                               fields.size(), kMostColumns, printable({&dialect_.separator, 1}))));
    }
    if (options_.header && looksLikeNumbers(fields, CellReader(dialect_.decimalMark, missingWords_))) {
        warnings_.push_back("the header holds numbers only; use --no-header when it is a row of data");
    }
}

// Some programs write row labels in a first column that has no name in the header.
bool CsvFile::lacksRowName(const std::vector<std::string>& names) const {
    constexpr std::size_t kLook = 20;
    std::vector<Field> fields;
    const char* at = data_.data();
    const char* end = at + data_.size();
    std::size_t nRecords = 0;
    while (at != end && nRecords < kLook) {
        if (isBlankLine(at, end, dialect_, at)) continue;
        at = readRecord(at, end, dialect_, fields);
        if (fields.size() != names.size() + 1) return false;
        // A separator at the end of each line is not a column.
        if (fields.back().text.empty()) return false;
        ++nRecords;
    }
    return nRecords > 0;
}

void CsvFile::nameColumns(std::vector<std::string> names) {
    std::set<std::string> taken(names.begin(), names.end());
    std::set<std::string> used;
    for (std::size_t j = 0; j < names.size(); ++j) {
        const bool unnamed = names[j].empty();
        std::string name = unnamed ? fmt::format("column{}", j + 1) : names[j];
        if (!used.insert(name).second || (unnamed && taken.contains(name))) {
            std::size_t k = 2;
            while (taken.contains(fmt::format("{}_{}", name, k)) ||
                   used.contains(fmt::format("{}_{}", name, k)))
                ++k;
            const std::string renamed = fmt::format("{}_{}", name, k);
            if (!unnamed) {
                warnings_.push_back(fmt::format("column {} is called {} like an earlier one; renamed {}", j + 1,
                                                quotedForMessage(name), quotedForMessage(renamed)));
            }
            name = renamed;
            used.insert(name);
        }
        names_.push_back(std::move(name));
    }
}

std::vector<Target> CsvFile::guessTargets(const std::vector<Want>& wants, const CellReader& cells) const {
    std::vector<std::size_t> nNumbers(wants.size());
    std::vector<std::size_t> nTexts(wants.size());
    std::vector<Field> fields;
    const char* at = data_.data();
    const char* end = at + data_.size();
    for (std::size_t i = 0; i < kSampleRecords && at != end; ++i) {
        if (isBlankLine(at, end, dialect_, at)) continue;
        at = readRecord(at, end, dialect_, fields);
        for (std::size_t j = 0; j < std::min(fields.size(), wants.size()); ++j) {
            double value = 0.0;
            std::size_t ignored = 0;
            const CellKind kind = cells.read(fields[j].text, value, ignored);
            nNumbers[j] += kind == CellKind::kNumber;
            nTexts[j] += kind == CellKind::kText;
        }
    }
    std::vector<Target> targets(wants.size(), Target::kSkip);
    for (std::size_t j = 0; j < wants.size(); ++j) {
        if (wants[j] == Want::kNumbers) targets[j] = Target::kNumbers;
        if (wants[j] == Want::kTexts) targets[j] = Target::kTexts;
        if (wants[j] != Want::kAsIs) continue;
        const bool numbers = nTexts[j] == 0 || hasFewTexts(nNumbers[j], nTexts[j]);
        targets[j] = numbers ? Target::kNumbers : Target::kTexts;
    }
    return targets;
}

LoadResult CsvFile::loadTargets(const std::vector<Target>& targets, const CellReader& cells,
                                Progress& progress) {
    if (!planned_) plan_ = planChunks(data_, dialect_, kChunkBytes);
    planned_ = true;
    LoadFault fault;
    LoadResult result = loadColumns(plan_, targets, dialect_, cells, options_.fillRagged, progress, fault);
    if (fault.fault != RecordFault::kNone) fail(fault);
    return result;
}

CsvData CsvFile::load(const std::vector<Want>& wants, Progress& progress) {
    const CellReader cells(dialect_.decimalMark, missingWords_);
    std::vector<Target> targets = guessTargets(wants, cells);
    LoadResult loaded = loadTargets(targets, cells, progress);
    // Columns whose beginning misled the guess are read once more.
    std::vector<Target> again(wants.size(), Target::kSkip);
    bool any = false;
    for (std::size_t j = 0; j < wants.size(); ++j) {
        const LoadColumn& column = loaded.columns[j];
        const bool fewTexts = hasFewTexts(column.nNumbers, column.nTexts);
        if (wants[j] == Want::kNumbers && column.nTexts > 0) failNumber(column, j);
        if (wants[j] != Want::kAsIs) continue;
        if (fewTexts) failNumber(column, j);
        const Target right = column.nTexts == 0 ? Target::kNumbers : Target::kTexts;
        if (right != column.target) {
            again[j] = right;
            any = true;
        }
    }
    CsvData data;
    if (any) {
        LoadResult more = loadTargets(again, cells, progress);
        for (std::size_t j = 0; j < wants.size(); ++j) {
            if (again[j] != Target::kSkip) loaded.columns[j] = std::move(more.columns[j]);
        }
        data.stores = std::move(more.stores);
    }
    progress.finish();
    data.nRows = loaded.nRows;
    data.nBlankLines = loaded.nBlankLines;
    data.nFilled = loaded.nFilled;
    for (auto& store : loaded.stores) data.stores.push_back(std::move(store));
    for (std::size_t j = 0; j < wants.size(); ++j) {
        LoadColumn& column = loaded.columns[j];
        if (column.target == Target::kNumbers) warnOutOfRange(column, j);
        data.columns.push_back(
            {names_[j], j, column.target, std::move(column.numbers), std::move(column.texts), column.nMissing});
    }
    if (data.nRows == 0) throw DataError(name_ + ": the file has a header but no row of data");
    if (data.nFilled > 0)
        warnings_.push_back(fmt::format("{} filled with missing cells", counted(data.nFilled, "short row")));
    return data;
}

std::size_t CsvFile::lineOf(const char* place) const {
    const std::string_view all = input_.text();
    return 1 + countByte(all.substr(0, static_cast<std::size_t>(place - all.data())), dialect_.newline);
}

std::size_t CsvFile::lineOfRow(std::size_t i) const {
    const char* at = data_.data();
    const char* end = at + data_.size();
    for (std::size_t row = 0; at != end;) {
        if (isBlankLine(at, end, dialect_, at)) continue;
        if (row++ == i) break;
        at = skipRecord(at, end, dialect_);
    }
    return lineOf(at);
}

void CsvFile::fail(const LoadFault& fault) const {
    const auto raise = [&](const std::string& text) {
        throw DataError(atLine(name_, lineOf(fault.place), text));
    };
    const std::string column =
        fault.column < names_.size()
            ? fmt::format("column {} {}", fault.column + 1, quotedForMessage(names_[fault.column]))
            : fmt::format("column {}", fault.column + 1);
    switch (fault.fault) {
        case RecordFault::kTooShort:
            raise(fmt::format("{}, the header has {}; complete the row, or fill short rows with --ragged fill",
                              counted(fault.nFields, "field"), names_.size()));
            break;
        case RecordFault::kTooLong:
            raise(fmt::format(
                "{}, the header has {}; put fields that hold a '{}' in quotes, or name another "
                "--separator",
                counted(fault.nFields, "field"), names_.size(), printable(std::string(1, dialect_.separator))));
            break;
        case RecordFault::kOpenQuote:
            raise(fmt::format("{}: the quote {} that opens here is never closed; close it, or use --quote none",
                              column, dialect_.quote));
            break;
        case RecordFault::kTrailingText:
            raise(fmt::format(
                "{}: text behind the closing quote; double the quotes inside a field, or use --quote none",
                column));
            break;
        case RecordFault::kZeroByte:
            raise(fmt::format("{}: a zero byte in the text; is it UTF-16 (--encoding)?", column));
            break;
        case RecordFault::kNone:
            break;
    }
    throw DataError(name_);
}

void CsvFile::failNumber(const LoadColumn& column, std::size_t j) const {
    Field field;
    const std::string_view all = input_.text();
    scanField(column.firstText, all.data() + all.size(), dialect_, field);
    const std::string text = quotedForMessage(unquoted(field, dialect_.quote));
    throw DataError(atLine(
        name_, lineOf(column.firstText),
        fmt::format(
            "column {} {}: {} is not a number, {} of the other {} cells are; "
            "correct it, mark it as missing with --missing {}, or take the column as text with --text {}",
            j + 1, quotedForMessage(names_[j]), text, column.nNumbers, column.nNumbers + column.nTexts - 1,
            text, quotedForMessage(names_[j]))));
}

void CsvFile::warnOutOfRange(const LoadColumn& column, std::size_t j) {
    if (column.nOutOfRange == 0) return;
    warnings_.push_back(
        fmt::format("line {}: column {} {}: a number is beyond the range of a double and became "
                    "infinite ({} in the column)",
                    lineOf(column.firstOutOfRange), j + 1, quotedForMessage(names_[j]), column.nOutOfRange));
}

}  // namespace numcore::cli
