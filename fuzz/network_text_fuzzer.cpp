// Any text as what DHCP clients, services and desktops keep in files, and as addresses.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/linux/bluez.h"
#include "platform/linux/config_text.h"
#include "platform/linux/lease_text.h"
#include "platform/linux/network_interface.h"
#include "platform/linux/registry.h"
#include "platform/unicode.h"

namespace {

using namespace velmora::os;

void Require(bool condition) {
  if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  if (const auto lease = FindClientLease(text, "eth0")) {
    Require(lease->expires >= 0);
    Require(lease->server.empty() || ParseIpv4(lease->server).has_value());
  }
  ParseReply({data, size});
  if (const auto time = ParseLeaseTime(text))
    Require(*time <= 253'402'300'800);  // the last day of four digits
  Require(KeyValue(text, "ADDRESS").find('\n') == std::string::npos);
  Require(SectionValue(text, "Proxy Settings", "httpProxy").size() <= size);
  if (const auto address = ParseIpv4(text)) Require(ParseIpv4(TextOf(*address)) == address);
  const std::string id = ComponentIdOf(text);
  Require(id.empty() || id.starts_with("pci\\ven_") || id.starts_with("usb\\vid_"));
  if (const auto address = ParseBluetoothAddress(text)) Require(*address >> 48 == 0);
  if (const auto number = CardNumberOf(velmora::unicode::WideFromUtf8(text))) Require(*number <= 9999);
  return 0;
}
