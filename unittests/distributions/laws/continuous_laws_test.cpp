#include "numcore/continuous_laws.h"

#include <gtest/gtest.h>

#include "scalar_rows.hpp"

namespace {

TEST(ContinuousLaws, MatchReference) {
    numcore::testing::expectScalarRows(
        "distributions/continuous_laws.csv",
        {NUMCORE_SCALAR(PDFNormal),    NUMCORE_SCALAR(CDFNormal),       NUMCORE_SCALAR(PDFLogNormal),
         NUMCORE_SCALAR(CDFLogNormal), NUMCORE_SCALAR(InvCDFLogNormal), NUMCORE_SCALAR(PDFStudent),
         NUMCORE_SCALAR(CDFStudent),   NUMCORE_SCALAR(InvCDFStudent),   NUMCORE_SCALAR(PDFChiSq),
         NUMCORE_SCALAR(CDFChiSq),     NUMCORE_SCALAR(InvCDFChiSq),     NUMCORE_SCALAR(pValChiSq),
         NUMCORE_SCALAR(PDFFisher),    NUMCORE_SCALAR(CDFFisher),       NUMCORE_SCALAR(InvCDFFisher),
         NUMCORE_SCALAR(pValFisher),   NUMCORE_SCALAR(PDFBeta),         NUMCORE_SCALAR(CDFBeta),
         NUMCORE_SCALAR(InvCDFBeta),   NUMCORE_SCALAR(PDFBeta4),        NUMCORE_SCALAR(CDFBeta4),
         NUMCORE_SCALAR(InvCDFBeta4),  NUMCORE_SCALAR(PDFGamma3),       NUMCORE_SCALAR(CDFGamma3),
         NUMCORE_SCALAR(InvCDFGamma3), NUMCORE_SCALAR(PDFErlang),       NUMCORE_SCALAR(CDFErlang),
         NUMCORE_SCALAR(InvCDFErlang), NUMCORE_SCALAR(PDFPert),         NUMCORE_SCALAR(CDFPert),
         NUMCORE_SCALAR(InvCDFPert)});
}

}  // namespace
