/// The repairs, and the problem code of a device that is named.
#include "devices/repairable_class.h"
#include "platform/guard.h"
#include "platform/logging.h"
#include "platform/os/clock.h"
#include "platform/os/configuration_manager.h"
#include "platform/ostrine/deviceinformation.h"
#include "velmora/devicedriver.h"

using velmora::LogDebug;
using velmora::LogError;
using velmora::Within;

namespace {

/// Also what a device is answered with that does not come back.
constexpr unsigned long kNotDone = 0xFFFFFFFF;

// The greatest kinds that the operations let through to the choice of a class.
constexpr auto kLastToReset = emDEVICE_DISPLAY;
constexpr auto kLastToUninstall = emDEVICE_USB;

constexpr int kRounds = 10;
constexpr std::uint32_t kPause = 1000;  // milliseconds

unsigned long Uninstall(const std::wstring& hardware_id, const GUID& setup_class) {
  return velmora::Answer(
      kNotDone, [&] { return CDeviceInformention().UnstallDeviceByHardwareID(hardware_id, setup_class); });
}

unsigned long ProblemCode(const std::wstring& hardware_id, const GUID& setup_class) {
  return velmora::Answer(kNotDone, [&] {
    return CDeviceInformention().GetDeviceULONGInfoByHardwareID(hardware_id, setup_class, PROP_PROBLEM_CODE);
  });
}

}  // namespace

unsigned long CDeviceDriver::ResetDeviceDriver(std::wstring hardware_id, stDEVICE_DRIVER_TYPE kind) {
  const auto setup_class = velmora::RepairableClass(kind, kLastToReset);
  if (!setup_class) return kNotDone;
  const unsigned long error = Uninstall(hardware_id, *setup_class);
  LogDebug([&](auto& line) {
    line << "CDeviceDriver::ResetDeviceDriver: hardid=" << hardware_id << ", UnstallDevice=" << error
         << Within("CDeviceDriver::ResetDeviceDriver");
  });
  if (error != 0) return error;
  for (int round = 1; round <= kRounds; ++round) {
    ScanForHardwareChange();
    velmora::Attempt([] { velmora::os::Sleep(kPause); });
    const unsigned long code = ProblemCode(hardware_id, *setup_class);
    LogDebug([&](auto& line) {
      line << "CDeviceDriver::ResetDeviceDriver: round=" << round << ", ErrorCode=" << code
           << Within("CDeviceDriver::ResetDeviceDriver");
    });
    if (code == 0) return 0;
  }
  return kNotDone;
}

unsigned long CDeviceDriver::UnInstallDeviceDriver(std::wstring hardware_id, stDEVICE_DRIVER_TYPE kind) {
  const auto setup_class = velmora::RepairableClass(kind, kLastToUninstall);
  return setup_class ? Uninstall(hardware_id, *setup_class) : kNotDone;
}

unsigned long CDeviceDriver::GetDeviceDriverErrorCode(std::wstring hardware_id, stDEVICE_DRIVER_TYPE kind) {
  const auto setup_class = velmora::RepairableClass(kind, kLastToReset);
  return setup_class ? ProblemCode(hardware_id, *setup_class) : kNotDone;
}

void CDeviceDriver::ScanForHardwareChange() {
  namespace os = velmora::os;
  os::DevNode root = 0;
  const os::ConfigResult located =
      velmora::Answer(os::kConfigFailure, [&] { return os::CM_Locate_DevNodeW(root, nullptr, 0); });
  if (located != os::kConfigSuccess) {
    LogError([&](auto& line) {
      line << "CDeviceDriver::ScanForHardwareChange CM_Locate_DevNode failed and error code is :" << located
           << Within("CDeviceDriver::ScanForHardwareChange");
    });
    return;
  }
  constexpr std::uint32_t kAsynchronously = 4;
  const os::ConfigResult rescanned =
      velmora::Answer(os::kConfigFailure, [&] { return os::CM_Reenumerate_DevNode(root, kAsynchronously); });
  if (rescanned == os::kConfigSuccess) return;
  LogError([&](auto& line) {
    line << "CDeviceDriver::ScanForHardwareChange CM_Reenumerate_DevNode failed and error code is :"
         << rescanned << Within("CDeviceDriver::ScanForHardwareChange");
  });
}

std::vector<std::wstring> CDeviceDriver::GetUnkownHardId() {
  return velmora::Answer(std::vector<std::wstring>(),
                         [] { return CDeviceInformention().GetUnknownDeviceHardID(); });
}
