/* Discrete laws. */
#pragma once

#include "numcore/api.h"

NUMCORE_BEGIN_C

/* ---- UniformDisc ---- */

NUMCORE_API double PDFUniformDisc(double x, double a, double b);

NUMCORE_API double CDFUniformDisc(double x, double a, double b);

NUMCORE_API double InvCDFUniformDisc(double p, double a, double b);

NUMCORE_API double InvCDFUniformWDisc(double p, const double* weights, int32_t n, double a, double b);

/* ---- Bernoulli ---- */

NUMCORE_API double PDFBernoulli(double x, double p);

NUMCORE_API double CDFBernoulli(double x, double p);

NUMCORE_API double InvCDFBernoulli(double p, double p1);

/* ---- Binomial ---- */

NUMCORE_API double PDFBinomial(double k, double n, double p);

NUMCORE_API double CDFBinomial(double k, double n, double p);

NUMCORE_API uint32_t InvCDFBinomial(double p, double n, double p1);

/* ---- BinomialNeg1 ---- */

NUMCORE_API double PDFBinomialNeg1(double k, double n, double p);

NUMCORE_API double CDFBinomialNeg1(double k, double n, double p);

NUMCORE_API uint32_t InvCDFBinomialNeg1(double p, double n, double p1);

/* ---- BinomialNeg2 ---- */

NUMCORE_API double PDFBinomialNeg2(double x, double k, double p);

NUMCORE_API double CDFBinomialNeg2(double x, double k, double p);

NUMCORE_API uint32_t InvCDFBinomialNeg2(double p, double k, double p1);

/* ---- Poisson ---- */

NUMCORE_API double PDFPoisson(double k, double lambda);

NUMCORE_API double CDFPoisson(int32_t k, double lambda);

NUMCORE_API uint32_t InvCDFPoisson(double p, double lambda);

/* ---- HyperG ---- */

NUMCORE_API double PDFHyperG(double x, double N, double K, double n);

NUMCORE_API double CDFHyperG(double x, double N, double K, double n);

NUMCORE_END_C
