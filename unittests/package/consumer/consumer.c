/* A small C caller of the installed library: a data set of two columns, its summary, a quantile. */
#include <math.h>
#include <numcore/numcore.h>
#include <stdio.h>
#include <string.h>

enum { kRows = 5, kColumns = 2 };

static int nFailures = 0;

static void expect(const char* what, double got, double expected) {
    if (fabs(got - expected) <= 1e-12 * fabs(expected)) return;
    printf("%s: got %.17g, expected %.17g\n", what, got, expected);
    ++nFailures;
}

static SAFEARRAY* table(VARTYPE type, uint32_t nRows, uint32_t nColumns) {
    SAFEARRAYBOUND bounds[2];
    bounds[0].cElements = nRows;
    bounds[0].lLbound = 1;
    bounds[1].cElements = nColumns;
    bounds[1].lLbound = 1;
    return SafeArrayCreate(type, 2, bounds);
}

/* The array of columns: elements of a size that no element type has. */
static SAFEARRAY* columnArray(uint32_t nColumns) {
    SAFEARRAY* array = NULL;
    if (SafeArrayAllocDescriptor(1, &array) != S_OK) return NULL;
    array->cbElements = sizeof(ST_Column);
    array->rgsabound[0].cElements = nColumns;
    array->rgsabound[0].lLbound = 1;
    return SafeArrayAllocData(array) == S_OK ? array : NULL;
}

static void fillNumericTable(ST_MVectDbl* set, double cells[kColumns][kRows], const OLECHAR* const* names) {
    set->nColumns = kColumns;
    set->nRows = kRows;
    set->nCells = kRows;
    set->attributes = SafeArrayCreateVector(VT_I4, 1, kColumns);
    set->columns = columnArray(kColumns);
    set->labels = SafeArrayCreateVector(VT_BSTR, 1, kColumns);
    for (int c = 0; c < kColumns; ++c) {
        ST_Column* column = (ST_Column*)set->columns->pvData + c;
        column->cells = SafeArrayCreateVector(VT_R8, 1, kRows);
        memcpy(column->cells->pvData, cells[c], sizeof cells[c]);
        ((int32_t*)set->attributes->pvData)[c] = kRows;
        ((BSTR*)set->labels->pvData)[c] = SysAllocString(names[c]);
    }
}

static void freeNumericTable(ST_MVectDbl* set) {
    for (int c = 0; c < kColumns; ++c) SafeArrayDestroy(((ST_Column*)set->columns->pvData)[c].cells);
    SafeArrayDestroy(set->columns);
    SafeArrayDestroy(set->attributes);
    SafeArrayDestroy(set->labels);
}

int main(void) {
    static const OLECHAR kHeight[] = {'h', 'e', 'i', 'g', 'h', 't', 0};
    static const OLECHAR kMass[] = {'m', 'a', 's', 's', 0};
    const OLECHAR* const names[kColumns] = {kHeight, kMass};
    double cells[kColumns][kRows] = {{1, 2, 3, 4, 5}, {2, NUMCORE_MISSING, 4, 6, 8}};

    static ST_DataSet data; /* static: all members are zero */
    data.numeric1Present.value = NUMCORE_TRUE;
    data.labelsPresent = NUMCORE_TRUE;
    data.nRows = kRows;
    fillNumericTable(&data.numeric1, cells, names);

    ST_DescStats out = {SafeArrayCreateVector(VT_BSTR, 1, kColumns), table(VT_R8, kColumns, 7)};
    Cpp_GetDescriptive_ST(&data, NUMCORE_FALSE, &out, NULL);

    /* A row per variable, column by column: observations, missing, present, minimum, maximum, mean, deviation.
     */
    const double expected[7][kColumns] = {
        {5, 5}, {0, 1}, {5, 4}, {1, 2}, {5, 8}, {3, 5}, {1.5811388300841898, 2.5819888974716112}};
    const double* got = out.table->pvData;
    for (int i = 0; i < 7; ++i) {
        for (int c = 0; c < kColumns; ++c) expect("statistic", got[i * kColumns + c], expected[i][c]);
    }
    const BSTR label = ((BSTR*)out.labels->pvData)[1];
    expect("length of the second label", SysStringLen(label), 4);
    if (SysStringLen(label) == 4) expect("second label", memcmp(label, kMass, sizeof kMass), 0);

    expect("median", Cpp_V_QuantileMethod2(cells[0], kRows, NUMCORE_QUANTILE_LINEAR, 0.5), 3);

    freeNumericTable(&data.numeric1);
    SafeArrayDestroy(out.labels);
    SafeArrayDestroy(out.table);
    printf("numcore %s: %d failures\n", numcore_version(), nFailures);
    return nFailures;
}
