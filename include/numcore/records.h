/* The records that cross the library's boundary: plain C layouts, little-endian, 64-bit pointers.
 *
 * Every array is a pointer to a SAFEARRAY (null allowed), every text a pointer to a zero-terminated
 * 16-bit string (null allowed), every flag a 16-bit automation boolean (only -1 is true). The caller owns
 * every array; the library works in place on them and never frees one. */
#pragma once

#include <stddef.h>

#include "numcore/automation.h"

/* One column of a column set: an element, 24 bytes, of the set's array of columns. */
typedef struct ST_Column {
    int64_t header[2]; /* the caller's own, carried along unread */
    SAFEARRAY* cells;  /* doubles, 32-bit integers, BSTR strings or VARIANTs, by the kind of the set */
} ST_Column;

/* A column set. Four types of one layout, so that a compiler can tell the kinds apart. */
#define NUMCORE_COLUMN_SET(Name)                                               \
    typedef struct Name {                                                      \
        int32_t nColumns;                                                      \
        int32_t nRows;         /* number of rows */                            \
        int32_t reserved;      /* carried along unread */                      \
        int32_t nCells;        /* number of rows, again: cells in a column */  \
        SAFEARRAY* attributes; /* 32-bit integers: each column's own length */ \
        SAFEARRAY* columns;    /* ST_Column records */                         \
        SAFEARRAY* labels;     /* BSTR: the name of each column */             \
    } Name

NUMCORE_COLUMN_SET(ST_MVectDbl); /* kind 1: cells are doubles */
NUMCORE_COLUMN_SET(ST_MVectLng); /* kind 2: cells are 32-bit integers */
NUMCORE_COLUMN_SET(ST_MVectStr); /* kind 3: cells are BSTR strings */
NUMCORE_COLUMN_SET(ST_MVectVar); /* kind 4: cells are VARIANTs, as a sheet holds them */

/* A flag that fills a slot of 8 bytes. */
typedef struct ST_Flag {
    int16_t value;
    int16_t padding[3];
} ST_Flag;

/* Categorical information of a text table. The caller supplies the arrays: nCategories and names with a
 * cell per variable, the three column sets with a column per variable and maxCategories rows. */
typedef struct ST_QualiInfo {
    int32_t nVariables;
    int32_t reserved1;
    double totalWeight;    /* weight of all rows, with a text or without */
    int32_t maxCategories; /* largest number of categories over the variables */
    int32_t reserved2;
    SAFEARRAY* nCategories; /* 32-bit integers: categories of each variable */
    int32_t nRows;
    int32_t reserved3;
    ST_MVectStr labels;      /* category labels */
    ST_MVectDbl counts;      /* rows in each category */
    ST_MVectDbl frequencies; /* weight in each category */
    int32_t nMissing;        /* rows without a text, over all variables */
    int32_t reserved4;
    SAFEARRAY* names;   /* BSTR: variable names */
    int16_t hasWeights; /* flag: frequencies differ from counts */
    int16_t sorted;     /* flag: labels stand in ascending order */
    int16_t reserved5;
    SAFEARRAY* missing; /* doubles: weight of the rows without a text, per variable */
    int32_t reserved6;
    int16_t reserved7;
    int16_t reserved8;
    int32_t status;   /* 0, or -1 when a variable has more categories than the arrays hold */
    int32_t nDropped; /* categories that did not fit the caller's arrays */
} ST_QualiInfo;

/* How a result table is to be shown. -1 leaves a choice to the host. Lengths count the cells in use of
 * the five arrays, which the caller may leave null. */
typedef struct ST_TableFormats {
    double columnWidth;        /* -1 automatic */
    int32_t headerColour;      /* 0xBBGGRR, -1 automatic */
    int32_t bodyColour;        /* 0xBBGGRR, -1 automatic */
    int32_t decimals;          /* -1 as the values need */
    char16_t textFormat[6];    /* number format of text cells: "@" */
    uint16_t showRowLabels;    /* 65535 yes */
    uint16_t showColumnLabels; /* 65535 yes */
    uint16_t layout;           /* 1: one table below the other */
    uint16_t boldHeader;
    uint16_t highlight;
    uint16_t general; /* flag: the number formats were set to General */
    int32_t nBlocks;  /* number of row blocks: of variables in a qualitative summary */
    int32_t nRows;
    int32_t nColumns;
    int32_t nNumberFormats;
    int32_t nFormatKinds;
    int32_t nFormatDigits;
    int32_t nColumnTable;
    int32_t nRowTable;
    SAFEARRAY* numberFormats; /* BSTR: number format of each column */
    SAFEARRAY* formatKinds;   /* 32-bit integers: kind of each column's number format */
    SAFEARRAY* formatDigits;  /* 32-bit integers: digits of each column's number format */
    SAFEARRAY* columnTable;   /* 32-bit integers: a value per column */
    SAFEARRAY* rowTable;      /* 32-bit integers: a value per row or block (its first row, from 0) */
} ST_TableFormats;

/* Everything the user selected, in one record. "Raw cells" are the VARIANTs behind a table. */
typedef struct ST_DataSet {
    const char16_t* text1; /* name of numeric table 1, such as its address */
    ST_Flag numeric1Present;
    ST_MVectDbl numeric1; /* the main quantitative data */
    ST_Flag raw1Present;
    ST_MVectVar raw1;      /* raw cells of numeric table 1 */
    const char16_t* text2; /* name of numeric table 2 */
    ST_Flag numeric2Present;
    ST_MVectDbl numeric2;
    ST_Flag raw2Present;
    ST_MVectVar raw2;
    const char16_t* text3; /* name of text table 1 */
    ST_Flag strings1Present;
    ST_MVectStr strings1; /* the main qualitative data */
    ST_Flag raw3Present;
    ST_MVectVar raw3;
    const char16_t* text4; /* name of text table 2 */
    ST_Flag strings2Present;
    ST_MVectStr strings2;
    ST_Flag raw4Present;
    ST_MVectVar raw4;
    int32_t nRows;           /* observations */
    int32_t nRowsSelected;   /* observations before rows were taken out; 0 when none were */
    SAFEARRAY* rowNumbers;   /* 32-bit integers: row of the sheet of each observation */
    SAFEARRAY* groups;       /* 32-bit integers: group of each observation, from 1; 0 none */
    SAFEARRAY* numericTypes; /* 32-bit integers: kind of each column of numeric table 1 */
    SAFEARRAY* stringTypes;  /* 32-bit integers: kind of each column of text table 1 */
    SAFEARRAY* order;        /* 32-bit integers: where each observation stood before sorting, from 1 */
    ST_Flag selectionPresent;
    SAFEARRAY* selection; /* 32-bit integers: observations chosen, from 1 */
    ST_Flag rowLabelsPresent;
    SAFEARRAY* rowLabels;  /* BSTR: observation names */
    const char16_t* text5; /* name of the weights */
    int16_t weightsPresent;
    int16_t weightsKind; /* 0 frequencies */
    SAFEARRAY* weights;  /* doubles: observation weights */
    int16_t weights2Present;
    int16_t weights2Kind;
    SAFEARRAY* weights2;  /* doubles: second weights */
    ST_MVectStr strings3; /* the grouping variable */
    int32_t groupColumn;  /* column of text table 3 in use, from 1 */
    int16_t strings3Present;
    int16_t groupSorted; /* flag: rows stand sorted by group */
    int32_t nGroups;
    ST_QualiInfo quali;
    int16_t labelsPresent;   /* flag: the columns have labels */
    int16_t rowMarksPresent; /* flag: rows are marked to be dropped */
    const char16_t* text6;   /* name of the row selection */
    SAFEARRAY* rowMarks;     /* 16-bit integers: -1 marks a row to drop */
    int32_t nMarked;
    int32_t seed;
    int32_t nNumericTables;
    ST_MVectDbl* numericTables; /* nNumericTables of them, one after another */
    int32_t nStringTables;
    ST_MVectStr* stringTables; /* nStringTables of them */
    ST_Flag numeric3Present;
    ST_MVectDbl numeric3;
    const char16_t* text7; /* the text that stands for a missing cell */
    const char16_t* text8; /* free */
    ST_TableFormats formats;
} ST_DataSet;

/* The host, as far as the library looks at it. */
typedef struct SystemInfo {
    void* reserved[5];
    const char16_t* text; /* passed on to every analysis; null is empty */
} SystemInfo;

typedef struct QUORIXInfo {
    int32_t reserved[26];
    int32_t flag; /* passed on to every analysis */
} QUORIXInfo;

#ifdef __cplusplus
#define NUMCORE_LAYOUT(expression) static_assert(expression)
#else
#define NUMCORE_LAYOUT(expression) _Static_assert(expression, #expression)
#endif

NUMCORE_LAYOUT(sizeof(ST_Column) == 24);
NUMCORE_LAYOUT(offsetof(ST_Column, cells) == 16);

NUMCORE_LAYOUT(sizeof(ST_MVectDbl) == 40);
NUMCORE_LAYOUT(offsetof(ST_MVectDbl, nColumns) == 0);
NUMCORE_LAYOUT(offsetof(ST_MVectDbl, nRows) == 4);
NUMCORE_LAYOUT(offsetof(ST_MVectDbl, nCells) == 12);
NUMCORE_LAYOUT(offsetof(ST_MVectDbl, attributes) == 16);
NUMCORE_LAYOUT(offsetof(ST_MVectDbl, columns) == 24);
NUMCORE_LAYOUT(offsetof(ST_MVectDbl, labels) == 32);
NUMCORE_LAYOUT(sizeof(ST_MVectLng) == 40);
NUMCORE_LAYOUT(sizeof(ST_MVectStr) == 40);
NUMCORE_LAYOUT(sizeof(ST_MVectVar) == 40);

NUMCORE_LAYOUT(sizeof(ST_QualiInfo) == 208);
NUMCORE_LAYOUT(offsetof(ST_QualiInfo, nVariables) == 0);
NUMCORE_LAYOUT(offsetof(ST_QualiInfo, totalWeight) == 8);
NUMCORE_LAYOUT(offsetof(ST_QualiInfo, maxCategories) == 16);
NUMCORE_LAYOUT(offsetof(ST_QualiInfo, nCategories) == 24);
NUMCORE_LAYOUT(offsetof(ST_QualiInfo, nRows) == 32);
NUMCORE_LAYOUT(offsetof(ST_QualiInfo, labels) == 40);
NUMCORE_LAYOUT(offsetof(ST_QualiInfo, counts) == 80);
NUMCORE_LAYOUT(offsetof(ST_QualiInfo, frequencies) == 120);
NUMCORE_LAYOUT(offsetof(ST_QualiInfo, nMissing) == 160);
NUMCORE_LAYOUT(offsetof(ST_QualiInfo, names) == 168);
NUMCORE_LAYOUT(offsetof(ST_QualiInfo, hasWeights) == 176);
NUMCORE_LAYOUT(offsetof(ST_QualiInfo, sorted) == 178);
NUMCORE_LAYOUT(offsetof(ST_QualiInfo, reserved5) == 180);
NUMCORE_LAYOUT(offsetof(ST_QualiInfo, missing) == 184);
NUMCORE_LAYOUT(offsetof(ST_QualiInfo, reserved6) == 192);
NUMCORE_LAYOUT(offsetof(ST_QualiInfo, reserved7) == 196);
NUMCORE_LAYOUT(offsetof(ST_QualiInfo, reserved8) == 198);
NUMCORE_LAYOUT(offsetof(ST_QualiInfo, status) == 200);
NUMCORE_LAYOUT(offsetof(ST_QualiInfo, nDropped) == 204);

NUMCORE_LAYOUT(offsetof(ST_DataSet, text1) == 0);
NUMCORE_LAYOUT(offsetof(ST_DataSet, numeric1Present) == 8);
NUMCORE_LAYOUT(offsetof(ST_DataSet, numeric1) == 16);
NUMCORE_LAYOUT(offsetof(ST_DataSet, raw1Present) == 56);
NUMCORE_LAYOUT(offsetof(ST_DataSet, raw1) == 64);
NUMCORE_LAYOUT(offsetof(ST_DataSet, text2) == 104);
NUMCORE_LAYOUT(offsetof(ST_DataSet, numeric2Present) == 112);
NUMCORE_LAYOUT(offsetof(ST_DataSet, numeric2) == 120);
NUMCORE_LAYOUT(offsetof(ST_DataSet, raw2Present) == 160);
NUMCORE_LAYOUT(offsetof(ST_DataSet, raw2) == 168);
NUMCORE_LAYOUT(offsetof(ST_DataSet, text3) == 208);
NUMCORE_LAYOUT(offsetof(ST_DataSet, strings1Present) == 216);
NUMCORE_LAYOUT(offsetof(ST_DataSet, strings1) == 224);
NUMCORE_LAYOUT(offsetof(ST_DataSet, raw3Present) == 264);
NUMCORE_LAYOUT(offsetof(ST_DataSet, raw3) == 272);
NUMCORE_LAYOUT(offsetof(ST_DataSet, text4) == 312);
NUMCORE_LAYOUT(offsetof(ST_DataSet, strings2Present) == 320);
NUMCORE_LAYOUT(offsetof(ST_DataSet, strings2) == 328);
NUMCORE_LAYOUT(offsetof(ST_DataSet, raw4Present) == 368);
NUMCORE_LAYOUT(offsetof(ST_DataSet, raw4) == 376);
NUMCORE_LAYOUT(offsetof(ST_DataSet, nRows) == 416);
NUMCORE_LAYOUT(offsetof(ST_DataSet, nRowsSelected) == 420);
NUMCORE_LAYOUT(offsetof(ST_DataSet, rowNumbers) == 424);
NUMCORE_LAYOUT(offsetof(ST_DataSet, groups) == 432);
NUMCORE_LAYOUT(offsetof(ST_DataSet, numericTypes) == 440);
NUMCORE_LAYOUT(offsetof(ST_DataSet, stringTypes) == 448);
NUMCORE_LAYOUT(offsetof(ST_DataSet, order) == 456);
NUMCORE_LAYOUT(offsetof(ST_DataSet, selectionPresent) == 464);
NUMCORE_LAYOUT(offsetof(ST_DataSet, selection) == 472);
NUMCORE_LAYOUT(offsetof(ST_DataSet, rowLabelsPresent) == 480);
NUMCORE_LAYOUT(offsetof(ST_DataSet, rowLabels) == 488);
NUMCORE_LAYOUT(offsetof(ST_DataSet, text5) == 496);
NUMCORE_LAYOUT(offsetof(ST_DataSet, weightsPresent) == 504);
NUMCORE_LAYOUT(offsetof(ST_DataSet, weightsKind) == 506);
NUMCORE_LAYOUT(offsetof(ST_DataSet, weights) == 512);
NUMCORE_LAYOUT(offsetof(ST_DataSet, weights2Present) == 520);
NUMCORE_LAYOUT(offsetof(ST_DataSet, weights2Kind) == 522);
NUMCORE_LAYOUT(offsetof(ST_DataSet, weights2) == 528);
NUMCORE_LAYOUT(offsetof(ST_DataSet, strings3) == 536);
NUMCORE_LAYOUT(offsetof(ST_DataSet, groupColumn) == 576);
NUMCORE_LAYOUT(offsetof(ST_DataSet, strings3Present) == 580);
NUMCORE_LAYOUT(offsetof(ST_DataSet, groupSorted) == 582);
NUMCORE_LAYOUT(offsetof(ST_DataSet, nGroups) == 584);
NUMCORE_LAYOUT(offsetof(ST_DataSet, quali) == 592);
NUMCORE_LAYOUT(offsetof(ST_DataSet, labelsPresent) == 800);
NUMCORE_LAYOUT(offsetof(ST_DataSet, rowMarksPresent) == 802);
NUMCORE_LAYOUT(offsetof(ST_DataSet, text6) == 808);
NUMCORE_LAYOUT(offsetof(ST_DataSet, rowMarks) == 816);
NUMCORE_LAYOUT(offsetof(ST_DataSet, nMarked) == 824);
NUMCORE_LAYOUT(offsetof(ST_DataSet, seed) == 828);
NUMCORE_LAYOUT(offsetof(ST_DataSet, nNumericTables) == 832);
NUMCORE_LAYOUT(offsetof(ST_DataSet, numericTables) == 840);
NUMCORE_LAYOUT(offsetof(ST_DataSet, nStringTables) == 848);
NUMCORE_LAYOUT(offsetof(ST_DataSet, stringTables) == 856);
NUMCORE_LAYOUT(offsetof(ST_DataSet, numeric3Present) == 864);
NUMCORE_LAYOUT(offsetof(ST_DataSet, numeric3) == 872);
NUMCORE_LAYOUT(offsetof(ST_DataSet, text7) == 912);
NUMCORE_LAYOUT(offsetof(ST_DataSet, text8) == 920);
NUMCORE_LAYOUT(offsetof(ST_DataSet, formats) == 928);

NUMCORE_LAYOUT(sizeof(SystemInfo) == 48);
NUMCORE_LAYOUT(offsetof(SystemInfo, text) == 40);
NUMCORE_LAYOUT(sizeof(QUORIXInfo) == 108);
NUMCORE_LAYOUT(offsetof(QUORIXInfo, flag) == 104);
