#include "platform/os/last_error.h"

#include <cerrno>

namespace velmora::os {
namespace {

// errno carries both kinds of numbers: the system's own stay far below this base, Windows error numbers below
// the base are kept above it, and greater ones (set-up errors such as 0xE000020B) as they are.
constexpr std::uint32_t kWindowsErrorBase = 0x10000;

// Numbers that only the mapping needs.
constexpr std::uint32_t kErrorTooManyOpenFiles = 4;
constexpr std::uint32_t kErrorSharingViolation = 32;
constexpr std::uint32_t kErrorNoProgram = 193;
constexpr std::uint32_t kErrorNameTooLong = 206;

/// The Windows error number that says the same as a system error.
std::uint32_t WindowsError(int error) noexcept {
  switch (error) {
    case 0:
      return 0;
    case EPERM:
    case EACCES:
    case EROFS:
    case EISDIR:
      return kErrorAccessDenied;
    case ENOENT:
      return kErrorFileNotFound;
    case ENOTDIR:
      return kErrorPathNotFound;
    case ENODEV:
    case ENXIO:
      return kErrorDeviceNotExist;
    case ENOMEM:
      return kErrorNotEnoughMemory;
    case EBADF:
      return kErrorInvalidHandle;
    case EBUSY:
      return kErrorBusy;
    case EEXIST:
      return kErrorAlreadyExists;
    case EINVAL:
      return kErrorInvalidParameter;
    case EOPNOTSUPP:
    case ENOSYS:
      return kErrorNotSupported;
    case ETIMEDOUT:
      return kErrorTimeout;
    case ENAMETOOLONG:
      return kErrorNameTooLong;
    case EMFILE:
    case ENFILE:
      return kErrorTooManyOpenFiles;
    case ETXTBSY:
      return kErrorSharingViolation;
    case ENOEXEC:
      return kErrorNoProgram;
    case ESRCH:
      return kErrorInvalidParameter;
    default:
      return kErrorGeneralFailure;
  }
}

}  // namespace

std::uint32_t LastError() noexcept {
  const auto kept = static_cast<std::uint32_t>(errno);
  if (kept < kWindowsErrorBase) return WindowsError(errno);
  return kept < 2 * kWindowsErrorBase ? kept - kWindowsErrorBase : kept;
}

void SetLastError(std::uint32_t error) noexcept {
  errno = static_cast<int>(error < kWindowsErrorBase ? error + kWindowsErrorBase : error);
}

}  // namespace velmora::os
