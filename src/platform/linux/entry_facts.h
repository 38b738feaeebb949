/// What a folder's entry is, as callers see it.
#pragma once

#include <fcntl.h>
#include <sys/stat.h>

#include <cstdint>
#include <optional>

#include "platform/os/files.h"

namespace velmora::os {

/// Kind and times of an entry itself, links not followed; nothing when it has gone meanwhile or may not be
/// looked at.
inline std::optional<struct statx> EntryFacts(int folder, const char* name) noexcept {
  struct statx facts{};
  constexpr int kItself = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT;
  if (statx(folder, name, kItself, STATX_TYPE | STATX_MTIME, &facts) != 0) return std::nullopt;
  return facts;
}

/// Whether callers are shown an entry: folders, files and links. A device, socket or pipe is no file that a
/// caller could mean when it reads or prunes a folder.
inline bool IsShownEntry(const struct statx& facts) noexcept {
  return S_ISDIR(facts.stx_mode) || S_ISREG(facts.stx_mode) || S_ISLNK(facts.stx_mode);
}

/// A link is one, and a folder as well when it leads to one.
inline std::uint32_t EntryAttributes(int folder, const char* name, const struct statx& facts) noexcept {
  if (!S_ISLNK(facts.stx_mode)) return S_ISDIR(facts.stx_mode) ? kFileAttributeDirectory : 0;
  struct stat target{};
  const bool leads_to_folder =
      fstatat(folder, name, &target, AT_NO_AUTOMOUNT) == 0 && S_ISDIR(target.st_mode);
  return kFileAttributeReparsePoint | (leads_to_folder ? kFileAttributeDirectory : 0);
}

}  // namespace velmora::os
