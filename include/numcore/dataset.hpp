// The data set inside the library: what an ST_DataSet record says, with its arrays as containers.
#pragma once

#include "numcore/containers.hpp"
#include "numcore/dataset.h"

namespace numcore {

/// One of the five lists of a formats object: cells and how many of them are in use. Over a caller's array the
/// length never exceeds the array.
template <class T>
struct FormatList {
    std::int32_t length = 0;
    matrix<T> cells;

    /// Puts n cells in use, with storage of its own when there is no caller's array.
    void resize(std::int32_t n) {
        if (cells.descriptor() == nullptr && n > cells.size()) cells = matrix<T>(n, 1, T());
        length = n < cells.size() ? n : cells.size();
    }
};

/// How a result table is to be shown: the inside of ST_TableFormats, which tells the fields.
class NUMCORE_API cST_TableFormats {
  public:
    cST_TableFormats() = default;
    explicit cST_TableFormats(ST_TableFormats* source);
    /// Copies everything but the arrays into the record it was built from, if any.
    void writeBack() const noexcept;

    ST_TableFormats* record = nullptr;
    double columnWidth = -1.0;
    std::int32_t headerColour = -1;
    std::int32_t bodyColour = -1;
    std::int32_t decimals = -1;
    std::u16string textFormat = u"@";
    std::uint16_t showRowLabels = 65535;
    std::uint16_t showColumnLabels = 65535;
    std::uint16_t layout = 1;
    std::uint16_t boldHeader = 0;
    std::uint16_t highlight = 0;
    std::uint16_t general = 0;
    std::int32_t nBlocks = 0;
    std::int32_t nRows = 0;
    std::int32_t nColumns = 0;
    FormatList<u16string> numberFormats;
    FormatList<std::int32_t> formatKinds;
    FormatList<std::int32_t> formatDigits;
    FormatList<std::int32_t> columnTable;
    FormatList<std::int32_t> rowTable;
};

/// Categorical information: the inside of ST_QualiInfo, which tells the fields.
class NUMCORE_API cST_QualiInfo {
  public:
    cST_QualiInfo() = default;
    explicit cST_QualiInfo(ST_QualiInfo* source);
    void writeBack() const noexcept;

    ST_QualiInfo* record = nullptr;
    std::int32_t nVariables = 0;
    double totalWeight = 0.0;
    std::int32_t maxCategories = 0;
    matrix<std::int32_t> nCategories;
    std::int32_t nRows = 0;
    cST_MVect<u16string> labels;
    cST_MVect<double> counts;
    cST_MVect<double> frequencies;
    std::int32_t nMissing = 0;
    matrix<u16string> names;
    std::int16_t hasWeights = 0;
    std::int16_t sorted = 0;
    matrix<double> missing;
    std::int32_t status = 0;
    std::int32_t nDropped = 0;
};

/// A list of column sets of one kind.
template <class T>
class cST_DataList {
  public:
    using Record = typename cST_MVect<T>::Record;

    cST_DataList() = default;
    cST_DataList(std::int32_t n, Record* first) : source(first), count(first == nullptr || n < 0 ? 0 : n) {
        tables.reserve(static_cast<std::size_t>(count));
        for (std::int32_t i = 0; i < count; ++i) tables.push_back(std::make_unique<cST_MVect<T>>(first + i));
    }

    Record* source = nullptr;
    std::int32_t count = 0;
    std::vector<std::unique_ptr<cST_MVect<T>>> tables;
};
using cST_DataDbl = cST_DataList<double>;
using cST_DataStr = cST_DataList<u16string>;

/// The data set that an analysis works on; ST_DataSet tells the fields. Its containers are on the heap and its
/// own; the arrays below them are the caller's.
class NUMCORE_API cST_DataSet {
  public:
    /// Empty, without a record: results written into it get storage of its own.
    cST_DataSet();
    /// From the caller's record; null gives an empty data set.
    explicit cST_DataSet(ST_DataSet* source);
    cST_DataSet(cST_DataSet&&) noexcept = default;
    cST_DataSet& operator=(cST_DataSet&&) noexcept = default;

    /// Copies flags, counts and table shapes into the record it was built from, if any.
    void writeBack() const noexcept;
    /// The observation weights; empty when the weights flag is not true.
    std::span<const double> observationWeights() const noexcept;
    /// True when row i (from 0) is marked to be dropped.
    bool isMarked(std::int32_t i) const noexcept {
        return i >= 0 && i < rowMarks->size() && isTrue((*rowMarks)[i]);
    }

    template <class T>
    using Owned = std::unique_ptr<T>;

    ST_DataSet* record = nullptr;
    std::u16string text1;
    std::int16_t numeric1Present = 0;
    std::int16_t raw1Present = 0;
    std::u16string text2;
    std::int16_t numeric2Present = 0;
    std::int16_t raw2Present = 0;
    std::u16string text3;
    std::int16_t strings1Present = 0;
    std::int16_t raw3Present = 0;
    std::u16string text4;
    std::int16_t strings2Present = 0;
    std::int16_t raw4Present = 0;
    std::int32_t nRows = 0;
    std::int32_t nRowsSelected = 0;
    std::int16_t selectionPresent = 0;
    std::int16_t rowLabelsPresent = 0;
    std::u16string text5;
    std::int16_t weightsPresent = 0;
    std::int16_t weightsKind = 0;
    std::int16_t weights2Present = 0;
    std::int16_t weights2Kind = 0;
    std::int32_t groupColumn = 0;
    std::int16_t strings3Present = 0;
    std::int16_t groupSorted = 0;
    std::int32_t nGroups = 0;
    std::int16_t labelsPresent = 0;
    std::int16_t rowMarksPresent = 0;
    std::u16string text6;
    std::int32_t nMarked = 0;
    std::int32_t seed = 0;
    std::int16_t numeric3Present = 0;
    std::u16string text7;
    std::u16string text8;

    Owned<cST_MVect<double>> numeric1;
    Owned<cST_MVect<CellVal>> raw1;
    Owned<cST_MVect<double>> numeric2;
    Owned<cST_MVect<CellVal>> raw2;
    Owned<cST_MVect<u16string>> strings1;
    Owned<cST_MVect<CellVal>> raw3;
    Owned<cST_MVect<u16string>> strings2;
    Owned<cST_MVect<CellVal>> raw4;
    Owned<matrix<std::int32_t>> rowNumbers;
    Owned<matrix<std::int32_t>> groups;
    Owned<matrix<std::int32_t>> numericTypes;
    Owned<matrix<std::int32_t>> stringTypes;
    Owned<matrix<std::int32_t>> order;
    Owned<matrix<std::int32_t>> selection;
    Owned<matrix<u16string>> rowLabels;
    Owned<matrix<double>> weights;
    Owned<matrix<double>> weights2;
    Owned<cST_MVect<u16string>> strings3;
    Owned<cST_MVect<double>> numeric3;
    cST_QualiInfo quali;
    Owned<matrix<std::int16_t>> rowMarks;
    cST_DataDbl numericTables;
    cST_DataStr stringTables;
    cST_TableFormats formats;
};

/// Resets a formats object: column width, colours and decimals -1, text format "@", row and column labels
/// shown, layout 1, everything else 0.
NUMCORE_API void Init_TableFormats(cST_TableFormats& formats);

/// Resets a formats object, stores the highlight flag b and the header flag a, and sizes its lists.
///
/// @param a       stored as boldHeader
/// @param b       stored as highlight
/// @param rows    above 0: the row table gets rows cells
/// @param cols    at least 1: the column table gets cols cells
/// @param general flag: max(cols, 1) columns get the number format "General", format kind 3 and n digits
NUMCORE_API void Init_TableFormats2(cST_TableFormats& formats, std::int16_t a, std::int16_t b,
                                    std::int32_t rows, std::int32_t cols, std::int16_t general, std::int32_t n);

/// `Cpp_Duplicate_STDataset` inside the library. A destination table without arrays of the caller gets storage
/// of its own.
NUMCORE_API void Duplicate_STDataset(cST_DataSet& source, cST_DataSet& destination, std::int16_t withLabels,
                                     std::int32_t column3, std::int32_t firstRow, std::int32_t lastRow);

/// `Cpp_Extract...` inside the library: rows[0] is the list of row numbers, from 1.
/// @return number of rows copied; 0 when there is no list
NUMCORE_API std::int32_t ExtractRowsIntoNewTable_ST(cST_DataSet& source, cST_Vect<std::int32_t>** rows,
                                                    cST_DataSet& destination);

/// Drops the marked rows from every table whose flag is true (numeric and text tables, raw cells, both weight
/// arrays, row labels), from every listed table and from the per-row integer arrays, keeping the order of the
/// others. The data set's row count says how many rows are looked at and stays as it is; each column's own
/// length shrinks by what it lost; cells freed at the end become missing (weights 0).
NUMCORE_API void RemoveRowsMissingSTDataSet(cST_DataSet& data);

/// Sets up the categorical information of the first nVariables columns of a text table: variable and row
/// counts, names from the labels, no categories yet. Without arrays of the caller, info gets its own, with
/// maxCategories rows.
NUMCORE_API void InitQualiInfo_ST(cST_QualiInfo& info, const cST_MVect<u16string>& table,
                                  std::int32_t nVariables, std::int32_t nRows);

/// `Cpp_GetMaxCat_ST` inside the library.
NUMCORE_API void GetMaxCat_ST(const cST_MVect<u16string>& table, std::int32_t nVariables, cST_QualiInfo& info);

/// `Cpp_GetQualiDataInfo_ST` inside the library.
NUMCORE_API std::int32_t GetQualiDataInfo_ST(cST_DataSet& data, cST_QualiInfo& info);

/// What `Cpp_GuessTypes_ST` finds out about one column: a NumcoreColumnKind and the share of texts that can be
/// read as it.
struct ColumnKind {
    std::int32_t kind = NUMCORE_COLUMN_EMPTY;
    double share = kMissing;
};
NUMCORE_API ColumnKind GuessType_ST(const cST_MVect<u16string>& table, std::int32_t column,
                                    char16_t decimalMark, double minShare);

/// `Cpp_ReStructureData` inside the library.
NUMCORE_API std::int32_t ReStructureData_ST(cST_DataSet& source, cST_DataSet& destination, std::int32_t mode);

/// `Cpp_SortSTDataSetByGroup_ST` inside the library.
NUMCORE_API std::int32_t SortSTDataSetByGroup_ST(cST_DataSet& data, std::int32_t groupColumn);

}  // namespace numcore
