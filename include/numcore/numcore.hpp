// numcore for C++ callers: the C interface, the containers and the functions over data sets.
#pragma once

#include "numcore/bayesian_network.hpp"
#include "numcore/containers.hpp"
#include "numcore/correlation.hpp"
#include "numcore/correlation_analysis.hpp"
#include "numcore/dataset.hpp"
#include "numcore/descriptive.hpp"
#include "numcore/empirical.hpp"
#include "numcore/numcore.h"
#include "numcore/special.hpp"
