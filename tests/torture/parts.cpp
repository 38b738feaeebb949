/// Audio device, fingerprint reader, system devices, keyboard, and driver versions by kind.
#include <limits>

#include "tests/torture/operation.h"
#include "velmora/audio.h"
#include "velmora/biometric.h"
#include "velmora/devicekind.h"
#include "velmora/keyboard.h"

namespace torture {
namespace {

constexpr unsigned long kNoDevice = 0xFFFFFFFF;

/// A description so short that the caller needs no memory to hand it over.
constexpr const wchar_t* kDevice = L"MEI";

const std::wstring& Spoiled() {
  static const std::wstring text(kOverlong, L'A');
  return text;
}

template <class Class>
Operation Text(const char* name, std::wstring (Class::*getter)()) {
  return Operation(name, [getter] { return (Class().*getter)(); })
      .MayFailWith(std::wstring())
      .MayBeSpoiledTo(Spoiled());
}

/// A problem code: of a device that is not there, of one that was not asked, of one that gave nothing.
Operation Problem(Operation operation) {
  return std::move(operation).MayFailWith(kAbsent).MayFailWith(kNoDevice).MayFailWith(0).MayBeSpoiledTo(
      std::numeric_limits<unsigned int>::max());
}

Operation VersionOf(const char* name, stDEVICE_DRIVER_TYPE kind) {
  return Operation(name, [kind] { return GetDeviceDriverVersion(kind); })
      .MayFailWith(std::wstring())
      .MayBeSpoiledTo(Spoiled());
}

std::vector<Operation> AudioOperations() {
  return {
      Operation("CAudioCard::GetAudioHardId",
                [] {
                  std::tuple<bool, std::wstring> result{false, L"old"};
                  std::get<0>(result) = CAudioCard().GetAudioHardId(std::get<1>(result));
                  return result;
                })
          .MayFailWith(std::tuple(false, std::wstring(L"old")))
          .MayBeSpoiledTo(std::tuple(true, Spoiled())),
      Operation("CAudioCard::GetAudioCardNumbers", [] { return CAudioCard().GetAudioCardNumbers(); })
          .MayFailWith(0),
      Text("CAudioCard::GetAudioCardName", &CAudioCard::GetAudioCardName),
      Text("CAudioCard::GetAudioCardManufacturer", &CAudioCard::GetAudioCardManufacturer),
      Text("CAudioCard::GetDriverVersion", &CAudioCard::GetDriverVersion),
      Problem(Operation("CAudioCard::GetAudioErrorCode", [] { return CAudioCard().GetAudioErrorCode(); })),
      Operation("CAudioCard::GetAudioDriverInf",
                [] {
                  std::tuple<bool, std::wstring> result{false, L"old"};
                  std::get<0>(result) = CAudioCard().GetAudioDriverInf(std::get<1>(result));
                  return result;
                })
          .MayFailWith(std::tuple(false, std::wstring(L"old")))
          .MayFailWith(std::tuple(true, std::wstring()))  // a success that gave nothing
          .MayBeSpoiledTo(std::tuple(true, Spoiled())),
      Operation("CAudioCard::Check3rdAudioDriver",
                [] {
                  std::tuple<enmDRIVER_SOURCE_INFO, std::string> result{DRIVER_SOURCE_NO_INF, "old"};
                  std::get<0>(result) = CAudioCard().Check3rdAudioDriver(std::get<1>(result));
                  return result;
                })
          .MayFailWith(std::tuple(DRIVER_SOURCE_OPEN_FAILED, std::string("old")))
          .MayFailWith(std::tuple(DRIVER_SOURCE_NO_INF, std::string("old")))
          .MayFailWith(std::tuple(DRIVER_SOURCE_MAKER, std::string("old")))  // reading it fails
          .MayBeSpoiledTo(std::tuple(DRIVER_SOURCE_INBOX, std::string("old")))};
}

std::vector<Operation> BiometricOperations() {
  return {Text("CBiometric::GetHardwareID", &CBiometric::GetHardwareID),
          Text("CBiometric::GetDeviceName", &CBiometric::GetDeviceName),
          Text("CBiometric::GetManufacturer", &CBiometric::GetManufacturer),
          Text("CBiometric::GetDriverVersion", &CBiometric::GetDriverVersion),
          Text("CBiometric::GetMEIDesc", &CBiometric::GetMEIDesc),
          Text("CBiometric::GetSGXHardId", &CBiometric::GetSGXHardId),
          Operation("CBiometric::GetSerialIODesc", [] { return CBiometric().GetSerialIODesc(); })
              .MayFailWith(std::vector<std::wstring>()),
          Operation("CBiometric::GetSerialIODriverVersionByDesc",
                    [] { return CBiometric().GetSerialIODriverVersionByDesc(kDevice); })
              .MayFailWith(std::wstring())
              .MayBeSpoiledTo(Spoiled()),
          Problem(Operation("CBiometric::GetErrorCode", [] { return CBiometric().GetErrorCode(); })),
          Problem(Operation("CBiometric::GetSystemDeviceErrorCodeByDesc",
                            [] { return CBiometric().GetSystemDeviceErrorCodeByDesc(kDevice); })),
          Problem(Operation("CBiometric::GetSystemDeviceErrorCodeByHardId",
                            [] { return CBiometric().GetSystemDeviceErrorCodeByHardId(kDevice); }))};
}

}  // namespace

std::vector<Operation> PartsOperations() {
  std::vector<Operation> all = AudioOperations();
  Append(all, BiometricOperations());
  Append(all, {Text("CKeyBoard::GetKeyBoardName", &CKeyBoard::GetKeyBoardName),
               VersionOf("GetDeviceDriverVersion of wireless", emDEVICE_WIRELESS),
               VersionOf("GetDeviceDriverVersion of Bluetooth", emDEVICE_BLUETOOTH),
               VersionOf("GetDeviceDriverVersion of the fingerprint reader", emDEVICE_FINGERPRINT),
               VersionOf("GetDeviceDriverVersion of audio", emDEVICE_AUDIO),
               VersionOf("GetDeviceDriverVersion of the keyboard", emDEVICE_KEYBOARD),
               VersionOf("GetDeviceDriverVersion of the display", emDEVICE_DISPLAY),
               VersionOf("GetDeviceDriverVersion of USB", emDEVICE_USB)});
  return all;
}

}  // namespace torture
