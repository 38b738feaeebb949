#include "platform/linux/rfkill.h"

#include <fcntl.h>
#include <linux/rfkill.h>

#include <cerrno>
#include <charconv>
#include <string_view>
#include <vector>

#include "platform/linux/descriptor.h"
#include "platform/linux/small_file.h"
#include "platform/os/clock.h"
#include "platform/os/last_error.h"

namespace velmora::os {
namespace {

using Path = std::filesystem::path;
constexpr std::string_view kPrefix = "rfkill";

/// A switch and its folder.
struct Switch {
  std::uint32_t index = 0;
  Path folder;
};

std::optional<Switch> SwitchIn(const Path& parent, const std::string& name) {
  if (!name.starts_with(kPrefix)) return std::nullopt;
  Switch found{.folder = parent / name};
  const char* end = name.data() + name.size();
  const auto [rest, error] = std::from_chars(name.data() + kPrefix.size(), end, found.index);
  if (error != std::errc() || rest != end) return std::nullopt;
  return found;
}

/// The switch of the interface's radio.
std::optional<Switch> FindRadioSwitch(const Path& root, const std::string& interface) {
  const Path radio = root / "sys/class/net" / interface / "phy80211";
  for (const std::string& name : ListNames(radio).value_or(std::vector<std::string>())) {
    if (auto found = SwitchIn(radio, name)) return found;
  }
  return std::nullopt;
}

bool IsRadios(const Path& folder) {
  std::error_code error;
  return std::filesystem::exists(folder / "device/index", error) &&
         std::filesystem::exists(folder / "device/macaddress", error);
}

/// The machine's own switches for Wi-Fi that are off: they belong to no radio.
std::vector<Switch> FindMachinesSwitches(const Path& root) {
  const Path parent = root / "sys/class/rfkill";
  std::vector<Switch> switches;
  for (const std::string& name : ListNames(parent).value_or(std::vector<std::string>())) {
    auto found = SwitchIn(parent, name);
    const bool is_wanted = found && ReadAttribute(found->folder / "type") == "wlan" &&
                           ReadNumber(found->folder / "soft") == 1 && !IsRadios(found->folder);
    if (is_wanted) switches.push_back(std::move(*found));
  }
  return switches;
}

/// Tells the kernel; 0 or the error number.
std::uint32_t Tell(const Path& root, std::uint32_t index, bool on) {
  const Descriptor device(open((root / "dev/rfkill").c_str(), O_WRONLY | O_CLOEXEC | O_NONBLOCK));
  if (!device) return errno == ENOENT ? kErrorNotSupported : LastError();
  rfkill_event event{};
  event.idx = index;
  event.type = RFKILL_TYPE_WLAN;
  event.op = RFKILL_OP_CHANGE;
  event.soft = on ? 0 : 1;
  const ssize_t written = write(device.Number(), &event, RFKILL_EVENT_SIZE_V1);
  return written == RFKILL_EVENT_SIZE_V1 ? 0 : LastError();
}

}  // namespace

std::optional<RadioSwitch> ReadRadioSwitch(const Path& root, const std::string& interface) {
  const auto found = FindRadioSwitch(root, interface);
  if (!found) return std::nullopt;
  const auto soft = ReadNumber(found->folder / "soft");
  const auto hard = ReadNumber(found->folder / "hard");
  if (!soft || !hard) return std::nullopt;
  return RadioSwitch{.software_on = *soft == 0, .hardware_on = *hard == 0};
}

std::uint32_t SetRadioSwitch(const Path& root, const std::string& interface, bool on) {
  const auto radio = FindRadioSwitch(root, interface);
  if (!radio) return kErrorNotSupported;
  if (on) {
    for (const Switch& machines : FindMachinesSwitches(root)) {
      if (const std::uint32_t error = Tell(root, machines.index, on)) return error;
    }
  }
  if (const std::uint32_t error = Tell(root, radio->index, on)) return error;
  constexpr int kTries = 20;
  constexpr std::uint32_t kPause = 50;
  for (int i = 0; i < kTries; ++i) {
    const auto state = ReadRadioSwitch(root, interface);
    if (state && state->software_on == on) return 0;
    Sleep(kPause);
  }
  return kErrorTimeout;
}

}  // namespace velmora::os
