"""pandas's side of compare's describe. usage: describe.py FILE COLUMNS REPETITIONS

First line: the whole `describe` (with three quartiles) and the count of missing cells. Second line: only the statistics
that the engine computes.
"""
import sys

import numpy
import pandas

from timing import measure, report

path, columns, repetitions = sys.argv[1], int(sys.argv[2]), int(sys.argv[3])
frame = pandas.DataFrame(numpy.fromfile(path).reshape(columns, -1).T)


def flat(missing, table):
    return [value for column in frame for value in
            [missing[column], *table.loc[["count", "min", "max", "mean", "std"], column]]]


for statistics in (lambda: frame.describe(), lambda: frame.agg(["count", "min", "max", "mean", "std"])):
    seconds, (missing, table) = measure(lambda: (frame.isna().sum(), statistics()), repetitions)
    report(seconds, flat(missing, table))
