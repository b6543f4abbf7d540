"""NumPy's side of compare's quantiles. usage: quantile.py FILE REPETITIONS

One line per method in the engine's order, then one for nanquantile by the linear method.
"""
import sys

import numpy

from timing import measure, report

METHODS = ("interpolated_inverted_cdf", "closest_observation", "inverted_cdf", "weibull", "averaged_inverted_cdf",
           "linear")
ORDERS = (0.1, 0.5, 0.95)

path, repetitions = sys.argv[1], int(sys.argv[2])
cells = numpy.fromfile(path)
for method in METHODS:
    report(*measure(lambda: [numpy.quantile(cells, p, method=method) for p in ORDERS], repetitions))
report(*measure(lambda: [numpy.nanquantile(cells, p) for p in ORDERS], repetitions))
