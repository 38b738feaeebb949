/// What Velmora requires of the operating system about files and paths. Folders and names are separated by a
/// backslash in what callers pass and get, on every system.
#pragma once

#include <cstdint>

#include "platform/os/handle.h"

namespace velmora::os {

inline constexpr std::uint32_t kFileAttributeDirectory = 0x10;
inline constexpr std::uint32_t kFileAttributeReparsePoint = 0x400;  ///< a link of any kind

/// What callers use of WIN32_FIND_DATAW, whose name has at most 259 characters and a zero. Of the attributes
/// only the two above are told: whether it is a folder, and whether it is a link. An implementation can
/// mostly tell them without a look at the file itself.
struct FindData {
  std::uint32_t attributes;
  wchar_t name[260];
};

/// Begins to list what `pattern` (a folder, then "//*.*") matches, in the system's order, "." and ".." among
/// it, and fills `data` with the first. InvalidHandle with the last error on failure: 3 no such folder, 5 not
/// permitted. Links are reported as links; whether one leads to a folder is told as well.
Handle FindFirstFileW(const wchar_t* pattern, FindData& data);

/// Goes on; false with the last error 18 at the end.
bool FindNextFileW(Handle find, FindData& data);
bool FindClose(Handle find);

/// Whether there is a file or folder `path`.
bool PathFileExistsW(const wchar_t* path);

/// The extension of `path`: from the last point of its last element, point included; its end if there is
/// none.
const wchar_t* PathFindExtensionW(const wchar_t* path);

/// Opens a file to be read as bytes; null with the last error on failure, also for a folder. Handles are
/// closed with CloseHandle.
Handle OpenFileForReading(const wchar_t* path);

/// Reads the next bytes, at most `size`, and returns how many; 0 at the end or on failure.
std::uint32_t ReadFile(Handle file, void* buffer, std::uint32_t size);

}  // namespace velmora::os
