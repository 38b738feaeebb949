#include <string>
#include <vector>

#include "ostrine/linux/describe.h"
#include "ostrine/linux/device_query.h"
#include "ostrine/linux/file.h"
#include "ostrine/linux/wmi_tables.h"
#include "platform/ostrine/interface_guid.h"
#include "platform/unicode.h"

namespace ostrine {
namespace {

using velmora::unicode::WideFromUtf8;

/// "AA:BB:CC:DD:EE:FF"; null for an interface without a hardware address of its own.
WqlValue HardwareAddress(const Path& interface) {
  std::string address = CleanAttribute(interface / "address");
  constexpr std::size_t kLength = 17;
  if (address.size() != kLength || address == "00:00:00:00:00:00") return {};
  for (char& c : address) {
    if (c >= 'a' && c <= 'f') c = static_cast<char>(c - 'a' + 'A');
  }
  return WideFromUtf8(address);
}

WqlValue AdapterType(const Path& interface) {
  if (Exists(interface / "phy80211") || Exists(interface / "wireless")) return std::wstring(L"Wireless");
  const std::string uevent = ReadAttribute(interface / "uevent").value_or(std::string());
  if (LineValue(uevent, "DEVTYPE") == "wwan") return std::wstring(L"Wide Area Network (WAN)");
  constexpr std::int64_t kEthernet = 1;
  if (NumberAttribute(interface / "type") == kEthernet) return std::wstring(L"Ethernet 802.3");
  return {};
}

}  // namespace

void VisitNetworkAdapters(const Path& root, const WqlVisitor& visit) {
  NameDatabase names(root);
  const std::vector<Device> devices = ListDevices(root, SetupClass::kNet);
  const std::vector<std::wstring> friendly = FriendlyNames(devices, names);
  for (std::size_t i = 0; i < devices.size(); ++i) {
    const Path folder = devices[i].function / "net";
    // A second interface of one card is the kernel's own addition; the card is one adapter.
    const auto interfaces = EntryNames(folder);
    if (interfaces.empty()) continue;
    const std::string& interface = interfaces.front();
    const auto row = [&](std::wstring_view property) {
      const WqlRecord record{
          {L"Name", friendly[i]},
          {L"Description", Describe(devices[i], names)},
          {L"MACAddress", HardwareAddress(folder / interface)},
          {L"GUID", WideFromUtf8(velmora::GuidText(velmora::InterfaceGuid(interface)))},
          {L"AdapterType", AdapterType(folder / interface)},
          {L"NetConnectionID", WideFromUtf8(interface)},
          {L"PNPDeviceID", InstanceId(devices[i])},
      };
      return FindProperty(record, property);
    };
    if (!visit(row)) return;
  }
}

}  // namespace ostrine
