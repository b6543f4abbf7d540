#include "cli/mantel/distances.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <unordered_map>

#include "cli/csv/table.hpp"
#include "cli/errors.hpp"
#include "cli/laws/values.hpp"
#include "cli/output/writers.hpp"
#include "cli/progress.hpp"
#include "numcore/api.h"

namespace numcore::cli {

namespace {

/// Relative difference of mirrored distances that is taken for rounding.
constexpr double kRounding = 1e-9;

std::string objectName(const Distances& distances, std::size_t i) {
    return distances.names.empty() ? std::to_string(i + 1) : quotedForMessage(distances.names[i]);
}

/// Row names from the first column, as text; none when the table is square without it.
std::vector<std::string> takeNames(const CsvColumn& column, std::size_t nRows) {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < nRows; ++i) {
        names.push_back(column.kind == Target::kTexts ? std::string(column.texts[i])
                                                      : exactNumber(column.numbers.asDoubles()[i]));
    }
    return names;
}

[[noreturn]] void failShape(const Distances& distances, std::size_t nColumns) {
    throw DataError(
        fmt::format("{}: {} and {} of distances: a distance matrix is square (--no-header when its "
                    "first line holds distances)",
                    distances.file, counted(distances.nObjects, "row"), counted(nColumns, "column")));
}

void failTexts(const Distances& distances, const CsvColumn& column) {
    const auto isText = [](std::string_view cell) { return !cell.empty(); };
    const auto first = std::ranges::find_if(column.texts, isText);
    throw DataError(fmt::format("{}: column {} holds texts, such as {}; distances are numbers", distances.file,
                                quotedForMessage(column.name),
                                quotedForMessage(first == column.texts.end() ? "" : *first)));
}

/// The cells as they are in the file.
void takeCells(const CsvData& data, std::size_t firstColumn, Distances& out) {
    const std::size_t n = out.nObjects;
    out.cells.reserve(n * n);
    for (std::size_t j = firstColumn; j < data.columns.size(); ++j) {
        const CsvColumn& column = data.columns[j];
        // A column without any number is the empty side of half a matrix.
        if (column.kind == Target::kTexts && column.nMissing < data.nRows) failTexts(out, column);
        for (std::size_t i = 0; i < n; ++i) {
            const double cell =
                column.kind == Target::kNumbers ? column.numbers.asDoubles()[i] : NUMCORE_MISSING;
            out.cells.push_back(cell);
        }
    }
}

void mirror(Distances& out) {
    for (std::size_t j = 0; j < out.nObjects; ++j) {
        for (std::size_t i = j + 1; i < out.nObjects; ++i) {
            double& below = out.at(i, j);
            double& above = out.at(j, i);
            if (below == NUMCORE_MISSING) below = above;
            if (above == NUMCORE_MISSING) above = below;
            out.nMissing += below == NUMCORE_MISSING;
            if (std::abs(below - above) > kRounding * std::max(std::abs(below), std::abs(above))) {
                throw DataError(fmt::format(
                    "{}: not symmetric: {} to {} is {}, back it is {}; a distance is the same both ways",
                    out.file, objectName(out, i), objectName(out, j), below, above));
            }
        }
    }
}

void checkNames(const Distances& distances) {
    std::vector<std::string> sorted = distances.names;
    std::ranges::sort(sorted);
    const auto twice = std::ranges::adjacent_find(sorted);
    if (twice != sorted.end())
        throw DataError(
            fmt::format("{}: two objects have the name {}", distances.file, quotedForMessage(*twice)));
}

}  // namespace

Distances readDistances(const std::string& path, const Options& options, Report& report) {
    Progress progress(!options.output.quiet);
    Distances out;
    out.file = printable(path == "-" ? "standard input" : path);
    CsvFile file(Input::open(path, progress), out.file, options.csv);
    const CsvData data = file.load(std::vector<Want>(file.names().size(), Want::kAsIs), progress);
    out.nObjects = data.nRows;
    const std::size_t nColumns = data.columns.size();
    const bool named = nColumns == data.nRows + 1;
    if (nColumns != data.nRows && !named) failShape(out, nColumns);
    if (named) {
        out.names = takeNames(data.columns[0], data.nRows);
    } else if (options.csv.header) {
        out.names = file.names();
    }
    // A row of distances that was taken for the header: its corner is a number, as no heading of names is.
    const bool eaten = named && options.csv.header && parseNumber(file.names()[0]).has_value();
    if (eaten) failShape(out, nColumns);
    takeCells(data, named ? 1 : 0, out);
    checkNames(out);
    mirror(out);
    for (const std::string& warning : file.warnings()) report.warnings.push_back(out.file + ": " + warning);
    return out;
}

bool matchObjects(const Distances& first, Distances& other) {
    if (first.nObjects != other.nObjects) {
        throw DataError(fmt::format("{} has {}, {} has {}: the matrices are about the same objects", first.file,
                                    counted(first.nObjects, "object"), other.file,
                                    counted(other.nObjects, "object")));
    }
    if (first.names.empty() || other.names.empty() || first.names == other.names) return false;
    std::unordered_map<std::string, std::size_t> place;
    for (std::size_t i = 0; i < other.nObjects; ++i) place[other.names[i]] = i;
    std::vector<std::size_t> order;
    for (const std::string& name : first.names) {
        const auto found = place.find(name);
        if (found == place.end())
            throw DataError(fmt::format("{} has no object {}, which {} has", other.file, quotedForMessage(name),
                                        first.file));
        order.push_back(found->second);
    }
    const Distances before = other;
    for (std::size_t j = 0; j < other.nObjects; ++j) {
        for (std::size_t i = 0; i < other.nObjects; ++i) other.at(i, j) = before.at(order[i], order[j]);
    }
    other.names = first.names;
    return true;
}

}  // namespace numcore::cli
