/// Searching and comparing texts without regard to letter case, and taking paths apart, as the shell's text
/// functions do it: the same on every system that has none of its own.
#pragma once

namespace velmora {

/// The first occurrence of `part` in `text`, or null. An empty `part` is never found, and a null text or part
/// neither.
const wchar_t* FindIgnoringCase(const wchar_t* text, const wchar_t* part) noexcept;

/// The same for UTF-8. A byte that belongs to no character matches itself only.
const char* FindIgnoringCase(const char* text, const char* part) noexcept;

/// 0 when the texts are equal, else below or above 0 as the first character that differs, in lower case, is
/// smaller or greater on the left.
int CompareIgnoringCase(const wchar_t* left, const wchar_t* right) noexcept;

/// The extension of `path`: from the last point of its last element, point included; its end if there is
/// none.
const wchar_t* FindExtension(const wchar_t* path) noexcept;

}  // namespace velmora
