/// Bringing an adapter back that has stopped working.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "bluetooth/device_questions.h"
#include "bluetooth/hexadecimal_text.h"
#include "platform/guard.h"
#include "platform/logging.h"
#include "platform/os/clock.h"
#include "platform/os/device_control.h"
#include "platform/os/last_error.h"
#include "velmora/bluetooth.h"
#include "velmora/devicedriver.h"

using velmora::Answer;
using velmora::Attempt;
using velmora::LogDebug;
using velmora::LogDebugNarrow;
using velmora::Within;

namespace bluetooth = velmora::bluetooth;
namespace os = velmora::os;

namespace {

/// Whether a device of the USB class has a problem that is not its being disabled. A device that has one is
/// asked twice.
bool Fails(const std::wstring& usb_name) {
  return bluetooth::UsbProblemOf(usb_name) != 0 && bluetooth::UsbProblemOf(usb_name) != bluetooth::kDisabled;
}

/// What stands between the label and the name in the line of a device: support tools know these lines, in
/// which every device costs the separator one character.
const char* Separator(std::size_t device_number) {
  static constexpr std::string_view kWhole = ",desc=";
  return kWhole.data() + std::min(device_number, kWhole.size());
}

/// Lets the system settle, look for hardware, and settle again.
void Rescan() {
  constexpr std::uint32_t kPause = 2000;  // milliseconds
  Attempt([] { os::Sleep(kPause); });
  CDeviceDriver().ScanForHardwareChange();
  Attempt([] { os::Sleep(kPause); });
}

/// The radio's reset driver, opened. An opening that fails leaves the last error.
class ResetDriver {
 public:
  ResetDriver() noexcept
      : handle_(Answer(os::InvalidHandle(), [] {
          constexpr std::uint32_t kReadAndWrite = 0xC0000000;
          constexpr std::uint32_t kNoSharing = 0;
          constexpr std::uint32_t kOpenExisting = 3;
          os::SetLastError(os::kErrorGeneralFailure);  // for an opening that fails without saying why
          return os::CreateFileW(L"\\\\.\\IBTRSTD", kReadAndWrite, kNoSharing, kOpenExisting, 0);
        })) {}
  ResetDriver(const ResetDriver&) = delete;
  ResetDriver& operator=(const ResetDriver&) = delete;
  ~ResetDriver() {
    if (IsOpen()) os::CloseHandle(handle_);
  }

  bool IsOpen() const noexcept { return handle_ != os::InvalidHandle(); }

  /// False, with the last error, when the driver refuses.
  bool Reset(std::uint32_t address) const noexcept {
    return Answer(false, [&] {
      constexpr std::uint32_t kReset = 0x002211FC;
      os::SetLastError(os::kErrorGeneralFailure);
      return os::DeviceIoControl(handle_, kReset, &address, sizeof address, nullptr, 0, nullptr);
    });
  }

 private:
  os::Handle handle_;
};

}  // namespace

unsigned long CBluetooth::RepairInUSBDriver() {
  constexpr Within kHere("CBluetooth::RepairInUSBDriver");
  constexpr unsigned long kNothingFails = 0xFFFFFFFF;
  LogDebug([&](auto& line) { line << "CBluetooth::RepairInUSBDriver" << kHere; });
  std::size_t number = 0;
  for (const std::wstring& name : bluetooth::UsbNames()) {
    LogDebug([&](auto& line) {
      line << "CBluetooth::RepairInUSBDriver: i=" << Separator(number) << name << kHere;
    });
    ++number;
    if (!Fails(name)) continue;

    const std::wstring id = bluetooth::UsbHardwareId(name);
    const unsigned long uninstalled = bluetooth::UninstallUsb(id);
    std::uint32_t error = os::LastError();
    // Support tools know these lines too: the name is the uninstalling's, and no "=" stands after "hardId".
    LogDebug([&](auto& line) {
      line << "CBluetooth::UnInstallDeviceDriver: dwUninstall=" << uninstalled << ",err=" << error
           << ", hardId" << id << kHere;
    });
    Rescan();
    const std::wstring adapter = GetHardwareID();
    error = os::LastError();
    LogDebug([&](auto& line) {
      line << "CBluetooth::UnInstallDeviceDriver: HardwareID=" << adapter << ",err=" << error << kHere;
    });
    if (!GetHardwareID().empty()) return 0;
    if (Fails(name)) bluetooth::UninstallUsb(name);  // some devices go by their name only
    return uninstalled;
  }
  return kNothingFails;
}

void CBluetooth::RepairBtByReHard(std::string address, unsigned long& error) {
  constexpr const char* kHere = "CBluetooth::RepairBtByReHard";
  error = 0;
  LogDebugNarrow(
      [&](auto& line) { line << "CBluetooth::RepairBtByReHard: strAddress=" << address << kHere; });
  if (address.empty()) return;

  const std::uint32_t value = bluetooth::ReadHexadecimal(address);
  const ResetDriver driver;
  if (!driver.IsOpen()) {
    error = os::LastError();
    LogDebugNarrow([&](auto& line) {
      line << "CBluetooth::RepairBtByReHard: CreateFile Fail, LastError=" << error << kHere;
    });
    return;
  }
  if (!driver.Reset(value)) {
    error = os::LastError();
    LogDebugNarrow([&](auto& line) {
      line << "CBluetooth::RepairBtByReHard: DeviceIoControl Fail, LastError=" << error << kHere;
    });
  }
  LogDebugNarrow([&](auto& line) { line << "CBluetooth::RepairBtByReHard: End" << kHere; });
}
