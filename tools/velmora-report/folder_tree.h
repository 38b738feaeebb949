/// What the program itself needs of the operating system to tell what pruning a folder would do; each system
/// has its own.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace report {

struct TreeFile {
  std::string path;                   ///< in full
  std::uint64_t last_write_time = 0;  ///< in the system's finest unit
  std::uint64_t bytes = 0;
};

/// The files below `folder` that CFileProcess::DeleteFileByPath looks at: those of the folder and of the
/// first 1000 subfolders that are met, depth first, without what stands behind links to folders.
std::vector<TreeFile> ListTree(const std::string& folder);

/// Whether the entry is still there, be it a link that leads nowhere.
bool IsThere(const std::string& path);

/// The path as the library takes it where it takes narrow text. Throws UsageError for one that the system's
/// narrow code page cannot hold.
std::string ToNarrowPath(const std::string& path);

}  // namespace report
