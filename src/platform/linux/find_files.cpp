#include <fcntl.h>

#include <cerrno>
#include <memory>
#include <string>
#include <string_view>

#include "platform/linux/descriptor.h"
#include "platform/linux/entry_facts.h"
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

/// Tells what kind of entry it is, which the listing itself says on most file systems.
bool Describe(const FolderListing& folder, const dirent& entry, FindData& data) noexcept {
  switch (entry.d_type) {
    case DT_DIR:
      data.attributes = kFileAttributeDirectory;
      return true;
    case DT_REG:
      data.attributes = 0;
      return true;
    case DT_LNK:
    case DT_UNKNOWN: {
      const auto facts = EntryFacts(folder.Number(), entry.d_name);
      if (!facts || !IsShownEntry(*facts)) return false;
      data.attributes = EntryAttributes(folder.Number(), entry.d_name, *facts);
      return true;
    }
    default:
      return false;
  }
}

bool FindNext(FolderListing& folder, FindData& data) noexcept {
  while (const dirent* entry = folder.Next()) {
    if (Describe(folder, *entry, data) && PutName(entry->d_name, data.name)) return true;
  }
  if (errno == 0) SetLastError(kErrorNoMoreFiles);
  return false;
}

}  // namespace

Handle FindFirstFileW(const wchar_t* pattern, FindData& data) {
  const auto folder = ListedFolder(std::wstring_view(pattern));
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

bool FindNextFileW(Handle find, FindData& data) {
  auto* folder = ObjectOf<FolderListing>(find);
  if (folder != nullptr) return FindNext(*folder, data);
  SetLastError(kErrorInvalidHandle);
  return false;
}

bool FindClose(Handle find) { return CloseObject<FolderListing>(find); }

}  // namespace velmora::os
