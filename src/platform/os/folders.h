/// What Velmora requires of the operating system to look through a tree of folders, and to delete in it,
/// without ever leaving it.
///
/// The folder that the caller names is opened first. Everything below it is reached from the opened folder,
/// by steps from one folder into the next and never through a link: what is exchanged for a link meanwhile,
/// or for something else than a folder, cannot be stepped into and leads nowhere. Narrow paths below an
/// opened folder have their elements separated by backslashes; they hold no drive, no "." and no "..".
#pragma once

#include <cstdint>

#include "platform/os/files.h"

namespace velmora::os {

using FolderHandle = void*;

/// FILETIME: units of 100 nanoseconds since 1601-01-01 UTC, in two halves.
struct FileTime {
  std::uint32_t low;
  std::uint32_t high;
};

/// What callers use of WIN32_FIND_DATAA, whose name has at most 259 bytes and a zero. Of the attributes only
/// whether it is a folder and whether it is a link are told.
struct FolderEntry {
  std::uint32_t attributes;
  FileTime last_write_time;
  char name[260];
};

/// Opens the folder that `pattern` (its path, then "//*.*") names, links on the way to it followed. Null with
/// the last error on failure: 3 no such folder, 5 not permitted.
FolderHandle OpenFolderA(const char* pattern);

/// Opens the folder `path` below `folder`; null with the last error on failure, as above, 3 also when a link
/// is on the way.
FolderHandle OpenSubfolderA(FolderHandle folder, const char* path);

/// Fills `entry` with the folder's next entry, in the system's order, "." and ".." among them or not; false
/// with the last error 18 at the end, or another on failure. Links are reported as links, with the attributes
/// of what they point to and their own times. An entry's name that does not survive the way into the narrow
/// code page and back is shown with '?' in it, and so names nothing.
bool ReadFolderA(FolderHandle folder, FolderEntry& entry);

/// Deletes the file `path` below `folder`, unless it was written to after `last_write_time`; false with the
/// last error on failure: 2 no such file, 3 a link is on the way, 5 not permitted, 1006 written to. A link is
/// deleted, not what it points to.
bool DeleteFileBelowA(FolderHandle folder, const char* path, const FileTime& last_write_time);

/// Closes what OpenFolderA or OpenSubfolderA gave; false with the last error 6 for what is not open.
bool CloseFolder(FolderHandle folder);

}  // namespace velmora::os
