/* Continuous laws on the incomplete gamma and beta functions, and the normal laws. */
#pragma once

#include "numcore/api.h"

NUMCORE_BEGIN_C

/* ---- Normal ---- */

NUMCORE_API double PDFNormal(double x, double mu, double sigma);

NUMCORE_API double CDFNormal(double x, double mu, double sigma);

/* ---- LogNormal ---- */

NUMCORE_API double PDFLogNormal(double x, double mu, double sigma);

NUMCORE_API double CDFLogNormal(double x, double mu, double sigma);

NUMCORE_API double InvCDFLogNormal(double p, double mu, double sigma);

/* ---- Student ---- */

NUMCORE_API double PDFStudent(double x, double nu);

NUMCORE_API double CDFStudent(double x, double nu);

NUMCORE_API double InvCDFStudent(double p, double nu);

/* ---- ChiSq ---- */

NUMCORE_API double PDFChiSq(double x, double nu);

NUMCORE_API double CDFChiSq(double x, double nu);

NUMCORE_API double InvCDFChiSq(double p, double nu);

NUMCORE_API double pValChiSq(double x, double nu);

/* ---- Fisher ---- */

NUMCORE_API double PDFFisher(double x, double nu1, double nu2);

NUMCORE_API double CDFFisher(double x, double nu1, double nu2, int16_t tail);

NUMCORE_API double InvCDFFisher(double p, double nu1, double nu2, int16_t tail);

NUMCORE_API double pValFisher(double f, double nu1, double nu2);

/* ---- Beta ---- */

NUMCORE_API double PDFBeta(double x, double alpha, double beta);

NUMCORE_API double CDFBeta(double x, double alpha, double beta, int16_t tail);

NUMCORE_API double InvCDFBeta(double p, double alpha, double beta, int16_t tail);

/* ---- Beta4 ---- */

NUMCORE_API double PDFBeta4(double x, double alpha, double beta, double c, double d);

NUMCORE_API double CDFBeta4(double x, double alpha, double beta, double c, double d);

NUMCORE_API double InvCDFBeta4(double p, double alpha, double beta, double c, double d);

/* ---- Gamma3 ---- */

NUMCORE_API double PDFGamma3(double x, double k, double beta, double mu);

NUMCORE_API double CDFGamma3(double x, double k, double beta, double mu);

NUMCORE_API double InvCDFGamma3(double p, double k, double beta, double mu);

/* ---- Erlang ---- */

NUMCORE_API double PDFErlang(double x, double k, double lambda);

NUMCORE_API double CDFErlang(double x, double k, double lambda);

NUMCORE_API double InvCDFErlang(double p, double k, double lambda);

/* ---- Pert ---- */

NUMCORE_API double PDFPert(double x, double a, double m, double b);

NUMCORE_API double CDFPert(double x, double a, double m, double b);

NUMCORE_API double InvCDFPert(double p, double a, double m, double b);

NUMCORE_END_C
