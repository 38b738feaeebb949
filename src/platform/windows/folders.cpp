#include "platform/os/folders.h"

#include <windows.h>

#include <winternl.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "platform/windows/long_path.h"

namespace velmora::os {
namespace {

constexpr ULONG kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// A kernel object's handle, owned; closing it keeps the last error.
class File {
 public:
  explicit File(HANDLE file = nullptr) noexcept : file_(file != INVALID_HANDLE_VALUE ? file : nullptr) {}
  File(File&& other) noexcept : file_(std::exchange(other.file_, nullptr)) {}
  File& operator=(File&& other) noexcept {
    std::swap(file_, other.file_);
    return *this;
  }
  ~File() {
    if (file_ == nullptr) return;
    const DWORD error = GetLastError();
    ::CloseHandle(file_);
    SetLastError(error);
  }
  explicit operator bool() const noexcept { return file_ != nullptr; }
  HANDLE Get() const noexcept { return file_; }

 private:
  HANDLE file_;
};

/// What a folder handle points to: the folder, and the block of entries that is being gone through.
struct OpenedFolder {
  explicit OpenedFolder(File opened) noexcept : folder(std::move(opened)) {}

  File folder;
  struct Block {
    alignas(FILE_ID_BOTH_DIR_INFO) std::array<std::byte, 32768> bytes;
  };
  std::unique_ptr<Block> block;
  const FILE_ID_BOTH_DIR_INFO* next = nullptr;
};

template <class Result>
Result Fail(DWORD error) noexcept {
  SetLastError(error);
  return Result{};
}

std::wstring Widened(std::string_view narrow) {
  std::wstring wide(narrow.size(), L'\0');
  const int size = static_cast<int>(narrow.size());
  const int units = size == 0 ? 0 : MultiByteToWideChar(CP_ACP, 0, narrow.data(), size, wide.data(), size);
  wide.resize(static_cast<std::size_t>(units));
  return wide;
}

/// Puts the name into the narrow field if it can be told from every other there. The system would otherwise
/// put letters that look alike in place of those that the code page lacks, which may be another file's name.
template <std::size_t kSize>
void PutNarrowName(std::wstring_view name, char (&field)[kSize]) {
  const bool is_utf8 = GetACP() == CP_UTF8;
  const int size = static_cast<int>(name.size());
  const int bytes = WideCharToMultiByte(CP_ACP, is_utf8 ? 0 : WC_NO_BEST_FIT_CHARS, name.data(), size, field,
                                        static_cast<int>(kSize - 1), nullptr, nullptr);
  field[bytes] = '\0';
  if (bytes > 0 && Widened({field, static_cast<std::size_t>(bytes)}) == name) return;
  field[0] = '?';
  field[1] = '\0';
}

bool IsElement(std::wstring_view name) {
  constexpr std::wstring_view kNever(L"<>:\"/|?*\0", 9);
  return !name.empty() && name != L"." && name != L".." &&
         name.find_first_of(kNever) == std::wstring_view::npos;
}

/// A path's element, as the system's own functions take it.
class Element {
 public:
  Element(HANDLE folder, std::wstring_view name) noexcept {
    text_.Buffer = const_cast<wchar_t*>(name.data());
    text_.Length = text_.MaximumLength = static_cast<USHORT>(name.size() * sizeof(wchar_t));
    InitializeObjectAttributes(&attributes_, &text_, OBJ_CASE_INSENSITIVE, folder, nullptr);
  }
  Element(const Element&) = delete;
  Element& operator=(const Element&) = delete;
  OBJECT_ATTRIBUTES* Get() noexcept { return &attributes_; }

 private:
  UNICODE_STRING text_{};
  OBJECT_ATTRIBUTES attributes_{};
};

/// Opens the entry `name` of `folder` itself: of a link the link.
File OpenEntry(HANDLE folder, std::wstring_view name, ACCESS_MASK access, ULONG options) {
  constexpr std::size_t kLongest = 255;
  if (!IsElement(name) || name.size() > kLongest) return Fail<File>(ERROR_INVALID_NAME);
  Element element(folder, name);
  IO_STATUS_BLOCK status{};
  HANDLE entry = nullptr;
  const NTSTATUS result = NtOpenFile(&entry, access | SYNCHRONIZE, element.Get(), &status, kShareAll,
                                     options | FILE_OPEN_REPARSE_POINT | FILE_SYNCHRONOUS_IO_NONALERT);
  if (result < 0) return Fail<File>(RtlNtStatusToDosError(result));
  return File(entry);
}

bool IsLink(HANDLE entry) {
  BY_HANDLE_FILE_INFORMATION facts{};
  return GetFileInformationByHandle(entry, &facts) == FALSE ||
         (facts.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

/// The same as its path tells it: some file systems below follow a link whatever they are asked.
bool IsLink(HANDLE folder, std::wstring_view name) {
  std::wstring path(GetFinalPathNameByHandleW(folder, nullptr, 0, FILE_NAME_NORMALIZED), L'\0');
  const DWORD size =
      GetFinalPathNameByHandleW(folder, path.data(), static_cast<DWORD>(path.size()), FILE_NAME_NORMALIZED);
  if (size == 0 || size >= path.size()) return false;
  path.resize(size);
  const DWORD attributes = GetFileAttributesW(path.append(1, L'\\').append(name).c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

/// Opens the folder `path` below `folder`, one element after the other; none of them may be a link.
File StepDown(HANDLE folder, std::wstring_view path) {
  File reached;
  for (;;) {
    const std::size_t separator = path.find(L'\\');
    const std::wstring_view name = path.substr(0, separator);
    const HANDLE from = reached ? reached.Get() : folder;
    File below = OpenEntry(from, name, FILE_LIST_DIRECTORY | FILE_READ_ATTRIBUTES, FILE_DIRECTORY_FILE);
    if (!below) {
      const DWORD error = GetLastError();
      return Fail<File>(error == ERROR_ACCESS_DENIED ? error : ERROR_PATH_NOT_FOUND);
    }
    if (IsLink(below.Get()) || IsLink(from, name)) return Fail<File>(ERROR_PATH_NOT_FOUND);
    if (separator == std::wstring_view::npos) return below;
    reached = std::move(below);
    path.remove_prefix(separator + 1);
  }
}

FolderHandle HandleOf(File folder) {
  return folder ? std::make_unique<OpenedFolder>(std::move(folder)).release() : nullptr;
}

bool ReadBlock(OpenedFolder& opened) {
  if (!opened.block) opened.block = std::make_unique_for_overwrite<OpenedFolder::Block>();
  auto& bytes = opened.block->bytes;
  if (GetFileInformationByHandleEx(opened.folder.Get(), FileIdBothDirectoryInfo, bytes.data(),
                                   static_cast<DWORD>(bytes.size())) == FALSE) {
    opened.block.reset();
    return false;
  }
  opened.next = reinterpret_cast<const FILE_ID_BOTH_DIR_INFO*>(bytes.data());
  return true;
}

std::uint64_t UnitsOf(std::uint32_t low, std::uint32_t high) { return (std::uint64_t{high} << 32) | low; }

bool Delete(HANDLE file, const FileTime& last_write_time) {
  BY_HANDLE_FILE_INFORMATION facts{};
  if (GetFileInformationByHandle(file, &facts) == FALSE) return false;
  const FILETIME& written = facts.ftLastWriteTime;
  if (UnitsOf(written.dwLowDateTime, written.dwHighDateTime) >
      UnitsOf(last_write_time.low, last_write_time.high)) {
    return Fail<bool>(ERROR_FILE_INVALID);
  }
  FILE_DISPOSITION_INFO disposition{};
  disposition.DeleteFile = TRUE;
  return SetFileInformationByHandle(file, FileDispositionInfo, &disposition, sizeof disposition) != FALSE;
}

}  // namespace

FolderHandle OpenFolderA(const char* pattern) {
  constexpr std::wstring_view kEverything = L"//*.*";
  std::wstring path = Widened(pattern);
  if (!path.ends_with(kEverything)) return Fail<FolderHandle>(ERROR_PATH_NOT_FOUND);
  path.resize(path.size() - kEverything.size());
  if (path.empty()) return Fail<FolderHandle>(ERROR_PATH_NOT_FOUND);
  if (path.back() == L':') path += L'\\';  // the folder that a drive's name stands for in front of a slash
  File folder(::CreateFileW(LongPath(path).c_str(), FILE_LIST_DIRECTORY | FILE_READ_ATTRIBUTES, kShareAll,
                            nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  if (!folder) {
    return GetLastError() == ERROR_FILE_NOT_FOUND ? Fail<FolderHandle>(ERROR_PATH_NOT_FOUND) : nullptr;
  }
  BY_HANDLE_FILE_INFORMATION facts{};
  if (GetFileInformationByHandle(folder.Get(), &facts) == FALSE) return nullptr;
  const bool is_folder = (facts.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  return is_folder ? HandleOf(std::move(folder)) : Fail<FolderHandle>(ERROR_PATH_NOT_FOUND);
}

FolderHandle OpenSubfolderA(FolderHandle handle, const char* path) {
  const auto* opened = static_cast<const OpenedFolder*>(handle);
  if (opened == nullptr) return Fail<FolderHandle>(ERROR_INVALID_HANDLE);
  return HandleOf(StepDown(opened->folder.Get(), Widened(path)));
}

bool ReadFolderA(FolderHandle handle, FolderEntry& entry) {
  auto* opened = static_cast<OpenedFolder*>(handle);
  if (opened == nullptr) return Fail<bool>(ERROR_INVALID_HANDLE);
  if (opened->next == nullptr && !ReadBlock(*opened)) return false;
  const FILE_ID_BOTH_DIR_INFO& next = *opened->next;
  entry.attributes = next.FileAttributes & (kFileAttributeDirectory | kFileAttributeReparsePoint);
  entry.last_write_time = {next.LastWriteTime.LowPart,
                           static_cast<std::uint32_t>(next.LastWriteTime.HighPart)};
  PutNarrowName({next.FileName, next.FileNameLength / sizeof(wchar_t)}, entry.name);
  const auto* bytes = reinterpret_cast<const std::byte*>(&next);
  opened->next = next.NextEntryOffset != 0
                     ? reinterpret_cast<const FILE_ID_BOTH_DIR_INFO*>(bytes + next.NextEntryOffset)
                     : nullptr;
  return true;
}

bool DeleteFileBelowA(FolderHandle handle, const char* path, const FileTime& last_write_time) {
  const auto* opened = static_cast<const OpenedFolder*>(handle);
  if (opened == nullptr) return Fail<bool>(ERROR_INVALID_HANDLE);
  const std::wstring all = Widened(path);
  const std::size_t separator = all.rfind(L'\\');
  File parent;
  if (separator != std::wstring::npos) {
    parent = StepDown(opened->folder.Get(), std::wstring_view(all).substr(0, separator));
    if (!parent) return false;
  }
  const HANDLE folder = parent ? parent.Get() : opened->folder.Get();
  const std::wstring_view name = std::wstring_view(all).substr(separator + 1);  // npos + 1 is the begin
  const File file = OpenEntry(folder, name, DELETE | FILE_READ_ATTRIBUTES, FILE_NON_DIRECTORY_FILE);
  return file && Delete(file.Get(), last_write_time);
}

bool CloseFolder(FolderHandle handle) {
  if (handle == nullptr) return Fail<bool>(ERROR_INVALID_HANDLE);
  const std::unique_ptr<OpenedFolder> opened(static_cast<OpenedFolder*>(handle));
  return true;
}

}  // namespace velmora::os
