/// The os contract's tests on text. They cannot go wrong, so they are no calls of a trace.
#include "platform/os/text_tests.h"

#include "platform/text_search.h"

namespace velmora::os {

const wchar_t* StrStrIW(const wchar_t* text, const wchar_t* part) { return FindIgnoringCase(text, part); }
const char* StrStrIA(const char* text, const char* part) { return FindIgnoringCase(text, part); }
int StrCmpIW(const wchar_t* left, const wchar_t* right) { return CompareIgnoringCase(left, right); }

}  // namespace velmora::os
