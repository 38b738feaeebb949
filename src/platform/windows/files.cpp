#include "platform/os/files.h"

#include <windows.h>

#include <shlwapi.h>

#include <algorithm>
#include <iterator>
#include <string>

#include "platform/windows/long_path.h"

namespace velmora::os {
namespace {

static_assert(kFileAttributeReadOnly == FILE_ATTRIBUTE_READONLY &&
              kFileAttributeDirectory == FILE_ATTRIBUTE_DIRECTORY &&
              kFileAttributeReparsePoint == FILE_ATTRIBUTE_REPARSE_POINT);

FileTime Copy(const FILETIME& time) { return {time.dwLowDateTime, time.dwHighDateTime}; }

template <class SystemData, class Character>
void Copy(const SystemData& found, FindData<Character>& data) {
  data.attributes = found.dwFileAttributes;
  data.creation_time = Copy(found.ftCreationTime);
  data.last_access_time = Copy(found.ftLastAccessTime);
  data.last_write_time = Copy(found.ftLastWriteTime);
  data.size = (std::uint64_t{found.nFileSizeHigh} << 32) | found.nFileSizeLow;
  static_assert(sizeof data.name == sizeof found.cFileName);
  std::copy(std::begin(found.cFileName), std::end(found.cFileName), data.name);
}

}  // namespace

Handle FindFirstFileW(const wchar_t* pattern, FindData<wchar_t>& data) {
  WIN32_FIND_DATAW found{};
  const HANDLE find = ::FindFirstFileW(LongPattern(pattern).c_str(), &found);
  if (find != INVALID_HANDLE_VALUE) Copy(found, data);
  return find;
}

Handle FindFirstFileA(const char* pattern, FindData<char>& data) {
  WIN32_FIND_DATAA found{};
  const HANDLE find = ::FindFirstFileA(pattern, &found);
  if (find != INVALID_HANDLE_VALUE) Copy(found, data);
  return find;
}

bool FindNextFileW(Handle find, FindData<wchar_t>& data) {
  WIN32_FIND_DATAW found{};
  if (!::FindNextFileW(find, &found)) return false;
  Copy(found, data);
  return true;
}

bool FindNextFileA(Handle find, FindData<char>& data) {
  WIN32_FIND_DATAA found{};
  if (!::FindNextFileA(find, &found)) return false;
  Copy(found, data);
  return true;
}

bool FindClose(Handle find) { return ::FindClose(find) != FALSE; }

bool DeleteFileA(const char* path) { return ::DeleteFileA(path) != FALSE; }

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
