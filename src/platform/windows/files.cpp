#include "platform/os/files.h"

#include <windows.h>

#include <shlwapi.h>

#include <algorithm>
#include <iterator>
#include <string>

#include "platform/windows/long_path.h"

namespace velmora::os {
namespace {

constexpr std::uint32_t kTold = kFileAttributeDirectory | kFileAttributeReparsePoint;
static_assert(kTold == (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT));

void Copy(const WIN32_FIND_DATAW& found, FindData& data) {
  data.attributes = found.dwFileAttributes & kTold;
  static_assert(sizeof data.name == sizeof found.cFileName);
  std::copy(std::begin(found.cFileName), std::end(found.cFileName), data.name);
}

}  // namespace

Handle FindFirstFileW(const wchar_t* pattern, FindData& data) {
  WIN32_FIND_DATAW found{};
  const HANDLE find = ::FindFirstFileW(LongPattern(pattern).c_str(), &found);
  if (find != INVALID_HANDLE_VALUE) Copy(found, data);
  return find;
}

bool FindNextFileW(Handle find, FindData& data) {
  WIN32_FIND_DATAW found{};
  if (!::FindNextFileW(find, &found)) return false;
  Copy(found, data);
  return true;
}

bool FindClose(Handle find) { return ::FindClose(find) != FALSE; }

bool PathFileExistsW(const wchar_t* path) {
  if (::PathFileExistsW(path)) return true;
  const std::wstring long_path = LongPath(path);
  return long_path != path && GetFileAttributesW(long_path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

const wchar_t* PathFindExtensionW(const wchar_t* path) { return ::PathFindExtensionW(path); }

Handle OpenFileForReading(const wchar_t* path) {
  const HANDLE file =
      ::CreateFileW(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return nullptr;
  // A name can also be a device's or a pipe's, and reading from those may block for ever.
  if (::GetFileType(file) != FILE_TYPE_DISK) {
    ::CloseHandle(file);
    ::SetLastError(ERROR_ACCESS_DENIED);
    return nullptr;
  }
  return file;
}

std::uint32_t ReadFile(Handle file, void* buffer, std::uint32_t size) {
  DWORD read = 0;
  return ::ReadFile(file, buffer, size, &read, nullptr) ? read : 0;
}

}  // namespace velmora::os
