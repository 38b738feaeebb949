#include "platform/os/text_tests.h"

#include "platform/os/files.h"
#include "platform/text_search.h"

namespace velmora::os {

const wchar_t* StrStrIW(const wchar_t* text, const wchar_t* part) { return FindIgnoringCase(text, part); }
const char* StrStrIA(const char* text, const char* part) { return FindIgnoringCase(text, part); }
int StrCmpIW(const wchar_t* left, const wchar_t* right) { return CompareIgnoringCase(left, right); }
const wchar_t* PathFindExtensionW(const wchar_t* path) { return FindExtension(path); }

}  // namespace velmora::os
