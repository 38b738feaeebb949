// The firmware's own settings, which only some kernels and machines show.
#include <cerrno>
#include <optional>

#include "ostrine/common/firmware_setting.h"
#include "ostrine/linux/bus_devices.h"
#include "ostrine/linux/file.h"
#include "ostrine/linux/firmware_method.h"
#include "ostrine/linux/last_error.h"

namespace ostrine {
namespace {

/// Folder of the setting; empty when this machine has none.
Path FindSetting(const Path& root, SwitchedDevice device) {
  const Path devices = DevicesFolder(root);
  if (devices.empty()) return {};
  const Path folder = root / "sys/class/firmware-attributes";
  for (const std::string& interface : EntryNames(folder)) {
    const Path attributes = ResolveBelow(folder / interface / "attributes", devices);
    if (attributes.empty()) continue;
    for (const std::string& name : EntryNames(attributes)) {
      if (DeviceOfSetting(name) == device) return attributes / name;
    }
  }
  return {};
}

}  // namespace

FirmwareAnswer ReadSetting(const Path& root, std::uint64_t item) {
  constexpr auto kFirst = static_cast<std::uint64_t>(SwitchedDevice::kAudio);
  constexpr auto kLast = static_cast<std::uint64_t>(SwitchedDevice::kFingerprint);
  if (item < kFirst || item > kLast) return {.error = kErrorNotSupported};
  const Path setting = FindSetting(root, static_cast<SwitchedDevice>(item));
  if (setting.empty()) return {.error = kErrorNotFound};
  errno = 0;
  const auto value = ReadAttribute(setting / "current_value");
  if (!value) return {.error = errno == EACCES ? kErrorAccessDenied : kErrorInvalidData};
  const std::optional<bool> on = ParseSwitch(*value);
  return on ? FirmwareAnswer{.bytes = SwitchReply(*on)} : FirmwareAnswer{.error = kErrorInvalidData};
}

}  // namespace ostrine
