#pragma once

#include <string>

#pragma GCC visibility push(default)

/// Text conversions of the hardware-abstraction library.
class StringProc {
 public:
  /// Wide text of text in the system's narrow code page (UTF-8 where there is none); what that cannot read
  /// becomes its substitutes.
  static std::wstring StringToWString(const std::string& text);
};

#pragma GCC visibility pop
