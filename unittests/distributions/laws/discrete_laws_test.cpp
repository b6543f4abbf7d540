#include "numcore/discrete_laws.h"

#include <gtest/gtest.h>

#include "scalar_rows.hpp"

namespace {

const numcore::testing::ScalarFunctions kFunctions = {
    NUMCORE_SCALAR(PDFUniformDisc),  NUMCORE_SCALAR(CDFUniformDisc),  NUMCORE_SCALAR(InvCDFUniformDisc),
    NUMCORE_SCALAR(PDFBernoulli),    NUMCORE_SCALAR(CDFBernoulli),    NUMCORE_SCALAR(InvCDFBernoulli),
    NUMCORE_SCALAR(PDFBinomial),     NUMCORE_SCALAR(CDFBinomial),     NUMCORE_SCALAR(InvCDFBinomial),
    NUMCORE_SCALAR(PDFBinomialNeg1), NUMCORE_SCALAR(CDFBinomialNeg1), NUMCORE_SCALAR(InvCDFBinomialNeg1),
    NUMCORE_SCALAR(PDFBinomialNeg2), NUMCORE_SCALAR(CDFBinomialNeg2), NUMCORE_SCALAR(InvCDFBinomialNeg2),
    NUMCORE_SCALAR(PDFPoisson),      NUMCORE_SCALAR(CDFPoisson),      NUMCORE_SCALAR(InvCDFPoisson),
    NUMCORE_SCALAR(PDFHyperG),       NUMCORE_SCALAR(CDFHyperG)};

TEST(DiscreteLaws, MatchReference) {
    numcore::testing::expectScalarRows("distributions/discrete_laws.csv", kFunctions);
    numcore::testing::expectScalarRows("distributions/discrete_laws_far.csv", kFunctions);
}

}  // namespace
