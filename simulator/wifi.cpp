/// The native Wi-Fi service of a machine.
#include "platform/os/wifi.h"

#include <algorithm>
#include <cstring>

#include "platform/unicode.h"
#include "simulator/failing.h"
#include "simulator/guid_text.h"
#include "simulator/wifi_lists.h"

using simulator::Closing;
using simulator::Entered;
using simulator::Error;
using simulator::Fault;
using simulator::WifiInterface;

namespace velmora::os {
namespace {

constexpr Error kNotFound = 1168;
constexpr std::uint32_t kClientVersion = 2;
constexpr std::uint32_t kRadioState = 4;

struct WifiClient {};

/// The service leaves its result as the last error, too.
std::uint32_t Result(Error error) {
  if (error != 0) SetLastError(error);
  return error;
}

/// The interface with that identifier; null, and the reason in `error`.
WifiInterface* FindInterface(Entered& call, Handle client, const GUID& id, const char* function,
                             Error& error) {
  error = kErrorInvalidHandle;
  if (call.session.Find<WifiClient>(client, function) == nullptr) return nullptr;
  error = kNotFound;
  auto& interfaces = call.session.machine.wifi->interfaces;
  const auto found = std::ranges::find_if(interfaces, [&](const WifiInterface& candidate) {
    const auto own = simulator::ParseGuid(candidate.guid);
    return own && simulator::IsSame(*own, id);
  });
  if (found == interfaces.end()) return nullptr;
  error = 0;
  return &*found;
}

}  // namespace

std::uint32_t WlanOpenHandle(std::uint32_t version, std::uint32_t& negotiated_version, Handle& client) {
  Entered call("WlanOpenHandle", version);
  if (call.Fails()) return Result(simulator::kInjectedError);
  if (call.fault == Fault::kEmpty) return 0;
  const auto& wifi = call.session.machine.wifi;
  if (!wifi) return Result(simulator::Unscripted(call.session, "WlanOpenHandle", "Wi-Fi"));
  if (wifi->open_error != 0) return Result(wifi->open_error);
  negotiated_version = std::min(version, kClientVersion);
  client = call.session.Open("WlanCloseHandle", WifiClient{});
  return 0;
}

std::uint32_t WlanCloseHandle(Handle client) {
  const Closing call("WlanCloseHandle");
  const bool was_open = call.session.Close(client, "WlanCloseHandle");
  return Result(was_open && !call.Fails() ? 0 : kErrorInvalidHandle);
}

std::uint32_t WlanEnumInterfaces(Handle client, WlanInterfaceList*& list) {
  Entered call("WlanEnumInterfaces");
  if (call.Fails()) return Result(simulator::kInjectedError);
  if (call.fault == Fault::kEmpty) return 0;
  if (call.session.Find<WifiClient>(client, "WlanEnumInterfaces") == nullptr) {
    return Result(kErrorInvalidHandle);
  }
  list = simulator::LendInterfaces(call.session, call.fault);
  return 0;
}

std::uint32_t WlanQueryInterface(Handle client, const GUID& interface_guid, std::uint32_t opcode,
                                 std::uint32_t& size, void*& data) {
  Entered call("WlanQueryInterface", interface_guid, opcode);
  if (call.Fails()) return Result(simulator::kInjectedError);
  if (call.fault == Fault::kEmpty) return 0;
  Error error = 0;
  const WifiInterface* wifi = FindInterface(call, client, interface_guid, "WlanQueryInterface", error);
  if (wifi == nullptr) return Result(error);
  if (opcode != kRadioState) return Result(kErrorNotSupported);
  if (wifi->radio_error != 0) return Result(wifi->radio_error);
  data = simulator::LendRadioState(call.session, *wifi, call.fault);
  size = sizeof(WlanRadioState);
  return 0;
}

std::uint32_t WlanSetInterface(Handle client, const GUID& interface_guid, std::uint32_t opcode,
                               std::uint32_t size, const void* data) {
  const simulator::InsideSimulator inside;
  const auto* first = static_cast<const std::uint8_t*>(data);
  Entered call("WlanSetInterface", interface_guid, opcode, simulator::Bytes{{first, first + size}});
  if (call.fault != Fault::kNone) return Result(call.Fails() ? simulator::kInjectedError : 0);
  Error error = 0;
  WifiInterface* wifi = FindInterface(call, client, interface_guid, "WlanSetInterface", error);
  if (wifi == nullptr) return Result(error);
  if (opcode != kRadioState || size != sizeof(WlanPhyRadioState)) return Result(kErrorInvalidParameter);
  if (wifi->set_radio_error != 0) return Result(wifi->set_radio_error);
  WlanPhyRadioState state{};
  std::memcpy(&state, data, sizeof state);
  wifi->software_radio = state.software_state;
  return 0;
}

std::uint32_t WlanGetAvailableNetworkList(Handle client, const GUID& interface_guid, std::uint32_t flags,
                                          WlanNetworkList*& list) {
  Entered call("WlanGetAvailableNetworkList", interface_guid, flags);
  if (call.Fails()) return Result(simulator::kInjectedError);
  if (call.fault == Fault::kEmpty) return 0;
  Error error = 0;
  const auto* wifi = FindInterface(call, client, interface_guid, "WlanGetAvailableNetworkList", error);
  if (wifi == nullptr) return Result(error);
  if (wifi->networks_error != 0) return Result(wifi->networks_error);
  list = simulator::LendNetworks(call.session, *wifi, call.fault);
  return 0;
}

std::uint32_t WlanGetNetworkBssList(Handle client, const GUID& interface_guid, const WlanSsid& ssid,
                                    std::uint32_t bss_type, bool security_enabled, WlanBssList*& list) {
  const simulator::InsideSimulator inside;
  const std::size_t length = std::min<std::size_t>(ssid.length, sizeof ssid.bytes);
  const std::string name(reinterpret_cast<const char*>(ssid.bytes), length);
  Entered call("WlanGetNetworkBssList", interface_guid, name, bss_type, security_enabled);
  if (call.Fails()) return Result(simulator::kInjectedError);
  if (call.fault == Fault::kEmpty) return 0;
  Error error = 0;
  const auto* wifi = FindInterface(call, client, interface_guid, "WlanGetNetworkBssList", error);
  if (wifi == nullptr) return Result(error);
  if (ssid.length > sizeof ssid.bytes) return Result(kErrorInvalidParameter);
  if (wifi->access_points_error != 0) return Result(wifi->access_points_error);
  list = simulator::LendAccessPoints(call.session, *wifi, name, bss_type, call.fault);
  return 0;
}

void WlanFreeMemory(void* memory) {
  const Closing call("WlanFreeMemory");
  if (memory != nullptr) call.session.TakeBack(memory, "WlanFreeMemory");
}

}  // namespace velmora::os
