// Building blocks of the noncentral laws: terms of Poisson and binomial type with relative accuracy.
#pragma once

namespace numcore::distributions {

/// Both tails of a law.
struct Tails {
    double lower = 0.0;  // P(X <= x)
    double upper = 0.0;  // P(X > x)
};

/// ln(1 + v) - v with relative accuracy, v > -1. The second form takes 1 + v where the caller knows it better.
double log1pMinus(double v);
double log1pMinus(double v, double onePlus);

/// A complex number with the plain product (the library's looks for infinities first).
struct Complex {
    double re;
    double im;

    Complex operator-() const { return {-re, -im}; }
    friend Complex operator+(Complex a, Complex b) { return {a.re + b.re, a.im + b.im}; }
    friend Complex operator-(Complex a, Complex b) { return {a.re - b.re, a.im - b.im}; }
    friend Complex operator-(double a, Complex b) { return {a - b.re, -b.im}; }
    friend Complex operator*(Complex a, double b) { return {a.re * b, a.im * b}; }
    friend Complex operator*(Complex a, Complex b) {
        return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
    }
    friend Complex operator/(double a, Complex b) {
        const double scale = a / (b.re * b.re + b.im * b.im);
        return {b.re * scale, -b.im * scale};
    }
    friend Complex operator/(Complex a, Complex b) { return a * (1.0 / b); }
};

/// log1pMinus of a complex number off the negative axis from -1 downwards.
Complex log1pMinus(Complex z);

/// e^u - 1 - u with relative accuracy next to 0.
double expm1Minus(double u);

/// ln Gamma(x + 1) - [(x + 1/2) ln x - x + ln(2 pi) / 2], x > 0: what Stirling's formula leaves.
double stirlingError(double x);

/// ln(e^-m m^k / Gamma(k + 1)) for real k >= 0, m > 0.
double logPoissonTerm(double k, double m);

/// ln(Gamma(k + m + 1) / (Gamma(k + 1) Gamma(m + 1)) x^k y^m) for real k, m > 0, x + y = 1.
double logBinomialTerm(double k, double m, double x, double y);

}  // namespace numcore::distributions
