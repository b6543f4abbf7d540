// Trapezoidal law: rising on [a, b], flat on [b, c], falling on [c, d].

#include <algorithm>
#include <cmath>

#include "distributions/laws/law_domain.hpp"
#include "numcore/closed_form_laws.h"
#include "suite/basecore.hpp"

using namespace numcore;
using namespace numcore::distributions;

namespace {

bool inOrder(double a, double b, double c, double d) {
    return a <= b && b <= c && c <= d;
}

// Of the flat part; infinite where all four bounds coincide.
double height(double a, double b, double c, double d) {
    return 2.0 / ((d - a) + (c - b));
}

}  // namespace

double PDFTrapezoidal(double x, double a, double b, double c, double d) {
    if (!inOrder(a, b, c, d)) return kMissing;
    if (x < a || x > d) return 0.0;
    const double h = height(a, b, c, d);
    if (x < b) return h * ((x - a) / (b - a));
    return x <= c ? markInfinite(h) : h * ((d - x) / (d - c));
}

double CDFTrapezoidal(double x, double a, double b, double c, double d) {
    if (!inOrder(a, b, c, d)) return kMissing;
    if (x >= d) return 1.0;  // first: where all four coincide, all of the mass is there
    if (x <= a) return 0.0;
    const double h = height(a, b, c, d);
    if (x < b) return 0.5 * h * (x - a) * ((x - a) / (b - a));
    if (x <= c) return h * (0.5 * (b - a) + (x - b));
    return std::max(1.0 - 0.5 * h * (d - x) * ((d - x) / (d - c)), 0.0);
}

double InvCDFTrapezoidal(double p, double a, double b, double c, double d) {
    if (!inOrder(a, b, c, d) || !isProbability(p)) return kMissing;
    if (a == d) return markInfinite(a);
    const double h = height(a, b, c, d);
    const double rise = b - a;
    const double fall = d - c;
    const double area = p / h;
    const double areaAbove = (1.0 - p) / h;
    // The widths stay outside of the roots, where they would overflow.
    if (area < 0.5 * rise) return markInfinite(a + rise * basecore::sqr(2.0 * area / rise));
    if (areaAbove < 0.5 * fall) return markInfinite(d - fall * basecore::sqr(2.0 * areaAbove / fall));
    return markInfinite(b + (area - 0.5 * rise));
}
