"""Writes noncentral_tails.csv: both tails of the noncentral laws, far out and at extreme parameters.

Chi-square, F and beta as Poisson mixtures, summed with enough digits that the upper tail may be taken as 1 minus the
lower one. Student by direct integration over the logarithm of s = sqrt(chi-square / nu) (trapezoidal rule, halved
until 25 digits agree). Inputs are exact doubles.
"""

from mpmath import erfc, exp, expm1, floor, inf, log, loggamma, mp, mpf, nstr, pi, sqrt

REL_TOL = "1e-12"


def poisson_log(j, mean):
    return j * log(mean) - mean - loggamma(j + 1) if mean else mpf(0)


def mixture(lam, log_unit, growth, a, end):
    """Sum over i of d_i (w_0 + ... + w_i), d_i = P_i - P_(i+1): every term positive, no starting ratio needed."""
    half = mpf(lam) / 2
    first = max(0, int(half - 60 * sqrt(half + 1)))
    weight = exp(poisson_log(first, half))
    unit = exp(log_unit(a + first))
    below = mpf(0)
    total = mpf(0)
    i = first
    tiny = mpf(10) ** (-mp.dps - 5)
    while True:
        below += weight
        term = unit * below
        total += term
        ratio = growth(a + i)
        # The rest is at most geometric with this ratio.
        if i > end and ratio < 1 and unit * ratio / (1 - ratio) < tiny * total:
            return total
        unit *= ratio
        i += 1
        weight *= half / i


def chi_square(x, nu, lam):
    y, a = mpf(x) / 2, mpf(nu) / 2
    return mixture(lam, lambda s: poisson_log(s, y), lambda s: y / (s + 1), a, 0)


def beta_law(x, a, b, lam):
    def log_unit(s):
        return loggamma(s + b) - loggamma(s + 1) - loggamma(b) + s * log(x) + b * log(1 - x)

    return mixture(lam, log_unit, lambda s: x * (s + b) / (s + 1), a, 0)


def fisher(x, nu1, nu2, lam):
    ratio = mpf(x) * mpf(nu1) / mpf(nu2)
    return beta_law(ratio / (1 + ratio), mpf(nu1) / 2, mpf(nu2) / 2, lam)


def beta(x, a, b, lam):
    return beta_law(mpf(x), mpf(a), mpf(b), lam)


def both_tails(compute, *arguments):
    """Tails with at least 30 digits each."""
    mp.dps = 50
    while True:
        lower = compute(*arguments)
        if 1 - lower > mpf(10) ** (30 - mp.dps):
            return lower, 1 - lower
        if mp.dps > 400:
            return lower, None
        mp.dps *= 2


def student(t, nu, delta, kind):
    """Lower tail, upper tail or density of (N + delta) / s."""
    mp.dps = 40
    t, nu, delta = mpf(t), mpf(nu), mpf(delta)
    constant = log(2) + nu / 2 * log(nu / 2) - loggamma(nu / 2)

    def value(u):
        s = exp(u)
        z = t * s - delta
        chi = exp(constant + nu * u - nu * s * s / 2)
        if kind == "pdf":
            return chi * s * exp(-z * z / 2) / sqrt(2 * pi)
        return chi * erfc((z if kind == "upper" else -z) / sqrt(mpf(2))) / 2

    # The largest value on a coarse grid, then everything around it within 32 digits.
    top = max((mpf(k) / 8 for k in range(-400, 60)), key=value)
    for scale in (mpf(1) / 16, mpf(1) / 128, mpf(1) / 1024, mpf(1) / 16384):
        top = max((top + k * scale for k in range(-16, 17)), key=value)
    limit = value(top) * mpf(10) ** -32
    reach = mpf(1) / 4096
    while value(top + reach) > limit or value(top - reach) > limit:
        reach *= mpf("1.3")
        if reach > 400:
            break
    step, previous = reach / 16, None
    while True:
        half_count = int(reach / step) + 1
        total = step * sum(value(top + k * step) for k in range(-half_count, half_count + 1))
        if previous is not None and abs(total - previous) < mpf(10) ** -25 * total:
            return total
        step, previous = step / 2, total


def emit(name, arguments, value, tolerance=REL_TOL):
    if value is None or not mpf("1e-300") < value:
        return
    mp.dps = 50
    print(f"{name},{','.join(repr(float(a)) for a in arguments)}{',' * (4 - len(arguments))},{nstr(value, 20)},{tolerance},0")


def chi_square_rows():
    for nu in (0.001, 0.5, 1, 2, 7.25, 60, 1000):
        for lam in (0, 0.01, 1, 12.5, 200, 3000):
            mean, sd = nu + lam, (2 * (nu + 2 * lam)) ** 0.5
            points = [mean + z * sd for z in (-8, -3, -0.5, 0.01, 2, 9, 25, 60)] + [mean * 1e-3, mean * 1e-20]
            for x in points:
                if x > 0:
                    yield x, nu, lam
    yield from ((1e6 + z * 2e3, 3, 1e6) for z in (-30, -9, -1, 0, 2, 12, 30))
    yield from ((1e8 + 1e6 + z * 1.4e4, 1e8, 1e6) for z in (-20, -4, 0, 5, 25))


def fisher_rows():
    for nu1 in (0.01, 1, 4, 75):
        for nu2 in (0.5, 3, 40, 3000):
            for lam in (0, 0.5, 20, 700):
                mean = (nu1 + lam) / nu1
                for factor in (1e-30, 1e-3, 0.2, 0.7, 1, 1.5, 4, 20):
                    yield mean * factor, nu1, nu2, lam
    yield from ((2e5 * f, 5, 3000, 1e6) for f in (0.5, 0.8, 1, 1.2, 1.6))
    yield from ((f, 1e6, 1e6, 100) for f in (0.97, 0.99, 1, 1.002, 1.03))


def beta_rows():
    for a, b in ((0.5, 0.5), (2, 3), (20, 0.75), (1.5, 300), (400, 350)):
        for lam in (0, 1, 30, 1500):
            for x in (1e-10, 0.01, 0.2, 0.5, 0.8125, 0.97):
                yield x, a, b, lam


def student_rows():
    for nu in (0.5, 3, 10.5, 200, 1e5):
        for delta in (-30, -3, 0, 1.5, 8):
            for t in (-50, -2, 0.5, 3, 20):
                yield t, nu, delta


def main():
    print("# mpmath, at least 25 digits: Poisson mixtures and direct integration by make_noncentral_laws.py")
    print("# inputs are exact doubles; upper..: 1 - distribution")
    print("function,a1,a2,a3,a4,expected,rel_tol,abs_tol")
    for suffix, compute, rows in (("chiSqNC", chi_square, chi_square_rows()), ("FisherNC", fisher, fisher_rows()),
                                  ("betaNC", beta, beta_rows())):
        for arguments in rows:
            lower, upper = both_tails(compute, *arguments)
            emit("CDF" + suffix, arguments, lower)
            emit("upper" + suffix, arguments, upper)
    for arguments in student_rows():
        emit("CDFStudentNC", arguments, student(*arguments, "lower"))
        emit("upperStudentNC", arguments, student(*arguments, "upper"))
        emit("PDFStudentNC", arguments, student(*arguments, "pdf"))


if __name__ == "__main__":
    main()
