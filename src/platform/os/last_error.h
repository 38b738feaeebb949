/// The thread's last error, as a Windows error number on every system.
#pragma once

#include <cstdint>

namespace velmora::os {

/// Error numbers that the library itself gives or compares with.
inline constexpr std::uint32_t kErrorFileNotFound = 2;
inline constexpr std::uint32_t kErrorPathNotFound = 3;
inline constexpr std::uint32_t kErrorAccessDenied = 5;
inline constexpr std::uint32_t kErrorInvalidHandle = 6;
inline constexpr std::uint32_t kErrorNotEnoughMemory = 8;
inline constexpr std::uint32_t kErrorGeneralFailure = 31;
inline constexpr std::uint32_t kErrorNotSupported = 50;
inline constexpr std::uint32_t kErrorDeviceNotExist = 55;
inline constexpr std::uint32_t kErrorInvalidParameter = 87;
inline constexpr std::uint32_t kErrorBufferOverflow = 111;
inline constexpr std::uint32_t kErrorInsufficientBuffer = 122;
inline constexpr std::uint32_t kErrorBusy = 170;
inline constexpr std::uint32_t kErrorAlreadyExists = 183;
inline constexpr std::uint32_t kErrorTimeout = 1460;

/// The error that the last failing call of this thread left. Meaningful only after a call that failed.
std::uint32_t LastError() noexcept;

/// Sets what LastError answers on this thread.
void SetLastError(std::uint32_t error) noexcept;

}  // namespace velmora::os
