// Doors over a whole data set.

#include "numcore/dataset.h"

#include <algorithm>
#include <span>

#include "frame/entry_frame.hpp"
#include "numcore/dataset.hpp"

using numcore::cST_DataSet;

const char* numcore_version(void) {
    return NUMCORE_VERSION;
}

void Cpp_Duplicate_STDataset(ST_DataSet* source, ST_DataSet* destination, int16_t withLabels, int32_t column3,
                             int32_t firstRow, int32_t lastRow) {
    if (source == nullptr || destination == nullptr) return;
    cST_DataSet from(source);
    cST_DataSet to(destination);
    numcore::Duplicate_STDataset(from, to, withLabels, column3, firstRow, lastRow);
    to.writeBack();
}

int32_t Cpp_ExtractRowsIntoNewTable_ST(ST_DataSet* source, const int32_t* rows, int32_t nRows,
                                       ST_DataSet* destination) {
    if (source == nullptr || destination == nullptr || rows == nullptr || nRows < 1) return 0;
    cST_DataSet from(source);
    cST_DataSet to(destination);
    numcore::cST_Vect<std::int32_t> list(std::span<const int32_t>(rows, static_cast<std::size_t>(nRows)));
    numcore::cST_Vect<std::int32_t>* lists[] = {&list};
    const int32_t copied = numcore::ExtractRowsIntoNewTable_ST(from, lists, to);
    to.writeBack();
    return copied;
}

void Cpp_Init_TableFormats(ST_TableFormats* formats) {
    numcore::cST_TableFormats inside(formats);
    numcore::Init_TableFormats(inside);
    inside.writeBack();
}

void Cpp_GetMaxCat_ST(ST_MVectStr* table, int32_t nVariables, ST_QualiInfo* info) {
    const numcore::cST_MVect<numcore::u16string> texts(table);
    numcore::cST_QualiInfo inside(info);
    numcore::GetMaxCat_ST(texts, nVariables, inside);
    inside.writeBack();
}

int32_t Cpp_GetQualiDataInfo_ST(ST_DataSet* data, ST_QualiInfo* info) {
    cST_DataSet from(data);
    numcore::cST_QualiInfo inside(info);
    const int32_t status = numcore::GetQualiDataInfo_ST(from, inside);
    inside.writeBack();
    return status;
}

int32_t Cpp_GuessTypes_ST(ST_MVectStr* table, char16_t decimalMark, double minShare, int32_t* kinds,
                          double* shares, int32_t nColumns) {
    const numcore::cST_MVect<numcore::u16string> texts(table);
    const int32_t n = kinds == nullptr ? 0 : std::clamp(nColumns, 0, texts.columnCount());
    for (int32_t c = 0; c < n; ++c) {
        const numcore::ColumnKind found = numcore::GuessType_ST(texts, c, decimalMark, minShare);
        kinds[c] = found.kind;
        if (shares != nullptr) shares[c] = found.share;
    }
    return n;
}

int32_t Cpp_ReStructureData(ST_DataSet* source, ST_DataSet* destination, int32_t mode) {
    if (source == nullptr || destination == nullptr) return -1;
    cST_DataSet from(source);
    cST_DataSet to(destination);
    const int32_t nRows = numcore::ReStructureData_ST(from, to, mode);
    to.writeBack();
    return nRows;
}

int32_t Cpp_SortSTDataSetByGroup_ST(ST_DataSet* data, int32_t groupColumn) {
    cST_DataSet inside(data);
    const int32_t nGroups = numcore::SortSTDataSetByGroup_ST(inside, groupColumn);
    inside.writeBack();
    return nGroups;
}

void Cpp_Lock_ST(void*) {}
void Cpp_Unlock_ST(void*) {}
void Cpp_LockSafearray_ST(void*) {}
void Cpp_LockDftResult(void*) {}
void Cpp_LockHisResult(void*) {}
void Cpp_LockProResult(void*) {}
