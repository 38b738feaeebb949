#include "ostrine/linux/file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <span>

namespace ostrine {
namespace {

/// Sysfs gives no more at once.
constexpr std::size_t kPage = 4096;

/// An open file descriptor, or none where the file could not be opened.
class File {
 public:
  File(int folder, const char* path)
      // Nonblocking, so that a pipe in the file's place cannot hold the caller up.
      : descriptor_(openat(folder, path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {}
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  ~File() {
    if (descriptor_ >= 0) close(descriptor_);
  }

  bool IsOpen() const { return descriptor_ >= 0; }

  /// Size that the system states, which for proc is 0 and for sysfs a page; nothing unless a regular file is
  /// open.
  std::optional<std::size_t> StatedSize() const {
    struct stat status{};
    if (descriptor_ < 0 || fstat(descriptor_, &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    return static_cast<std::size_t>(status.st_size);
  }

  /// Reads once, from `offset` on, which only a file with places in it allows: a pipe, socket or terminal is
  /// not read. The number of bytes; nothing when reading fails.
  std::optional<std::size_t> ReadAt(std::size_t offset, std::span<std::uint8_t> buffer) const {
    for (;;) {
      const ssize_t count = pread(descriptor_, buffer.data(), buffer.size(), static_cast<off_t>(offset));
      if (count >= 0) return static_cast<std::size_t>(count);
      if (errno != EINTR) return std::nullopt;
    }
  }

 private:
  int descriptor_;
};

}  // namespace

std::optional<std::vector<std::uint8_t>> ReadBytes(const std::filesystem::path& path, std::size_t limit) {
  return ReadBytes(path.c_str(), limit);
}

std::optional<std::string> ReadAttribute(const std::filesystem::path& path) {
  return ReadAttribute(path.c_str());
}

std::optional<std::vector<std::uint8_t>> ReadBytes(const char* path, std::size_t limit) {
  const File file(AT_FDCWD, path);
  const auto stated = file.StatedSize();
  if (!stated) return std::nullopt;

  // One byte of room more than the file should have: a buffer that comes back full means that there is more.
  std::vector<std::uint8_t> bytes(std::min(*stated, limit) + 1);
  std::size_t filled = 0;
  for (;;) {
    const auto count = file.ReadAt(filled, std::span(bytes).subspan(filled));
    if (!count) return std::nullopt;
    filled += *count;
    if (filled > limit) return std::nullopt;
    if (filled == bytes.size()) {
      bytes.resize(std::min(std::max(2 * bytes.size(), kAttributeLimit), limit + 1));
    } else if (*count == 0 || (*stated != 0 && *count % kPage != 0)) {
      // Less than there was room for is the end, but for whole pages of sysfs and the pieces of proc.
      break;
    }
  }
  bytes.resize(filled);
  return bytes;
}

std::optional<std::string> ReadAttribute(const char* path) { return ReadAttribute(AT_FDCWD, path); }

std::optional<std::string> ReadAttribute(int folder, const char* path) {
  const File file(folder, path);
  if (!file.IsOpen()) return std::nullopt;
  std::array<std::uint8_t, kAttributeLimit + 1> bytes;
  const auto count = file.ReadAt(0, bytes);
  if (!count || *count > kAttributeLimit) return std::nullopt;
  std::uint8_t more = 0;
  if (*count == kAttributeLimit && file.ReadAt(*count, {&more, 1}) != 0) return std::nullopt;
  const bool is_line = *count > 0 && bytes[*count - 1] == '\n';
  // The kernel ends what it tells with a newline; only of anything else it is asked whether that is a file.
  if (!is_line && !file.StatedSize()) return std::nullopt;
  return std::string(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(*count - (is_line ? 1 : 0)));
}

}  // namespace ostrine
