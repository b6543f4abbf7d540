"""SciPy's side of compare_association; for rv and mantel a NumPy loop over orders.

usage: peer.py point-biserial|rank-biserial|rv|mantel FILE COLUMNS REPETITIONS
"""
import pathlib
import sys

import numpy
import scipy.stats

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "peers"))
from timing import measure, report

PERMUTATIONS = 999
name, path, columns, repetitions = sys.argv[1], sys.argv[2], int(sys.argv[3]), int(sys.argv[4])
cells = numpy.fromfile(path).reshape(columns, -1)
first, second = cells[: columns // 2].T, cells[columns // 2 :].T


def point_biserial():
    return scipy.stats.pointbiserialr(second[:, 0], first[:, 0])


def rank_biserial():
    upper = second[:, 0] > 0.0
    test = scipy.stats.mannwhitneyu(first[upper, 0], first[~upper, 0], use_continuity=False, method="asymptotic")
    return 2.0 * test.statistic / (numpy.sum(upper) * numpy.sum(~upper)) - 1.0, test.pvalue


def permuted(statistic, n):
    random = numpy.random.default_rng(1)
    given = statistic(numpy.arange(n))
    reached = sum(statistic(random.permutation(n)) >= given - 1e-12 for _ in range(PERMUTATIONS))
    return given, (reached + 1) / (PERMUTATIONS + 1)


def rv():
    x, y = (table - table.mean(axis=0) for table in (first, second))
    own = numpy.linalg.norm(x.T @ x) * numpy.linalg.norm(y.T @ y)
    return permuted(lambda order: numpy.sum((x.T @ y[order]) ** 2) / own, len(x))


def mantel():
    below = numpy.tril_indices(len(first), -1)
    a = first[below] - first[below].mean()
    b = second - second[below].mean()
    own = numpy.linalg.norm(a) * numpy.linalg.norm(b[below])
    return permuted(lambda order: a @ b[order[below[0]], order[below[1]]] / own, len(first))


WORK = {"point-biserial": point_biserial, "rank-biserial": rank_biserial, "rv": rv, "mantel": mantel}
report(*measure(WORK[name], repetitions))
