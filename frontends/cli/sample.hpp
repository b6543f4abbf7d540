// The rows and columns of one analysis, ready to become a data set.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "caller/data_set.hpp"
#include "cli/csv/table.hpp"
#include "cli/report.hpp"
#include "cli/selection.hpp"

namespace numcore::cli {

/// What a column is for in an analysis that tells them apart.
enum class Role { kVariable, kAcross, kHeldConstant };

/// A named column of numbers, or of texts (empty: missing).
struct NumberColumn {
    std::string name;
    caller::Array cells;
    std::size_t nMissing = 0;  // before rows were dropped
    Role role = Role::kVariable;
};
struct TextColumn {
    std::string name;
    std::vector<std::string_view> cells;
    std::size_t nMissing = 0;
    Role role = Role::kVariable;
};

/// Columns of equal length. Texts are views into the file.
struct Sample {
    std::vector<NumberColumn> numbers;
    std::vector<TextColumn> texts;
    caller::Array weights;                 // empty: none
    std::vector<std::string_view> groups;  // empty: none
    std::string weightsName;
    std::string groupsName;
    std::size_t nRows = 0;

    bool weighted() const { return weights.get() != nullptr; }
    bool grouped() const { return !groupsName.empty(); }
};

/// Takes the columns of a selection out of what was read. Rows without a group, and rows whose weight is
/// missing or 0, are dropped and counted. Throws DataError for a negative weight.
Sample takeSample(CsvData data, const Selection& selection, const CsvFile& file, Report& report);

/// Counts the missing cells of a sample's columns and the rows that have one.
void countMissing(const Sample& sample, RowCounts& counts);

/// The rows that have a value in every column of numbers.
std::vector<std::size_t> completeRows(const Sample& sample);

/// Counts used rows as dropped and adds why: "42 with missing cells".
void countDropped(std::size_t n, std::string_view why, Report& report);

/// The same for the rows with a missing cell, when no other row has one.
void countIncomplete(std::size_t n, Report& report);

/// The sentence that names a sample's columns of texts, which are left out; empty when there is none.
std::string textsLeftOut(const Sample& sample);

/// One group and its rows, ascending.
struct Group {
    std::string_view name;
    std::vector<std::size_t> rows;
};

/// The groups in ascending order: by value when all are numbers, else by text.
std::vector<Group> groupsOf(const Sample& sample);

/// Some rows of a sample, without their groups.
Sample takeRows(const Sample& sample, const std::vector<std::size_t>& rows);

/// A text table from views.
caller::TextTable textTable(const std::vector<const TextColumn*>& columns);

}  // namespace numcore::cli
