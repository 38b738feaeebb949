/// Ownership of a folder that is being listed.
#pragma once

#include <dirent.h>

#include <cerrno>
#include <memory>

namespace velmora::os {

struct FolderCloser {
  void operator()(DIR* folder) const noexcept {
    const int kept = errno;
    closedir(folder);
    errno = kept;
  }
};

/// A folder that is being listed, or none; closing it keeps errno.
using Folder = std::unique_ptr<DIR, FolderCloser>;

}  // namespace velmora::os
