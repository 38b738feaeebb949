/// What the Linux kernel states about a device in its modalias, for the buses whose devices have a
/// Windows-style hardware ID.
///
/// A modalias is one line: the bus, a colon, and fields of fixed width. It is read strictly; a missing,
/// short, wild-carded ('*') or surplus field makes it no modalias, as does a PCI, USB, HD Audio or HID number
/// that has more bits than the bus gives it. One line end behind it, as sysfs prints it, does not count.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace ostrine {

/// pci:v00008086d000051F0sv00008086sd00000094bc02sc80i00
struct PciAlias {
  std::uint16_t vendor = 0;
  std::uint16_t device = 0;
  std::uint16_t subsystem_vendor = 0;
  std::uint16_t subsystem_device = 0;
  std::uint8_t base_class = 0;
  std::uint8_t sub_class = 0;
  std::uint8_t programming_interface = 0;
};

struct UsbClass {
  std::uint8_t base_class = 0;
  std::uint8_t sub_class = 0;
  std::uint8_t protocol = 0;
};

/// usb:v8087p0026d0002dcE0dsc01dp01icE0isc01ip01in00; a whole device may leave out the last four fields,
/// those of an interface.
struct UsbAlias {
  struct Interface {
    UsbClass interface_class;
    std::uint8_t number = 0;
  };
  std::uint16_t vendor = 0;
  std::uint16_t product = 0;
  std::uint16_t revision = 0;
  UsbClass device_class;
  std::optional<Interface> own_interface;
};

/// hdaudio:v10EC0257r00100001a01
struct HdAudioAlias {
  std::uint16_t vendor = 0;
  std::uint16_t device = 0;
  std::uint32_t revision = 0;
  std::uint8_t function = 0;
};

/// hid:b0018g0001v000004F3p00003169
struct HidAlias {
  std::uint16_t bus = 0;
  std::uint16_t group = 0;
  std::uint16_t vendor = 0;
  std::uint16_t product = 0;
};

/// virtio:d00000001v00001AF4
struct VirtioAlias {
  std::uint32_t device = 0;
  std::uint32_t vendor = 0;
};

/// serio:ty06pr00id00ex00
struct SerioAlias {
  std::uint8_t type = 0;
  std::uint8_t protocol = 0;
  std::uint8_t id = 0;
  std::uint8_t extra = 0;
};

/// acpi:LEN0071:PNP0303: the device's own ID, then the ones it is compatible with, in capitals.
struct AcpiAlias {
  std::vector<std::string> ids;  ///< at least one
};

/// The first alternative stands for any other bus and for a text that is no modalias.
using Modalias = std::variant<std::monostate, PciAlias, UsbAlias, HdAudioAlias, HidAlias, VirtioAlias,
                              SerioAlias, AcpiAlias>;

Modalias ParseModalias(std::string_view text);

/// The IDs in what sysfs prints as the `firmware_id` of a serio port, "PNP: LEN0071 PNP0303", in capitals;
/// none if the text is anything else.
std::vector<std::string> ParseFirmwareId(std::string_view text);

}  // namespace ostrine
