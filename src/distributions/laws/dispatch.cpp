// The functions that go by a law's code.

#include "distributions/laws/law_table.hpp"
#include "numcore/markers.hpp"

using numcore::distributions::Law;
using numcore::distributions::lawOfCode;

const numcore_law* numcore_law_of_code(int32_t code) {
    const Law* law = lawOfCode(code);
    return law == nullptr ? nullptr : &law->shown;
}

double CDFGeneral(double x, int32_t code, double p1, double p2, double p3, double p4) {
    const Law* law = lawOfCode(code);
    return law == nullptr ? 0.0 : law->distribution(x, p1, p2, p3, p4);
}

double InvCDFGeneral(double p, int32_t code, double p1, double p2, double p3, double p4) {
    const Law* law = lawOfCode(code);
    return law == nullptr ? numcore::kMissing : law->quantile(p, p1, p2, p3, p4);
}

double PDFGeneral(double x, int32_t code, double p1, double p2, double p3, double p4) {
    const Law* law = lawOfCode(code);
    return law == nullptr ? 0.0 : law->density(x, p1, p2, p3, p4);
}
