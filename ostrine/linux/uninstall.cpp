#include "ostrine/linux/uninstall.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
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

/// Writes `text` to the attribute, which must be there already.
std::uint32_t Trigger(const Path& attribute, const std::string& text) {
  // Without a flag that creates: where the kernel offers no such attribute, none must come to be.
  const int file = open(attribute.c_str(), O_WRONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
  if (file < 0) return errno == ENOENT ? kErrorNotSupported : ErrorOf(errno);
  struct stat status{};
  std::uint32_t result = 0;
  if (fstat(file, &status) != 0 || !S_ISREG(status.st_mode)) {
    result = kErrorNotSupported;
  } else if (write(file, text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
    result = ErrorOf(errno);
  }
  close(file);
  return result;
}

bool IsGone(const Path& path) {
  struct stat status{};
  return lstat(path.c_str(), &status) != 0 && errno == ENOENT;
}

std::uint32_t WaitUntilGone(const Path& path, std::chrono::milliseconds patience) {
  constexpr std::chrono::milliseconds kPause(10);
  const auto deadline = std::chrono::steady_clock::now() + patience;
  while (!IsGone(path)) {
    if (std::chrono::steady_clock::now() >= deadline) return kErrorGeneralFailure;
    std::this_thread::sleep_for(kPause);
  }
  return 0;
}

}  // namespace

std::uint32_t RemoveDevice(const Device& device, std::chrono::milliseconds patience) {
  const bool on_pci = device.bus == Device::Bus::kPci;
  if (!on_pci && device.bus != Device::Bus::kUsb) return kErrorNotSupported;
  // What is there as long as the device is, and what takes it out.
  const Path sign = on_pci ? device.node : device.node / "driver";
  if (IsGone(sign)) return kErrorNoSuchDevice;
  const std::uint32_t result =
      on_pci ? Trigger(device.node / "remove", "1") : Trigger(sign / "unbind", device.address);
  return result != 0 ? result : WaitUntilGone(sign, patience);
}

}  // namespace ostrine
