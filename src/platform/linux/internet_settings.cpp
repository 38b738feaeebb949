#include "platform/linux/internet_settings.h"

#include <linux/netlink.h>

#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

#include "platform/linux/connectivity.h"
#include "platform/os/last_error.h"
#include "platform/unicode.h"

namespace velmora::os {
namespace {

constexpr std::uint32_t kProxyOption = 38;
constexpr std::uint32_t kDirect = 1;
constexpr std::uint32_t kByProxy = 3;

constexpr std::uint32_t kByModem = 0x1;
constexpr std::uint32_t kByLocalNetwork = 0x2;
constexpr std::uint32_t kHasProxy = 0x4;

/// INTERNET_PROXY_INFO, 24 bytes.
struct ProxyInfo {
  std::uint32_t access_type;
  std::uint32_t padding;
  const char* proxy;
  const char* bypass;
};
static_assert(sizeof(void*) != 8 || sizeof(ProxyInfo) == 24);

/// Puts `text` with its zero to `place`, and says in `field` where it is; an empty text is not there at all.
char* PutText(const std::u16string& text, char* place, const char*& field) {
  if (text.empty()) return place;
  const std::size_t size = (text.size() + 1) * sizeof(char16_t);
  std::memcpy(place, text.c_str(), size);
  field = place;
  return place + size;
}

std::size_t SizeOf(const std::u16string& text) {
  return text.empty() ? 0 : (text.size() + 1) * sizeof(char16_t);
}

}  // namespace

bool AnswerProxyQuery(const ProxySettings& settings, std::uint32_t option, void* buffer,
                      std::uint32_t& size) {
  if (option != kProxyOption) {
    SetLastError(kErrorNotSupported);
    return false;
  }
  const std::u16string proxy = unicode::Utf16FromUtf8(settings.proxy);
  const std::u16string bypass = unicode::Utf16FromUtf8(settings.bypass);
  const std::size_t needed = sizeof(ProxyInfo) + SizeOf(proxy) + SizeOf(bypass);
  const bool has_room = buffer != nullptr && needed <= size;
  size = static_cast<std::uint32_t>(needed);
  if (!has_room) {
    SetLastError(kErrorInsufficientBuffer);
    return false;
  }
  auto* place = static_cast<char*>(buffer);
  ProxyInfo info{.access_type = proxy.empty() ? kDirect : kByProxy};
  PutText(bypass, PutText(proxy, place + sizeof info, info.proxy), info.bypass);
  std::memcpy(place, &info, sizeof info);
  return true;
}

int AnswerConnectedState(const std::filesystem::path& root, Netlink& netlink, const ProxySettings& settings,
                         std::uint32_t& flags) {
  const auto state = ReadNetworkState(netlink);
  if (!state) return 0;
  const Connectivity connectivity = ConnectivityOf(root, *state);
  flags = 0;
  if (!connectivity.connected) return 0;
  flags = connectivity.dialled ? kByModem : kByLocalNetwork;
  if (!settings.proxy.empty()) flags |= kHasProxy;
  return 1;
}

bool InternetQueryOptionW(std::uint32_t option, void* buffer, std::uint32_t& size) {
  return AnswerProxyQuery(ReadProxySettings("/", ProcessVariable), option, buffer, size);
}

int InternetGetConnectedState(std::uint32_t& flags, std::uint32_t /*reserved*/) {
  NetlinkSocket netlink(NETLINK_ROUTE);
  return AnswerConnectedState("/", netlink, ReadProxySettings("/", ProcessVariable), flags);
}

}  // namespace velmora::os
