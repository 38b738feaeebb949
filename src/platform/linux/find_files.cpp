#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/linux/descriptor.h"
#include "platform/linux/file_time.h"
#include "platform/linux/folder.h"
#include "platform/linux/handle_object.h"
#include "platform/linux/system_path.h"
#include "platform/os/files.h"
#include "platform/os/last_error.h"

namespace velmora::os {
namespace {

constexpr std::uint32_t kErrorNoMoreFiles = 18;

/// An opened folder and how far it has been listed.
class FolderListing : public HandleObject {
 public:
  explicit FolderListing(Folder folder) noexcept : folder_(std::move(folder)) {}

  /// The next entry; null at the end with errno 0, or on failure.
  const dirent* Next() noexcept {
    errno = 0;
    return readdir(folder_.get());
  }
  int Number() const noexcept { return dirfd(folder_.get()); }

 private:
  Folder folder_;
};

/// Facts of an entry itself, links not followed; nothing when it has gone meanwhile or may not be looked at.
std::optional<struct statx> FactsOf(const FolderListing& folder, const char* name) noexcept {
  struct statx facts{};
  constexpr int kItself = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT;
  constexpr unsigned int kWanted = STATX_BASIC_STATS | STATX_BTIME;
  if (statx(folder.Number(), name, kItself, kWanted, &facts) != 0) return std::nullopt;
  return facts;
}

bool LeadsToFolder(const FolderListing& folder, const char* link) noexcept {
  struct stat target{};
  return fstatat(folder.Number(), link, &target, AT_NO_AUTOMOUNT) == 0 && S_ISDIR(target.st_mode);
}

std::uint32_t AttributesOf(const FolderListing& folder, const char* name,
                           const struct statx& facts) noexcept {
  constexpr unsigned int kAnyoneWrites = S_IWUSR | S_IWGRP | S_IWOTH;
  if (S_ISLNK(facts.stx_mode)) {
    return kFileAttributeReparsePoint | (LeadsToFolder(folder, name) ? kFileAttributeDirectory : 0);
  }
  const std::uint32_t kind = S_ISDIR(facts.stx_mode) ? kFileAttributeDirectory : 0;
  return kind | ((facts.stx_mode & kAnyoneWrites) == 0 ? kFileAttributeReadOnly : 0);
}

/// Whether callers are shown an entry: folders, files and links. A device, socket or pipe is no file that a
/// caller could mean when it reads or prunes a folder.
bool IsShown(const struct statx& facts) noexcept {
  return S_ISDIR(facts.stx_mode) || S_ISREG(facts.stx_mode) || S_ISLNK(facts.stx_mode);
}

FileTime TimeOf(const statx_timestamp& time) noexcept { return FileTimeOf(time.tv_sec, time.tv_nsec); }

/// Tells all about an entry; false for one that is not shown.
bool Describe(const FolderListing& folder, const dirent& entry, FindData<char>& data) noexcept {
  const auto facts = FactsOf(folder, entry.d_name);
  if (!facts || !IsShown(*facts)) return false;
  const bool has_creation = (facts->stx_mask & STATX_BTIME) != 0;
  data.attributes = AttributesOf(folder, entry.d_name, *facts);
  data.creation_time = TimeOf(has_creation ? facts->stx_btime : facts->stx_mtime);
  data.last_access_time = TimeOf(facts->stx_atime);
  data.last_write_time = TimeOf(facts->stx_mtime);
  data.size = facts->stx_size;
  return true;
}

/// Tells what kind of entry it is, which the listing itself says on most file systems.
bool Describe(const FolderListing& folder, const dirent& entry, FindData<wchar_t>& data) noexcept {
  constexpr std::uint32_t kTold = kFileAttributeDirectory | kFileAttributeReparsePoint;
  switch (entry.d_type) {
    case DT_DIR:
      data.attributes = kFileAttributeDirectory;
      return true;
    case DT_REG:
      data.attributes = 0;
      return true;
    case DT_LNK:
    case DT_UNKNOWN: {
      const auto facts = FactsOf(folder, entry.d_name);
      if (!facts || !IsShown(*facts)) return false;
      data.attributes = AttributesOf(folder, entry.d_name, *facts) & kTold;
      return true;
    }
    default:
      return false;
  }
}

template <class Character>
bool FindNext(FolderListing& folder, FindData<Character>& data) noexcept {
  while (const dirent* entry = folder.Next()) {
    if (Describe(folder, *entry, data) && PutName(entry->d_name, data.name)) return true;
  }
  if (errno == 0) SetLastError(kErrorNoMoreFiles);
  return false;
}

template <class Character>
Handle FindFirst(const Character* pattern, FindData<Character>& data) {
  const std::basic_string_view<Character> text(pattern);
  const auto folder = ListedFolder(text);
  if (!folder) {
    SetLastError(kErrorPathNotFound);
    return InvalidHandle();
  }
  // Opened as a folder only, so that a pipe in its place cannot hold the caller up.
  Descriptor opened(open(folder->c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  Folder listed(opened ? fdopendir(opened.Number()) : nullptr);
  if (!listed) {
    if (errno == ENOENT) SetLastError(kErrorPathNotFound);
    return InvalidHandle();
  }
  opened.Release();  // closed with the listing from here on
  auto listing = std::make_unique<FolderListing>(std::move(listed));
  if (!FindNext(*listing, data)) {
    if (LastError() == kErrorNoMoreFiles) SetLastError(kErrorFileNotFound);
    return InvalidHandle();
  }
  return HandleOf(std::move(listing));
}

template <class Character>
bool FindNext(Handle find, FindData<Character>& data) noexcept {
  auto* folder = ObjectOf<FolderListing>(find);
  if (folder != nullptr) return FindNext(*folder, data);
  SetLastError(kErrorInvalidHandle);
  return false;
}

}  // namespace

Handle FindFirstFileW(const wchar_t* pattern, FindData<wchar_t>& data) { return FindFirst(pattern, data); }
Handle FindFirstFileA(const char* pattern, FindData<char>& data) { return FindFirst(pattern, data); }
bool FindNextFileW(Handle find, FindData<wchar_t>& data) { return FindNext(find, data); }
bool FindNextFileA(Handle find, FindData<char>& data) { return FindNext(find, data); }
bool FindClose(Handle find) { return CloseObject<FolderListing>(find); }

}  // namespace velmora::os
