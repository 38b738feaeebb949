/// Texts from the host on their way to the system, which reads them up to their first zero. Pure.
#pragma once

#include <string_view>

namespace velmora {

/// Whether the system would read all of `text`, and so mean what the host means.
constexpr bool IsWhole(std::wstring_view text) noexcept {
  return text.find(L'\0') == std::wstring_view::npos;
}
constexpr bool IsWhole(std::string_view text) noexcept { return text.find('\0') == std::string_view::npos; }

}  // namespace velmora
