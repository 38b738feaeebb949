#include "bluetooth/hexadecimal_text.h"

#include <charconv>
#include <limits>
#include <system_error>

namespace velmora::bluetooth {
namespace {

/// Drops the first character when it is one of `characters`, and tells it; 0 when it is not.
char TakeOneOf(std::string_view& text, std::string_view characters) {
  if (text.empty() || characters.find(text.front()) == std::string_view::npos) return 0;
  const char taken = text.front();
  text.remove_prefix(1);
  return taken;
}

}  // namespace

std::uint32_t ReadHexadecimal(std::string_view text) {
  while (TakeOneOf(text, " \t\n\v\f\r") != 0) {
  }
  const bool is_negative = TakeOneOf(text, "+-") == '-';
  if (text.starts_with("0x") || text.starts_with("0X")) text.remove_prefix(2);
  std::uint32_t number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number, 16);
  if (result.ec == std::errc::result_out_of_range) return std::numeric_limits<std::uint32_t>::max();
  return is_negative ? 0U - number : number;  // as a stream does it: the number modulo 2^32
}

}  // namespace velmora::bluetooth
