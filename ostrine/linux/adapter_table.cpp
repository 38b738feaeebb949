#include <string>
#include <vector>

#include "ostrine/common/wql_text.h"
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

/// The cards of one visit. Their names take longest to find out, and are so only when they are asked for.
class Cards {
 public:
  explicit Cards(const Path& root) : names_(root), devices_(ListDevices(root, SetupClass::kNet)) {}

  std::size_t Count() const { return devices_.size(); }
  const Device& At(std::size_t index) const { return devices_[index]; }
  std::wstring Description(std::size_t index) { return Describe(devices_[index], names_); }
  const std::wstring& Name(std::size_t index) {
    if (friendly_.empty()) friendly_ = FriendlyNames(devices_, names_);
    return friendly_[index];
  }

 private:
  NameDatabase names_;
  std::vector<Device> devices_;
  std::vector<std::wstring> friendly_;
};

WqlValue CardProperty(Cards& cards, std::size_t index, const std::string& interface,
                      std::wstring_view property) {
  const auto is = [&](std::wstring_view name) { return EqualIgnoringCase(property, name); };
  const Device& card = cards.At(index);
  const Path folder = card.function / "net" / interface;
  if (is(L"Name")) return cards.Name(index);
  if (is(L"Description")) return cards.Description(index);
  if (is(L"MACAddress")) return HardwareAddress(folder);
  if (is(L"GUID")) return WideFromUtf8(velmora::GuidText(velmora::InterfaceGuid(interface)));
  if (is(L"AdapterType")) return AdapterType(folder);
  if (is(L"NetConnectionID")) return WideFromUtf8(interface);
  if (is(L"PNPDeviceID")) return InstanceId(card);
  return {};
}

}  // namespace

void VisitNetworkAdapters(const Path& root, const WqlVisitor& visit) {
  Cards cards(root);
  for (std::size_t i = 0; i < cards.Count(); ++i) {
    const Path folder = cards.At(i).function / "net";
    // A second interface of one card is the kernel's own addition; the card is one adapter.
    const auto interfaces = EntryNames(folder);
    if (interfaces.empty()) continue;
    const auto row = [&](std::wstring_view property) {
      return CardProperty(cards, i, interfaces.front(), property);
    };
    if (!visit(row)) return;
  }
}

}  // namespace ostrine
