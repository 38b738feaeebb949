#include "system/name_query.h"

#include <algorithm>
#include <iterator>

namespace velmora {
namespace {

/// Whether a text in quotes that ends in `name` would go on behind the closing quote: pairs of backslashes
/// stand for one each, and what is left of an odd number takes the quote in.
bool EndsInHalfAPair(std::wstring_view name) {
  const auto last = std::find_if(name.rbegin(), name.rend(), [](wchar_t unit) { return unit != L'\\'; });
  return std::distance(name.rbegin(), last) % 2 != 0;
}

}  // namespace

std::optional<std::wstring> NameQuery(std::wstring_view head, std::wstring_view name) {
  constexpr std::wstring_view kNever(L"'\0", 2);
  if (name.find_first_of(kNever) != std::wstring_view::npos || EndsInHalfAPair(name)) return std::nullopt;
  std::wstring query;
  query.reserve(head.size() + name.size() + 1);
  return query.append(head).append(name).append(1, L'\'');
}

}  // namespace velmora
