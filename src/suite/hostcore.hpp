// Message strings that the host holds.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace numcore::hostcore {

/// Gives one message: the text of `row` (from 1) in resource group `group`, or null when the host has none. The
/// text is zero-terminated, belongs to the host, and must stay valid during the call that asked for it. Called
/// from any thread.
using StringSource = const char16_t* (*)(void* context, std::int32_t group, std::int32_t row);

/// Sets where message strings come from, for all threads, from the next read on. A null source (the state at
/// start) gives empty strings. A read under way on another thread ends with the source it began with.
void setStringSource(StringSource source, void* context);

/// Largest number of strings of a group: far above any message table, low enough to be harmless to allocate.
inline constexpr std::int32_t kMaxStrings = 65536;

/// Rows 1 to `count` of a resource group, in order; what the host has not is empty.
///
/// @param group  resource group, as the host numbers them
/// @param count  number of rows; below 1 gives none, above kMaxStrings gives kMaxStrings
std::vector<std::u16string> Cpp_GetRessourceStrings(std::int32_t group, std::int32_t count);

}  // namespace numcore::hostcore
