#include "ostrine/linux/describe.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <variant>

#include "ostrine/common/device_text.h"
#include "ostrine/common/modalias.h"
#include "ostrine/linux/bus_devices.h"
#include "ostrine/linux/file.h"
#include "platform/unicode.h"

namespace ostrine {
namespace {

using velmora::unicode::WideFromUtf8;

std::string Joined(std::string_view maker, std::string_view model) {
  if (maker.empty() || model.starts_with(maker)) return std::string(model);
  return std::string(maker) + " " + std::string(model);
}

/// "8086:51F0", or nothing for a bus whose devices have other numbers.
std::string NumbersOf(const Device& device) {
  if (device.ids.hardware.empty()) return {};
  const auto numbers = ParseNumberedId(device.ids.hardware.front());
  if (!numbers) return {};
  std::string text;
  for (const std::uint16_t number : {numbers->vendor, numbers->device}) {
    if (!text.empty()) text.push_back(':');
    for (int shift = 12; shift >= 0; shift -= 4) text.push_back("0123456789ABCDEF"[number >> shift & 15]);
  }
  return text;
}

/// The kernel's name for the interface to a machine's management engine says what the databases' does not.
std::string WithDriversWord(const Device& device, std::string model) {
  constexpr std::string_view kPhrase = "Management Engine Interface";
  const bool is_management = LinkName(device.function / "driver").starts_with("mei_");
  if (is_management && model.find(kPhrase) == std::string::npos) model.append(" ").append(kPhrase);
  return model;
}

std::string DescribePci(const Device& device, NameDatabase& names) {
  const DatabaseNames found = names.Find(device.modalias);
  if (!found.model.empty()) return WithDriversWord(device, Joined(found.vendor, found.model));
  const Modalias parsed = ParseModalias(device.modalias);
  std::string_view kind = "PCI device";
  if (const auto* pci = std::get_if<PciAlias>(&parsed)) {
    kind = PciClassName(std::uint32_t{pci->base_class} << 16 | std::uint32_t{pci->sub_class} << 8 |
                        pci->programming_interface);
  }
  return WithDriversWord(device, Joined(kind, NumbersOf(device)));
}

Path WholeUsbNode(const Device& device) {
  return device.bus == Device::Bus::kUsbPart ? device.node.parent_path() : device.node;
}

std::string DescribeUsb(const Device& device, NameDatabase& names) {
  std::string own = device.bus == Device::Bus::kUsbPart ? CleanAttribute(device.node / "interface") : "";
  if (own.empty()) own = CleanAttribute(WholeUsbNode(device) / "product");
  if (!own.empty()) return own;
  const DatabaseNames found = names.Find(device.modalias);
  if (!found.model.empty()) return Joined(found.vendor, found.model);
  const Modalias parsed = ParseModalias(device.modalias);
  const auto* usb = std::get_if<UsbAlias>(&parsed);
  std::uint8_t base_class = 0;
  if (usb != nullptr) {
    const bool ask_interface = usb->own_interface && usb->device_class.base_class == 0;
    base_class =
        ask_interface ? usb->own_interface->interface_class.base_class : usb->device_class.base_class;
  }
  return Joined(UsbClassName(base_class), NumbersOf(device));
}

std::string DescribeAcpi(const Device& device) {
  const Modalias parsed = ParseModalias(device.modalias);
  const auto* acpi = std::get_if<AcpiAlias>(&parsed);
  const std::string_view known = acpi == nullptr ? std::string_view() : FirmwareDeviceName(acpi->ids);
  if (!known.empty()) return std::string(known);
  std::string stated = CleanAttribute(device.node / "description");
  if (!stated.empty()) return stated;
  return acpi == nullptr ? "ACPI device" : "ACPI device " + acpi->ids.front();
}

std::string CodecName(const Device& device) {
  return Joined(CleanAttribute(device.node / "vendor_name"), CleanAttribute(device.node / "chip_name"));
}

std::string HidName(const Device& device) {
  return LineValue(ReadAttribute(device.node / "uevent").value_or(std::string()), "HID_NAME");
}

/// Name under which the kernel presents the device's keys and buttons.
std::string InputName(const Device& device) {
  const Path input = FirstInput(device.input);
  return input.empty() ? std::string() : CleanAttribute(input / "name");
}

std::string DescriptionOf(const Device& device, NameDatabase& names) {
  switch (device.bus) {
    case Device::Bus::kPci:
      return DescribePci(device, names);
    case Device::Bus::kUsb:
    case Device::Bus::kUsbPart:
      return DescribeUsb(device, names);
    case Device::Bus::kHdAudio: {
      std::string name = CodecName(device);
      return name.empty() ? "High Definition Audio Device" : name;
    }
    case Device::Bus::kHid: {
      std::string name = HidName(device);
      return name.empty() ? "HID device" : name;
    }
    case Device::Bus::kSerio: {
      std::string name = InputName(device);
      return name.empty() ? "PS/2 device" : name;
    }
    case Device::Bus::kAcpi:
      return DescribeAcpi(device);
    case Device::Bus::kVirtio:
      return "Paravirtual device";
    case Device::Bus::kBluetooth:
      return device.name;
  }
  return {};
}

}  // namespace

std::wstring Describe(const Device& device, NameDatabase& names) {
  return WideFromUtf8(DescriptionOf(device, names));
}

std::wstring Manufacturer(const Device& device, NameDatabase& names) {
  switch (device.bus) {
    case Device::Bus::kPci:
      return WideFromUtf8(names.Find(device.modalias).vendor);
    case Device::Bus::kUsb:
    case Device::Bus::kUsbPart: {
      const std::string own = CleanAttribute(WholeUsbNode(device) / "manufacturer");
      return WideFromUtf8(own.empty() ? names.Find(device.modalias).vendor : own);
    }
    case Device::Bus::kHdAudio:
      return WideFromUtf8(CleanAttribute(device.node / "vendor_name"));
    case Device::Bus::kAcpi:
      return WideFromUtf8(names.FindVendor(device.modalias));
    default:
      return {};
  }
}

std::wstring OwnName(const Device& device) {
  switch (device.bus) {
    case Device::Bus::kUsb:
    case Device::Bus::kUsbPart:
      return WideFromUtf8(CleanAttribute(WholeUsbNode(device) / "product"));
    case Device::Bus::kHdAudio:
      return WideFromUtf8(CodecName(device));
    case Device::Bus::kHid:
      return WideFromUtf8(HidName(device));
    case Device::Bus::kSerio:
    case Device::Bus::kAcpi:
      return WideFromUtf8(InputName(device));
    case Device::Bus::kBluetooth:
      return WideFromUtf8(device.name);
    default:
      return {};
  }
}

std::vector<std::wstring> FriendlyNames(const std::vector<Device>& devices, NameDatabase& names) {
  std::vector<std::wstring> descriptions;
  std::vector<std::wstring> friendly;
  for (const Device& device : devices) {
    if (device.setup_class != SetupClass::kNet) {
      friendly.push_back(OwnName(device));
      continue;
    }
    std::wstring description = Describe(device, names);
    const auto earlier = std::count(descriptions.begin(), descriptions.end(), description);
    friendly.push_back(earlier == 0 ? description : description + L" #" + std::to_wstring(earlier + 1));
    descriptions.push_back(std::move(description));
  }
  return friendly;
}

}  // namespace ostrine
