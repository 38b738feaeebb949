#include "network/address_state.h"

#include <algorithm>
#include <array>
#include <limits>

namespace velmora::network {
namespace {

constexpr std::size_t kShortestAddress = 7;  // "0.0.0.0"

bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

/// The number at the front of `text`, as atoi reads it: blanks and one sign before it are allowed, no digits
/// give 0, and what is too large gives the largest number.
int LeadingNumber(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  const bool is_negative = !text.empty() && text.front() == '-';
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) text.remove_prefix(1);
  long long number = 0;
  for (const char c : text) {
    if (c < '0' || c > '9') break;
    number = std::min<long long>(number * 10 + (c - '0'), std::numeric_limits<int>::max());
  }
  return static_cast<int>(is_negative ? -number : number);
}

/// The first four parts between the dots as numbers; a part that is not there is 0.
std::array<int, 4> PartsOf(std::string_view address) {
  std::array<int, 4> parts{};
  for (int& part : parts) {
    const auto dot = address.find('.');
    part = LeadingNumber(address.substr(0, dot));
    if (dot == std::string_view::npos) break;
    address.remove_prefix(dot + 1);
  }
  return parts;
}

/// No address at all, or one that the machine gave itself because nobody else gave it one.
bool IsUnusable(const std::array<int, 4>& parts) {
  const bool is_link_local = parts[0] == 169 && parts[1] == 254;
  return is_link_local || parts == std::array<int, 4>{};
}

}  // namespace

emIP_STATE_INFO ClassifyAddress(std::string_view address, std::string_view gateway, bool has_dhcp) noexcept {
  if (address.size() < kShortestAddress) return IP_STATE_NO_ADDRESS;
  const auto last_dot = address.rfind('.');
  if (last_dot == std::string_view::npos || last_dot == 0 || last_dot != gateway.rfind('.'))
    return IP_STATE_OTHER_PREFIX;
  if (IsUnusable(PartsOf(address))) return IP_STATE_UNUSABLE;
  return has_dhcp ? IP_STATE_READY : IP_STATE_STATIC;
}

bool IsAddressAssigned(emIP_STATE_INFO state) noexcept {
  return state != IP_STATE_NO_ADDRESS && state != IP_STATE_UNUSABLE;
}

}  // namespace velmora::network
