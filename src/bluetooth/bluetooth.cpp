/// The adapter: which one it is, in what state, and whether it is lost.
#include "velmora/bluetooth.h"

#include "bluetooth/adapter_id.h"
#include "bluetooth/device_questions.h"
#include "platform/guard.h"
#include "platform/logging.h"
#include "platform/os/clock.h"
#include "platform/ostrine/wmi.h"

using velmora::Answer;
using velmora::LogDebug;
using velmora::LogDebugNarrow;
using velmora::Within;

namespace bluetooth = velmora::bluetooth;

namespace {

/// The system clock in milliseconds since 1970-01-01 UTC; a time before that wraps around.
std::uint64_t CurrentMilliseconds() {
  constexpr std::int64_t kUnitsInMillisecond = 10'000;
  return static_cast<std::uint64_t>(Answer(std::int64_t{0}, velmora::os::SystemTime) / kUnitsInMillisecond);
}

}  // namespace

CBluetooth::CBluetooth() = default;
CBluetooth::~CBluetooth() = default;

std::wstring CBluetooth::GetHardwareID() {
  return Answer(std::wstring(), [] { return bluetooth::ChooseAdapterId(bluetooth::HardwareIds()); });
}

std::wstring CBluetooth::GetDeviceName() { return bluetooth::TextOf(GetHardwareID(), PROP_DESCRIPTION); }
std::wstring CBluetooth::GetManufacturer() { return bluetooth::TextOf(GetHardwareID(), PROP_MANUFACTURER); }
std::wstring CBluetooth::GetDriverVersion() {
  return bluetooth::TextOf(GetHardwareID(), PROP_DRIVER_VERSION);
}

unsigned long CBluetooth::GetDeviceErrorState() {
  unsigned long state = 0xFFFFFFFF;
  const std::wstring adapter = GetHardwareID();
  if (!adapter.empty()) state = bluetooth::ProblemOf(adapter);
  LogDebug([&](auto& line) { line << "uErrorState=" << state << Within("CBluetooth::GetDeviceErrorState"); });
  return state;
}

int CBluetooth::IsInUSBClassEx(unsigned long& error_code) {
  constexpr Within kHere("CBluetooth::IsInUSBClassEx");
  error_code = 0;
  const std::wstring adapter = GetHardwareID();
  if (!adapter.empty()) {
    LogDebug([&](auto& line) { line << "not lost, hardId=" << adapter << kHere; });
    return 0;
  }
  for (const std::wstring& id : bluetooth::UnknownIds()) {
    LogDebug([&](auto& line) { line << "CBluetooth::IsInUSBClass: vecUnknownId=" << id << kHere; });
    if (bluetooth::IsLostUsbAdapter(id)) return 0;
  }
  // Support tools know this line as it is: the name is the shorter test's, and no "=" stands before the code.
  for (const std::wstring& name : bluetooth::UsbNames()) {
    const unsigned long code = bluetooth::UsbProblemOf(name);
    LogDebug([&](auto& line) {
      line << "CBluetooth::IsInUSBClass: desc=" << name << ", uErrorcode" << code << kHere;
    });
    if (code != 0 && code != bluetooth::kDisabled) {
      error_code = code;
      return 1;
    }
  }
  return 0;
}

int CBluetooth::IsInUSBClass() {
  unsigned long code = 0;
  return IsInUSBClassEx(code);
}

int CBluetooth::IsInUnKownClass() {
  constexpr Within kHere("CBluetooth::IsInUnKownClass");
  const std::wstring adapter = GetHardwareID();
  if (!adapter.empty()) {
    LogDebug([&](auto& line) { line << "not lost, hardId=" << adapter << kHere; });
    return 0;
  }
  for (const std::wstring& id : bluetooth::UnknownIds()) {
    LogDebug([&](auto& line) { line << "vecUnknownId=" << id << kHere; });
    if (bluetooth::IsLostAdapter(id)) return 1;
  }
  return 0;
}

std::uint64_t CBluetooth::GetLastInstallTimeById(const std::wstring& hardware_id) {
  const std::uint64_t install_time = bluetooth::InstallTimeOf(hardware_id);
  const std::uint64_t current_time = CurrentMilliseconds();
  const std::uint64_t passed = install_time < current_time ? current_time - install_time : 0;
  LogDebugNarrow([&](auto& line) {
    line << "CBluetooth::GetLastInstallTimeById: uInstallTime=" << install_time
         << ", uCurTime=" << current_time << ", uTime=" << passed << "CBluetooth::GetLastInstallTimeById";
  });
  return passed;
}

std::wstring GetBlueToothDriverName() {
  return Answer(std::wstring(), [] {
    return CWMI(L"ROOT\\CIMV2")
        .SelectStr(
            L"SELECT DeviceName FROM Win32_PnPSignedDriver "
            L"WHERE HardWareID like 'USB%' and DeviceClass = 'BLUETOOTH'",
            L"DeviceName");
  });
}
