#include "platform/linux/adapter_name.h"

#include <net/if_arp.h>

#include <algorithm>
#include <string_view>

#include "platform/linux/network_interface.h"
#include "platform/ostrine/interface_guid.h"
#include "platform/ostrine/wmi.h"
#include "platform/unicode.h"

namespace velmora::os {
namespace {

/// A property of the card, from the hardware-abstraction library's table of network adapters.
std::wstring AskForCard(const std::string& interface, const std::wstring& property) {
  const std::wstring guid = unicode::WideFromUtf8(GuidText(InterfaceGuid(interface)));
  CWMI wmi(L"ROOT\\CIMV2");
  return wmi.SelectStr(L"SELECT " + property + L" FROM Win32_NetworkAdapter WHERE GUID='" + guid + L"'",
                       property);
}

std::string Labelled(std::string_view what, std::string_view label) {
  std::string text(what);
  if (!label.empty()) text.append(" (").append(label).append(")");
  return text;
}

}  // namespace

bool IsTunnel(const NetworkLink& link) noexcept {
  // A device of the same kind that carries Ethernet frames is a virtual machine's.
  if (link.kind == "tun") return link.hardware == ARPHRD_NONE;
  constexpr std::string_view kKinds[] = {"wireguard", "ppp", "xfrm", "vti", "ipip", "gre", "ovpn"};
  const bool is_known = std::find(std::begin(kKinds), std::end(kKinds), link.kind) != std::end(kKinds);
  return is_known || link.hardware == ARPHRD_PPP;
}

std::string DescribeAdapter(const std::filesystem::path& root, const NetworkLink& link) {
  if (IsCard(root, link.name)) return DescribeWifi(root, link.name);
  if (!IsTunnel(link)) return Labelled("Virtual Adapter", link.kind);
  return Labelled("WAN Miniport", link.kind.empty() ? "ppp" : std::string_view(link.kind));
}

std::string DescribeWifi(const std::filesystem::path& root, const std::string& interface) {
  const std::string name = unicode::Utf8FromWide(AskForCard(interface, L"Name"));
  if (!name.empty()) return name;
  const bool is_card = IsCard(root, interface);
  return Labelled(is_card ? "Network Adapter" : "Virtual Adapter", DriverOf(root, interface));
}

std::wstring InstanceIdOf(const std::string& interface) { return AskForCard(interface, L"PNPDeviceID"); }

}  // namespace velmora::os
