/* numcore: statistics behind one dynamic library. Everything a C caller needs. */
#pragma once

#include "numcore/api.h"
#include "numcore/automation.h"
#include "numcore/closed_form_laws.h"
#include "numcore/continuous_laws.h"
#include "numcore/dataset.h"
#include "numcore/descriptive.h"
#include "numcore/discrete_laws.h"
#include "numcore/empirical.h"
#include "numcore/host.h"
#include "numcore/law_codes.h"
#include "numcore/noncentral_laws.h"
#include "numcore/records.h"
#include "numcore/special.h"
#include "numcore/studentized_range.h"
