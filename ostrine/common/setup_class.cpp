#include "ostrine/common/setup_class.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string>

#include "ostrine/common/modalias.h"

namespace ostrine {
namespace {

/// A PCI class code of which `bits` leading bits count.
struct PciRule {
  std::uint32_t code;
  std::uint32_t mask;
  SetupClass setup_class;
};

constexpr std::uint32_t kBase = 0xFF0000;
constexpr std::uint32_t kSub = 0xFFFF00;

/// The first rule that fits counts.
constexpr PciRule kPciRules[] = {
    {0x010000, kBase, SetupClass::kNone},      // storage
    {0x020000, kBase, SetupClass::kNet},       //
    {0x030000, kBase, SetupClass::kDisplay},   //
    {0x040300, kSub, SetupClass::kSystem},     // HD Audio controller
    {0x040000, kBase, SetupClass::kMedia},     //
    {0x070000, kSub, SetupClass::kNone},       // serial port
    {0x070100, kSub, SetupClass::kNone},       // parallel port
    {0x070300, kSub, SetupClass::kNone},       // modem
    {0x080500, kSub, SetupClass::kNone},       // SD host
    {0x090000, kBase, SetupClass::kNone},      // input
    {0x0A0000, kBase, SetupClass::kNone},      // docking station
    {0x0C0000, kSub, SetupClass::kNone},       // FireWire
    {0x0C0300, kSub, SetupClass::kUsb},        //
    {0x0D1100, kSub, SetupClass::kBluetooth},  //
    {0x0D8000, kSub, SetupClass::kNet},        // other wireless
    {0x120000, kBase, SetupClass::kNone},      // accelerator
};

SetupClass OfUsbClass(const UsbClass& usb_class) {
  const std::uint32_t code = std::uint32_t{usb_class.base_class} << 16 |
                             std::uint32_t{usb_class.sub_class} << 8 | usb_class.protocol;
  switch (code) {
    case 0xE00101:
      return SetupClass::kBluetooth;
    case 0xE00103:
      return SetupClass::kNet;  // RNDIS
    default:
      break;
  }
  switch (code >> 8) {
    case 0x0206:  // Ethernet
    case 0x020D:  // network control model
    case 0x020E:  // mobile broadband
      return SetupClass::kNet;
    default:
      break;
  }
  if (usb_class.base_class == 0x01) return SetupClass::kMedia;
  if (usb_class.base_class == 0x09) return SetupClass::kUsb;
  return SetupClass::kNone;
}

/// Firmware IDs, or beginnings of such, whose devices Windows does not put into the System class.
struct FirmwareRule {
  std::string_view start;
  SetupClass setup_class;
};

constexpr FirmwareRule kFirmwareRules[] = {
    {"PNP030", SetupClass::kKeyboard}, {"PNP031", SetupClass::kKeyboard}, {"PNP032", SetupClass::kKeyboard},
    {"PNP034", SetupClass::kKeyboard}, {"PNP0400", SetupClass::kNone},  // parallel port
    {"PNP0401", SetupClass::kNone},                                     //
    {"PNP0501", SetupClass::kNone},                                     // serial port
    {"PNP0C0A", SetupClass::kNone},                                     // battery
    {"PNP0C50", SetupClass::kNone},                                     // HID over I2C
    {"PNP0F", SetupClass::kNone},                                       // mouse
    {"ACPI0003", SetupClass::kNone},                                    // power adapter
    {"ACPI0007", SetupClass::kNone},                                    // processor
    {"ACPI0C50", SetupClass::kNone},                                    // HID over I2C
    {"ACPI0C51", SetupClass::kNone},                                    // HID over SPI
    {"LNXCPU", SetupClass::kNone},                                      // processor, older kernels
    {"LNXVIDEO", SetupClass::kNone},  // the firmware's side of a display adapter
};

struct Classifier {
  const DeviceTraits& traits;

  SetupClass operator()(std::monostate) const { return SetupClass::kNone; }

  SetupClass operator()(const PciAlias& alias) const {
    if (traits.has_bluetooth_radio) return SetupClass::kBluetooth;
    if (traits.has_network_interface) return SetupClass::kNet;
    const std::uint32_t code = std::uint32_t{alias.base_class} << 16 | std::uint32_t{alias.sub_class} << 8 |
                               alias.programming_interface;
    const auto* rule = std::find_if(std::begin(kPciRules), std::end(kPciRules),
                                    [&](const PciRule& r) { return (code & r.mask) == r.code; });
    return rule == std::end(kPciRules) ? SetupClass::kSystem : rule->setup_class;
  }

  SetupClass operator()(const UsbAlias& alias) const {
    if (traits.is_composite_usb && !alias.own_interface) return SetupClass::kUsb;
    if (traits.has_bluetooth_radio) return SetupClass::kBluetooth;
    if (traits.has_network_interface) return SetupClass::kNet;
    const bool ask_interface =
        alias.own_interface && (traits.is_composite_usb || alias.device_class.base_class == 0);
    return OfUsbClass(ask_interface ? alias.own_interface->interface_class : alias.device_class);
  }

  SetupClass operator()(const HdAudioAlias& alias) const {
    constexpr std::uint8_t kAudioFunction = 1;
    return alias.function == kAudioFunction ? SetupClass::kMedia : SetupClass::kNone;
  }

  SetupClass operator()(const HidAlias&) const { return KeyboardOrNone(); }
  SetupClass operator()(const SerioAlias&) const { return KeyboardOrNone(); }

  SetupClass operator()(const VirtioAlias& alias) const {
    switch (alias.device) {
      case 1:
        return SetupClass::kNet;
      case 16:
        return SetupClass::kDisplay;
      case 25:
        return SetupClass::kMedia;
      default:
        return SetupClass::kNone;
    }
  }

  SetupClass operator()(const AcpiAlias& alias) const {
    for (const std::string& id : alias.ids) {
      for (const FirmwareRule& rule : kFirmwareRules) {
        if (id.starts_with(rule.start)) return rule.setup_class;
      }
    }
    return SetupClass::kSystem;
  }

  SetupClass KeyboardOrNone() const {
    return traits.has_keyboard ? SetupClass::kKeyboard : SetupClass::kNone;
  }
};

}  // namespace

SetupClass ClassifyDevice(std::string_view modalias, const DeviceTraits& traits) {
  const Modalias alias = ParseModalias(modalias);
  if (std::holds_alternative<std::monostate>(alias)) return SetupClass::kNone;
  if (traits.is_fingerprint_reader) return SetupClass::kBiometric;
  return std::visit(Classifier{traits}, alias);
}

}  // namespace ostrine
