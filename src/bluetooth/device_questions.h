/// The questions that CBluetooth asks the device-information service. Each makes its object, asks and is done
/// with it; one that fails by throwing gives the answer for a device that is not there.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/ostrine/deviceinformation.h"

namespace velmora::bluetooth {

inline constexpr unsigned long kDisabled =
    22;  ///< the problem code of a device that somebody has switched off

// Of the Bluetooth class.
std::vector<std::wstring> HardwareIds() noexcept;
std::wstring TextOf(const std::wstring& hardware_id, enmDEVICE_PROPERTY property) noexcept;
/// The problem code; 0xFFFFFFFF when asking fails.
unsigned long ProblemOf(const std::wstring& hardware_id) noexcept;
/// In milliseconds since 1970-01-01 UTC; 0 when it is not known.
std::uint64_t InstallTimeOf(const std::wstring& hardware_id) noexcept;

// Of the USB class, whose devices are known by name.
std::vector<std::wstring> UsbNames() noexcept;
std::wstring UsbHardwareId(const std::wstring& name) noexcept;
/// The problem code; 0, no problem, when asking fails.
unsigned long UsbProblemOf(const std::wstring& name) noexcept;
/// 0, or the error; 0xFFFFFFFF when asking fails.
unsigned long UninstallUsb(const std::wstring& hardware_id) noexcept;

/// Of devices of any class that have no working driver.
std::vector<std::wstring> UnknownIds() noexcept;

}  // namespace velmora::bluetooth
