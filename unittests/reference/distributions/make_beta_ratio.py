#!/usr/bin/env python3
"""Writes beta_ratio.csv: both tails of the incomplete beta ratio from mpmath with 60 digits."""
import pathlib

from mpmath import beta, mp, mpf

mp.dps = 60

# a, b, x: at least one for each expansion and each side of the mean; then far tails.
POINTS = [
    (1e-17, 3.0, 0.25), (2.0, 1e-20, 0.375), (1e-16, 1e-3, 0.5), (1e-18, 2e13, 1e-14),
    (0.3, 0.2, 0.125), (0.01, 0.9, 0.4375), (0.001, 0.002, 0.0625), (0.05, 0.75, 0.75),
    (0.5, 0.5, 1e-12), (1e-5, 0.5, 1e-9), (0.25, 7.0, 0.5), (0.125, 12.0, 0.2), (0.4, 30.0, 0.01),
    (0.9, 400.0, 0.05), (5.0, 0.7, 0.875), (2.5, 1.5, 0.3), (30.0, 12.25, 0.8), (9.0, 39.0, 0.25),
    (20.0, 3.5, 0.984375), (4.5, 6.5, 0.9), (50.0, 60.0, 0.4375), (200.0, 300.0, 0.39), (200.0, 300.0, 0.41),
    (1500.0, 900.0, 0.6), (1e5, 2e5, 0.335), (1e7, 1e7, 0.50001), (45.0, 1e6, 4e-5), (1e6, 45.0, 0.99993),
    (50.0, 60.0, 0.01), (50.0, 60.0, 0.99), (200.0, 300.0, 0.1), (200.0, 300.0, 0.8), (2000.0, 3000.0, 0.3),
    (2000.0, 3000.0, 0.5), (0.5, 1000.0, 0.4), (1000.0, 0.5, 0.6), (3.0, 500.0, 0.7), (30.0, 2.0, 1e-9),
    (0.01, 20.0, 0.9999), (7.5, 7.5, 1e-30), (12.0, 4000.0, 0.14), (1e-3, 0.5, 1.0 - 2.0**-40),
]


def tail(a, b, x):
    """I_x(a, b) by Gauss's continued fraction, for x below the mean."""
    front = x**a * (1 - x) ** b / (a * beta(a, b))
    value = mpf(0)
    for m in range(4000, 0, -1):
        k, odd = divmod(m, 2)
        d = (-(a + k) * (a + b + k) / ((a + 2 * k) * (a + 2 * k + 1)) if odd
             else k * (b - k) / ((a + 2 * k - 1) * (a + 2 * k)))
        value = d * x / (1 + value)
    return front / (1 + value)


def tails(a, b, x):
    a, b, x = mpf(a), mpf(b), mpf(x)
    if x < (a + 1) / (a + b + 2):
        below = tail(a, b, x)
        return below, 1 - below
    above = tail(b, a, 1 - x)
    return 1 - above, above


with open(pathlib.Path(__file__).with_name("beta_ratio.csv"), "w") as out:
    print("# betaRatio | source: mpmath, 60 digits, Gauss's continued fraction (make_beta_ratio.py)", file=out)
    print("# tail 0 is the lower, 1 the upper; tolerances: the publication's 14 digits, less where the shapes or the",
          "logarithm of the\n# factor are large", file=out)
    print("a,b,x,tail,expected,rel_tol,abs_tol", file=out)
    for a, b, x in POINTS:
        x = 1.0 - (1.0 - x) if x > 0.5 else x
        for which, value in enumerate(tails(a, b, x)):
            tolerance = max(5e-14, 2e-16 * max(a, b) ** 0.5, float(-3e-15 * mp.log(value)))
            print(f"{a!r},{b!r},{x!r},{which},{mp.nstr(value, 17)},{tolerance},0", file=out)
