"""Writes polychoric.csv: polychoric estimates of tables by direct maximisation with 30 digits.

The likelihood's gradient is taken numerically, the bivariate normal law by integration over the arc sine of the
correlation, and the two-step error by numerical derivatives of the estimate in the shares of the fitted cells.
"""

from mpmath import asin, cos, erfc, exp, erfinv, findroot, inverse, log, matrix, mp, mpf, nstr, pi, quad, sin, sqrt

mp.dps = 30

TABLES = {
    "2x2": [[40, 10], [20, 30]],
    "3x3": [[13, 69, 41], [6, 113, 132], [0, 22, 104]],
    "negative": [[2, 5, 20, 30], [10, 12, 9, 3]],
}


def phi(z):
    return exp(-z * z / 2) / sqrt(2 * pi)


def cdf(z):
    return erfc(-z / sqrt(mpf(2))) / 2


def orthant(x, y, rho):
    """P(X <= x, Y <= y); None stands for infinity."""
    if x is None or y is None:
        return (mpf(1) if y is None else cdf(y)) if x is None else cdf(x)
    inside = quad(lambda t: exp(-(x * x - 2 * x * y * sin(t) + y * y) / (2 * cos(t) ** 2)), [0, asin(rho) / 2, asin(rho)])
    return cdf(x) * cdf(y) + inside / (2 * pi)


def cells(a, b, rho):
    def corner(i, j):
        if i == 0 or j == 0:
            return mpf(0)
        return orthant(a[i - 1] if i <= len(a) else None, b[j - 1] if j <= len(b) else None, rho)
    grid = [[corner(i, j) for j in range(len(b) + 2)] for i in range(len(a) + 2)]
    return [[grid[i + 1][j + 1] - grid[i][j + 1] - grid[i + 1][j] + grid[i][j] for j in range(len(b) + 1)]
            for i in range(len(a) + 1)]


def likelihood(table, a, b, rho):
    p = cells(a, b, rho)
    return sum(n * log(p[i][j]) for i, row in enumerate(table) for j, n in enumerate(row) if n > 0)


def thresholds(totals):
    all_, below, out = sum(totals), mpf(0), []
    for t in totals[:-1]:
        below += t
        out.append(sqrt(mpf(2)) * erfinv(2 * below / all_ - 1))
    return out


def margins(table):
    return thresholds([sum(r) for r in table]), thresholds([sum(c) for c in zip(*table)])


def slope(f, x, h=mpf(10) ** -8):
    """Five-point derivative."""
    return (8 * (f(x + h) - f(x - h)) - (f(x + 2 * h) - f(x - 2 * h))) / (12 * h)


def two_step(table, start):
    a, b = margins(table)
    return findroot(lambda r: slope(lambda q: likelihood(table, a, b, q), r), (start, start + mpf("0.001")), tol=1e-30,
                    solver="secant")


def two_step_error(table, rho):
    a, b = margins(table)
    p = cells(a, b, rho)
    n = sum(map(sum, table))
    h = mpf(10) ** -6
    mean = square = mpf(0)
    for i in range(len(p)):
        for j in range(len(p[0])):
            def moved(s):
                return [[q + (s if (k, m) == (i, j) else 0) for m, q in enumerate(row)] for k, row in enumerate(p)]
            step = min(h, p[i][j] / 100)
            d = (two_step(moved(step), rho) - two_step(moved(-step), rho)) / (2 * step)
            mean += p[i][j] * d
            square += p[i][j] * d * d
    return sqrt((square - mean ** 2) / n)


def full(table, rho):
    a, b = margins(table)
    na = len(a)

    def gradient(*t):
        t = list(t)
        out = []
        for k in range(len(t)):
            out.append(slope(lambda v: likelihood(table, t[1:na + 1] if not 1 <= k <= na else
                                                  [v if m + 1 == k else q for m, q in enumerate(t[1:na + 1])],
                                                  [v if m + na + 1 == k else q for m, q in enumerate(t[na + 1:])],
                                                  v if k == 0 else t[0]), t[k]))
        return out
    t = findroot(gradient, [rho, *a, *b], tol=1e-25)
    return list(t), na


def full_error(table, t, na):
    n = sum(map(sum, table))
    size = len(t)

    def flat(u):
        return [q for row in cells(u[1:na + 1], u[na + 1:], u[0]) for q in row]
    p = flat(t)
    slopes = []
    for k in range(size):
        def at(v):
            return flat([v if m == k else q for m, q in enumerate(t)])
        h = mpf(10) ** -8
        f1, f2, f3, f4 = at(t[k] + h), at(t[k] - h), at(t[k] + 2 * h), at(t[k] - 2 * h)
        slopes.append([(8 * (u - v) - (w - x)) / (12 * h) for u, v, w, x in zip(f1, f2, f3, f4)])
    info = matrix(size, size)
    for r in range(size):
        for c in range(size):
            info[r, c] = n * sum(u * v / q for u, v, q in zip(slopes[r], slopes[c], p))
    return sqrt(inverse(info)[0, 0])


def main():
    lines = ["# Polychoric estimates | source: make_polychoric.py (mpmath, 30 digits)",
             "# counts row by row; method 1 two steps, 2 full likelihood",
             "name,rows,columns,counts,method,rho,error,likelihood"]
    for name, table in TABLES.items():
        rho = two_step(table, start)
        counts = ":".join(str(n) for row in table for n in row)
        a, b = margins(table)
        size = f"{len(table)},{len(table[0])}"
        lines.append(f"{name},{size},{counts},1,{nstr(rho, 17)},{nstr(two_step_error(table, rho), 12)},"
                     f"{nstr(likelihood(table, a, b, rho), 17)}")
        t, na = full(table, rho)
        lines.append(f"{name},{size},{counts},2,{nstr(t[0], 17)},{nstr(full_error(table, t, na), 12)},"
                     f"{nstr(likelihood(table, t[1:na + 1], t[na + 1:], t[0]), 17)}")
        print(lines[-2:], flush=True)
    with open("polychoric.csv", "w", encoding="ascii") as out:
        out.write("\n".join(lines) + "\n")


if __name__ == "__main__":
    main()
