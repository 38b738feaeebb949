#include "platform/linux/small_file.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <charconv>

#include "platform/linux/descriptor.h"
#include "platform/linux/folder.h"

namespace velmora::os {
namespace {

/// Opens without waiting: a pipe in the file's place must not hold the caller up.
Descriptor OpenRegular(const std::filesystem::path& path, int access) {
  Descriptor file(open(path.c_str(), access | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  struct stat status{};
  if (!file || fstat(file.Number(), &status) != 0) return {};
  if (!S_ISREG(status.st_mode)) {
    errno = EACCES;
    return {};
  }
  return file;
}

}  // namespace

std::optional<std::string> ReadSmallFile(const std::filesystem::path& path) {
  const Descriptor file = OpenRegular(path, O_RDONLY);
  if (!file) return std::nullopt;
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

std::optional<std::string> ReadAttribute(const std::filesystem::path& path) {
  auto text = ReadSmallFile(path);
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
  const Folder folder(opendir(path.c_str()));
  if (!folder) return std::nullopt;
  std::vector<std::string> names;
  errno = 0;
  while (const dirent* entry = readdir(folder.get())) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") names.emplace_back(name);
    errno = 0;
  }
  if (errno != 0) return std::nullopt;
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace velmora::os
