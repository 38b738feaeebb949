/// The switch of a Wi-Fi radio in the file tree that begins at a root folder; the root is "/" but in tests.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace velmora::os {

struct RadioSwitch {
  bool software_on = false;
  bool hardware_on = false;
};

/// How the radio of an interface is switched; nothing when the kernel keeps no switch for it.
std::optional<RadioSwitch> ReadRadioSwitch(const std::filesystem::path& root, const std::string& interface);

/// Switches the radio by software and reads back that it has followed. Switching on also frees the switches
/// of the machine's own for Wi-Fi, without which the radio would stay off; switching off leaves them alone,
/// since they stand for other radios, too. 0, or the error number: 50 without a switch, 5 not permitted, 1460
/// when it did not follow in time.
std::uint32_t SetRadioSwitch(const std::filesystem::path& root, const std::string& interface, bool on);

}  // namespace velmora::os
