/// How a name from the host gets into a query. Pure.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmora {

/// `head`, which ends in an opening quote, then `name` as it stands, then the closing quote. Nothing for a
/// name that would not stay within its quotes: one with an apostrophe, with a zero, or with a backslash at
/// its end that would take the closing quote in. Such a name would make a query of another meaning, or none.
std::optional<std::wstring> NameQuery(std::wstring_view head, std::wstring_view name);

}  // namespace velmora
