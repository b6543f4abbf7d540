"""Calls one analysis of numcore from Python, with nothing but ctypes.

usage: describe.py [LIBRARY]     (default: build/release/libnumcore.so beside this folder)
"""
import ctypes as ct
import pathlib
import sys

MISSING = -1.79769313486231e308
VT_R8, VT_BSTR = 5, 8

here = pathlib.Path(__file__).resolve().parent
numcore = ct.CDLL(sys.argv[1] if len(sys.argv) > 1 else here.parent / "build/release/libnumcore.so")


class Bound(ct.Structure):
    _fields_ = [("count", ct.c_uint32), ("lower", ct.c_int32)]


class SafeArray(ct.Structure):
    _fields_ = [("dims", ct.c_uint16), ("features", ct.c_uint16), ("element_size", ct.c_uint32),
                ("locks", ct.c_uint32), ("data", ct.c_void_p), ("bounds", Bound * 1)]


ArrayPtr = ct.POINTER(SafeArray)
numcore.SafeArrayCreate.restype = ArrayPtr
numcore.SysAllocStringLen.restype = ct.c_void_p
numcore.SysStringLen.argtypes = [ct.c_void_p]


class Column(ct.Structure):  # one column of a table: 24 bytes
    _fields_ = [("header", ct.c_int64 * 2), ("cells", ArrayPtr)]


class ColumnSet(ct.Structure):  # a table: 40 bytes
    _fields_ = [("columns", ct.c_int32), ("rows", ct.c_int32), ("reserved", ct.c_int32), ("cells", ct.c_int32),
                ("lengths", ArrayPtr), ("column_records", ArrayPtr), ("labels", ArrayPtr)]


class DescStats(ct.Structure):  # what Cpp_GetDescriptive_ST fills
    _fields_ = [("labels", ArrayPtr), ("table", ArrayPtr)]


def new_array(kind, *counts):
    return numcore.SafeArrayCreate(kind, len(counts), (Bound * len(counts))(*[Bound(n, 1) for n in counts]))


def cells_of(array, ctype, n):
    return (ctype * n).from_address(array.contents.data)


def describe(table):
    """Seven statistics of each column; table maps names to lists of numbers, None where a cell is missing."""
    rows = max(len(values) for values in table.values())
    keep = []  # arrays must outlive the call

    records = ArrayPtr()
    numcore.SafeArrayAllocDescriptor(1, ct.byref(records))
    records.contents.element_size = ct.sizeof(Column)
    records.contents.bounds[0].count = len(table)
    numcore.SafeArrayAllocData(records)
    labels = new_array(VT_BSTR, len(table))
    for c, (name, values) in enumerate(table.items()):
        column = new_array(VT_R8, rows)
        cells_of(column, ct.c_double, rows)[:] = [MISSING if v is None else v for v in values]
        cells_of(records, Column, len(table))[c].cells = column
        text = name.encode("utf-16-le")
        cells_of(labels, ct.c_void_p, len(table))[c] = numcore.SysAllocStringLen(text, len(text) // 2)
        keep.append(column)

    data_set = (ct.c_char * 1048)()  # an ST_DataSet; what is not set stays null
    ct.c_int16.from_buffer(data_set, 8).value = -1  # numeric table 1 is present
    numeric1 = ColumnSet.from_buffer(data_set, 16)
    numeric1.columns, numeric1.rows, numeric1.cells = len(table), rows, rows
    numeric1.column_records, numeric1.labels = records, labels
    ct.c_int32.from_buffer(data_set, 416).value = rows

    out = DescStats(new_array(VT_BSTR, len(table)), new_array(VT_R8, len(table), 7))
    numcore.Cpp_GetDescriptive_ST(ct.byref(data_set), 0, ct.byref(out), None)

    n = len(table)
    values = cells_of(out.table, ct.c_double, n * 7)  # column by column
    statistics = {name: [values[r + n * c] for c in range(7)] for r, name in enumerate(table)}
    for array in [records, labels, out.labels, out.table, *keep]:
        numcore.SafeArrayDestroy(array)
    return statistics


if __name__ == "__main__":
    lines = (here.parent / "data/airquality.csv").read_text().splitlines()
    names = lines[0].split(",")
    cells = [line.split(",") for line in lines[1:]]
    table = {name: [float(row[i]) if row[i] else None for row in cells] for i, name in enumerate(names)}
    for name, row in describe(table).items():
        print(f"{name:8}", *(f"{'.' if v == MISSING else format(v, '.6g'):>10}" for v in row))
