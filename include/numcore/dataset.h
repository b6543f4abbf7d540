/* Doors over a whole data set: copying, cutting, categories, types, sorting, reshaping; the lock family. */
#pragma once

#include "numcore/records.h"

NUMCORE_BEGIN_C

/** Copies rows firstRow to lastRow (from 1, inclusive) of every present table of source into the top rows of
 *  the same table of destination, and sets destination's flags.
 *
 *  @param withLabels flag: copy the column labels too
 *  @param column3    column (from 1) of text table 3 to copy
 *  A first row below 1 counts as 1, a last row beyond the data stops at the last row. The destination's
 *  weights flag is set in every case: a source without weights gives weights of 1. What does not fit the
 *  destination's arrays is dropped. A null record does nothing. */
NUMCORE_API void Cpp_Duplicate_STDataset(ST_DataSet* source, ST_DataSet* destination, int16_t withLabels,
                                         int32_t column3, int32_t firstRow, int32_t lastRow);

/** Copies the rows named in a list, in the order of the list, into a new data set.
 *
 *  @param rows   row numbers from 1; a number outside 1..nRows gives a row of missing cells
 *  @param nRows  how many
 *  @return number of rows copied; 0 for null records or an empty list */
NUMCORE_API int32_t Cpp_ExtractRowsIntoNewTable_ST(ST_DataSet* source, const int32_t* rows, int32_t nRows,
                                                   ST_DataSet* destination);

/** Resets a formats record: column width, colours and decimals -1, text format "@", row and column labels
 *  shown, layout 1, everything else 0. The arrays stay the caller's; their lengths in use become 0. */
NUMCORE_API void Cpp_Init_TableFormats(ST_TableFormats* formats);

/** Counts the categories (different non-empty texts) of the first nVariables columns of a text table into
 *  info's array and keeps the largest count in info->maxCategories. Without a table the counts stay as the
 *  caller gave them and only the largest is looked up. */
NUMCORE_API void Cpp_GetMaxCat_ST(ST_MVectStr* table, int32_t nVariables, ST_QualiInfo* info);

/** Fills the categorical information of text table 1 of a data set: names, category labels in ascending
 *  order of code units, counts, frequencies (weights counted when the weights flag is set), total weight.
 *
 *  The caller supplies info's arrays (`Cpp_GetMaxCat_ST` tells how many rows they need).
 *  @return 0; -1 when a variable has more categories than the arrays hold (the first ones are written and
 *          info->nDropped says how many were left out) */
NUMCORE_API int32_t Cpp_GetQualiDataInfo_ST(ST_DataSet* data, ST_QualiInfo* info);

/** Kinds of column that `Cpp_GuessTypes_ST` tells apart. */
enum NumcoreColumnKind {
    NUMCORE_COLUMN_EMPTY = 0,       /* no cell holds a text */
    NUMCORE_COLUMN_INTEGER = 1,     /* whole numbers */
    NUMCORE_COLUMN_NUMERIC = 2,     /* numbers */
    NUMCORE_COLUMN_DATE = 3,        /* texts that look like dates or times */
    NUMCORE_COLUMN_CATEGORICAL = 4, /* texts that repeat */
    NUMCORE_COLUMN_TEXT = 5         /* texts that hardly repeat */
};

/** Guesses the kind of each column of a text table.
 *
 *  Empty cells are left out. A column is integer, numeric or date when at least minShare of its texts can be
 *  read so (the first kind that fits, in this order); else categorical when it has at most
 *  max(2, texts / 2) different texts; else text. Numbers: optional sign, digits with decimalMark, optional
 *  exponent. Dates: year-month-day, day/month/year and alike with '-', '/' or '.', optional time.
 *
 *  @param decimalMark '.' or ',' (anything else counts as '.')
 *  @param minShare    share of texts that must be readable, in (0, 1]; otherwise 1 is taken
 *  @param kinds       out, nColumns cells: NumcoreColumnKind
 *  @param shares      out, nColumns cells or null: share of texts that can be read as the kind (1 for
 *                     categorical and text, the missing value for empty)
 *  @return number of columns looked at */
NUMCORE_API int32_t Cpp_GuessTypes_ST(ST_MVectStr* table, char16_t decimalMark, double minShare, int32_t* kinds,
                                      double* shares, int32_t nColumns);

/** Reshapes numeric table 1: wide to long (mode 0) or long to wide (mode 1).
 *
 *  Wide to long: each row of source becomes one row per numeric column; destination's text table 1 receives
 *  the column's label (column 1) and the row label, or the row number when there is none (column 2);
 *  numeric table 1 the value. Weights and text table 3 are repeated.
 *  Long to wide: the other way; column 1 of source's text table 1 names the column, column 2 the row; rows and
 *  columns come in order of first appearance, a combination that does not occur is missing, of one that
 *  occurs twice the last value stays.
 *  Row counts and column counts are set in the destination; what does not fit its arrays is dropped.
 *  @return number of rows of the result; -1 unknown mode, null record or absent table */
NUMCORE_API int32_t Cpp_ReStructureData(ST_DataSet* source, ST_DataSet* destination, int32_t mode);

/** Sorts every present table of a data set by the group of each row, in place.
 *
 *  The group is the text of column groupColumn of text table 3. Groups ascend by code unit, rows of a group
 *  keep their order, rows without a group come last. The arrays groups and order, when supplied,
 *  receive each row's group (from 1; 0 none) and where it stood before (from 1).
 *  @return number of groups; -1 when there is no text table 3 or no such column (nothing is moved) */
NUMCORE_API int32_t Cpp_SortSTDataSetByGroup_ST(ST_DataSet* data, int32_t groupColumn);

/** The lock family brackets a caller's use of a record. The library keeps no lock: these do nothing. */
NUMCORE_API void Cpp_Lock_ST(void* record);
NUMCORE_API void Cpp_Unlock_ST(void* record);
NUMCORE_API void Cpp_LockSafearray_ST(void* record);
NUMCORE_API void Cpp_LockDftResult(void* record);
NUMCORE_API void Cpp_LockHisResult(void* record);
NUMCORE_API void Cpp_LockProResult(void* record);

NUMCORE_END_C
