#include "ostrine/common/narrow_text.h"

namespace ostrine {
namespace {

bool ContinuesCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

}  // namespace

std::size_t Utf8Prefix(std::string_view text, std::size_t limit) {
  if (text.size() <= limit) return text.size();
  constexpr std::size_t kMostContinuations = 3;
  std::size_t end = limit;
  while (end > 0 && limit - end < kMostContinuations && ContinuesCharacter(text[end])) --end;
  return ContinuesCharacter(text[end]) ? limit : end;
}

}  // namespace ostrine
