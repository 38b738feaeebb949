#include "platform/linux/service_state.h"

#include <cstddef>

#include "platform/ostrine/unit_state.h"
#include "platform/unicode.h"

namespace velmora::os {
std::optional<std::string> UnitOfService(std::wstring_view name) {
  constexpr std::size_t kLongestName = 256;
  if (name.empty() || name.size() > kLongestName || name.find(L'/') != std::wstring_view::npos)
    return std::nullopt;
  return unicode::Utf8FromWide(std::wstring(name).append(L".service"));
}

ServiceStatus StatusOf(const UnitFacts& unit) noexcept {
  constexpr std::uint32_t kOwnProcess = 0x10;
  constexpr std::uint32_t kAcceptsStop = 0x1;
  ServiceStatus status{};
  status.service_type = kOwnProcess;
  status.current_state = static_cast<std::uint32_t>(UnitStateOf(unit.active_state, unit.freezer_state));
  status.controls_accepted = status.current_state == kServiceRunning && unit.can_stop ? kAcceptsStop : 0;
  status.win32_exit_code = unit.active_state == "failed" ? kErrorProcessAborted : 0;
  return status;
}

}  // namespace velmora::os
