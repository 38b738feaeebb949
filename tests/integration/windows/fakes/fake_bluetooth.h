/// What the made-up Bluetooth library saw and what it is to answer. The test finds it as the library's export
/// "State".
#pragma once

#include <windows.h>

#include <bluetoothapis.h>

namespace fakes {

struct BluetoothState {
  bool has_radio = true;
  bool has_device = true;
  DWORD radio_info_error = ERROR_SUCCESS;
  int open_searches = 0;
  HANDLE radio = nullptr;
  bool radio_outlived_its_search = false;  ///< it was still open when the search for it was closed
  DWORD radio_parameters_size = 0;
  DWORD radio_info_size = 0;
  BLUETOOTH_DEVICE_SEARCH_PARAMS search{};
  DWORD device_info_size = 0;
  bool records_were_blank = true;  ///< but for their sizes
};

}  // namespace fakes
