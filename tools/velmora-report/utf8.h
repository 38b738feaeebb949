#pragma once

#include <string>
#include <string_view>

namespace report {

/// UTF-8 of the system's wide text, whatever the locale. What is no character becomes U+FFFD.
std::string ToUtf8(std::wstring_view text);

/// UTF-8 of bytes whose code page nobody knows: ASCII stays, every other byte becomes U+FFFD.
std::string ToUtf8(std::string_view bytes);

/// The way back. Bytes that are no UTF-8 become U+FFFD, one each.
std::wstring FromUtf8(std::string_view text);

}  // namespace report
