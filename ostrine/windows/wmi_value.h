/// Values of WMI properties, read by their type.
///
/// WMI passes an unsigned 32-bit number as a signed one and 64-bit numbers as decimal text, so the property's
/// own type counts too. Of a list the first element is meant.
#pragma once

#include <windows.h>

#include <oleauto.h>
#include <wbemcli.h>

#include <cstdint>
#include <string>
#include <vector>

namespace ostrine {

/// Text as it is, numbers in decimal, flags as "True" or "False"; empty for a null, an empty list, and for
/// what has no text form, such as an embedded object. Text ends before its first zero.
std::wstring WmiText(const VARIANT& value, CIMTYPE type);

/// A number from 0 to 2^32 - 1, or a flag as 0 or 1; 0 for everything else, text included.
unsigned int WmiNumber(const VARIANT& value, CIMTYPE type);

/// The bytes of a list of unsigned 8-bit numbers; none for any other value.
std::vector<std::uint8_t> WmiBytes(const VARIANT& value);

}  // namespace ostrine
