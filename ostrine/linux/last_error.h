/// The thread's last error, as the callers of the hardware-abstraction contract read it.
#pragma once

#include <cerrno>
#include <cstdint>

namespace ostrine {

inline constexpr std::uint32_t kErrorAccessDenied = 5;
inline constexpr std::uint32_t kErrorInvalidData = 13;
inline constexpr std::uint32_t kErrorNotReady = 21;
inline constexpr std::uint32_t kErrorGeneralFailure = 31;
inline constexpr std::uint32_t kErrorNotSupported = 50;
inline constexpr std::uint32_t kErrorInvalidParameter = 87;
inline constexpr std::uint32_t kErrorNotFound = 1168;
inline constexpr std::uint32_t kErrorNoSuchDevice = 0xE000020B;

/// Sets the thread's last error to a Windows error number.
///
/// It is kept in errno, whose own numbers stay far below 0x10000: a number below that base is stored above
/// it, a greater one as it is. Readers on the other side of the contract undo the same.
inline void SetLastError(std::uint32_t error) noexcept {
  constexpr std::uint32_t kBase = 0x10000;
  errno = static_cast<int>(error < kBase ? error + kBase : error);
}

}  // namespace ostrine
