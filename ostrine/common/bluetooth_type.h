/// What kind of thing a remote Bluetooth device is.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace ostrine {

/// What a device has told about its kind.
struct BluetoothHints {
  std::string_view icon;                         ///< a name of the icon-naming rules, "input-mouse"
  std::optional<std::uint16_t> appearance;       ///< GAP appearance of a low-energy device
  std::optional<std::uint32_t> class_of_device;  ///< of a classic device
};

/// The kind in a word or two ("Mouse", "Keyboard", "Headset"), by the icon, else the appearance, else the
/// class; "Bluetooth Device" when none of them tells.
std::string_view BluetoothType(const BluetoothHints& hints) noexcept;

}  // namespace ostrine
