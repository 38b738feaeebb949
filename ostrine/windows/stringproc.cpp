#include "platform/ostrine/stringproc.h"

#include <windows.h>

#include <climits>

std::wstring StringProc::StringToWString(const std::string& text) {
  try {
    if (text.empty() || text.size() > INT_MAX) return {};
    const int size = static_cast<int>(text.size());
    // A byte of any code page gives one character at most.
    std::wstring wide(text.size(), L'\0');
    const int length = MultiByteToWideChar(CP_ACP, 0, text.data(), size, wide.data(), size);
    wide.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
    return wide;
  } catch (...) {
    return {};
  }
}
