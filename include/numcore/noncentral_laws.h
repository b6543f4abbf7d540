/* Noncentral laws and the bivariate normal law. */
#pragma once

#include "numcore/api.h"

NUMCORE_BEGIN_C

/* ---- StudentNC ---- */

NUMCORE_API double PDFStudentNC(double x, double nu, double delta);

NUMCORE_API double CDFStudentNC(double x, double nu, double delta);

NUMCORE_API double InvCDFStudentNC(double p, double nu, double delta);

/* ---- chiSqNC ---- */

NUMCORE_API double CDFchiSqNC(double x, double nu, double lambda);

/* ---- FisherNC ---- */

NUMCORE_API double CDFFisherNC(double x, double nu1, double nu2, double lambda);

/* ---- betaNC ---- */

NUMCORE_API double CDFbetaNC(double x, double alpha, double beta, double lambda);

/* ---- BiNormal ---- */

NUMCORE_API double PDFBiNormal(double x, double y, double mu1, double mu2, double sigma1, double sigma2,
                               double rho);

/* ---- BiNormalStd ---- */

NUMCORE_API double PDFBiNormalStd(double x, double y, double rho);

NUMCORE_API double CDFBiNormalStd(double x, double y, double rho);

NUMCORE_END_C
