// Five lines: a modalias, that of the parent, a firmware ID, a Bluetooth address, a hardware ID; a first byte
// gives the other facts. Whatever they hold, the IDs must be made of printable characters, and the numbers in
// a PCI or USB ID must be those of the modalias.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "ostrine/common/hardware_id.h"
#include "ostrine/common/setup_class.h"

namespace {

using namespace ostrine;

void Require(bool condition) {
  if (!condition) std::abort();
}

std::string_view TakeLine(std::string_view& text) {
  const std::size_t end = text.find('\n');
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  return line;
}

void RequirePrintable(const std::vector<std::wstring>& ids) {
  for (const std::wstring& id : ids) {
    Require(!id.empty());
    for (const wchar_t c : id) Require(c > L' ' && c < 0x7F && c != L',');
  }
}

void RequireNumbers(const DeviceIds& ids, NumberedId::Bus bus, std::uint16_t vendor, std::uint16_t device) {
  for (const std::wstring& id : ids.hardware) {
    const auto numbers = ParseNumberedId(id);
    Require(numbers && numbers->bus == bus && numbers->vendor == vendor && numbers->device == device);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::uint8_t flags = data[0];
  const std::string text(data + 1, data + size);
  std::string_view rest = text;

  DeviceFacts facts;
  facts.modalias = TakeLine(rest);
  facts.parent_modalias = TakeLine(rest);
  facts.firmware_id = TakeLine(rest);
  const std::string_view address = TakeLine(rest);
  facts.usb_composite = (flags & 1) != 0;
  if (flags & 2) facts.pci_revision = flags;
  if (flags & 4) facts.codec_subsystem = std::uint32_t{flags} * 0x01010101;

  const DeviceIds ids = BuildDeviceIds(facts);
  RequirePrintable(ids.hardware);
  RequirePrintable(ids.compatible);
  const Modalias alias = ParseModalias(facts.modalias);
  const auto* pci = std::get_if<PciAlias>(&alias);
  const auto* usb = std::get_if<UsbAlias>(&alias);
  if (pci) RequireNumbers(ids, NumberedId::Bus::kPci, pci->vendor, pci->device);
  if (usb && ids.hardware.at(0).find(L"ROOT_HUB") == std::wstring::npos) {
    RequireNumbers(ids, NumberedId::Bus::kUsb, usb->vendor, usb->product);
  }
  if (std::holds_alternative<std::monostate>(alias)) Require(ids.hardware.empty() && ids.compatible.empty());

  const DeviceTraits traits{(flags & 8) != 0, (flags & 16) != 0, (flags & 32) != 0, (flags & 64) != 0,
                            (flags & 1) != 0};
  const SetupClass setup_class = ClassifyDevice(facts.modalias, traits);
  if (std::holds_alternative<std::monostate>(alias)) Require(setup_class == SetupClass::kNone);

  const std::wstring remote =
      BluetoothHardwareId(address, (flags & 128) != 0 ? BluetoothKind::kLowEnergy : BluetoothKind::kClassic);
  if (!remote.empty()) Require(remote.size() - remote.find(L'_') == 13);

  ParseNumberedId(std::wstring(rest.begin(), rest.end()));
  return 0;
}
