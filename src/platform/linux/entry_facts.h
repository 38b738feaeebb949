/// What a folder's entry is, as callers see it.
#pragma once

#include <fcntl.h>
#include <sys/stat.h>

#include <cstdint>
#include <optional>

#include "platform/linux/file_time.h"
#include "platform/os/files.h"

namespace velmora::os {

/// Facts of an entry itself, links not followed; nothing when it has gone meanwhile or may not be looked at.
inline std::optional<struct statx> EntryFacts(int folder, const char* name) noexcept {
  struct statx facts{};
  constexpr int kItself = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT;
  constexpr unsigned int kWanted = STATX_BASIC_STATS | STATX_BTIME;
  if (statx(folder, name, kItself, kWanted, &facts) != 0) return std::nullopt;
  return facts;
}

/// Whether callers are shown an entry: folders, files and links. A device, socket or pipe is no file that a
/// caller could mean when it reads or prunes a folder.
inline bool IsShownEntry(const struct statx& facts) noexcept {
  return S_ISDIR(facts.stx_mode) || S_ISREG(facts.stx_mode) || S_ISLNK(facts.stx_mode);
}

inline FileTime EntryTime(const statx_timestamp& time) noexcept {
  return FileTimeOf(time.tv_sec, time.tv_nsec);
}

/// A link has the attributes of what it points to, and that it is one.
inline std::uint32_t EntryAttributes(int folder, const char* name, const struct statx& facts) noexcept {
  constexpr unsigned int kAnyoneWrites = S_IWUSR | S_IWGRP | S_IWOTH;
  if (S_ISLNK(facts.stx_mode)) {
    struct stat target{};
    const bool leads_to_folder =
        fstatat(folder, name, &target, AT_NO_AUTOMOUNT) == 0 && S_ISDIR(target.st_mode);
    return kFileAttributeReparsePoint | (leads_to_folder ? kFileAttributeDirectory : 0);
  }
  const std::uint32_t kind = S_ISDIR(facts.stx_mode) ? kFileAttributeDirectory : 0;
  return kind | ((facts.stx_mode & kAnyoneWrites) == 0 ? kFileAttributeReadOnly : 0);
}

/// Everything but the name.
template <class Character>
void PutEntryFacts(int folder, const char* name, const struct statx& facts,
                   FindData<Character>& data) noexcept {
  const bool has_creation = (facts.stx_mask & STATX_BTIME) != 0;
  data.attributes = EntryAttributes(folder, name, facts);
  data.creation_time = EntryTime(has_creation ? facts.stx_btime : facts.stx_mtime);
  data.last_access_time = EntryTime(facts.stx_atime);
  data.last_write_time = EntryTime(facts.stx_mtime);
  data.size = facts.stx_size;
}

}  // namespace velmora::os
