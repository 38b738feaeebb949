/// Comparing texts the way WMI queries do: without regard to case, and by LIKE patterns.
///
/// Case is folded one character at a time, the same under every locale: Latin (with its accented letters),
/// Greek, Cyrillic, Armenian and full-width Latin letters match in either case; any other character matches
/// itself only. Letters whose other case takes two characters or depends on the language (sharp s, the
/// Turkish dotted and dotless i) match themselves only. "Character" is one wchar_t.
#pragma once

#include <string_view>

namespace ostrine {

/// The lower-case form of `character`, or `character` itself.
wchar_t FoldCase(wchar_t character) noexcept;

bool EqualIgnoringCase(std::wstring_view left, std::wstring_view right) noexcept;

/// Whether all of `text` fits `pattern`, where '%' stands for any number of characters, '_' for exactly one,
/// and everything else for itself in either case. Takes at most text x pattern steps and no memory.
bool MatchesLike(std::wstring_view text, std::wstring_view pattern) noexcept;

}  // namespace ostrine
