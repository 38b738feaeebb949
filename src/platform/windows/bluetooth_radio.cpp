#include "platform/os/bluetooth_radio.h"

#include <windows.h>

#include <bluetoothapis.h>

#include <cstddef>
#include <memory>
#include <new>

#include "platform/windows/system_library.h"

namespace velmora::os {
namespace {

static_assert(sizeof(BluetoothFindRadioParameters) == sizeof(BLUETOOTH_FIND_RADIO_PARAMS));

static_assert(sizeof(BluetoothRadioInfo) == sizeof(BLUETOOTH_RADIO_INFO));
static_assert(offsetof(BluetoothRadioInfo, size) == offsetof(BLUETOOTH_RADIO_INFO, dwSize));
static_assert(offsetof(BluetoothRadioInfo, address) == offsetof(BLUETOOTH_RADIO_INFO, address));
static_assert(offsetof(BluetoothRadioInfo, name) == offsetof(BLUETOOTH_RADIO_INFO, szName));
static_assert(offsetof(BluetoothRadioInfo, class_of_device) ==
              offsetof(BLUETOOTH_RADIO_INFO, ulClassofDevice));
static_assert(offsetof(BluetoothRadioInfo, lmp_subversion) == offsetof(BLUETOOTH_RADIO_INFO, lmpSubversion));
static_assert(offsetof(BluetoothRadioInfo, manufacturer) == offsetof(BLUETOOTH_RADIO_INFO, manufacturer));

using SystemSearch = BLUETOOTH_DEVICE_SEARCH_PARAMS;
static_assert(sizeof(BluetoothSearchParameters) == sizeof(SystemSearch));
static_assert(offsetof(BluetoothSearchParameters, return_authenticated) ==
              offsetof(SystemSearch, fReturnAuthenticated));
static_assert(offsetof(BluetoothSearchParameters, return_remembered) ==
              offsetof(SystemSearch, fReturnRemembered));
static_assert(offsetof(BluetoothSearchParameters, return_unknown) == offsetof(SystemSearch, fReturnUnknown));
static_assert(offsetof(BluetoothSearchParameters, return_connected) ==
              offsetof(SystemSearch, fReturnConnected));
static_assert(offsetof(BluetoothSearchParameters, issue_inquiry) == offsetof(SystemSearch, fIssueInquiry));
static_assert(offsetof(BluetoothSearchParameters, timeout_multiplier) ==
              offsetof(SystemSearch, cTimeoutMultiplier));
static_assert(offsetof(BluetoothSearchParameters, radio) == offsetof(SystemSearch, hRadio));

static_assert(sizeof(BluetoothDeviceInfo) == sizeof(BLUETOOTH_DEVICE_INFO));
static_assert(offsetof(BluetoothDeviceInfo, address) == offsetof(BLUETOOTH_DEVICE_INFO, Address));
static_assert(offsetof(BluetoothDeviceInfo, class_of_device) ==
              offsetof(BLUETOOTH_DEVICE_INFO, ulClassofDevice));
static_assert(offsetof(BluetoothDeviceInfo, connected) == offsetof(BLUETOOTH_DEVICE_INFO, fConnected));
static_assert(offsetof(BluetoothDeviceInfo, remembered) == offsetof(BLUETOOTH_DEVICE_INFO, fRemembered));
static_assert(offsetof(BluetoothDeviceInfo, authenticated) ==
              offsetof(BLUETOOTH_DEVICE_INFO, fAuthenticated));
static_assert(offsetof(BluetoothDeviceInfo, last_seen) == offsetof(BLUETOOTH_DEVICE_INFO, stLastSeen));
static_assert(offsetof(BluetoothDeviceInfo, name) == offsetof(BLUETOOTH_DEVICE_INFO, szName));

/// A search, with the library that runs it: the library must not go before the search is closed.
struct Search {
  SystemLibrary library{L"bthprops.cpl"};
  HANDLE find = nullptr;
};

/// What `begin(library)` finds, as the search's handle; null, with the last error, when it finds nothing.
template <class Begin>
Handle BeginSearch(Begin begin) {
  std::unique_ptr<Search> search(new (std::nothrow) Search);
  if (!search) {
    ::SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return nullptr;
  }
  search->find = begin(search->library);
  return search->find != nullptr ? search.release() : nullptr;
}

/// Ends the search with the library's function `name`.
template <class Close>
bool EndSearch(Handle handle, const char* name) {
  const std::unique_ptr<Search> search(static_cast<Search*>(handle));
  if (!search) {
    ::SetLastError(ERROR_INVALID_HANDLE);
    return false;
  }
  auto* const close = search->library.Find<Close>(name);
  return close != nullptr && close(search->find) != FALSE;
}

}  // namespace

Handle BluetoothFindFirstRadio(const BluetoothFindRadioParameters& parameters, Handle& radio) {
  return BeginSearch([&](const SystemLibrary& library) -> HANDLE {
    auto* const find_first = library.Find<decltype(::BluetoothFindFirstRadio)>("BluetoothFindFirstRadio");
    if (find_first == nullptr) return nullptr;
    BLUETOOTH_FIND_RADIO_PARAMS wanted{.dwSize = parameters.size};
    HANDLE found = nullptr;
    const HANDLE find = find_first(&wanted, &found);
    if (found != nullptr) radio = found;  // whoever asked closes it, also without a search
    return find;
  });
}

bool BluetoothFindRadioClose(Handle find) {
  return EndSearch<decltype(::BluetoothFindRadioClose)>(find, "BluetoothFindRadioClose");
}

std::uint32_t BluetoothGetRadioInfo(Handle radio, BluetoothRadioInfo& info) {
  const SystemLibrary library(L"bthprops.cpl");
  auto* const get = library.Find<decltype(::BluetoothGetRadioInfo)>("BluetoothGetRadioInfo");
  if (get == nullptr) return ::GetLastError();
  return get(radio, reinterpret_cast<BLUETOOTH_RADIO_INFO*>(&info));
}

Handle BluetoothFindFirstDevice(const BluetoothSearchParameters& parameters, BluetoothDeviceInfo& info) {
  return BeginSearch([&](const SystemLibrary& library) -> HANDLE {
    auto* const find_first = library.Find<decltype(::BluetoothFindFirstDevice)>("BluetoothFindFirstDevice");
    if (find_first == nullptr) return nullptr;
    auto wanted = reinterpret_cast<const SystemSearch&>(parameters);
    return find_first(&wanted, reinterpret_cast<BLUETOOTH_DEVICE_INFO*>(&info));
  });
}

bool BluetoothFindDeviceClose(Handle find) {
  return EndSearch<decltype(::BluetoothFindDeviceClose)>(find, "BluetoothFindDeviceClose");
}

}  // namespace velmora::os
