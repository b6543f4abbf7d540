/* What the host sets once for the library: where its message strings come from. */
#pragma once

#include "numcore/api.h"

NUMCORE_BEGIN_C

/** Gives one message: the text of row (from 1) in resource group, or null when the host has none. The text is
 *  zero-terminated, belongs to the host, and must stay valid during the call that asked for it. May be called
 * from any thread. */
typedef const char16_t* (*NumcoreStringSource)(void* context, int32_t group, int32_t row);

/** Sets the source of the host's message strings, for entry points that take no message array. Null, the state
 * at start, gives empty strings. Holds for all threads, from the next call of an entry point on. */
NUMCORE_API void numcore_set_string_source(NumcoreStringSource source, void* context);

NUMCORE_END_C
