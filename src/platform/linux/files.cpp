#include "platform/os/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <memory>
#include <optional>
#include <string>

#include "platform/linux/descriptor.h"
#include "platform/linux/handle_object.h"
#include "platform/linux/system_path.h"
#include "platform/os/last_error.h"

namespace velmora::os {
namespace {

class OpenFile : public KernelObject {
 public:
  explicit OpenFile(Descriptor file) noexcept : file_(std::move(file)) {}
  int Number() const noexcept { return file_.Number(); }

 private:
  Descriptor file_;
};

/// Opens a regular file only. The look before the opening spares devices, which opening alone can disturb;
/// the one behind it is what counts.
Descriptor OpenRegular(const std::string& path) {
  struct stat status{};
  if (stat(path.c_str(), &status) != 0) return {};
  if (S_ISREG(status.st_mode)) {
    Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!file || fstat(file.Number(), &status) != 0) return {};
    if (S_ISREG(status.st_mode)) return file;
  }
  SetLastError(kErrorAccessDenied);
  return {};
}

}  // namespace

bool PathFileExistsW(const wchar_t* path) {
  const auto system_path = SystemPath(std::wstring_view(path));
  struct stat status{};
  if (system_path) return stat(system_path->c_str(), &status) == 0;
  SetLastError(kErrorPathNotFound);
  return false;
}

Handle OpenFileForReading(const wchar_t* path) {
  const auto system_path = SystemPath(std::wstring_view(path));
  if (!system_path) {
    SetLastError(kErrorPathNotFound);
    return nullptr;
  }
  Descriptor file = OpenRegular(*system_path);
  return file ? HandleOf(std::make_unique<OpenFile>(std::move(file))) : nullptr;
}

std::uint32_t ReadFile(Handle handle, void* buffer, std::uint32_t size) {
  const auto* file = ObjectOf<OpenFile>(handle);
  if (file == nullptr) {
    SetLastError(kErrorInvalidHandle);
    return 0;
  }
  ssize_t count = 0;
  do {
    count = read(file->Number(), buffer, std::min<std::size_t>(size, INT_MAX));
  } while (count < 0 && errno == EINTR);
  return count > 0 ? static_cast<std::uint32_t>(count) : 0;
}

}  // namespace velmora::os
