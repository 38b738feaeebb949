/// Lists of texts as Windows stores them. Pure.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ostrine {

/// The texts of `list`, each of which ends in a zero; an empty one ends the list, and so does the end of
/// `list`, whether or not the last text has its zero.
std::vector<std::wstring> SplitMultiText(std::wstring_view list);

}  // namespace ostrine
