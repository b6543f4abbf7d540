/* numcore: what every public header shares: linkage, visibility, the two markers, booleans. */
#pragma once

#include <stdint.h>
#ifndef __cplusplus
#include <uchar.h>
#endif

#if defined(NUMCORE_STATIC)
#define NUMCORE_API
#elif defined(_WIN32)
#if defined(NUMCORE_BUILDING)
#define NUMCORE_API __declspec(dllexport)
#else
#define NUMCORE_API __declspec(dllimport)
#endif
#else
#define NUMCORE_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
#define NUMCORE_BEGIN_C extern "C" {
#define NUMCORE_END_C }
#else
#define NUMCORE_BEGIN_C
#define NUMCORE_END_C
#endif

/** The missing value: a cell that holds no value, a result that cannot be computed.
 *  Bits 0xFFEFFFFFFFFFFFE2; 29 units in the last place above the most negative double. */
#define NUMCORE_MISSING (-1.79769313486231e308)

/** The overflow marker: an unbounded result (a quantile at p = 1, an open upper limit).
 *  Bits 0x7FEFFFFFFFFFFFE2. */
#define NUMCORE_OVERFLOW (1.79769313486231e308)

/** 16-bit automation booleans: only NUMCORE_TRUE is true, every other value (1 included) is false. */
#define NUMCORE_TRUE (-1)
#define NUMCORE_FALSE 0

#define NUMCORE_VERSION "0.1.0"

NUMCORE_BEGIN_C

/** The version of the loaded library, as "major.minor.patch"; storage is static. */
NUMCORE_API const char* numcore_version(void);

NUMCORE_END_C
