/// The Bluetooth adapter, its repair and the remote devices.
#include <climits>

#include "tests/torture/operation.h"
#include "velmora/bluetooth.h"

namespace torture {
namespace {

// Made beforehand: what an operation is given must not be what runs out of memory.
const std::wstring kMouse = L"BTHLE\\Dev_D4A1B2C3E4F5";
const std::wstring kAdapter = L"USB\\VID_8087&PID_0026";
constexpr unsigned long kNothing = 0xFFFFFFFF;

/// What an over-long text is; a hardware ID of it means no adapter.
std::wstring Endless() { return std::wstring(kOverlong, L'A'); }

template <class Getter>
Operation AdapterText(const char* name, Getter getter) {
  return Operation(name, [getter] { return (CBluetooth().*getter)(); })
      .MayFailWith(std::wstring())
      .MayBeSpoiledTo(Endless());
}

template <class Getter>
Operation RemoteText(const char* name, Getter getter) {
  return Operation(name, [getter] { return (CBluetooth().*getter)(kMouse); })
      .MayFailWith(std::wstring())
      .MayBeSpoiledTo(Endless());
}

template <class Lister>
Operation RemoteList(const char* name, Lister lister) {
  return Operation(name, [lister] { return (CBluetooth().*lister)(); })
      .MayFailWith(std::vector<std::wstring>());
}

/// A look-up that fails finds no adapter, so that devices are asked which nobody would else have asked.
Operation LostInUsb() {
  return Operation("CBluetooth::IsInUSBClassEx",
                   [] {
                     std::tuple<int, unsigned long> result{77, 77};
                     std::get<0>(result) = CBluetooth().IsInUSBClassEx(std::get<1>(result));
                     return result;
                   })
      .MayFailWith(std::tuple(0, 0))
      .MayFailWith(std::tuple(1, kAbsent))
      .MayFailWith(std::tuple(1, 43))  // the failing device of the machine files
      .MayBeSpoiledTo(std::tuple(1, UINT_MAX));
}

Operation RadioReset() {
  return Operation("CBluetooth::RepairBtByReHard",
                   [] {
                     unsigned long error = 77;
                     CBluetooth().RepairBtByReHard("1A2B", error);
                     return error;
                   })
      .MayFailWith(31)
      .MayFailWith(0);  // a request that succeeds without doing anything
}

}  // namespace

std::vector<Operation> BluetoothOperations() {
  return {
      AdapterText("CBluetooth::GetHardwareID", &CBluetooth::GetHardwareID),
      AdapterText("CBluetooth::GetDeviceName", &CBluetooth::GetDeviceName),
      AdapterText("CBluetooth::GetManufacturer", &CBluetooth::GetManufacturer),
      AdapterText("CBluetooth::GetDriverVersion", &CBluetooth::GetDriverVersion),
      Operation("GetBlueToothDriverName", GetBlueToothDriverName)
          .MayFailWith(std::wstring())
          .MayBeSpoiledTo(Endless()),
      Operation("CBluetooth::GetDeviceErrorState", [] { return CBluetooth().GetDeviceErrorState(); })
          .MayFailWith(kNothing)
          .MayFailWith(kAbsent)
          .MayFailWith(0)  // a success that gave nothing
          .MayBeSpoiledTo(UINT_MAX),
      LostInUsb(),
      Operation("CBluetooth::IsInUSBClass", [] { return CBluetooth().IsInUSBClass(); })
          .MayFailWith(0)
          .MayFailWith(1),
      Operation("CBluetooth::IsInUnKownClass", [] { return CBluetooth().IsInUnKownClass(); })
          .MayFailWith(0)
          .MayFailWith(1),
      Operation("CBluetooth::IsFindBtDevice", [] { return CBluetooth().IsFindBtDevice(); })
          .MayFailWith(false),
      Operation("CBluetooth::GetLastInstallTimeById",
                [] { return CBluetooth().GetLastInstallTimeById(kAdapter); })
          .MayFailWith(0)
          .MayFailWith(std::uint64_t{1'638'440'000'000}),  // all of the machine files' time
      Operation("CBluetooth::RepairInUSBDriver", [] { return CBluetooth().RepairInUSBDriver(); })
          .MayFailWith(kNothing)
          .MayFailWith(5)
          .MayFailWith(0)
          .MayFailWith(0xE000020B),  // no such device
      RadioReset(),
      RemoteList("CBluetooth::GetExternalDeviceHardID", &CBluetooth::GetExternalDeviceHardID),
      RemoteList("CBluetooth::GetExternalBlteMouseHardID", &CBluetooth::GetExternalBlteMouseHardID),
      RemoteText("CBluetooth::GetExternalDeviceNameByHardID", &CBluetooth::GetExternalDeviceNameByHardID),
      RemoteText("CBluetooth::GetExternalDeviceTypeByHardId", &CBluetooth::GetExternalDeviceTypeByHardId),
      Operation("CBluetooth::GetExternalDeviceManufacturer",
                [] { return CBluetooth().GetExternalDeviceManufacturer(); }),
      Operation("CBluetooth::GetExternalDeviceAddressByHardId",
                [] { return CBluetooth().GetExternalDeviceAddressByHardId(kMouse); })
          .MayFailWith(std::wstring()),
  };
}

}  // namespace torture
