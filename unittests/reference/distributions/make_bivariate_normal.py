"""Writes bivariate_normal.csv: the bivariate normal law by direct integration with 40 digits.

With the argument "rules" it prints the positive halves of the Gauss-Legendre rules instead.
"""

import sys

from mpmath import asin, cos, erfc, exp, findroot, legendre, log, mp, mpf, nstr, pi, quad, sin, sqrt

mp.dps = 40


def upper(z):
    return erfc(z / sqrt(mpf(2))) / 2


def lower_orthant(x, y, rho):
    """P(X <= x, Y <= y): the derivative in rho, integrated over its arc sine from independence."""
    x, y, rho = mpf(x), mpf(y), mpf(rho)
    if abs(rho) == 1:
        return upper(-min(x, y)) if rho > 0 else max(mpf(0), upper(-x) - upper(y))

    def integrand(angle):
        return exp(-(x * x - 2 * x * y * sin(angle) + y * y) / (2 * cos(angle) ** 2))

    # Steps towards the end, where the integrand may vanish as fast as exp(-1/t^2).
    end = asin(rho)
    sign = 1 if rho > 0 else -1
    left = pi / 2 - abs(end)
    points = [mpf(0)]
    gap = pi / 2
    while gap > 2 * left:
        gap /= 2
        points.append(sign * (pi / 2 - gap))
    points.append(end)
    return upper(-x) * upper(-y) + quad(integrand, points, maxdegree=9) / (2 * pi)


def density(x, y, rho):
    x, y, rho = mpf(x), mpf(y), mpf(rho)
    rest = 1 - rho * rho
    return exp(-(x * x - 2 * rho * x * y + y * y) / (2 * rest)) / (2 * pi * sqrt(rest))


def print_rules():
    for n in (6, 12, 20):
        print(n)
        for i in range(1, n // 2 + 1):
            node = findroot(lambda t: legendre(n, t), cos(pi * (i - mpf(1) / 4) / (n + mpf(1) / 2)))
            slope = n * (node * legendre(n, node) - legendre(n - 1, node)) / (node * node - 1)
            print(f"    {{{nstr(node, 17)}, {nstr(2 / ((1 - node * node) * slope * slope), 17)}}},")


def rows():
    correlations = [-1.0, -1 + 2.0**-40, -0.9999, -0.97, -0.925, -0.7499, -0.3, 0.0, 1e-9, 0.2999, 0.5, 0.74,
                    0.75, 0.9249, 0.925, 0.95, 0.99, 0.9999, 1 - 2.0**-30, 1 - 2.0**-52, 1.0]
    points = [(0.0, 0.0), (0.5, 0.5), (-0.25, 0.75), (1.5, -1.5), (-1.0, -1.125), (2.5, 1.0), (-3.0, 3.0),
              (-5.0, -5.0), (4.0, 6.0), (-9.0, -9.0), (1.0, 1.0009765625), (-20.0, 1.0)]
    for rho in correlations:
        for x, y in points:
            yield "CDFBiNormalStd", (x, y, rho), lower_orthant(x, y, rho), 0, "1e-15"
    for rho in correlations[1:-1]:
        for x, y in points:
            value = density(x, y, rho)
            # One rounding of the exponent, which is what a double can hold.
            yield "PDFBiNormalStd", (x, y, rho), value, nstr(mpf("4e-16") * (2 + abs(log(value))), 2), 0


def main():
    if sys.argv[1:] == ["rules"]:
        return print_rules()
    print("# mpmath, 40 digits, by direct integration over the arc sine of the correlation: make_bivariate_normal.py")
    print("# inputs are exact doubles")
    print("function,a1,a2,a3,expected,rel_tol,abs_tol")
    for name, arguments, value, rel, absolute in rows():
        print(f"{name},{','.join(repr(a) for a in arguments)},{nstr(value, 20)},{rel},{absolute}")


if __name__ == "__main__":
    main()
