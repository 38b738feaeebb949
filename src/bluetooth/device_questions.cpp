#include "bluetooth/device_questions.h"

#include "platform/guard.h"
#include "platform/ostrine/setup_class.h"

namespace velmora::bluetooth {
namespace {

using setup_class::kBluetooth;
using setup_class::kUsb;

using Texts = std::vector<std::wstring>;
constexpr unsigned long kUnknown = 0xFFFFFFFF;

}  // namespace

Texts HardwareIds() noexcept {
  return Answer(Texts(), [] { return CDeviceInformention().GetDeviceHardwareID(kBluetooth); });
}

std::wstring TextOf(const std::wstring& hardware_id, enmDEVICE_PROPERTY property) noexcept {
  return Answer(std::wstring(), [&] {
    return CDeviceInformention().GetDeviceStrInfoByHardwareID(hardware_id, kBluetooth, property);
  });
}

unsigned long ProblemOf(const std::wstring& hardware_id) noexcept {
  return Answer(kUnknown, [&] {
    return CDeviceInformention().GetDeviceULONGInfoByHardwareID(hardware_id, kBluetooth, PROP_PROBLEM_CODE);
  });
}

std::uint64_t InstallTimeOf(const std::wstring& hardware_id) noexcept {
  return Answer(std::uint64_t{0},
                [&] { return CDeviceInformention().GetLastIntallTime(hardware_id, kBluetooth); });
}

Texts UsbNames() noexcept {
  return Answer(Texts(), [] { return CDeviceInformention().GetDeviceDesc(kUsb); });
}

std::wstring UsbHardwareId(const std::wstring& name) noexcept {
  return Answer(std::wstring(),
                [&] { return CDeviceInformention().GetDeviceStrInfoByDesc(name, kUsb, PROP_HARDWARE_ID); });
}

unsigned long UsbProblemOf(const std::wstring& name) noexcept {
  return Answer(
      0UL, [&] { return CDeviceInformention().GetDeviceULONGInfoByDesc(name, kUsb, PROP_PROBLEM_CODE); });
}

unsigned long UninstallUsb(const std::wstring& hardware_id) noexcept {
  return Answer(kUnknown, [&] { return CDeviceInformention().UnstallDeviceByHardwareID(hardware_id, kUsb); });
}

Texts UnknownIds() noexcept {
  return Answer(Texts(), [] { return CDeviceInformention().GetUnknownDeviceHardID(); });
}

}  // namespace velmora::bluetooth
