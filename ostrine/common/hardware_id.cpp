#include "ostrine/common/hardware_id.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace ostrine {
namespace {

using Ids = std::vector<std::wstring>;

/// `value` in capital hexadecimal digits, filled up with zeros to at least `digits`.
std::wstring WideHex(std::uint32_t value, std::size_t digits) {
  std::wstring text;
  for (; value != 0 || text.size() < digits; value >>= 4) text.push_back(L"0123456789ABCDEF"[value & 15]);
  std::reverse(text.begin(), text.end());
  return text;
}

/// "USB\Class_0E&SubClass_01&Prot_00" and its two shorter forms; `label` is "Class_" or "DevClass_".
Ids UsbClassIds(const std::wstring& label, const UsbClass& usb_class) {
  const std::wstring base = L"USB\\" + label + WideHex(usb_class.base_class, 2);
  const std::wstring sub = base + L"&SubClass_" + WideHex(usb_class.sub_class, 2);
  return {sub + L"&Prot_" + WideHex(usb_class.protocol, 2), sub, base};
}

/// The kernel's own hubs stand for the ports of a host controller; their product number is the USB
/// generation.
const wchar_t* RootHubId(const UsbAlias& alias) {
  constexpr std::uint16_t kKernelVendor = 0x1D6B;
  constexpr std::uint8_t kHubClass = 9;
  if (alias.vendor != kKernelVendor || alias.device_class.base_class != kHubClass) return nullptr;
  switch (alias.product) {
    case 1:
      return L"USB\\ROOT_HUB";
    case 2:
      return L"USB\\ROOT_HUB20";
    case 3:
      return L"USB\\ROOT_HUB30";
    default:
      return nullptr;
  }
}

Ids FirmwareIds(const std::string& id) {
  const std::wstring wide(id.begin(), id.end());  // capitals, digits and underscores only
  return {L"ACPI\\" + wide, L"*" + wide};
}

/// The first firmware ID names the device, the others the kinds that it is compatible with.
DeviceIds FromFirmwareIds(const std::vector<std::string>& ids) {
  DeviceIds result;
  for (std::size_t i = 0; i < ids.size(); ++i) {
    Ids& list = i == 0 ? result.hardware : result.compatible;
    for (std::wstring& id : FirmwareIds(ids[i])) list.push_back(std::move(id));
  }
  return result;
}

struct Builder {
  const DeviceFacts& facts;

  DeviceIds operator()(std::monostate) const { return {}; }

  DeviceIds operator()(const PciAlias& alias) const {
    const std::wstring vendor = L"PCI\\VEN_" + WideHex(alias.vendor, 4);
    const std::wstring device = vendor + L"&DEV_" + WideHex(alias.device, 4);
    const std::wstring subsystem =
        device + L"&SUBSYS_" + WideHex(alias.subsystem_device, 4) + WideHex(alias.subsystem_vendor, 4);
    const std::wstring sub_class = L"CC_" + WideHex(alias.base_class, 2) + WideHex(alias.sub_class, 2);
    const std::wstring full_class = sub_class + WideHex(alias.programming_interface, 2);

    DeviceIds ids;
    if (facts.pci_revision) ids.hardware.push_back(subsystem + L"&REV_" + WideHex(*facts.pci_revision, 2));
    ids.hardware.push_back(subsystem);
    if (facts.pci_revision) ids.hardware.push_back(device + L"&REV_" + WideHex(*facts.pci_revision, 2));
    ids.hardware.push_back(device);
    ids.hardware.push_back(device + L"&" + full_class);
    ids.hardware.push_back(device + L"&" + sub_class);
    ids.compatible = {vendor + L"&" + full_class, vendor + L"&" + sub_class, vendor, L"PCI\\" + full_class,
                      L"PCI\\" + sub_class};
    return ids;
  }

  DeviceIds operator()(const UsbAlias& alias) const {
    if (const wchar_t* root_hub = RootHubId(alias)) return {{root_hub}, {}};
    const std::wstring device =
        L"USB\\VID_" + WideHex(alias.vendor, 4) + L"&PID_" + WideHex(alias.product, 4);
    const std::wstring revision = L"&REV_" + WideHex(alias.revision, 4);
    if (facts.usb_composite && alias.own_interface) {
      const std::wstring part = L"&MI_" + WideHex(alias.own_interface->number, 2);
      return {{device + revision + part, device + part},
              UsbClassIds(L"Class_", alias.own_interface->interface_class)};
    }
    DeviceIds ids{{device + revision, device}, {}};
    if (facts.usb_composite) {
      ids.compatible = UsbClassIds(L"DevClass_", alias.device_class);
      ids.compatible.emplace_back(L"USB\\COMPOSITE");
    } else {
      // Class 0 says that the only interface tells the class.
      const bool ask_interface = alias.device_class.base_class == 0 && alias.own_interface;
      ids.compatible =
          UsbClassIds(L"Class_", ask_interface ? alias.own_interface->interface_class : alias.device_class);
    }
    return ids;
  }

  DeviceIds operator()(const HdAudioAlias& alias) const {
    const std::wstring function = L"HDAUDIO\\FUNC_" + WideHex(alias.function, 2);
    const std::wstring vendor = function + L"&VEN_" + WideHex(alias.vendor, 4);
    const std::wstring device = vendor + L"&DEV_" + WideHex(alias.device, 4);
    // Windows leaves out the stepping, the lowest byte.
    const std::wstring revision = L"&REV_" + WideHex(alias.revision >> 8 & 0xFFFF, 4);

    DeviceIds ids{{}, {device + revision, device, vendor, function}};
    if (facts.codec_subsystem) {
      const std::wstring subsystem = device + L"&SUBSYS_" + WideHex(*facts.codec_subsystem, 8);
      ids.hardware = {subsystem + revision, subsystem};
    } else {
      // Never without a hardware ID: the two best of the compatible ones take that place.
      ids.hardware = {device + revision, device};
      ids.compatible = {vendor, function};
    }
    return ids;
  }

  DeviceIds operator()(const HidAlias& alias) const {
    const std::wstring device =
        L"HID\\VID_" + WideHex(alias.vendor, 4) + L"&PID_" + WideHex(alias.product, 4);
    DeviceIds ids{{}, {L"HID_DEVICE"}};
    const Modalias parent = ParseModalias(facts.parent_modalias);
    if (const auto* usb = std::get_if<UsbAlias>(&parent)) {
      const bool is_part = facts.usb_composite && usb->own_interface;
      const std::wstring part = is_part ? L"&MI_" + WideHex(usb->own_interface->number, 2) : std::wstring();
      ids.hardware.push_back(device + L"&REV_" + WideHex(usb->revision, 4) + part);
      if (is_part) ids.hardware.push_back(device + part);
    }
    ids.hardware.push_back(device);
    return ids;
  }

  DeviceIds operator()(const VirtioAlias& alias) const {
    const std::wstring vendor = L"VIRTIO\\VEN_" + WideHex(alias.vendor, 4);
    return {{vendor + L"&DEV_" + WideHex(alias.device, 4)}, {vendor}};
  }

  DeviceIds operator()(const SerioAlias&) const {
    return FromFirmwareIds(ParseFirmwareId(facts.firmware_id));
  }

  DeviceIds operator()(const AcpiAlias& alias) const { return FromFirmwareIds(alias.ids); }
};

constexpr wchar_t Upper(wchar_t c) {
  return c >= L'a' && c <= L'z' ? static_cast<wchar_t>(c - L'a' + L'A') : c;
}

constexpr bool IsHexDigit(wchar_t upper) {
  return (upper >= L'0' && upper <= L'9') || (upper >= L'A' && upper <= L'F');
}

/// Takes `label` and four hexadecimal digits from the front of `text`.
bool TakeLabelled(std::wstring_view& text, std::wstring_view label, std::uint16_t& number) {
  constexpr std::size_t kDigits = 4;
  if (text.size() < label.size() || text.size() - label.size() < kDigits) return false;
  const auto same = [](wchar_t label_character, wchar_t c) { return label_character == Upper(c); };
  if (!std::equal(label.begin(), label.end(), text.begin(), same)) return false;

  unsigned value = 0;
  for (const wchar_t c : text.substr(label.size(), kDigits)) {
    const wchar_t digit = Upper(c);
    if (!IsHexDigit(digit)) return false;
    value = value << 4 | static_cast<unsigned>(digit <= L'9' ? digit - L'0' : digit - L'A' + 10);
  }
  number = static_cast<std::uint16_t>(value);
  text.remove_prefix(label.size() + kDigits);
  return true;
}

}  // namespace

DeviceIds BuildDeviceIds(const DeviceFacts& facts) {
  return std::visit(Builder{facts}, ParseModalias(facts.modalias));
}

bool IsUsbComposite(const UsbClass& device_class, unsigned interface_count,
                    unsigned configuration_count) noexcept {
  const bool tells_by_interface = device_class.base_class == 0;
  const bool tells_by_association =
      device_class.base_class == 0xEF && device_class.sub_class == 2 && device_class.protocol == 1;
  return (tells_by_interface || tells_by_association) && interface_count > 1 && configuration_count == 1;
}

std::wstring BluetoothHardwareId(std::string_view address, BluetoothKind kind) {
  constexpr std::size_t kLength = 17;
  if (address.size() != kLength) return {};
  std::wstring id = kind == BluetoothKind::kClassic ? L"BTHENUM\\Dev_" : L"BTHLE\\Dev_";
  for (std::size_t i = 0; i < kLength; ++i) {
    const wchar_t c = Upper(static_cast<wchar_t>(static_cast<unsigned char>(address[i])));
    if (i % 3 == 2) {
      if (c != L':') return {};
    } else {
      if (!IsHexDigit(c)) return {};
      id.push_back(c);
    }
  }
  return id;
}

std::optional<NumberedId> ParseNumberedId(std::wstring_view hardware_id) noexcept {
  std::wstring_view rest = hardware_id;
  NumberedId id;
  if (TakeLabelled(rest, L"PCI\\VEN_", id.vendor)) {
    if (!TakeLabelled(rest, L"&DEV_", id.device)) return std::nullopt;
  } else {
    id.bus = NumberedId::Bus::kUsb;
    if (!TakeLabelled(rest, L"USB\\VID_", id.vendor) || !TakeLabelled(rest, L"&PID_", id.device))
      return std::nullopt;
  }
  if (!rest.empty() && rest.front() != L'&' && rest.front() != L'\\') return std::nullopt;
  return id;
}

}  // namespace ostrine
