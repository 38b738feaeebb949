/// Questions to the system's own WMI classes, each over a connection of its own.
#pragma once

#include <string>
#include <string_view>

namespace velmora {

/// `property` of the first row that `query` yields; empty when there is none.
std::wstring AskText(const std::wstring& query, const std::wstring& property);

/// The same for the query that NameQuery makes; nothing is asked for a name that cannot be in one.
std::wstring AskTextByName(std::wstring_view head, std::wstring_view name, const std::wstring& property);

/// The same for a number; 0 when there is none.
unsigned int AskNumberByName(std::wstring_view head, std::wstring_view name, const std::wstring& property);

}  // namespace velmora
