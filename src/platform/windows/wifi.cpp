#include "platform/os/wifi.h"

#include <windows.h>

#include <wlanapi.h>

#include <memory>
#include <new>

#include "platform/windows/system_library.h"
#include "platform/windows/wifi_records.h"

namespace velmora::os {
namespace {

constexpr wchar_t kLibrary[] = L"wlanapi.dll";

/// A client of the service, with the library through which it talks. Lists are given back before the client
/// is closed, so the library is there as long as they are.
struct Client {
  SystemLibrary library{kLibrary};
  HANDLE handle = nullptr;
};

std::uint32_t Report(DWORD error) {
  ::SetLastError(error);
  return error;
}

/// Calls the library's function `name` as `call(function, system's handle)`.
template <class Function, class Call>
std::uint32_t WithClient(Handle client, const char* name, Call call) {
  if (client == nullptr) return Report(ERROR_INVALID_HANDLE);
  const auto& opened = *static_cast<Client*>(client);
  auto* const function = opened.library.Find<Function>(name);
  return function != nullptr ? Report(call(function, opened.handle)) : ::GetLastError();
}

}  // namespace

std::uint32_t WlanOpenHandle(std::uint32_t version, std::uint32_t& negotiated_version, Handle& client) {
  std::unique_ptr<Client> opened(new (std::nothrow) Client);
  if (!opened) return Report(ERROR_NOT_ENOUGH_MEMORY);
  auto* const open = opened->library.Find<decltype(::WlanOpenHandle)>("WlanOpenHandle");
  if (open == nullptr) return ::GetLastError();
  DWORD negotiated = 0;
  const DWORD result = open(version, nullptr, &negotiated, &opened->handle);
  if (result == ERROR_SUCCESS) {
    negotiated_version = negotiated;
    client = opened.release();
  }
  return Report(result);
}

std::uint32_t WlanCloseHandle(Handle client) {
  const std::unique_ptr<Client> opened(static_cast<Client*>(client));
  return WithClient<decltype(::WlanCloseHandle)>(
      client, "WlanCloseHandle", [](auto* close, HANDLE handle) { return close(handle, nullptr); });
}

std::uint32_t WlanEnumInterfaces(Handle client, WlanInterfaceList*& list) {
  list = nullptr;
  return WithClient<decltype(::WlanEnumInterfaces)>(
      client, "WlanEnumInterfaces", [&](auto* enumerate, HANDLE handle) {
        return enumerate(handle, nullptr, reinterpret_cast<WLAN_INTERFACE_INFO_LIST**>(&list));
      });
}

std::uint32_t WlanQueryInterface(Handle client, const GUID& interface_guid, std::uint32_t opcode,
                                 std::uint32_t& size, void*& data) {
  size = 0;
  data = nullptr;
  return WithClient<decltype(::WlanQueryInterface)>(
      client, "WlanQueryInterface", [&](auto* query, HANDLE handle) {
        DWORD bytes = 0;
        const DWORD result = query(handle, &interface_guid, static_cast<WLAN_INTF_OPCODE>(opcode), nullptr,
                                   &bytes, &data, nullptr);
        size = bytes;
        return result;
      });
}

std::uint32_t WlanSetInterface(Handle client, const GUID& interface_guid, std::uint32_t opcode,
                               std::uint32_t size, const void* data) {
  return WithClient<decltype(::WlanSetInterface)>(client, "WlanSetInterface", [&](auto* set, HANDLE handle) {
    return set(handle, &interface_guid, static_cast<WLAN_INTF_OPCODE>(opcode), size, const_cast<void*>(data),
               nullptr);
  });
}

std::uint32_t WlanGetAvailableNetworkList(Handle client, const GUID& interface_guid, std::uint32_t flags,
                                          WlanNetworkList*& list) {
  list = nullptr;
  return WithClient<decltype(::WlanGetAvailableNetworkList)>(
      client, "WlanGetAvailableNetworkList", [&](auto* get, HANDLE handle) {
        return get(handle, &interface_guid, flags, nullptr,
                   reinterpret_cast<WLAN_AVAILABLE_NETWORK_LIST**>(&list));
      });
}

std::uint32_t WlanGetNetworkBssList(Handle client, const GUID& interface_guid, const WlanSsid& ssid,
                                    std::uint32_t bss_type, bool security_enabled, WlanBssList*& list) {
  list = nullptr;
  return WithClient<decltype(::WlanGetNetworkBssList)>(
      client, "WlanGetNetworkBssList", [&](auto* get, HANDLE handle) {
        auto name = reinterpret_cast<const DOT11_SSID&>(ssid);
        return get(handle, &interface_guid, &name, static_cast<DOT11_BSS_TYPE>(bss_type), security_enabled,
                   nullptr, reinterpret_cast<WLAN_BSS_LIST**>(&list));
      });
}

void WlanFreeMemory(void* memory) {
  if (memory == nullptr) return;
  const SystemLibrary library(kLibrary);
  if (auto* const free = library.Find<decltype(::WlanFreeMemory)>("WlanFreeMemory")) free(memory);
}

}  // namespace velmora::os
