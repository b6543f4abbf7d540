#!/usr/bin/python3
"""Exact tails of Spearman's and Kendall's laws without ties, from all orders (Spearman) and from whole-number counts of
inversions (Kendall). Prints exact_laws.csv."""

import itertools
from fractions import Fraction
from math import factorial


def spearman_rows():
    for n in range(1, 10):
        sums = [sum((i - v) ** 2 for i, v in enumerate(order)) for order in itertools.permutations(range(n))]
        largest = (n * n - 1) * n // 3
        for s in sorted({0, 1, largest // 4, largest // 2, largest // 2 + 1, largest - 1, largest}):
            yield "CDFSpearman", 0, n, s, Fraction(sum(x >= s for x in sums), factorial(n))


def inversion_counts(n):
    counts = [1]
    for size in range(2, n + 1):
        new = [0] * (len(counts) + size - 1)
        for k, count in enumerate(counts):
            for j in range(size):
                new[k + j] += count
        counts = new
    return counts


def kendall_rows():
    for n in (1, 2, 3, 12, 30, 49, 50, 75, 200):
        counts = inversion_counts(n)
        largest = n * (n - 1) // 2
        for s in sorted({-largest - 1, -largest, -largest // 3, -1, 0, 1, largest // 10, largest // 3, largest - 2, largest,
                         largest + 1}):
            tail = sum(counts[:(largest - s) // 2 + 1]) if s <= largest else 0
            yield "CDFKendall", s, n, "", Fraction(tail, factorial(n))


print("# Exact tails of rank coefficients without ties, by make_exact_laws.py (whole numbers throughout).")
print("function,a1,a2,a3,expected,rel_tol,abs_tol")
for name, a, b, c, value in list(spearman_rows()) + list(kendall_rows()):
    print(f"{name},{a},{b},{c},{float(value)!r},1e-13,0")
