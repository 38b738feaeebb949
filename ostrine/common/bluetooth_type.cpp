#include "ostrine/common/bluetooth_type.h"

#include <algorithm>
#include <iterator>

namespace ostrine {
namespace {

struct IconKind {
  std::string_view icon;
  std::string_view kind;
};

constexpr IconKind kIcons[] = {
    {"input-mouse", "Mouse"},
    {"input-keyboard", "Keyboard"},
    {"input-gaming", "Game Controller"},
    {"input-tablet", "Tablet"},
    {"audio-headset", "Headset"},
    {"audio-headphones", "Headphones"},
    {"audio-card", "Audio Device"},
    {"multimedia-player", "Media Player"},
    {"video-display", "Display"},
    {"camera-photo", "Camera"},
    {"camera-video", "Camera"},
    {"computer", "Computer"},
    {"phone", "Phone"},
    {"modem", "Modem"},
    {"network-wireless", "Network Device"},
    {"printer", "Printer"},
    {"scanner", "Scanner"},
};

/// By the GAP appearance: the upper ten bits are the category, the lower six the kind within it.
std::string_view AppearanceKind(std::uint16_t appearance) {
  switch (appearance) {
    case 0x03C1:
      return "Keyboard";
    case 0x03C2:
      return "Mouse";
    case 0x03C3:
    case 0x03C4:
      return "Game Controller";
    case 0x03C5:
      return "Tablet";
    default:
      break;
  }
  switch (appearance >> 6) {
    case 0x01:
      return "Phone";
    case 0x02:
      return "Computer";
    case 0x03:
      return "Watch";
    case 0x05:
      return "Display";
    case 0x0A:
      return "Media Player";
    case 0x21:
    case 0x22:
      return "Audio Device";
    case 0x25:
      return "Headset";
    default:
      return {};
  }
}

/// The kind of an audio device by its minor class.
std::string_view AudioKind(std::uint32_t minor_class) {
  switch (minor_class) {
    case 1:
    case 2:  // hands-free
      return "Headset";
    case 6:
      return "Headphones";
    default:
      return "Audio Device";
  }
}

/// By the class of device: major class in bits 8 to 12, minor class in bits 2 to 7.
std::string_view ClassKind(std::uint32_t class_of_device) {
  constexpr std::uint32_t kPeripheral = 5;
  const std::uint32_t major = class_of_device >> 8 & 0x1F;
  if (major == kPeripheral) {
    switch (class_of_device >> 6 & 3) {
      case 1:
        return "Keyboard";
      case 2:
        return "Mouse";
      case 3:
        return "Keyboard and Mouse";
      default:
        return {};
    }
  }
  switch (major) {
    case 1:
      return "Computer";
    case 2:
      return "Phone";
    case 3:
      return "Network Device";
    case 4:
      return AudioKind(class_of_device >> 2 & 0x3F);
    case 7:
      return "Watch";
    default:
      return {};
  }
}

}  // namespace

std::string_view BluetoothType(const BluetoothHints& hints) noexcept {
  const auto* const icon = std::find_if(std::begin(kIcons), std::end(kIcons),
                                        [&](const IconKind& known) { return known.icon == hints.icon; });
  if (icon != std::end(kIcons)) return icon->kind;
  if (hints.appearance) {
    const std::string_view kind = AppearanceKind(*hints.appearance);
    if (!kind.empty()) return kind;
  }
  if (hints.class_of_device) {
    const std::string_view kind = ClassKind(*hints.class_of_device);
    if (!kind.empty()) return kind;
  }
  return "Bluetooth Device";
}

}  // namespace ostrine
