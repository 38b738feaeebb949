#include "platform/linux/small_file.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <charconv>

#include "platform/linux/descriptor.h"

namespace velmora::os {
namespace {

/// Whether an open file is a regular one; errno tells why not.
bool IsRegular(const Descriptor& file) {
  struct stat status{};
  if (fstat(file.Number(), &status) != 0) return false;
  if (S_ISREG(status.st_mode)) return true;
  errno = EACCES;
  return false;
}

/// Opens without waiting: a pipe in the file's place must not hold the caller up.
Descriptor OpenRegular(const std::filesystem::path& path, int access) {
  Descriptor file(open(path.c_str(), access | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!file || !IsRegular(file)) return {};
  return file;
}

std::optional<std::string> ReadAll(const Descriptor& file) {
  std::string text;
  char part[4096];
  for (;;) {
    const ssize_t count = read(file.Number(), part, sizeof part);
    if (count == 0) return text;
    if (count < 0) {
      if (errno == EINTR) continue;
      return std::nullopt;
    }
    if (static_cast<std::size_t>(count) > kSmallFileLimit - text.size()) {
      errno = EFBIG;
      return std::nullopt;
    }
    text.append(part, static_cast<std::size_t>(count));
  }
}

/// Calls `use` with each name in the folder, but "." and ".."; false, with errno, when it cannot be read.
template <class Use>
bool ForEachName(const char* path, Use use) {
  const Descriptor folder(open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK));
  if (!folder) return false;
  constexpr std::size_t kRoom = 32768;
  alignas(dirent64) char entries[kRoom];
  for (;;) {
    const ssize_t size = getdents64(folder.Number(), entries, sizeof entries);
    if (size <= 0) return size == 0;
    for (std::size_t at = 0; at < static_cast<std::size_t>(size);) {
      const auto* const entry = reinterpret_cast<const dirent64*>(entries + at);
      at += entry->d_reclen;
      const std::string_view name = entry->d_name;
      if (name != "." && name != "..") use(name);
    }
  }
}

}  // namespace

std::optional<std::string> ReadSmallFile(const std::filesystem::path& path) {
  const Descriptor file = OpenRegular(path, O_RDONLY);
  return file ? ReadAll(file) : std::nullopt;
}

std::optional<std::string> ReadAttribute(const std::filesystem::path& path) {
  return ReadAttribute(path.native());
}

std::optional<std::string> ReadAttribute(const std::string& path) { return ReadAttribute(AT_FDCWD, path); }

std::optional<std::string> ReadAttribute(int folder, const std::string& path) {
  const Descriptor file(openat(folder, path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!file) return std::nullopt;
  // Nearly all are a few bytes with a newline at their end. What is so need not be asked whether it is a
  // file: the kernel refuses to read a pipe or terminal at a place.
  char line[1024];
  const ssize_t size = pread(file.Number(), line, sizeof line, 0);
  const bool is_whole = size > 0 && static_cast<std::size_t>(size) < sizeof line && line[size - 1] == '\n';
  if (is_whole) return std::string(line, static_cast<std::size_t>(size) - 1);
  if (!IsRegular(file)) return std::nullopt;
  auto text = ReadAll(file);
  if (text && text->ends_with('\n')) text->pop_back();
  return text;
}

std::optional<std::int64_t> ReadNumber(const std::filesystem::path& path) {
  const auto text = ReadAttribute(path);
  if (!text) return std::nullopt;
  std::int64_t number = 0;
  const char* end = text->data() + text->size();
  const auto [rest, error] = std::from_chars(text->data(), end, number);
  if (error != std::errc() || rest != end) return std::nullopt;
  return number;
}

bool WriteExisting(const std::filesystem::path& path, std::string_view text) {
  const Descriptor file = OpenRegular(path, O_WRONLY);
  if (!file) return false;
  ssize_t written = 0;
  do {
    written = write(file.Number(), text.data(), text.size());
  } while (written < 0 && errno == EINTR);
  if (written >= 0 && written != static_cast<ssize_t>(text.size())) errno = EIO;
  return written == static_cast<ssize_t>(text.size());
}

std::optional<std::vector<std::string>> ListNames(const std::filesystem::path& path) {
  return ListNames(path.native());
}

std::optional<std::vector<std::string>> ListNames(const std::string& path) {
  std::vector<std::string> names;
  if (!ForEachName(path.c_str(), [&](std::string_view name) { names.emplace_back(name); }))
    return std::nullopt;
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace velmora::os
