#include "numcore/host.h"

#include "suite/hostcore.hpp"

void numcore_set_string_source(NumcoreStringSource source, void* context) {
    numcore::hostcore::setStringSource(source, context);
}
