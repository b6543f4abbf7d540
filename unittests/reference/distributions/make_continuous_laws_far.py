#!/usr/bin/env python3
"""Writes continuous_laws_far.csv: laws far out and with large parameters, with 50 digits by mpmath."""

from pathlib import Path

from mpmath import gammainc, exp, findroot, log, loggamma, mp, mpf, nstr, pi, sqrt

mp.dps = 50
HALF = mpf(1) / 2


def ln_beta(a, b):
    return loggamma(a) + loggamma(b) - loggamma(a + b)


def beta_fraction(x, a, b):
    """I_x(a, b) by Gauss's continued fraction, for x below the mean."""
    value = mpf(0)
    for m in range(1500, 0, -1):
        k, odd = divmod(m, 2)
        d = (-(a + k) * (a + b + k) / ((a + 2 * k) * (a + 2 * k + 1)) if odd
             else k * (b - k) / ((a + 2 * k - 1) * (a + 2 * k)))
        value = d * x / (1 + value)
    return exp(a * log(x) + b * log(1 - x) - ln_beta(a, b)) / a / (1 + value)


def beta_lower(x, a, b):
    return beta_fraction(x, a, b) if x < (a + 1) / (a + b + 2) else 1 - beta_fraction(1 - x, b, a)


def beta_upper(x, a, b):
    return beta_lower(1 - x, b, a)


def pdf_student(x, nu):
    return exp(-ln_beta(HALF, nu / 2) - log(nu) / 2 - (nu + 1) / 2 * log(1 + x * x / nu))


def cdf_student(x, nu):  # x < 0
    return beta_lower(nu / (x * x + nu), nu / 2, HALF) / 2


def pdf_gamma(z, k):
    return exp((k - 1) * log(z) - z - loggamma(k))


def pdf_fisher(x, n1, n2):
    r = n1 * x / n2
    return exp(n1 / 2 * log(r) - (n1 + n2) / 2 * log(1 + r) - ln_beta(n1 / 2, n2 / 2)) / x


def cdf_fisher(x, n1, n2, tail):
    w = n2 / (n1 * x + n2)
    return beta_upper(w, n2 / 2, n1 / 2) if tail == -1 else beta_lower(w, n2 / 2, n1 / 2)


def pdf_beta(x, a, b):
    return exp((a - 1) * log(x) + (b - 1) * log(1 - x) - ln_beta(a, b))


def cdf_beta(x, a, b, tail):
    return beta_lower(x, a, b) if tail == -1 else beta_upper(x, a, b)


def pdf_log_normal(x, mu, sigma):
    return exp(-(((log(x) - mu) / sigma) ** 2) / 2) / (x * sigma * sqrt(2 * pi))


def root_of(function, start, end=mp.inf):
    """The root in ln x within a factor of 10 of the start and below the end."""
    interval = (log(mpf(start) / 10), min(log(mpf(start) * 10), log(end)))
    return exp(findroot(lambda u: function(exp(u)), interval, solver="anderson", tol=mpf(10) ** -45, maxsteps=200))


def inv_beta(p, a, b, tail, start):
    return root_of(lambda x: log(cdf_beta(x, a, b, tail)) - log(p), start, 1 - mpf(10) ** -12)


def inv_fisher(p, n1, n2, tail, start):
    return root_of(lambda x: log(cdf_fisher(x, n1, n2, tail)) - log(p), start)


# function, its definition, tolerance, arguments (exact doubles); quantiles with a starting value at the end
ROWS = [
    ("PDFStudent", pdf_student, 2e-14, [(2, 1e6), (-3, 1e12), (25, 1e4), (1e5, 3), (1e60, 0.5), (0.001, 0.01), (30, 700)]),
    ("CDFStudent", cdf_student, 2e-14, [(-1e5, 3), (-40, 200), (-1e-3, 4), (-12, 1e4), (-1e100, 0.5), (-2, 1e9)]),
    ("PDFChiSq", lambda x, nu: pdf_gamma(x / 2, nu / 2) / 2, 2e-14,
     [(1e4, 1e4), (1.01e6, 1e6), (1.0001e8, 1e8), (900, 400), (100, 400), (1e-200, 0.5), (1400, 3), (20, 19.5)]),
    ("pValChiSq", lambda x, nu: gammainc(nu / 2, x / 2, mp.inf, regularized=True), 3e-13,
     [(200, 3), (1400, 5), (500, 300), (1e-8, 1), (1e-3, 0.01)]),
    ("PDFFisher", pdf_fisher, 5e-14,
     [(1.01, 1e5, 2e5), (3, 1e4, 5), (1e-150, 3, 5), (1e100, 2.5, 1), (2, 40, 1e6), (1e-9, 0.2, 0.4)]),
    ("CDFFisher", cdf_fisher, 1e-13,
     [(1e-6, 3, 5, -1), (1e-10, 1, 30, -1), (0.2, 300, 200, -1), (1e8, 4, 7, 0), (30, 20, 1e5, 0), (5, 1, 1e7, 0)]),
    ("PDFBeta", pdf_beta, 5e-14,
     [(0.3, 3e5, 7e5), (1e-200, 2, 3), (1 - 2.0**-50, 0.5, 3), (0.01, 200, 300), (0.03, 0.01, 5e3), (0.5, 1e-5, 1e-5)]),
    ("PDFLogNormal", pdf_log_normal, 2e-14, [(1e-200, -460, 3), (1e200, 400, 20), (1, 5, 0.3)]),
    ("InvCDFBeta", inv_beta, 1e-13,
     [(0.6, 0.5, 1e6, -1, 3.5e-7), (0.3, 0.02, 50, 0, 6e-10), (1e-12, 0.3, 4, -1, 4e-41), (1e-30, 20, 30, 0, 0.9),
      (0.95, 2e5, 1.5, -1, 0.999999), (0.5, 2, 1e12, -1, 1.7e-12)]),
    ("InvCDFFisher", inv_fisher, 1e-13,
     [(0.95, 1, 1e5, -1, 3.8), (1e-6, 1, 1e5, -1, 1e-12), (1e-15, 5, 8, 0, 1e4), (0.5, 3, 399999, -1, 0.79)]),
]


def main():
    lines = ["# Laws far out and with large parameters; written by make_continuous_laws_far.py (mpmath, 50 digits).",
             "function,a1,a2,a3,a4,expected,rel_tol,abs_tol"]
    for name, definition, tolerance, points in ROWS:
        for point in points:
            value = definition(*(mpf(argument) for argument in point))
            arguments = point[:-1] if name.startswith("InvCDF") else point
            cells = [repr(float(a)) for a in arguments] + [""] * (4 - len(arguments))
            of_exponent = float(f"{float(abs(log(value))) * 2e-16:.1g}")  # rounding of the logarithm
            lines.append(",".join([name, *cells, nstr(value, 17), repr(max(tolerance, of_exponent)), "0"]))
    Path(__file__).with_name("continuous_laws_far.csv").write_text("\n".join(lines) + "\n")


if __name__ == "__main__":
    main()
