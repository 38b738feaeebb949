#include "ostrine/linux/sysfs.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <climits>
#include <string>
#include <system_error>

#include "ostrine/common/natural_order.h"
#include "ostrine/linux/file.h"

namespace ostrine {
namespace {

bool IsControl(char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }

template <class Number>
std::optional<Number> Parse(std::string_view text, int base) {
  Number number{};
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number, base);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

std::optional<std::uint32_t> ParseHex(std::string_view digits) {
  if (digits.starts_with("0x")) digits.remove_prefix(2);
  return Parse<std::uint32_t>(digits, 16);
}

std::string Cleaned(std::optional<std::string> attribute) {
  std::string text = std::move(attribute).value_or(std::string());
  std::erase_if(text, IsControl);
  text.erase(text.find_last_not_of(' ') + 1);
  text.erase(0, text.find_first_not_of(' '));
  return text;
}

/// Where the link `path` points; empty for anything that is not a link.
std::string TargetOf(int folder, const char* path) {
  std::array<char, PATH_MAX> target;
  const ssize_t size = readlinkat(folder, path, target.data(), target.size());
  // One that fills the room may have been cut.
  if (size <= 0 || static_cast<std::size_t>(size) >= target.size()) return {};
  return {target.data(), static_cast<std::size_t>(size)};
}

std::string LastPart(const std::string& path) { return path.substr(path.find_last_of('/') + 1); }

bool IsThere(int folder, const char* path) {
  struct stat status{};
  return fstatat(folder, path, &status, 0) == 0;
}

/// A file descriptor, which may be none.
class Descriptor {
 public:
  explicit Descriptor(int number) noexcept : number_(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (number_ >= 0) close(number_);
  }

  int Number() const { return number_; }

 private:
  int number_;
};

/// `path` with every link resolved; empty when it leads nowhere or in circles. The kernel is asked first, as
/// it needs one step where going through the path needs one for each of its parts. The entry is opened for
/// its name alone: nothing is read, and no device is woken.
std::string Resolve(const char* path) {
  const Descriptor entry(open(path, O_PATH | O_CLOEXEC));
  if (entry.Number() < 0) return {};
  std::string name = TargetOf(AT_FDCWD, ("/proc/self/fd/" + std::to_string(entry.Number())).c_str());
  if (!name.empty()) return name;
  std::error_code error;
  const Path resolved = std::filesystem::canonical(path, error);
  return error ? std::string() : resolved.native();
}

/// The same; empty, too, when it leads out of `folder`.
std::string ResolveWithin(const char* path, std::string_view folder) {
  std::string name = Resolve(path);
  if (folder.ends_with('/')) folder.remove_suffix(1);
  const bool is_within =
      name.starts_with(folder) && (name.size() == folder.size() || name[folder.size()] == '/');
  return is_within ? name : std::string();
}

int OpenFolder(const char* path) noexcept {
  return open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK);
}

std::vector<std::string> NamesIn(int folder, std::string_view start, std::size_t limit) {
  constexpr std::size_t kRoom = 32768;
  alignas(dirent64) std::array<char, kRoom> entries;
  std::vector<std::string> names;
  std::size_t seen = 0;
  while (folder >= 0 && seen <= limit) {
    const ssize_t size = getdents64(folder, entries.data(), entries.size());
    if (size <= 0) break;
    for (std::size_t at = 0; at < static_cast<std::size_t>(size);) {
      const auto* const entry = reinterpret_cast<const dirent64*>(entries.data() + at);
      at += entry->d_reclen;
      const std::string_view name = entry->d_name;
      if (name == "." || name == "..") continue;
      if (++seen > limit) break;
      if (name.starts_with(start)) names.emplace_back(name);
    }
  }
  return names;
}

std::vector<std::string> InNaturalOrder(std::vector<std::string> names) {
  std::sort(names.begin(), names.end(), ComesBefore);
  return names;
}

}  // namespace

Folder::Folder(std::string path) : path_(std::move(path)), descriptor_(OpenFolder(path_.c_str())) {}

Folder::~Folder() {
  if (descriptor_ >= 0) close(descriptor_);
}

std::vector<std::string> Folder::EntryNames(std::string_view start) {
  Rewind();
  return InNaturalOrder(NamesIn(descriptor_, start, kEntryLimit));
}

std::vector<std::string> Folder::EntryNamesByBytes() {
  Rewind();
  std::vector<std::string> names = NamesIn(descriptor_, {}, kEntryLimit);
  std::sort(names.begin(), names.end());
  return names;
}

void Folder::Rewind() {
  if (is_listed_ && descriptor_ >= 0) lseek(descriptor_, 0, SEEK_SET);
  is_listed_ = true;
}

std::optional<std::string> Folder::ReadAttribute(const std::string& name) const {
  if (descriptor_ < 0) return std::nullopt;
  return ostrine::ReadAttribute(descriptor_, name.c_str());
}

std::string Folder::CleanAttribute(const std::string& name) const { return Cleaned(ReadAttribute(name)); }

std::optional<std::int64_t> Folder::NumberAttribute(const std::string& name) const {
  return Parse<std::int64_t>(CleanAttribute(name), 10);
}

std::optional<std::uint32_t> Folder::HexAttribute(const std::string& name) const {
  return ParseHex(CleanAttribute(name));
}

std::string Folder::LinkTarget(const std::string& name) const {
  return descriptor_ < 0 ? std::string() : TargetOf(descriptor_, name.c_str());
}

std::string Folder::LinkName(const std::string& name) const { return LastPart(LinkTarget(name)); }

bool Folder::Exists(const std::string& name) const {
  return descriptor_ >= 0 && IsThere(descriptor_, name.c_str());
}

Path Folder::ResolveBelow(const std::string& name, const Path& folder) const {
  return ResolveBelow(name, std::string_view(folder.native()));
}

std::string Folder::ResolveBelow(const std::string& name, std::string_view folder) const {
  return ResolveWithin((path_ + "/" + name).c_str(), folder);
}

std::vector<std::string> EntryNames(const Path& folder, std::string_view start, std::size_t limit) {
  const Descriptor opened(OpenFolder(folder.c_str()));
  return InNaturalOrder(NamesIn(opened.Number(), start, limit));
}

std::string CleanAttribute(const Path& path) { return Cleaned(ReadAttribute(path)); }

std::optional<std::int64_t> NumberAttribute(const Path& path) {
  return Parse<std::int64_t>(CleanAttribute(path), 10);
}

std::optional<std::uint32_t> HexAttribute(const Path& path) { return ParseHex(CleanAttribute(path)); }

std::string LinkName(const Path& path) { return LastPart(TargetOf(AT_FDCWD, path.c_str())); }

Path ResolveBelow(const Path& path, const Path& folder) {
  return ResolveWithin(path.c_str(), folder.native());
}

std::string LinkTarget(const std::string& path) { return TargetOf(AT_FDCWD, path.c_str()); }

bool Exists(const Path& path) { return IsThere(AT_FDCWD, path.c_str()); }

std::string LineValue(std::string_view text, std::string_view key) {
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    if (line.size() > key.size() && line.starts_with(key) && line[key.size()] == '=') {
      return std::string(line.substr(key.size() + 1));
    }
  }
  return {};
}

}  // namespace ostrine
