#include "ostrine/common/natural_order.h"

#include <algorithm>
#include <compare>
#include <cstddef>

namespace ostrine {
namespace {

bool IsDecimal(char c) { return c >= '0' && c <= '9'; }

/// Takes the digits at the front of `text`, without their leading zeros.
std::string_view TakeDigits(std::string_view& text) {
  const auto end = std::find_if_not(text.begin(), text.end(), IsDecimal);
  std::string_view digits = text.substr(0, static_cast<std::size_t>(end - text.begin()));
  text.remove_prefix(digits.size());
  digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
  return digits;
}

/// Takes off what both begin with, but for digits at its end: their number may go on.
void TakeCommonStart(std::string_view& left, std::string_view& right) {
  const auto differs = std::mismatch(left.begin(), left.end(), right.begin(), right.end()).first;
  auto size = static_cast<std::size_t>(differs - left.begin());
  while (size > 0 && IsDecimal(left[size - 1])) --size;
  left.remove_prefix(size);
  right.remove_prefix(size);
}

std::strong_ordering CompareNaturally(std::string_view left, std::string_view right) noexcept {
  TakeCommonStart(left, right);
  while (!left.empty() && !right.empty()) {
    if (IsDecimal(left.front()) && IsDecimal(right.front())) {
      const std::string_view left_number = TakeDigits(left);
      const std::string_view right_number = TakeDigits(right);
      const auto longer = left_number.size() <=> right_number.size();
      if (longer != 0) return longer;
      const int digits = left_number.compare(right_number);
      if (digits != 0) return digits <=> 0;
    } else {
      const auto byte =
          static_cast<unsigned char>(left.front()) <=> static_cast<unsigned char>(right.front());
      if (byte != 0) return byte;
      left.remove_prefix(1);
      right.remove_prefix(1);
    }
  }
  return left.size() <=> right.size();
}

}  // namespace

bool ComesBefore(std::string_view left, std::string_view right) noexcept {
  const auto order = CompareNaturally(left, right);
  return order != 0 ? order < 0 : left < right;
}

}  // namespace ostrine
