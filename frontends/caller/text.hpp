// Texts of the boundary: UTF-8 on the caller's side, automation strings on the library's.
#pragma once

#include <string>
#include <string_view>

#include "numcore/automation.h"

namespace numcore::caller {

/// UTF-8 to 16-bit text; a malformed byte becomes U+FFFD.
std::u16string toUtf16(std::string_view utf8);
/// 16-bit text to UTF-8; half a surrogate pair becomes U+FFFD.
std::string toUtf8(std::u16string_view text);

/// A new automation string; throws std::bad_alloc when memory is short.
BSTR newText(std::u16string_view text);
/// `newText` from UTF-8, without an intermediate copy.
BSTR newText(std::string_view utf8);

/// The characters of an automation string; empty for null.
std::u16string_view textView(BSTR text);

}  // namespace numcore::caller
