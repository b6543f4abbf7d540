#!/usr/bin/python3
"""Writes laws.csv: what the program is to print for laws, by SciPy (which has other parametrisations).

Where SciPy itself subtracts from 1 the upper tail is that of the mirrored law, and its quantile the formula.
"""
import math

import scipy
from scipy import special, stats

rows = []


def add(command, law, point, parameters, tail, expected, tolerance=1e-11):
    rows.append(f"{command},{law},{point},{parameters},{tail},{float(expected)!r},{tolerance:g}")


def both(law, parameters, peer, points, tail_point, tolerance=1e-11, mirrored=None):
    """Both tails at points, and the upper tail far out."""
    upper = (lambda x: mirrored.cdf(-x)) if mirrored else peer.sf
    for x in points:
        add("cdf", law, x, parameters, "lower", peer.cdf(x), tolerance)
        add("cdf", law, x, parameters, "upper", upper(x), tolerance)
    if tail_point is not None:
        add("cdf", law, tail_point, parameters, "upper", upper(tail_point), tolerance)
    density = peer.pmf if hasattr(peer.dist, "pmf") else peer.pdf
    add("pdf", law, points[0], parameters, "lower", density(points[0]), tolerance)


def quantiles(law, parameters, peer, lower, upper, tolerance=1e-11, exceeded=None):
    for p in lower:
        add("quantile", law, p, parameters, "lower", peer.ppf(p), tolerance)
    for p in upper:
        add("quantile", law, p, parameters, "upper", (exceeded or peer.isf)(p), tolerance)


def moments(law, parameters, peer):
    add("mean", law, 0, parameters, "lower", peer.mean(), 1e-9)
    add("variance", law, 0, parameters, "lower", peer.var(), 1e-9)


def everything(law, parameters, peer, points, tail_point, tolerance=1e-11, quantile_tolerance=1e-11, upper=(1e-9,),
               mirrored=None, exceeded=None):
    both(law, parameters, peer, points, tail_point, tolerance, mirrored)
    quantiles(law, parameters, peer, (0.1, 0.975), upper, quantile_tolerance, exceeded)
    moments(law, parameters, peer)


def pert(a, m, b):
    return stats.beta(1 + 4 * (m - a) / (b - a), 1 + 4 * (b - m) / (b - a), loc=a, scale=b - a)


everything("norm", "10 2", stats.norm(10, 2), (9.5, 13), 25)
everything("Standard Normal", "", stats.norm(), (-0.5, 1.96), 7)
add("cdf", "norm", -30, "", "lower", stats.norm().cdf(-30))
add("cdf", "norm", 85, "10 2", "upper", stats.norm(10, 2).sf(85), 1e-9)
add("cdf", "lnorm", 1e-9, "0.2 0.8", "lower", stats.norm().cdf((math.log(1e-9) - 0.2) / 0.8))
everything("lnorm", "0.2 0.8", stats.lognorm(0.8, scale=math.exp(0.2)), (0.5, 3), 200,
           exceeded=lambda p: math.exp(0.2 + 0.8 * stats.norm.isf(p)))
everything("t", "df=10", stats.t(10), (-0.5, 2.3), 60, 1e-11, 5e-6, (0.025,))
everything("chi_sq", "3", stats.chi2(3), (0.5, 6), 120, 1e-11, 1e-6, (0.05,))
everything("F", "3 20", stats.f(3, 20), (0.5, 3.1), 90, 1e-11, 1e-9,
           exceeded=lambda p: (1 / special.btdtri(10, 1.5, p) - 1) * 20 / 3)
everything("beta", "2 3", stats.beta(2, 3), (0.25, 0.7), 0.9999, 1e-11, 1e-9)
everything("beta4", "2 3 -1 4", stats.beta(2, 3, -1, 5), (0.25, 3), 3.999, 1e-10, 1e-9)
everything("gamma", "2 3 1", stats.gamma(2, 1, 3), (2.5, 9), 150, 1e-11, 1e-6, (0.05,))
everything("gamma", "shape=2 scale=3", stats.gamma(2, scale=3), (2.5, 9), 150, 1e-11, 1e-6, (0.05,))
add("cdf", "gamma", 2.5, "2 rate=0.25", "lower", stats.gamma(2, scale=4).cdf(2.5))
add("cdf", "exp", 2.5, "scale=4", "upper", stats.expon(scale=4).sf(2.5))
everything("erlang", "3 0.5", stats.gamma(3, scale=2), (2.5, 9), 120, 1e-11, 1e-6, (0.05,))
everything("exp", "0.5", stats.expon(scale=2), (0.5, 3), 90)
everything("weibull_min", "2 3 1", stats.weibull_min(2, 1, 3), (2, 5), 25,
           exceeded=lambda p: 1 + 3 * math.sqrt(-math.log(p)))
everything("gumbel-r", "2 1", stats.gumbel_r(1, 2), (0.5, 3), 90)
both("genextreme", "0.3 2 1", stats.genextreme(0.3, 1, 2), (0.5, 4), 7.6, 1e-10)
moments("genextreme", "0.3 2 1", stats.genextreme(0.3, 1, 2))
both("genextreme", "-0.2 2 1", stats.genextreme(-0.2, 1, 2), (0.5, 4), 1e4, 1e-10)
moments("genextreme", "-0.2 2 1", stats.genextreme(-0.2, 1, 2))
# The library's quantile has the shape with the other sign.
add("quantile", "gev", 0.9, "0.3 2 1", "lower", stats.genextreme(-0.3, 1, 2).ppf(0.9))
everything("logis", "1 2", stats.logistic(1, 2), (0.5, 3), 90)
everything("pareto", "3 2", stats.pareto(3, scale=2), (2.5, 5), 1e6, exceeded=lambda p: 2 * p ** (-1 / 3))
everything("unif", "-1 4", stats.uniform(-1, 5), (0.5, 3), 3.999)
everything("triang", "0 2 5", stats.triang(0.4, 0, 5), (0.5, 3), 4.9999, 1e-11,
           mirrored=stats.triang(0.6, -5, 5))
everything("trapz", "0 1 3 5", stats.trapezoid(0.2, 0.6, 0, 5), (0.5, 4), 4.9999, 1e-10,
           mirrored=stats.trapezoid(0.4, 0.8, -5, 5))
everything("pert", "1 3 7", pert(1, 3, 7), (2, 5), 6.999, 1e-10, 1e-9)
everything("arcsine", "", stats.arcsine(), (0.25, 0.7), 0.9999, 1e-11, 1e-8)
everything("arcsine-general", "0.5 -1 1", stats.arcsine(-1, 2), (-0.5, 0.7), 0.9999, 1e-11, 1e-8)
everything("binom", "10 0.3", stats.binom(10, 0.3), (2, 4), 9)
everything("nbinom", "3 0.4", stats.nbinom(3, 0.4), (2, 4), 70)
everything("negative binomial 2", "2.5 1.2", stats.nbinom(2.5, 1 / 2.2), (2, 4), 70)
everything("pois", "4", stats.poisson(4), (2, 4), 40)
everything("randint", "1 6", stats.randint(1, 7), (2, 4), None)
everything("bernoulli", "0.3", stats.bernoulli(0.3), (0, 0.5), None)
both("hypergeom", "20 8 5", stats.hypergeom(20, 8, 5), (1, 3), 4)
both("hyper", "n=5 K=8 N=20", stats.hypergeom(20, 8, 5), (1, 3), 4)
moments("hypergeom", "20 8 5", stats.hypergeom(20, 8, 5))
for x in (0.5, 3):
    add("cdf", "nct", x, "10 1.5", "lower", stats.nct(10, 1.5).cdf(x), 1e-9)
    add("cdf", "nct", x, "10 1.5", "upper", stats.nct(10, 1.5).sf(x), 1e-9)
    add("cdf", "ncx2", x, "3 2", "lower", stats.ncx2(3, 2).cdf(x), 1e-9)
    add("cdf", "ncx2", x, "3 2", "upper", stats.ncx2(3, 2).sf(x), 1e-9)
    add("cdf", "ncf", x, "3 20 2", "upper", stats.ncf(3, 20, 2).sf(x), 1e-9)
    add("cdf", "tukey", x, "3 10", "lower", stats.studentized_range(3, 10).cdf(x), 1e-7)
# By halving: the library has no quantile of these.
for p in (0.01, 0.5, 0.9):
    add("quantile", "hyper", p, "20 8 5", "lower", stats.hypergeom(20, 8, 5).ppf(p), 1e-15)
    add("quantile", "hyper", p, "20 8 5", "upper", stats.hypergeom(20, 8, 5).isf(p), 1e-15)
    add("quantile", "ncx2", p, "3 2", "lower", stats.ncx2(3, 2).ppf(p), 1e-8)
    add("quantile", "ncf", p, "3 20 2", "upper", stats.ncf(3, 20, 2).isf(p), 1e-8)
moments("nct", "10 1.5", stats.nct(10, 1.5))
moments("ncx2", "3 2", stats.ncx2(3, 2))
moments("ncf", "3 20 2", stats.ncf(3, 20, 2))
add("cdf", "tukey", 3.3145, "3 inf", "lower", stats.studentized_range(3, math.inf).cdf(3.3145), 1e-7)
add("quantile", "studentized range", 0.95, "3 10", "lower", stats.studentized_range(3, 10).ppf(0.95), 1e-5)

print(f"# The laws of the program | source: SciPy {scipy.__version__}, make_laws.py | tolerances relative; wider where "
      "the library's method is")
print("command,law,point,parameters,tail,expected,tolerance")
print("\n".join(rows))
