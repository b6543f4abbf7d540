"""Prints the rows "steep" of polychoric.csv: a table with empty cells and a correlation near 1, in double precision.

Cells by Gauss-Legendre rules with 400 nodes a row, each over the normal probabilities of the columns.
"""

import numpy as np
from scipy import optimize
from scipy.special import ndtr, ndtri

TABLE = np.array([[100, 3, 1, 0], [2, 50, 4, 1], [0, 6, 80, 3]], float)
NODES, WEIGHTS = np.polynomial.legendre.leggauss(400)


def likelihood(a, b, rho):
    rows = np.concatenate([[-9], a, [9]])
    columns = np.concatenate([[-np.inf], b, [np.inf]])
    spread = np.sqrt(1 - rho * rho)
    total = 0.0
    for i, j in zip(*np.nonzero(TABLE)):
        half = (rows[i + 1] - rows[i]) / 2
        x = rows[i] + half * (NODES + 1)
        low, high = (columns[j] - rho * x) / spread, (columns[j + 1] - rho * x) / spread
        given = np.where(low > 0, ndtr(-low) - ndtr(-high), ndtr(high) - ndtr(low))
        total += TABLE[i, j] * np.log((np.exp(-x * x / 2) / np.sqrt(2 * np.pi) * WEIGHTS * half * given).sum())
    return total


def slope(f, x, h):
    return (8 * (f(x + h) - f(x - h)) - (f(x + 2 * h) - f(x - 2 * h))) / (12 * h)


A, B = (ndtri(np.cumsum(TABLE.sum(k))[:-1] / TABLE.sum()) for k in (1, 0))
RHO = optimize.brentq(lambda r: slope(lambda q: likelihood(A, B, q), r, 1e-5), 0.9, 0.98, xtol=1e-13)


def gradient(t):
    unit = np.eye(len(t))
    return [slope(lambda s: likelihood(*np.split((t + s * e)[1:], [len(A)]), (t + s * e)[0]), 0.0, 1e-4) for e in unit]


FULL = optimize.root(gradient, np.r_[RHO, A, B], tol=1e-12).x
SIZE = "steep,3,4," + ":".join(str(int(n)) for n in TABLE.ravel())
print(f"{SIZE},1,{RHO!r},,{likelihood(A, B, RHO)!r}")
print(f"{SIZE},2,{FULL[0]!r},,{likelihood(FULL[1:3], FULL[3:], FULL[0])!r}")
