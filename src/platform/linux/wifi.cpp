#include "platform/linux/wifi.h"

#include <linux/netlink.h>
#include <net/if.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <utility>

#include "platform/linux/adapter_name.h"
#include "platform/linux/handle_object.h"
#include "platform/linux/rfkill.h"
#include "platform/linux/service_state.h"
#include "platform/linux/small_file.h"
#include "platform/linux/wifi_lists.h"
#include "platform/linux/wifi_scan.h"
#include "platform/os/clock.h"
#include "platform/os/last_error.h"
#include "platform/ostrine/interface_guid.h"

namespace velmora::os {
namespace {

constexpr std::uint32_t kErrorNotFound = 1168;
constexpr std::uint32_t kVersion = 2;
constexpr std::uint32_t kRadioState = 4;
constexpr std::uint32_t kOn = 1;
constexpr std::uint32_t kOff = 2;

class Client : public HandleObject {
 public:
  Client(std::filesystem::path root, std::unique_ptr<Netlink> generic, std::uint16_t family) noexcept
      : root_(std::move(root)), generic_(std::move(generic)), family_(family) {}

  const std::filesystem::path& Root() const noexcept { return root_; }
  std::optional<std::vector<WifiInterface>> Interfaces() const {
    return ReadWifiInterfaces(*generic_, family_);
  }
  std::optional<std::vector<AccessPoint>> Scan(std::uint32_t interface) const {
    return ReadScan(*generic_, family_, interface);
  }

 private:
  std::filesystem::path root_;
  std::unique_ptr<Netlink> generic_;
  std::uint16_t family_;
};

std::uint32_t Report(std::uint32_t error) noexcept {
  if (error != 0) SetLastError(error);
  return error;
}

/// Whether the list was made; else the error.
std::uint32_t Made(const void* list) noexcept { return Report(list != nullptr ? 0 : kErrorNotEnoughMemory); }

/// 1 connected, 4 not, 0 where the interface is down.
std::uint32_t StateOf(const std::filesystem::path& root, const std::string& interface) {
  constexpr std::uint32_t kConnected = 1;
  constexpr std::uint32_t kDisconnected = 4;
  const auto folder = root / "sys/class/net" / interface;
  if (ReadAttribute(folder / "operstate") == "up") return kConnected;
  const std::string text = ReadAttribute(folder / "flags").value_or("");  // "0x1003"
  unsigned int flags = 0;
  constexpr std::size_t kPrefix = 2;
  if (text.starts_with("0x")) std::from_chars(text.data() + kPrefix, text.data() + text.size(), flags, 16);
  return (flags & IFF_UP) != 0 ? kDisconnected : 0;
}

/// Calls `use(client, interface)` for the interface with that GUID.
template <class Use>
std::uint32_t WithInterface(Handle handle, const GUID& guid, Use use) {
  const auto* client = ObjectOf<Client>(handle);
  if (client == nullptr) return Report(kErrorInvalidHandle);
  const auto interfaces = client->Interfaces();
  if (!interfaces) return Report(LastError());
  const auto found =
      std::find_if(interfaces->begin(), interfaces->end(),
                   [&](const WifiInterface& interface) { return InterfaceGuid(interface.name) == guid; });
  return found != interfaces->end() ? Report(use(*client, *found)) : Report(kErrorNotFound);
}

std::uint32_t QueryRadio(const Client& client, const WifiInterface& interface, std::uint32_t& size,
                         void*& data) {
  const auto radio = ReadRadioSwitch(client.Root(), interface.name);
  std::uint32_t software = 0;
  std::uint32_t hardware = 0;
  if (radio) {
    software = radio->software_on ? kOn : kOff;
    hardware = radio->hardware_on ? kOn : kOff;
  }
  data = MakeRadioState(software, hardware);
  if (data == nullptr) return kErrorNotEnoughMemory;
  size = sizeof(WlanRadioState);
  return 0;
}

}  // namespace

std::uint32_t OpenWifi(const std::filesystem::path& root, std::unique_ptr<Netlink> generic, Handle& client) {
  const auto family = FindWifiFamily(*generic);
  if (!family) return Report(errno == ENOENT ? kErrorServiceNotActive : LastError());
  client = HandleOf(std::make_unique<Client>(root, std::move(generic), *family));
  return 0;
}

std::uint32_t WlanOpenHandle(std::uint32_t version, std::uint32_t& negotiated_version, Handle& client) {
  const std::uint32_t result = OpenWifi("/", std::make_unique<NetlinkSocket>(NETLINK_GENERIC), client);
  if (result == 0) negotiated_version = std::min(version, kVersion);
  return result;
}

std::uint32_t WlanCloseHandle(Handle client) {
  return Report(CloseObject<Client>(client) ? 0 : kErrorInvalidHandle);
}

std::uint32_t WlanEnumInterfaces(Handle handle, WlanInterfaceList*& list) {
  list = nullptr;
  const auto* client = ObjectOf<Client>(handle);
  if (client == nullptr) return Report(kErrorInvalidHandle);
  const auto interfaces = client->Interfaces();
  if (!interfaces) return Report(LastError());
  std::vector<DescribedInterface> described;
  for (const WifiInterface& interface : *interfaces) {
    described.push_back({.name = interface.name,
                         .description = DescribeWifi(client->Root(), interface.name),
                         .state = StateOf(client->Root(), interface.name)});
  }
  list = MakeInterfaceList(described);
  return Made(list);
}

std::uint32_t WlanQueryInterface(Handle client, const GUID& interface_guid, std::uint32_t opcode,
                                 std::uint32_t& size, void*& data) {
  size = 0;
  data = nullptr;
  return WithInterface(client, interface_guid, [&](const Client& opened, const WifiInterface& interface) {
    return opcode == kRadioState ? QueryRadio(opened, interface, size, data) : kErrorNotSupported;
  });
}

std::uint32_t WlanSetInterface(Handle client, const GUID& interface_guid, std::uint32_t opcode,
                               std::uint32_t size, const void* data) {
  return WithInterface(client, interface_guid, [&](const Client& opened, const WifiInterface& interface) {
    if (opcode != kRadioState) return kErrorNotSupported;
    WlanPhyRadioState wanted{};
    if (data == nullptr || size != sizeof wanted) return kErrorInvalidParameter;
    std::memcpy(&wanted, data, sizeof wanted);
    const bool is_valid =
        wanted.phy_index == 0 && (wanted.software_state == kOn || wanted.software_state == kOff);
    if (!is_valid) return kErrorInvalidParameter;
    return SetRadioSwitch(opened.Root(), interface.name, wanted.software_state == kOn);
  });
}

std::uint32_t WlanGetAvailableNetworkList(Handle client, const GUID& interface_guid, std::uint32_t /*flags*/,
                                          WlanNetworkList*& list) {
  list = nullptr;
  return WithInterface(client, interface_guid, [&](const Client& opened, const WifiInterface& interface) {
    const auto points = opened.Scan(interface.index);
    if (!points) return LastError();
    list = MakeNetworkList(*points);
    return Made(list);
  });
}

std::uint32_t WlanGetNetworkBssList(Handle client, const GUID& interface_guid, const WlanSsid& ssid,
                                    std::uint32_t bss_type, bool security_enabled, WlanBssList*& list) {
  list = nullptr;
  return WithInterface(client, interface_guid, [&](const Client& opened, const WifiInterface& interface) {
    if (ssid.length > sizeof ssid.bytes) return kErrorInvalidParameter;
    const auto points = opened.Scan(interface.index);
    if (!points) return LastError();
    list = MakeAccessPointList(*points, ssid, bss_type, security_enabled, SystemTime());
    return Made(list);
  });
}

void WlanFreeMemory(void* memory) { std::free(memory); }

}  // namespace velmora::os
