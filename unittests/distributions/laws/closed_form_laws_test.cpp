#include "numcore/closed_form_laws.h"

#include <gtest/gtest.h>

#include "scalar_rows.hpp"

namespace {

TEST(ClosedFormLaws, MatchReference) {
    numcore::testing::expectScalarRows("distributions/closed_form_laws.csv",
                                       {NUMCORE_SCALAR(PDFExponential),
                                        NUMCORE_SCALAR(CDFExponential),
                                        NUMCORE_SCALAR(InvCDFExponential),
                                        NUMCORE_SCALAR(PDFWeibull3),
                                        NUMCORE_SCALAR(CDFWeibull3),
                                        NUMCORE_SCALAR(InvCDFWeibull3),
                                        NUMCORE_SCALAR(PDFFisherTippett),
                                        NUMCORE_SCALAR(CDFFisherTippett),
                                        NUMCORE_SCALAR(InvCDFFisherTippett),
                                        NUMCORE_SCALAR(PDFGEV),
                                        NUMCORE_SCALAR(CDFGEV),
                                        NUMCORE_SCALAR(InvCDFGEV),
                                        NUMCORE_SCALAR(PDFLogistic),
                                        NUMCORE_SCALAR(CDFLogistic),
                                        NUMCORE_SCALAR(InvCDFLogistic),
                                        NUMCORE_SCALAR(PDFPareto),
                                        NUMCORE_SCALAR(CDFPareto),
                                        NUMCORE_SCALAR(InvCDFPareto),
                                        NUMCORE_SCALAR(PDFTriangular),
                                        NUMCORE_SCALAR(CDFTriangular),
                                        NUMCORE_SCALAR(InvCDFTriangular),
                                        NUMCORE_SCALAR(PDFTrapezoidal),
                                        NUMCORE_SCALAR(CDFTrapezoidal),
                                        NUMCORE_SCALAR(InvCDFTrapezoidal),
                                        NUMCORE_SCALAR(PDFUniform),
                                        NUMCORE_SCALAR(CDFUniform),
                                        NUMCORE_SCALAR(InvCDFUniform),
                                        NUMCORE_SCALAR(PDFArcsine),
                                        NUMCORE_SCALAR(CDFArcsine),
                                        NUMCORE_SCALAR(InvCDFArcsine),
                                        NUMCORE_SCALAR(PDFArcsineG),
                                        NUMCORE_SCALAR(CDFArcsineG),
                                        NUMCORE_SCALAR(InvCDFArcsineG)});
}

}  // namespace
