#include "ostrine/linux/sysfs.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <memory>
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

struct FolderCloser {
  void operator()(DIR* folder) const noexcept { closedir(folder); }
};

/// An entry that is opened for its name alone: nothing is read, and no device is woken.
class NamedEntry {
 public:
  explicit NamedEntry(const Path& path) noexcept : entry_(open(path.c_str(), O_PATH | O_CLOEXEC)) {}
  NamedEntry(const NamedEntry&) = delete;
  NamedEntry& operator=(const NamedEntry&) = delete;
  ~NamedEntry() {
    if (entry_ >= 0) close(entry_);
  }

  bool IsThere() const { return entry_ >= 0; }

  /// The name by which the kernel knows the entry; empty where it cannot be told.
  Path Name() const {
    if (entry_ < 0) return {};
    std::error_code error;
    Path name = std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(entry_), error);
    return error ? Path() : name;
  }

 private:
  int entry_;
};

/// `path` with every link resolved; empty when it leads nowhere or in circles. The kernel is asked first, as
/// it needs one step where going through the path needs one for each of its parts.
Path Resolve(const Path& path) {
  const NamedEntry entry(path);
  if (!entry.IsThere() && (errno == ENOENT || errno == ENOTDIR || errno == ELOOP)) return {};
  Path name = entry.Name();
  if (!name.empty()) return name;
  std::error_code error;
  Path resolved = std::filesystem::canonical(path, error);
  return error ? Path() : resolved;
}

}  // namespace

std::vector<std::string> EntryNames(const Path& folder, std::string_view start, std::size_t limit) {
  std::vector<std::string> names;
  const std::unique_ptr<DIR, FolderCloser> open(opendir(folder.c_str()));
  if (!open) return names;
  std::size_t seen = 0;
  while (const dirent* const entry = readdir(open.get())) {
    const std::string_view name = entry->d_name;
    if (name == "." || name == "..") continue;
    if (++seen > limit) break;
    if (name.starts_with(start)) names.emplace_back(name);
  }
  std::sort(names.begin(), names.end(), ComesBefore);
  return names;
}

std::string CleanAttribute(const Path& path) {
  std::string text = ReadAttribute(path).value_or(std::string());
  std::erase_if(text, IsControl);
  text.erase(text.find_last_not_of(' ') + 1);
  text.erase(0, text.find_first_not_of(' '));
  return text;
}

std::optional<std::int64_t> NumberAttribute(const Path& path) {
  return Parse<std::int64_t>(CleanAttribute(path), 10);
}

std::optional<std::uint32_t> HexAttribute(const Path& path) {
  const std::string text = CleanAttribute(path);
  std::string_view digits = text;
  if (digits.starts_with("0x")) digits.remove_prefix(2);
  return Parse<std::uint32_t>(digits, 16);
}

std::string LinkName(const Path& path) {
  std::error_code error;
  const Path target = std::filesystem::read_symlink(path, error);
  return error ? std::string() : target.filename().string();
}

Path ResolveBelow(const Path& path, const Path& folder) {
  const Path resolved = Resolve(path);
  if (resolved.empty()) return {};
  const auto ends = std::mismatch(folder.begin(), folder.end(), resolved.begin(), resolved.end());
  return ends.first == folder.end() ? resolved : Path();
}

bool Exists(const Path& path) {
  std::error_code error;
  return std::filesystem::exists(path, error);
}

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
