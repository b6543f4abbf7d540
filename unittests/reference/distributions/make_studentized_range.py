"""Writes studentized_range_tails.csv: both tails of the studentized range by direct integration.

The range of k normal variables by the trapezoidal rule over the largest of them, the average over s by the
trapezoidal rule over ln s; both steps are halved until 12 digits agree: the second of them is then exact to the digits
printed. Inputs are exact doubles.
"""

from functools import lru_cache

from mpmath import erfc, exp, expm1, log, log1p, loggamma, mp, mpf, nstr, pi, sqrt

mp.dps = 20


@lru_cache(maxsize=None)
def upper(x):
    return erfc(x / sqrt(mpf(2))) / 2


def normal_range(w, k, step):
    """P(range <= w), P(range > w)."""
    lower = above = mpf(0)
    z = step * int(-9 / step)
    end = 9 + w / 2
    while z < end:
        bell = exp(-z * z / 2)
        a, b = upper(-z), upper(w - z)
        lower += bell * (a - b) ** (k - 1)
        above += bell * a ** (k - 1) * -expm1((k - 1) * log1p(-b / a)) if b < a else bell * a ** (k - 1)
        z += step
    scale = k * step / sqrt(2 * pi)
    return lower * scale, above * scale


def tails(q, ranges, k, df, step, inner):
    """Both tails, with the given steps."""
    q, df, k, ranges = mpf(q), mpf(df), mpf(k), mpf(ranges)
    constant = log(2) + df / 2 * log(df / 2) - loggamma(df / 2)
    known = {}

    def parts(i):
        if i not in known:
            u = i * step
            s = exp(u)
            chi = exp(constant + df * u - df * s * s / 2)
            low, up = normal_range(q * s, k, inner)
            known[i] = (chi * low**ranges, chi * -expm1(ranges * log1p(-up)) if up < 1 else chi)
        return known[i]

    result = []
    for side in (0, 1):
        coarse = max(1, int(mpf(1) / 8 / step))
        top = max((i * coarse for i in range(-60, 24)), key=lambda i: parts(i)[side])
        limit = parts(top)[side] * mpf("1e-16")
        total, i = parts(top)[side], top + 1
        while parts(i)[side] > limit:
            total += parts(i)[side]
            i += 1
        i = top - 1
        while parts(i)[side] > limit:
            total += parts(i)[side]
            i -= 1
        result.append(total * step)
    return result


def converged(q, ranges, k, df):
    width = mpf(1) / sqrt(2 * mpf(df) + 30)
    step, inner = width / 2, mpf(1) / 3 / sqrt(1 + log(mpf(k)) / 2)
    previous = tails(q, ranges, k, df, step, inner)
    while True:
        step, inner = step * mpf("0.7"), inner * mpf("0.7")
        current = tails(q, ranges, k, df, step, inner)
        if all(abs(a - b) < mpf("1e-12") * a for a, b in zip(current, previous)):
            return current
        previous = current


def rows():
    for df in (10, 2.5, 1, 300):
        for k in (2, 4.5, 30):
            for q in (0.5, 4.0, 30.0):
                yield q, 1, k, df
    yield from ((7.0, 1, 1000, 10), (40.0, 1, 1000, 2.5), (4.0, 1, 3, 1e6), (25.0, 1, 8, 1e6))
    yield from ((2.0, 2, 3, 5), (5.0, 7.5, 20, 40), (5.0, 30, 3, 5))


def main():
    print("# mpmath, 20 digits, direct integration, steps refined until 12 digits agree: make_studentized_range.py")
    print("# inputs are exact doubles; upper..: 1 - distribution")
    print("function,a1,a2,a3,a4,expected,rel_tol,abs_tol")
    for q, ranges, k, df in rows():
        for name, value in zip(("ptukey", "uppertukey"), converged(q, ranges, k, df)):
            if value > mpf("1e-300"):
                print(f"{name},{q!r},{ranges!r},{k!r},{df!r},{nstr(value, 17)},1e-11,0", flush=True)


if __name__ == "__main__":
    main()
