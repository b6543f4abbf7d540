// PERT law: a beta law on [a, b] whose shapes follow from the most likely value m.

#include "numcore/continuous_laws.h"

namespace {

struct Shapes {
    double alpha;
    double beta;
};

Shapes shapesOf(double a, double m, double b) {
    const double width = b - a;
    if (width == 0.0) return {1.0, 1.0};  // all of the probability in one point: the shapes do not matter
    return {(4.0 * m + b - 5.0 * a) / width, (5.0 * b - a - 4.0 * m) / width};
}

}  // namespace

double PDFPert(double x, double a, double m, double b) {
    const Shapes shapes = shapesOf(a, m, b);
    return PDFBeta4(x, shapes.alpha, shapes.beta, a, b);
}

double CDFPert(double x, double a, double m, double b) {
    const Shapes shapes = shapesOf(a, m, b);
    return CDFBeta4(x, shapes.alpha, shapes.beta, a, b);
}

double InvCDFPert(double p, double a, double m, double b) {
    const Shapes shapes = shapesOf(a, m, b);
    return InvCDFBeta4(p, shapes.alpha, shapes.beta, a, b);
}
