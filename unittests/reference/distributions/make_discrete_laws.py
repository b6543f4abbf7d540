#!/usr/bin/env python3
"""Writes discrete_laws_far.csv: discrete laws far out, near p = 1 and with large parameters, from mpmath with 40
digits. Masses are ratios of gamma functions, distribution functions sums of them (integrals of their smooth form where
such a sum has more than some 1e4 terms), quantiles the first count of a search over these; inputs are exact doubles."""
import pathlib

from mpmath import exp, floor, log, log1p, loggamma, mp, mpf, nstr, quad, sqrt

mp.dps = 40
NEGLIGIBLE = mpf(10) ** -30
LONGEST_SUM_SD = 900
PIECES = [mpf(0), 0.25, 0.5, 1, 2, 4, 8, 16, 32]  # of an integral, in standard deviations


class Law:
    """Mass, ratio of the mass at k + 1 to that at k, largest count, mean and standard deviation; for large ones the
    integral of the lower (step -1) or upper tail (step 1) at k over the parameter."""

    def __init__(self, mass, ratio, last, mean, variance, integral=None):
        self.mass, self.ratio, self.last, self.mean, self.sd = mass, ratio, last, mean, sqrt(variance)
        self.integral = integral

    def tails(self, k):
        """P(X <= k) and P(X > k), the smaller one by summation."""
        k = mpf(k)
        long = self.integral and self.sd > LONGEST_SUM_SD
        if self.ratio(k) >= 1:
            lower = self.integral(k, -1) if long else self.walk(k, -1)
            return lower, 1 - lower
        upper = self.integral(k, 1) if long else self.walk(k + 1, 1)
        return 1 - upper, upper

    def walk(self, k, step):
        total = term = self.mass(k)
        while term > NEGLIGIBLE * total and 0 <= k + step <= self.last:
            term = term / self.ratio(k - 1) if step < 0 else term * self.ratio(k)
            k += step
            total += term
        return total

    def quantile(self, p):
        """Exact for the double p: 1 - p is formed with 40 digits."""
        p = mpf(p)
        k = max(mpf(0), floor(self.mean))
        stride = max(mpf(1), floor(self.sd))
        reaches = lambda j: j >= 0 and (self.tails(j)[0] >= p if p < 0.5 else self.tails(j)[1] <= 1 - p)
        while stride >= 1:
            while not reaches(k):
                k += stride
            while reaches(k - stride):
                k -= stride
            stride = floor(stride / 2)
        return k


def choose(n, k):
    return loggamma(n + 1) - loggamma(k + 1) - loggamma(n - k + 1)


def poisson(mean):
    mean = mpf(mean)

    def integral(k, step):
        constant = loggamma(k + 1)
        nodes = [mean - step * piece * sqrt(mean) for piece in PIECES]
        return abs(quad(lambda t: exp(k * log(t) - t - constant), nodes))

    return Law(lambda k: exp(k * log(mean) - loggamma(k + 1) - mean), lambda k: mean / (k + 1), mpf("inf"), mean, mean,
               integral)


def binomial(n, p):
    n, p = mpf(n), mpf(p)

    def integral(k, step):
        constant = choose(n, k) + log(n - k)
        nodes = [p - step * piece * sqrt(p * (1 - p) / n) for piece in PIECES]
        return abs(quad(lambda t: exp(constant + k * log(t) + (n - k - 1) * log1p(-t)), nodes))

    return Law(lambda k: exp(choose(n, k) + k * log(p) + (n - k) * log1p(-p)),
               lambda k: (n - k) * p / ((k + 1) * (1 - p)), n, n * p, n * p * (1 - p), integral)


def negative(size, odds):
    size, odds = mpf(size), mpf(odds)
    return Law(lambda k: exp(loggamma(size + k) - loggamma(size) - loggamma(k + 1)
                             + k * log(odds) - (k + size) * log1p(odds)),
               lambda k: (size + k) * odds / ((1 + odds) * (k + 1)), mpf("inf"), size * odds, size * odds * (1 + odds))


def negative1(n, p):
    return negative(n, (1 - mpf(p)) / mpf(p))


def hypergeometric(total, marked, drawn):
    total, marked, drawn = mpf(total), mpf(marked), mpf(drawn)
    mean = drawn * marked / total
    return Law(lambda k: exp(choose(marked, k) + choose(total - marked, drawn - k) - choose(total, drawn)),
               lambda k: (marked - k) * (drawn - k) / ((k + 1) * (total - marked - drawn + k + 1)),
               min(marked, drawn), mean, mean * (total - marked) * (total - drawn) / total / max(total - 1, 1))


# law, name, its arguments, standard deviations from the mean
POINTS = [
    (poisson, "Poisson", (0.001,), (0, 60)), (poisson, "Poisson", (1e-20,), (3e10,)),
    (poisson, "Poisson", (30.0,), (-5.4, -3, 0, 8, 60)), (poisson, "Poisson", (1e6,), (-38, -5, 0, 2, 30)),
    (poisson, "Poisson", (1e12,), (-12, 0.5, 9)),
    (binomial, "Binomial", (40.0, 0.25), (-3, 0, 9)), (binomial, "Binomial", (1000.0, 1e-5), (0, 90)),
    (binomial, "Binomial", (220.0, 1 - 2.0**-18), (-30, -1, 0)), (binomial, "Binomial", (5000.0, 0.5), (-30, -4, 0.3, 4)),
    (binomial, "Binomial", (1e6, 0.3), (-20, -5, 0, 5)), (binomial, "Binomial", (1e9, 0.75), (-8, 0, 3)),
    (negative1, "BinomialNeg1", (1.0, 0.125), (-0.5, 0, 20)), (negative1, "BinomialNeg1", (500.0, 0.9), (-6, 0, 25)),
    (negative1, "BinomialNeg1", (3.0, 0.001), (-1.6, 0, 30)), (negative1, "BinomialNeg1", (1e6, 0.5), (-9, 0, 9)),
    (negative, "BinomialNeg2", (1e-8, 2.0), (0, 1e4)), (negative, "BinomialNeg2", (0.25, 50.0), (-0.3, 0, 20)),
    (negative, "BinomialNeg2", (7.5, 0.01), (0, 40)), (negative, "BinomialNeg2", (12345.5, 3.5), (-10, 0, 12)),
    (negative, "BinomialNeg2", (1e6, 0.001), (-20, 0.5, 20)),
    (hypergeometric, "HyperG", (60.0, 25.0, 30.0), (-5, 0, 5)), (hypergeometric, "HyperG", (1e6, 20.0, 1e5), (0, 10)),
    (hypergeometric, "HyperG", (1e5, 4e4, 99000.0), (-20, 0, 20)),
    (hypergeometric, "HyperG", (4e6, 2e6, 2e6), (-30, -8, 0.4, 5)),  # standard deviation 500
    (hypergeometric, "HyperG", (4.2e6, 2e6, 2.1e6), (-30, -8, 0.4, 5)), (hypergeometric, "HyperG", (1e9, 4e8, 3e8), (-8, 2)),
    (hypergeometric, "HyperG", (1e12, 2e6, 4e11), (-12, -3, 1)),
]
QUANTILES = [
    (poisson, "Poisson", (100.0,), (1e-30, 0.3, 1 - 1e-10, 1 - 2.0**-53)), (poisson, "Poisson", (1000.0,), (1e-300, 0.5, 0.999)),
    (poisson, "Poisson", (1e6,), (1e-12, 0.25, 1 - 1e-13)), (poisson, "Poisson", (1e9,), (1e-9, 0.6, 1 - 1e-12)),
    (poisson, "Poisson", (4.2e9,), (0.75,)), (poisson, "Poisson", (1e-9,), (1 - 2.0**-53,)),
    (binomial, "Binomial", (5000.0, 0.4), (1e-200, 0.5, 1 - 2.0**-53)), (binomial, "Binomial", (6208.0, 0.994897), (3.75e-11,)),
    (binomial, "Binomial", (1e9, 0.125), (1e-10, 0.7, 1 - 1e-13)), (binomial, "Binomial", (1e15, 1e-9), (0.2, 0.9)),
    (negative1, "BinomialNeg1", (2.0, 0.01), (1e-9, 0.5, 1 - 1e-10)), (negative1, "BinomialNeg1", (5000.0, 0.25), (1e-50, 0.4, 1 - 2.0**-53)),
    (negative, "BinomialNeg2", (0.01, 100.0), (0.9, 0.999, 1 - 1e-12)), (negative, "BinomialNeg2", (1234.5, 20.0), (1e-9, 0.5, 0.999999)),
]
HEADER = """\
# Discrete laws far out, near p = 1 and with large parameters | mpmath, 40 digits, make_discrete_laws.py |
# inputs are exact doubles; relative tolerance 4e-15 and 5e-16 for each unit of the logarithm of the value
function,a1,a2,a3,a4,a5,a6,a7,a8,expected,rel_tol,abs_tol,source,note
"""


def row(function, point, parameters, expected, tolerance):
    cells = [repr(float(point))] + [repr(float(p)) for p in parameters]
    return ",".join([function] + cells + [""] * (8 - len(cells)) + [expected, tolerance, "0", "mpmath", ""]) + "\n"


def value_row(function, k, parameters, value):
    return row(function, k, parameters, nstr(value, 18), nstr(4e-15 - 5e-16 * log(value), 2))


def rows():
    for make, name, parameters, distances in POINTS:
        law = make(*parameters)
        for distance in distances:
            k = min(max(mpf(0), floor(law.mean + distance * law.sd)), law.last)
            yield value_row("PDF" + name, k, parameters, law.mass(k))
            if name != "Poisson":  # its distribution function is an approximation by definition
                yield value_row("CDF" + name, k, parameters, law.tails(k)[0])
    for make, name, parameters, probabilities in QUANTILES:
        for p in probabilities:
            yield row("InvCDF" + name, p, parameters, nstr(make(*parameters).quantile(p), 12).removesuffix(".0"), "0")


pathlib.Path(__file__).with_name("discrete_laws_far.csv").write_text(HEADER + "".join(rows()))
