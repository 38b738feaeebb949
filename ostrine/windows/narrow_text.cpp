#include "ostrine/common/narrow_text.h"

#include <windows.h>

namespace ostrine {

std::size_t NarrowPrefix(std::string_view text, std::size_t limit) {
  if (text.size() <= limit) return text.size();
  if (GetACP() == CP_UTF8) return Utf8Prefix(text, limit);
  // In a double-byte page only a walk from the start tells which bytes begin a character.
  std::size_t end = 0;
  for (;;) {
    const std::size_t width = IsDBCSLeadByte(static_cast<BYTE>(text[end])) ? 2 : 1;
    if (width > limit - end) return end;
    end += width;
  }
}

}  // namespace ostrine
