#pragma once

#include <string>
#include <vector>

#include "velmora/export.h"

/// Services for files: listing those of one kind, starting a program, and pruning a folder of dump files.
///
/// Paths have their folders separated by backslashes; on Linux slashes may stand in what is given. Links to
/// folders are never entered. Nothing is kept between calls, and a copy is as good as the original. Failure:
/// an empty list or 0; nothing throws. What each call deletes or starts is told in debug lines. Threads: an
/// object is used by one thread at a time; separate objects are independent.
class VELMORA_API CFileProcess {
 public:
  CFileProcess();
  ~CFileProcess();

  /// Full paths of the files below `folder` whose extension is exactly `extension`, letter case included; it
  /// has its leading point (".dmp"). Depth first, in the system's order: each subfolder's files stand where
  /// the subfolder was met. A file without an extension is never listed. Empty when there is no such folder;
  /// folders that cannot be read are left out. (The extension comes first.)
  std::vector<std::wstring> GetTypeFiles(std::wstring extension, std::wstring folder);

  /// Starts the program file `path` without a window and returns without waiting for it: 1 when it runs, else
  /// 0. Its exit code is nobody's. On Linux it leads a terminal group of its own, reads nothing, and what it
  /// writes is discarded. (The spelling is part of the interface.)
  int ExcuteCmdFile(const std::wstring& path);

  /// Deletes the oldest files below the folder `path`, a text of the system's narrow code page, so that the
  /// newest `num` stay. Their last write times over the whole tree count, and among equal times any may stay.
  /// At most 1000 files go in one call, each tried ten times and otherwise left; no more than 1000 subfolders
  /// are looked into. Nothing is deleted for a negative `num`, nor outside the folder, also when somebody
  /// exchanges a folder for a link meanwhile, nor what was written to since it was looked at. A file whose
  /// name the narrow code page cannot hold counts, but stays; on Linux names with a backslash are not seen.
  void DeleteFileByPath(const std::string& path, int num);
};
