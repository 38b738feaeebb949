/// Bounded looks at folders, links and one-value files of sysfs and proc. What is absent, not readable or not
/// of the expected form is empty or nothing; no link is followed in a loop.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostrine {

using Path = std::filesystem::path;

/// A folder with more entries is read no further: more than a machine has of anything, processes included.
inline constexpr std::size_t kEntryLimit = 32768;

/// Names in `folder` that begin with `start`, without "." and "..", in natural order ("hci2" before "hci10").
std::vector<std::string> EntryNames(const Path& folder, std::string_view start = {},
                                    std::size_t limit = kEntryLimit);

/// The attribute's text without control characters and without blanks at its ends.
std::string CleanAttribute(const Path& path);

/// The attribute as a decimal number, with a sign or without.
std::optional<std::int64_t> NumberAttribute(const Path& path);

/// The attribute as a hexadecimal number of at most 32 bits, with "0x" before it or without.
std::optional<std::uint32_t> HexAttribute(const Path& path);

/// Last component of where the link `path` points; empty for anything that is not a link.
std::string LinkName(const Path& path);

/// `path` with every link resolved; empty when it leads nowhere, or in circles, or out of `folder`, which is
/// itself free of links.
Path ResolveBelow(const Path& path, const Path& folder);

bool Exists(const Path& path);

/// Where the link `path` points, as it says itself; empty for anything that is not a link.
std::string LinkTarget(const std::string& path);

/// A folder that is opened once, for those who look at many things below it: what the functions above do, for
/// paths that begin at the folder ("0000:00:02.0/driver"). One that cannot be opened has nothing in it.
class Folder {
 public:
  explicit Folder(std::string path);
  explicit Folder(const Path& path) : Folder(path.native()) {}
  explicit Folder(const char* path) : Folder(std::string(path)) {}
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  ~Folder();

  std::vector<std::string> EntryNames(std::string_view start = {});
  /// In the order of their bytes.
  std::vector<std::string> EntryNamesByBytes();
  std::optional<std::string> ReadAttribute(const std::string& name) const;
  std::string CleanAttribute(const std::string& name) const;
  std::optional<std::int64_t> NumberAttribute(const std::string& name) const;
  std::optional<std::uint32_t> HexAttribute(const std::string& name) const;
  std::string LinkName(const std::string& name) const;
  bool Exists(const std::string& name) const;
  Path ResolveBelow(const std::string& name, const Path& folder) const;
  /// The same without the taking apart of paths.
  std::string ResolveBelow(const std::string& name, std::string_view folder) const;

  /// What the link says, which may begin anywhere; empty for anything that is not a link.
  std::string LinkTarget(const std::string& name) const;

 private:
  void Rewind();

  std::string path_;
  int descriptor_;
  bool is_listed_ = false;
};

/// Value of `key` in a text of lines "KEY=value", as `uevent` has them.
std::string LineValue(std::string_view text, std::string_view key);

}  // namespace ostrine
