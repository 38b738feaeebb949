/// A Wi-Fi library with one interface, one network and one access point.
#include "tests/integration/windows/fakes/fake_wlan.h"

#include <cstddef>
#include <cstring>

namespace {

fakes::WlanState state;

const HANDLE kClient = reinterpret_cast<HANDLE>(0x1234);
constexpr GUID kInterface{0xA, 0xB, 0xC, {1, 2, 3, 4, 5, 6, 7, 8}};

template <class Record>
Record* Give(std::size_t size = sizeof(Record)) {
  ++state.memory;
  return static_cast<Record*>(HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, size));
}

/// Bytes of a list with one item. The lists end in an array, which counts in their size in some headers of
/// the system and not in others.
constexpr std::size_t kInterfaceListSize =
    offsetof(WLAN_INTERFACE_INFO_LIST, InterfaceInfo) + sizeof(WLAN_INTERFACE_INFO);
constexpr std::size_t kNetworkListSize =
    offsetof(WLAN_AVAILABLE_NETWORK_LIST, Network) + sizeof(WLAN_AVAILABLE_NETWORK);
constexpr std::size_t kBssListSize = offsetof(WLAN_BSS_LIST, wlanBssEntries) + sizeof(WLAN_BSS_ENTRY);

/// The error that `function` is to give.
DWORD ErrorOf(const char* function) {
  const bool is_meant = state.failing == nullptr || std::strcmp(state.failing, function) == 0;
  return is_meant ? state.error : 0;
}

DWORD Check(const char* function, HANDLE client, const GUID* interface_id) {
  if (client != kClient) return ERROR_INVALID_HANDLE;
  if (interface_id != nullptr) state.interface_id = *interface_id;
  return ErrorOf(function);
}

}  // namespace

extern "C" {

__declspec(dllexport) fakes::WlanState* State() { return &state; }

__declspec(dllexport) DWORD WINAPI WlanOpenHandle(DWORD version, void* reserved, DWORD* negotiated,
                                                  HANDLE* client) {
  if (reserved != nullptr) return ERROR_INVALID_PARAMETER;
  state.version = version;
  if (const DWORD error = ErrorOf("WlanOpenHandle")) return error;
  *negotiated = version;
  *client = kClient;
  ++state.open_clients;
  return 0;
}

__declspec(dllexport) DWORD WINAPI WlanCloseHandle(HANDLE client, void*) {
  if (client != kClient) return ERROR_INVALID_HANDLE;
  --state.open_clients;
  ++state.closings;
  return 0;
}

__declspec(dllexport) DWORD WINAPI WlanEnumInterfaces(HANDLE client, void*, WLAN_INTERFACE_INFO_LIST** list) {
  if (const DWORD error = Check("WlanEnumInterfaces", client, nullptr)) return error;
  *list = Give<WLAN_INTERFACE_INFO_LIST>(kInterfaceListSize);
  (*list)->dwNumberOfItems = 1;
  (*list)->InterfaceInfo[0].InterfaceGuid = kInterface;
  std::memcpy((*list)->InterfaceInfo[0].strInterfaceDescription, L"Made-up Wi-Fi", sizeof L"Made-up Wi-Fi");
  return 0;
}

__declspec(dllexport) DWORD WINAPI WlanQueryInterface(HANDLE client, const GUID* interface_id,
                                                      WLAN_INTF_OPCODE opcode, void*, DWORD* size,
                                                      void** data, WLAN_OPCODE_VALUE_TYPE*) {
  state.opcode = opcode;
  if (const DWORD error = Check("WlanQueryInterface", client, interface_id)) return error;
  auto* const radio = Give<WLAN_RADIO_STATE>();
  radio->dwNumberOfPhys = 1;
  radio->PhyRadioState[0].dot11SoftwareRadioState = dot11_radio_state_off;
  *size = sizeof *radio;
  *data = radio;
  return 0;
}

__declspec(dllexport) DWORD WINAPI WlanSetInterface(HANDLE client, const GUID* interface_id,
                                                    WLAN_INTF_OPCODE opcode, DWORD size, void* data, void*) {
  state.opcode = opcode;
  state.set_size = size;
  if (size == sizeof state.set) std::memcpy(&state.set, data, size);
  return Check("WlanSetInterface", client, interface_id);
}

__declspec(dllexport) DWORD WINAPI WlanGetAvailableNetworkList(HANDLE client, const GUID* interface_id,
                                                               DWORD flags, void*,
                                                               WLAN_AVAILABLE_NETWORK_LIST** list) {
  state.flags = flags;
  if (const DWORD error = Check("WlanGetAvailableNetworkList", client, interface_id)) return error;
  *list = Give<WLAN_AVAILABLE_NETWORK_LIST>(kNetworkListSize);
  (*list)->dwNumberOfItems = 1;
  auto& network = (*list)->Network[0];
  network.dot11Ssid.uSSIDLength = 4;
  std::memcpy(network.dot11Ssid.ucSSID, "home", 4);
  network.dot11BssType = dot11_BSS_type_infrastructure;
  network.bSecurityEnabled = TRUE;
  network.wlanSignalQuality = 88;
  return 0;
}

__declspec(dllexport) DWORD WINAPI WlanGetNetworkBssList(HANDLE client, const GUID* interface_id,
                                                         DOT11_SSID* ssid, DOT11_BSS_TYPE bss_type,
                                                         BOOL security, void*, WLAN_BSS_LIST** list) {
  state.ssid = *ssid;
  state.bss_type = static_cast<DWORD>(bss_type);
  state.security = security;
  if (const DWORD error = Check("WlanGetNetworkBssList", client, interface_id)) return error;
  constexpr char kElements[] = "elements";
  const void* const elements =
      state.elements != nullptr ? static_cast<const void*>(state.elements) : kElements;
  const DWORD size = state.elements != nullptr ? state.elements_size : sizeof kElements;
  *list = Give<WLAN_BSS_LIST>(kBssListSize + size);
  (*list)->dwTotalSize = static_cast<DWORD>(kBssListSize + size);
  (*list)->dwNumberOfItems = 1;
  auto& entry = (*list)->wlanBssEntries[0];
  entry.dot11Ssid = *ssid;
  entry.dot11Bssid[0] = 0x1A;
  entry.dot11Bssid[5] = 0xEF;
  entry.lRssi = -50;
  entry.ulIeOffset = sizeof(WLAN_BSS_ENTRY);
  entry.ulIeSize = size;
  std::memcpy(reinterpret_cast<char*>(&entry) + entry.ulIeOffset, elements, size);
  return 0;
}

__declspec(dllexport) void WINAPI WlanFreeMemory(void* memory) {
  --state.memory;
  if (state.open_clients == 0) ++state.late_frees;
  HeapFree(GetProcessHeap(), 0, memory);
}

}  // extern "C"
