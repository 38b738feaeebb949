/// Letter case, one character at a time and the same under every locale.
///
/// Latin (with its accented letters), Greek, Cyrillic, Armenian and full-width Latin letters have a
/// lower-case form; any other character is its own. Letters whose other case takes two characters or depends
/// on the language (sharp s, the Turkish dotted and dotless i) stand for themselves. "Character" is one
/// wchar_t.
#pragma once

#include <string_view>

namespace velmora {

/// The lower-case form of `character`, or `character` itself.
wchar_t FoldCase(wchar_t character) noexcept;

/// Whether the texts are equal but for the case of their letters.
bool EqualIgnoringCase(std::wstring_view left, std::wstring_view right) noexcept;

}  // namespace velmora
