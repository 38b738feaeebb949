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

/// An open file descriptor, or none where the file could not be opened.
class File {
 public:
  explicit File(const char* path)
      // Nonblocking, so that a pipe in the file's place cannot hold the caller up.
      : descriptor_(open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {}
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  ~File() {
    if (descriptor_ >= 0) close(descriptor_);
  }

  /// Size that the system states, which for proc is 0 and for sysfs a page; nothing unless a regular file is
  /// open.
  std::optional<std::size_t> StatedSize() const {
    struct stat status{};
    if (descriptor_ < 0 || fstat(descriptor_, &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    return static_cast<std::size_t>(status.st_size);
  }

  /// Fills `buffer` up to the file's end; the number of bytes read, nothing when reading fails.
  std::optional<std::size_t> Read(std::span<std::uint8_t> buffer) const {
    std::size_t filled = 0;
    while (filled < buffer.size()) {
      const ssize_t count = read(descriptor_, buffer.data() + filled, buffer.size() - filled);
      if (count == 0) break;
      if (count > 0) {
        filled += static_cast<std::size_t>(count);
      } else if (errno != EINTR) {
        return std::nullopt;
      }
    }
    return filled;
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
  const File file(path);
  const auto stated = file.StatedSize();
  if (!stated) return std::nullopt;

  // One byte of room more than the file should have: a buffer that comes back full means that there is more.
  std::vector<std::uint8_t> bytes(std::min(*stated, limit) + 1);
  std::size_t filled = 0;
  for (;;) {
    const auto count = file.Read(std::span(bytes).subspan(filled));
    if (!count) return std::nullopt;
    filled += *count;
    if (filled > limit) return std::nullopt;
    if (filled < bytes.size()) break;
    bytes.resize(std::min(std::max(2 * bytes.size(), kAttributeLimit), limit + 1));
  }
  bytes.resize(filled);
  return bytes;
}

std::optional<std::string> ReadAttribute(const char* path) {
  const File file(path);
  if (!file.StatedSize()) return std::nullopt;
  std::array<std::uint8_t, kAttributeLimit + 1> bytes;
  auto count = file.Read(bytes);
  if (!count || *count > kAttributeLimit) return std::nullopt;
  if (*count > 0 && bytes[*count - 1] == '\n') --*count;
  return std::string(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(*count));
}

}  // namespace ostrine
