/* numcore: statistics behind one dynamic library. Everything a C caller needs. */
#pragma once

#include "numcore/api.h"
#include "numcore/automation.h"
#include "numcore/dataset.h"
#include "numcore/descriptive.h"
#include "numcore/host.h"
#include "numcore/records.h"
#include "numcore/special.h"
