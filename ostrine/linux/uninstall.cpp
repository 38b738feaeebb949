#include "ostrine/linux/uninstall.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <thread>

#include "ostrine/linux/last_error.h"

namespace ostrine {
namespace {

std::uint32_t ErrorOf(int error) {
  switch (error) {
    case EACCES:
    case EPERM:
    case EROFS:
      return kErrorAccessDenied;
    case ENODEV:
      return kErrorNoSuchDevice;
    default:
      return kErrorGeneralFailure;
  }
}

/// Writes "1" to the attribute, which must be there already.
std::uint32_t Trigger(const Path& attribute) {
  // Without a flag that creates: where the kernel offers no such attribute, none must come to be.
  const int file = open(attribute.c_str(), O_WRONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
  if (file < 0) return errno == ENOENT ? kErrorNotSupported : ErrorOf(errno);
  struct stat status{};
  std::uint32_t result = 0;
  if (fstat(file, &status) != 0 || !S_ISREG(status.st_mode)) {
    result = kErrorNotSupported;
  } else if (write(file, "1", 1) != 1) {
    result = ErrorOf(errno);
  }
  close(file);
  return result;
}

bool IsGone(const Path& node) {
  struct stat status{};
  return lstat(node.c_str(), &status) != 0 && errno == ENOENT;
}

}  // namespace

std::uint32_t RemoveDevice(const Device& device, std::chrono::milliseconds patience) {
  if (device.bus != Device::Bus::kPci && device.bus != Device::Bus::kUsb) return kErrorNotSupported;
  if (IsGone(device.node)) return kErrorNoSuchDevice;
  const std::uint32_t result = Trigger(device.node / "remove");
  if (result != 0) return result;

  constexpr std::chrono::milliseconds kPause(10);
  const auto deadline = std::chrono::steady_clock::now() + patience;
  while (!IsGone(device.node)) {
    if (std::chrono::steady_clock::now() >= deadline) return kErrorGeneralFailure;
    std::this_thread::sleep_for(kPause);
  }
  return 0;
}

}  // namespace ostrine
