/// A Bluetooth library with one radio and one remote device.
#include "tests/integration/windows/fakes/fake_bluetooth.h"

#include <cstring>

namespace {

fakes::BluetoothState state;

const HANDLE kRadioSearch = reinterpret_cast<HANDLE>(0x51);
const HANDLE kDeviceSearch = reinterpret_cast<HANDLE>(0x52);

BOOL Close(HANDLE find, HANDLE expected) {
  if (find != expected) {
    SetLastError(ERROR_INVALID_HANDLE);
    return FALSE;
  }
  --state.open_searches;
  return TRUE;
}

template <class Record>
void NoteBlank(const Record& record) {
  Record blank;
  std::memset(&blank, 0, sizeof blank);
  blank.dwSize = record.dwSize;
  if (std::memcmp(&record, &blank, sizeof blank) != 0) state.records_were_blank = false;
}

}  // namespace

extern "C" {

__declspec(dllexport) fakes::BluetoothState* State() { return &state; }

__declspec(dllexport) HANDLE WINAPI BluetoothFindFirstRadio(BLUETOOTH_FIND_RADIO_PARAMS* parameters,
                                                            HANDLE* radio) {
  state.radio_parameters_size = parameters->dwSize;
  if (!state.has_radio) {
    SetLastError(ERROR_NO_MORE_ITEMS);
    return nullptr;
  }
  state.radio = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  *radio = state.radio;
  ++state.open_searches;
  return kRadioSearch;
}

__declspec(dllexport) BOOL WINAPI BluetoothFindRadioClose(HANDLE find) {
  DWORD flags = 0;
  state.radio_outlived_its_search = GetHandleInformation(state.radio, &flags) != FALSE;
  return Close(find, kRadioSearch);
}

__declspec(dllexport) DWORD WINAPI BluetoothGetRadioInfo(HANDLE radio, BLUETOOTH_RADIO_INFO* info) {
  state.radio_info_size = info->dwSize;
  NoteBlank(*info);
  if (radio == nullptr) return ERROR_INVALID_HANDLE;
  if (state.radio_info_error != ERROR_SUCCESS) return state.radio_info_error;
  info->address.ullLong = 0xAABBCCDDEEFF;
  std::memcpy(info->szName, L"Radio", sizeof L"Radio");
  info->ulClassofDevice = 0x10C;
  info->manufacturer = 2;
  return ERROR_SUCCESS;
}

__declspec(dllexport) HANDLE WINAPI BluetoothFindFirstDevice(BLUETOOTH_DEVICE_SEARCH_PARAMS* search,
                                                             BLUETOOTH_DEVICE_INFO* info) {
  state.search = *search;
  state.device_info_size = info->dwSize;
  NoteBlank(*info);
  if (!state.has_device) {
    SetLastError(ERROR_NO_MORE_ITEMS);
    return nullptr;
  }
  info->Address.ullLong = 0x112233445566;
  info->fConnected = TRUE;
  std::memcpy(info->szName, L"Mouse", sizeof L"Mouse");
  ++state.open_searches;
  return kDeviceSearch;
}

__declspec(dllexport) BOOL WINAPI BluetoothFindDeviceClose(HANDLE find) { return Close(find, kDeviceSearch); }

}  // extern "C"
