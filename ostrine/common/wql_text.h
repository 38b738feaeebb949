/// Comparing texts the way WMI queries do: without regard to case, and by LIKE patterns.
///
/// Case is folded as `platform/case_folding.h` tells. "Character" is one wchar_t.
#pragma once

#include <string_view>

#include "platform/case_folding.h"

namespace ostrine {

using velmora::EqualIgnoringCase;
using velmora::FoldCase;

/// Whether all of `text` fits `pattern`, where '%' stands for any number of characters, '_' for exactly one,
/// and everything else for itself in either case. Takes at most text x pattern steps and no memory.
bool MatchesLike(std::wstring_view text, std::wstring_view pattern) noexcept;

}  // namespace ostrine
