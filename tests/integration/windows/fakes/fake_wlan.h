/// What the made-up Wi-Fi library saw and what it is to answer. The test finds it as the library's export
/// "State".
#pragma once

#include <windows.h>

#include <wlanapi.h>

namespace fakes {

struct WlanState {
  // To answer.
  DWORD error = 0;  ///< instead of success, by every call

  // Seen.
  DWORD version = 0;
  int open_clients = 0;
  int memory = 0;  ///< blocks that were handed out and not given back
  GUID interface_id{};
  DWORD opcode = 0;
  DWORD set_size = 0;
  WLAN_PHY_RADIO_STATE set{};
  DWORD flags = 0;
  DOT11_SSID ssid{};
  DWORD bss_type = 0;
  BOOL security = 0;
};

}  // namespace fakes
