#include <string>
#include <string_view>
#include <vector>

#include "ostrine/common/wql_text.h"
#include "ostrine/linux/describe.h"
#include "ostrine/linux/device_query.h"
#include "ostrine/linux/driver.h"
#include "ostrine/linux/wmi_tables.h"
#include "platform/unicode.h"

namespace ostrine {
namespace {

using velmora::unicode::WideFromUtf8;

WqlValue TextOrNull(std::wstring text) {
  if (text.empty()) return {};
  return text;
}

/// An adapter on the root bus is part of the processor or chipset; one behind a bridge sits on a card or chip
/// of its own. Among those the firmware has shown its picture on one.
bool IsInternal(const Device& device) {
  const bool is_on_root_bus = device.node.parent_path().filename().string().starts_with("pci");
  return is_on_root_bus || NumberAttribute(device.node / "boot_vga") == 1;
}

std::wstring ConverterType(const Path& root, const Device& device) {
  return IsInternal(device) ? L"Internal" : WideFromUtf8(DriverOf(root, device).name);
}

std::wstring UpperCase(std::wstring text) {
  for (wchar_t& c : text) {
    if (c >= L'a' && c <= L'z') c = static_cast<wchar_t>(c - L'a' + L'A');
  }
  return text;
}

std::wstring VersionText(const Path& root, const Device& device) {
  return WideFromUtf8(DriverVersion(root, DriverOf(root, device)));
}

}  // namespace

void VisitVideoControllers(const Path& root, const WqlVisitor& visit) {
  NameDatabase names(root);
  for (const Device& device : ListDevices(root, SetupClass::kDisplay)) {
    const auto row = [&](std::wstring_view property) {
      const WqlRecord record{
          {L"Caption", Describe(device, names)},
          {L"Name", Describe(device, names)},
          {L"AdapterDACType", TextOrNull(ConverterType(root, device))},
          {L"DriverVersion", TextOrNull(VersionText(root, device))},
          {L"PNPDeviceID", InstanceId(device)},
      };
      return FindProperty(record, property);
    };
    if (!visit(row)) return;
  }
}

void VisitDrivers(const Path& root, const WqlVisitor& visit) {
  NameDatabase names(root);
  for (const Device& device : ListDevices(root)) {
    if (device.ids.hardware.empty() || DriverOf(root, device).name.empty()) continue;
    const auto row = [&](std::wstring_view property) -> WqlValue {
      if (EqualIgnoringCase(property, L"HardWareID")) return device.ids.hardware.front();
      if (EqualIgnoringCase(property, L"DeviceClass")) {
        return TextOrNull(UpperCase(SetupClassName(device.setup_class)));
      }
      const WqlRecord record{
          {L"DeviceName", Describe(device, names)},
          {L"FriendlyName", TextOrNull(OwnName(device))},
          {L"DeviceID", InstanceId(device)},
          {L"Manufacturer", TextOrNull(Manufacturer(device, names))},
          {L"DriverVersion", TextOrNull(VersionText(root, device))},
      };
      return FindProperty(record, property);
    };
    if (!visit(row)) return;
  }
}

}  // namespace ostrine
