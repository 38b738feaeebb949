#include "platform/os/text_tests.h"

#include <windows.h>

#include <shlwapi.h>

namespace velmora::os {

const wchar_t* StrStrIW(const wchar_t* text, const wchar_t* part) {
  return *part != L'\0' ? ::StrStrIW(text, part) : nullptr;
}

const char* StrStrIA(const char* text, const char* part) {
  return *part != '\0' ? ::StrStrIA(text, part) : nullptr;
}

int StrCmpIW(const wchar_t* left, const wchar_t* right) { return ::StrCmpIW(left, right); }

}  // namespace velmora::os
