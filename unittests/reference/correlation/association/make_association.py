"""Writes biserial.csv, polyserial.csv, rv.csv and mantel.csv with SciPy and NumPy.

Permutation p-values are shares of all n! orders, enumerated here.
"""

import csv
from itertools import permutations
from pathlib import Path

import numpy as np
from scipy import optimize, stats

DATA = Path(__file__).resolve().parents[3] / "data"


def columns(file, *names):
    rows = list(csv.DictReader(open(DATA / f"{file}.csv", encoding="utf-8")))
    return [np.array([float(r[n]) for r in rows]) for n in names]


def joined(values):
    return ":".join("MISSING" if np.isnan(v) else repr(float(v)) for v in np.ravel(values))


def write(name, source, header, rows):
    with open(name, "w", encoding="ascii") as out:
        out.write(f"# {source} | make_association.py\n" + header + "\n")
        for row in rows:
            out.write(",".join(str(c) if isinstance(c, (str, int)) else repr(float(c)) for c in row) + "\n")


def biserial_rows():
    for x, g in (("mpg", "am"), ("hp", "vs"), ("wt", "am")):
        a, b = columns("mtcars", x, g)
        r, p = stats.pointbiserialr(b, a)
        q = b.mean()
        yield x, g, 2, r, p
        root = np.sqrt(q * (1 - q)) / stats.norm.pdf(stats.norm.ppf(q))
        yield x, g, 1, r * root, 2 * stats.norm.sf(abs(r * np.sqrt(len(a))))
        u = stats.mannwhitneyu(a[b == 1], a[b == 0], use_continuity=False, method="asymptotic")
        yield x, g, 3, 2 * u.statistic / (b.sum() * (1 - b).sum()) - 1, u.pvalue


def polyserial(x, y, w):
    z = (x - np.average(x, weights=w)) / np.sqrt(np.cov(x, aweights=w, ddof=0))
    levels = np.unique(y)
    tau = np.concatenate([[-np.inf], stats.norm.ppf([w[y <= k].sum() / w.sum() for k in levels[:-1]]), [np.inf]])
    k = np.searchsorted(levels, y)

    def loss(r):
        s = np.sqrt(1 - r * r)
        high, low = (tau[k + 1] - r * z) / s, (tau[k] - r * z) / s
        p = np.where(low > 0, stats.norm.sf(low) - stats.norm.sf(high), stats.norm.cdf(high) - stats.norm.cdf(low))
        return -(w * np.log(p)).sum()
    return optimize.minimize_scalar(loss, bounds=(-0.9999, 0.9999), method="bounded", options={"xatol": 1e-12}).x


def polyserial_rows():
    for x, g in (("mpg", "cyl"), ("qsec", "gear"), ("disp", "am")):
        a, b = columns("mtcars", x, g)
        one = np.ones(len(a))
        yield x, g, polyserial(a, b, one)


def rv(x, y, w, standardize):
    w = w / w.sum()
    x, y = (m - (w[:, None] * m).sum(0) for m in (x, y))
    if standardize:
        x, y = (m / np.sqrt((w[:, None] * m * m).sum(0)) for m in (x, y))
    gx, gy = x @ x.T, y @ y.T
    d = np.diag(w)
    return np.trace(gx @ d @ gy @ d) / np.sqrt(np.trace(gx @ d @ gx @ d) * np.trace(gy @ d @ gy @ d))


def rv_rows():
    mpg, hp, wt, qsec, disp = columns("mtcars", "mpg", "hp", "wt", "qsec", "disp")
    for n, w in ((6, np.ones(6)), (6, np.array([1.0, 2, 1, 3, 1, 1])), (32, np.ones(32))):
        x, y = np.column_stack([mpg, wt])[:n], np.column_stack([hp, qsec, disp])[:n]
        for standardize in (0, 1):
            seen = rv(x, y, w, standardize)
            p, mean = "NAN", "NAN"
            if n < 8:
                all_ = [rv(x, y[list(o)], w, standardize) for o in permutations(range(n))]
                p = np.mean(np.array(all_) >= seen - 1e-12)
                mean = np.mean(all_) if w.ptp() == 0 else "MISSING"
            yield n, 2, 3, joined(x.T), joined(y.T), joined(w), standardize, seen, p, mean


def pairs(m, order):
    low = np.tril_indices(len(m), -1)
    return m[np.ix_(order, order)][low]


def correlation(u, v):
    keep = ~(np.isnan(u) | np.isnan(v))
    return np.corrcoef(u[keep], v[keep])[0, 1]


def residuals(m, c):
    low = np.tril_indices(len(m), -1)
    u, v = m[low], c[low]
    keep = ~(np.isnan(u) | np.isnan(v))
    b, a = np.polyfit(v[keep], u[keep], 1)
    out = np.full_like(m, np.nan)
    out[low] = u - a - b * v
    return np.where(np.isnan(out), out.T, out)


def mantel(a, b, c, ranks):
    n = len(a)
    low = np.tril_indices(n, -1)
    given = np.arange(n)
    z = np.nansum(a[low] * b[low])
    if c is not None:
        gone = np.isnan(a) | np.isnan(b) | np.isnan(c)
        a, b, c = (np.where(gone, np.nan, m) for m in (a, b, c))
    if ranks:
        def ranked(m):
            u = m[low]
            out = np.full_like(m, np.nan)
            out[low] = stats.rankdata(u, nan_policy="omit")
            return np.where(np.isnan(out), out.T, out)
        a, b, c = ranked(a), ranked(b), None if c is None else ranked(c)
    if c is not None:
        a, b = residuals(a, c), residuals(b, c)
    seen = correlation(pairs(a, given), pairs(b, given))
    all_ = np.array([correlation(pairs(a, given), pairs(b, list(o))) for o in permutations(range(n))])
    return (z, seen, np.mean(all_ >= seen - 1e-12), np.mean(all_ <= seen + 1e-12),
            np.mean(np.abs(all_) >= abs(seen) - 1e-12))


def mantel_rows():
    rng = np.random.default_rng(7)

    def distances(points):
        return np.sqrt(((points[:, None] - points[None]) ** 2).sum(-1)).round(3)
    for n in (5, 6):
        p = rng.normal(size=(n, 2))
        a, b, c = (distances(p + s * rng.normal(size=(n, 2))) for s in (0.0, 0.8, 0.8))
        for holes in (0, 1):
            if holes:
                a, b, c = a.copy(), b.copy(), c.copy()
                a[2, 1] = a[1, 2] = b[4, 0] = b[0, 4] = c[3, 1] = c[1, 3] = np.nan
            for third in (0, 1):
                for ranks in (0, 1):
                    result = mantel(a, b, c if third else None, ranks)
                    yield (n, joined(a), joined(b), joined(c) if third else "", ranks, *result)


write("biserial.csv", "family member 1 biserial, 2 point-, 3 rank-biserial; SciPy pointbiserialr, mannwhitneyu", "x,group,member,r,p", biserial_rows())
write("polyserial.csv", "two-step polyserial, SciPy minimize_scalar of the likelihood", "x,group,r", polyserial_rows())
write("rv.csv", "RV by its n x n products (NumPy), p-value over all orders", "n,p,q,x,y,weights,standardize,rv,pvalue,mean",
      rv_rows())
write("mantel.csv", "Mantel by enumeration of all orders (NumPy)", "n,a,b,control,ranks,z,rho,upper,lower,both", mantel_rows())
