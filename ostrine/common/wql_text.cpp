#include "ostrine/common/wql_text.h"

#include <cstddef>

namespace ostrine {

bool MatchesLike(std::wstring_view text, std::wstring_view pattern) noexcept {
  constexpr std::size_t kNone = std::wstring_view::npos;
  std::size_t t = 0;
  std::size_t p = 0;
  std::size_t retry_pattern = kNone;  // just behind the last '%' seen
  std::size_t retry_text = 0;         // where the text behind that '%' was last tried to begin
  while (t < text.size()) {
    if (p < pattern.size() && pattern[p] == L'%') {
      retry_pattern = ++p;
      retry_text = t;
    } else if (p < pattern.size() && (pattern[p] == L'_' || FoldCase(pattern[p]) == FoldCase(text[t]))) {
      ++p;
      ++t;
    } else if (retry_pattern != kNone) {
      // Only the last '%' need ever give way: an earlier one that took more would leave less for the rest.
      p = retry_pattern;
      t = ++retry_text;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of(L'%', p) == kNone;
}

}  // namespace ostrine
