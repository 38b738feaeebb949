#include "platform/os/folders.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/linux/descriptor.h"
#include "platform/linux/entry_facts.h"
#include "platform/linux/file_time.h"
#include "platform/linux/handle_object.h"
#include "platform/linux/system_path.h"
#include "platform/os/last_error.h"

namespace velmora::os {
namespace {

constexpr std::uint32_t kErrorNoMoreFiles = 18;
constexpr std::uint32_t kErrorFileInvalid = 1006;
constexpr int kToList = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
constexpr int kToStepOn = O_PATH | O_DIRECTORY | O_CLOEXEC;

/// An opened folder and how far it has been listed. Entries come in blocks, whose memory goes with the last.
class OpenedFolder : public HandleObject {
 public:
  explicit OpenedFolder(Descriptor folder) noexcept : folder_(std::move(folder)) {}

  int Number() const noexcept { return folder_.Number(); }

  /// The next entry; null at the end with errno 0, or on failure.
  const dirent64* Next() {
    errno = 0;
    if (at_ == end_ && !ReadBlock()) return nullptr;
    const auto* entry = reinterpret_cast<const dirent64*>(block_->bytes.data() + at_);
    at_ += entry->d_reclen;
    return entry;
  }

 private:
  struct Block {
    alignas(dirent64) std::array<char, 32768> bytes;
  };

  bool ReadBlock() {
    if (!block_) block_ = std::make_unique_for_overwrite<Block>();
    const ssize_t size = getdents64(folder_.Number(), block_->bytes.data(), block_->bytes.size());
    at_ = 0;
    end_ = size > 0 ? static_cast<std::size_t>(size) : 0;
    if (end_ == 0) block_.reset();
    return end_ != 0;
  }

  Descriptor folder_;
  std::unique_ptr<Block> block_;
  std::size_t at_ = 0;
  std::size_t end_ = 0;
};

bool IsElement(std::string_view text) noexcept {
  return !text.empty() && text != "." && text != ".." && text.find('/') == std::string_view::npos;
}

/// A failed step, as callers are told of it: what is no folder, or no longer, is no way.
Descriptor Refuse() noexcept {
  if (errno == ENOENT || errno == ENOTDIR || errno == ELOOP) SetLastError(kErrorPathNotFound);
  return {};
}

/// Opens the folder `path` below `folder`, one element after the other; none of them may be a link.
Descriptor StepDown(int folder, std::string_view path, int how) {
  Descriptor reached;
  for (;;) {
    const std::size_t separator = path.find('\\');
    const std::string element(path.substr(0, separator));
    if (!IsElement(element)) {
      SetLastError(kErrorPathNotFound);
      return {};
    }
    const bool is_last = separator == std::string_view::npos;
    const int from = reached ? reached.Number() : folder;
    reached = Descriptor(openat(from, element.c_str(), (is_last ? how : kToStepOn) | O_NOFOLLOW));
    if (!reached) return Refuse();
    if (is_last) return reached;
    path.remove_prefix(separator + 1);
  }
}

FolderHandle HandleOfFolder(Descriptor folder) {
  return folder ? HandleOf(std::make_unique<OpenedFolder>(std::move(folder))) : nullptr;
}

template <class Result>
Result FailWith(std::uint32_t error) noexcept {
  SetLastError(error);
  return Result{};
}

/// Deletes `name` of the folder that `folder` is open on.
bool DeleteEntry(int folder, const char* name, const FileTime& last_write_time) noexcept {
  struct stat facts{};
  if (fstatat(folder, name, &facts, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT) != 0) return false;
  const auto units = [](const FileTime& time) { return (std::uint64_t{time.high} << 32) | time.low; };
  const auto written = FileTimeOf(facts.st_mtim.tv_sec, static_cast<std::uint32_t>(facts.st_mtim.tv_nsec));
  if (units(written) > units(last_write_time)) return FailWith<bool>(kErrorFileInvalid);
  return unlinkat(folder, name, 0) == 0;
}

}  // namespace

FolderHandle OpenFolderA(const char* pattern) {
  const auto path = ListedFolder(std::string_view(pattern));
  if (!path) return FailWith<FolderHandle>(kErrorPathNotFound);
  Descriptor folder(open(path->c_str(), kToList));
  return HandleOfFolder(folder ? std::move(folder) : Refuse());
}

FolderHandle OpenSubfolderA(FolderHandle handle, const char* path) {
  const auto* folder = ObjectOf<OpenedFolder>(handle);
  if (folder == nullptr) return FailWith<FolderHandle>(kErrorInvalidHandle);
  return HandleOfFolder(StepDown(folder->Number(), path, kToList));
}

bool ReadFolderA(FolderHandle handle, FolderEntry& entry) {
  auto* folder = ObjectOf<OpenedFolder>(handle);
  if (folder == nullptr) return FailWith<bool>(kErrorInvalidHandle);
  while (const dirent64* next = folder->Next()) {
    const auto facts = EntryFacts(folder->Number(), next->d_name);
    if (!facts || !IsShownEntry(*facts) || !PutName(std::string_view(next->d_name), entry.name)) continue;
    entry.attributes = EntryAttributes(folder->Number(), next->d_name, *facts);
    entry.last_write_time = FileTimeOf(facts->stx_mtime.tv_sec, facts->stx_mtime.tv_nsec);
    return true;
  }
  if (errno == 0) SetLastError(kErrorNoMoreFiles);
  return false;
}

bool DeleteFileBelowA(FolderHandle handle, const char* path, const FileTime& last_write_time) {
  const auto* folder = ObjectOf<OpenedFolder>(handle);
  if (folder == nullptr) return FailWith<bool>(kErrorInvalidHandle);
  const std::string_view all(path);
  const std::size_t separator = all.rfind('\\');
  const std::string name(separator == std::string_view::npos ? all : all.substr(separator + 1));
  if (!IsElement(name)) return FailWith<bool>(kErrorFileNotFound);
  if (separator == std::string_view::npos)
    return DeleteEntry(folder->Number(), name.c_str(), last_write_time);
  const Descriptor parent = StepDown(folder->Number(), all.substr(0, separator), kToStepOn);
  return parent && DeleteEntry(parent.Number(), name.c_str(), last_write_time);
}

bool CloseFolder(FolderHandle folder) { return CloseObject<OpenedFolder>(folder); }

}  // namespace velmora::os
