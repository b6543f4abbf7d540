"""NumPy's, SciPy's and pandas's side of compare_correlation.

usage: peer.py numpy|scipy|pandas pearson|spearman|kendall FILE COLUMNS REPETITIONS
"""
import pathlib
import sys

import numpy
import pandas
import scipy.stats

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "peers"))
from timing import measure, report

who, family, path, columns, repetitions = *sys.argv[1:4], int(sys.argv[4]), int(sys.argv[5])
cells = numpy.fromfile(path).reshape(columns, -1)
frame = pandas.DataFrame(cells.T)


def scipy_pair(x, y):
    r = scipy.stats.kendalltau(x, y)[0]
    return numpy.array([[1.0, r], [r, 1.0]])


WORK = {
    ("numpy", "pearson"): lambda: numpy.corrcoef(cells),
    ("scipy", "spearman"): lambda: scipy.stats.spearmanr(cells, axis=1)[0],
    ("scipy", "kendall"): lambda: scipy_pair(*cells),
    ("pandas", family): lambda: frame.corr(method=family).to_numpy(),
}
seconds, coefficients = measure(WORK[who, family], repetitions)
report(seconds, coefficients.ravel())
