#include "cli/csv/dialect.hpp"

#include <algorithm>
#include <cstddef>
#include <map>

#include "cli/csv/cells.hpp"
#include "cli/csv/fields.hpp"

namespace numcore::cli {

namespace {

constexpr std::size_t kSampleRecords = 1000;
constexpr std::size_t kSampleBytes = std::size_t{1} << 18;
constexpr std::string_view kSeparators = ",;\t|";

/// How well a layout fits the sample.
struct Fit {
    double score = 0.0;
    double numericShare = 0.0;  // of the cells that are not missing
};

using Records = std::vector<std::vector<Field>>;

Records sampleRecords(std::string_view text, const Dialect& dialect) {
    const std::string_view sample = text.substr(0, kSampleBytes);
    const char* at = sample.data();
    const char* end = at + sample.size();
    Records records;
    while (at != end && records.size() < kSampleRecords) {
        if (isBlankLine(at, end, dialect, at)) continue;
        at = readRecord(at, end, dialect, records.emplace_back());
    }
    // The last record may be cut.
    if (sample.size() < text.size() && at == end && records.size() > 1) records.pop_back();
    return records;
}

double numericShare(const Records& records, std::size_t first, const CellReader& reader) {
    std::size_t nNumbers = 0;
    std::size_t nTexts = 0;
    std::size_t ignored = 0;
    for (std::size_t i = first; i < records.size(); ++i) {
        for (const Field& field : records[i]) {
            double value = 0.0;
            const CellKind kind = reader.read(field.text, value, ignored);
            nNumbers += kind == CellKind::kNumber;
            nTexts += kind == CellKind::kText;
        }
    }
    return nNumbers + nTexts == 0 ? 0.0
                                  : static_cast<double>(nNumbers) / static_cast<double>(nNumbers + nTexts);
}

/// The most frequent number of fields, and the share of records that have it.
std::pair<std::size_t, double> usualWidth(const Records& records, std::size_t first) {
    std::map<std::size_t, std::size_t> counts;
    for (std::size_t i = first; i < records.size(); ++i) ++counts[records[i].size()];
    if (counts.empty()) return {records.empty() ? 0 : records[0].size(), 1.0};
    const auto most = std::ranges::max_element(counts, {}, [](const auto& entry) { return entry.second; });
    return {most->first, static_cast<double>(most->second) / static_cast<double>(records.size() - first)};
}

Fit measure(std::string_view text, const Dialect& dialect, bool header,
            const std::vector<std::string>& missing) {
    const Records records = sampleRecords(text, dialect);
    if (records.empty()) return {};
    const std::size_t first = header ? 1 : 0;
    const auto [width, share] = usualWidth(records, first);
    Fit fit;
    fit.numericShare = numericShare(records, first, CellReader(dialect.decimalMark, missing));
    fit.score = share + 0.5 * fit.numericShare;
    if (width > 1) fit.score += 0.75;
    // One column whose name holds a separator: more likely rows that are too short.
    const bool suspect = header && width == 1 && records[0].size() == 1 && !records[0][0].quoted &&
                         records[0][0].text.find_first_of(kSeparators) != std::string_view::npos;
    if (suspect) fit.score -= 1.5;
    // A header of another width speaks against the separator, less so when it lacks the name of the row labels.
    if (header && records[0].size() != width) fit.score -= records[0].size() + 1 == width ? 0.8 : 1.0;
    return fit;
}

char guessQuote(std::string_view text, char separator) {
    const std::string_view sample = text.substr(0, kSampleBytes);
    if (sample.find('"') != std::string_view::npos) return '"';
    const Dialect quoting{separator, '.', '\'', guessNewline(text)};
    std::size_t nQuoted = 0;
    std::size_t nBroken = 0;
    for (const auto& record : sampleRecords(text, quoting)) {
        for (const Field& field : record) {
            const bool broken = field.open || field.trailing;
            nQuoted += field.quoted && !broken;
            nBroken += broken;
        }
    }
    return nQuoted > 1 && nQuoted > 10 * nBroken ? '\'' : '"';
}

char guessDecimalMark(std::string_view text, Dialect dialect, bool header,
                      const std::vector<std::string>& missing) {
    if (dialect.separator == ',') return '.';
    dialect.decimalMark = '.';
    const double points = measure(text, dialect, header, missing).numericShare;
    dialect.decimalMark = ',';
    return measure(text, dialect, header, missing).numericShare > points ? ',' : '.';
}

}  // namespace

char guessNewline(std::string_view text) {
    const std::string_view sample = text.substr(0, kSampleBytes);
    const bool hasLineFeed = sample.find('\n') != std::string_view::npos;
    return !hasLineFeed && sample.find('\r') != std::string_view::npos ? '\r' : '\n';
}

Dialect guessDialect(std::string_view text, const CsvOptions& options,
                     const std::vector<std::string>& missing) {
    Dialect best;
    double bestScore = -10.0;
    const std::vector<char> candidates = options.separator
                                             ? std::vector<char>{*options.separator}
                                             : std::vector<char>(kSeparators.begin(), kSeparators.end());
    for (const char separator : candidates) {
        Dialect dialect;
        dialect.newline = guessNewline(text);
        dialect.separator = separator;
        dialect.quote = options.quote ? *options.quote : guessQuote(text, separator);
        dialect.decimalMark = options.decimalMark ? *options.decimalMark
                                                  : guessDecimalMark(text, dialect, options.header, missing);
        // A file that the user says has decimal commas is hardly separated by them.
        if (!options.separator && dialect.separator == dialect.decimalMark) continue;
        const double score = measure(text, dialect, options.header, missing).score;
        if (score > bestScore + 1e-9) {
            best = dialect;
            bestScore = score;
        }
    }
    return best;
}

}  // namespace numcore::cli
