#include "ostrine/common/failing_driver.h"

#include <windows.h>

#include <climits>

#include "ostrine/windows/device_set.h"

namespace ostrine {
namespace {

/// In the system's narrow code page; what that page lacks becomes its question mark.
std::string Narrow(const std::wstring& text) {
  if (text.empty() || text.size() > INT_MAX) return {};
  const int units = static_cast<int>(text.size());
  const int size = WideCharToMultiByte(CP_ACP, 0, text.c_str(), units, nullptr, 0, nullptr, nullptr);
  if (size <= 0) return {};
  std::string narrow(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_ACP, 0, text.c_str(), units, narrow.data(), size, nullptr, nullptr);
  return narrow;
}

/// The name that the system's own lists show.
std::wstring CaptionOf(const Device& device) {
  std::wstring name = device.Text(SPDRP_FRIENDLYNAME);
  return name.empty() ? device.Text(SPDRP_DEVICEDESC) : name;
}

FailingDriver FactsOf(const Device& device, std::uint32_t code) {
  return {.caption = Narrow(CaptionOf(device)),
          .device_id = Narrow(device.InstanceId()),
          .class_guid = Narrow(device.Text(SPDRP_CLASSGUID)),
          .manufacturer = Narrow(device.Text(SPDRP_MFG)),
          .service = Narrow(device.Text(SPDRP_SERVICE)),
          .error_code = code};
}

}  // namespace

FailingDrivers ReadFailingDriversOfMachine() {
  const DeviceSet devices;
  if (!devices.IsListed()) return std::nullopt;
  std::vector<FailingDriver> failing;
  devices.ForEach([&](const Device& device) {
    const std::uint32_t code = device.ProblemCode();
    if (code != 0) failing.push_back(FactsOf(device, code));
  });
  return failing;
}

}  // namespace ostrine
