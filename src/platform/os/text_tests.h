/// Tests on text as the system's shell functions make them.
#pragma once

namespace velmora::os {

/// The first occurrence of `part` in `text` without regard to letter case, or null. An empty `part` is never
/// found. Letters are paired one to one, by a rule that does not depend on the process's locale.
const wchar_t* StrStrIW(const wchar_t* text, const wchar_t* part);

/// The same for text of the narrow code page.
const char* StrStrIA(const char* text, const char* part);

/// Compares two texts without regard to letter case: 0 when they are equal, else below or above 0.
int StrCmpIW(const wchar_t* left, const wchar_t* right);

}  // namespace velmora::os
