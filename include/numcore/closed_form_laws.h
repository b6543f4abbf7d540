/* Continuous laws whose functions are closed formulas. */
#pragma once

#include "numcore/api.h"

NUMCORE_BEGIN_C

/* ---- Exponential ---- */

NUMCORE_API double PDFExponential(double x, double lambda);

NUMCORE_API double CDFExponential(double x, double lambda);

NUMCORE_API double InvCDFExponential(double p, double lambda);

/* ---- Weibull3 ---- */

NUMCORE_API double PDFWeibull3(double x, double beta, double gamma, double mu);

NUMCORE_API double CDFWeibull3(double x, double beta, double gamma, double mu);

NUMCORE_API double InvCDFWeibull3(double p, double beta, double gamma, double mu);

/* ---- FisherTippett ---- */

NUMCORE_API double PDFFisherTippett(double x, double beta, double mu);

NUMCORE_API double CDFFisherTippett(double x, double beta, double mu);

NUMCORE_API double InvCDFFisherTippett(double p, double beta, double mu);

/* ---- GEV ---- */

NUMCORE_API double PDFGEV(double x, double k, double beta, double mu);

NUMCORE_API double CDFGEV(double x, double k, double beta, double mu);

NUMCORE_API double InvCDFGEV(double p, double k, double beta, double mu);

/* ---- Logistic ---- */

NUMCORE_API double PDFLogistic(double x, double mu, double s);

NUMCORE_API double CDFLogistic(double x, double mu, double s);

NUMCORE_API double InvCDFLogistic(double p, double mu, double s);

/* ---- Pareto ---- */

NUMCORE_API double PDFPareto(double x, double a, double b);

NUMCORE_API double CDFPareto(double x, double a, double b);

NUMCORE_API double InvCDFPareto(double p, double a, double b);

/* ---- Triangular ---- */

NUMCORE_API double PDFTriangular(double x, double a, double m, double b);

NUMCORE_API double CDFTriangular(double x, double a, double m, double b);

NUMCORE_API double InvCDFTriangular(double p, double a, double m, double b);

/* ---- Trapezoidal ---- */

NUMCORE_API double PDFTrapezoidal(double x, double a, double b, double c, double d);

NUMCORE_API double CDFTrapezoidal(double x, double a, double b, double c, double d);

NUMCORE_API double InvCDFTrapezoidal(double p, double a, double b, double c, double d);

/* ---- Uniform ---- */

NUMCORE_API double PDFUniform(double x, double a, double b);

NUMCORE_API double CDFUniform(double x, double a, double b);

NUMCORE_API double InvCDFUniform(double p, double a, double b);

/* ---- Arcsine ---- */

NUMCORE_API double PDFArcsine(double x, double a);

NUMCORE_API double CDFArcsine(double x, double a);

NUMCORE_API double InvCDFArcsine(double p, double a);

/* ---- ArcsineG ---- */

NUMCORE_API double PDFArcsineG(double x, double a, double c, double d);

NUMCORE_API double CDFArcsineG(double x, double a, double c, double d);

NUMCORE_API double InvCDFArcsineG(double p, double a, double c, double d);

NUMCORE_END_C
