#pragma once

#include "simulator/sections/common.h"

namespace simulator {

/// One file, folder or link. File key `files`, a list in the order in which the system lists a folder. A
/// folder is there by its own entry only.
struct File {
  std::string path;  ///< full, such as "C:\Windows\System32\drivers\etc\hosts"; found in either letter case
  bool folder = false;
  bool read_only = false;
  Text link_target;                 ///< a link to that path, which need not be there
  std::uint64_t creation_time = 0;  ///< units of 100 nanoseconds since 1601-01-01 UTC, as the other two
  std::uint64_t last_access_time = 0;
  std::uint64_t last_write_time = 0;
  std::string contents;
  std::optional<Bytes> raw;    ///< contents that are no text, in place of `contents`
  std::uint64_t repeated = 1;  ///< how often the contents follow one another
  bool program = false;        ///< can be started
  Error list_error = 0;        ///< what listing it gives (a folder)
  Error delete_error = 0;      ///< what deleting it gives
  /// How many deletions fail before one succeeds; absent: all while `delete_error` is not 0.
  std::optional<std::uint32_t> failing_deletions;
  Error open_error = 0;
  Error start_error = 0;

  bool operator==(const File&) const = default;
};

template <class Archive>
void Fields(Archive& archive, File& file) {
  archive.Field("path", file.path);
  archive.Field("folder", file.folder);
  archive.Field("read_only", file.read_only);
  archive.Field("link_target", file.link_target);
  archive.Field("creation_time", file.creation_time);
  archive.Field("last_access_time", file.last_access_time);
  archive.Field("last_write_time", file.last_write_time);
  archive.Field("contents", file.contents);
  archive.Field("raw", file.raw);
  archive.Field("repeated", file.repeated);
  archive.Field("program", file.program);
  archive.Field("list_error", file.list_error);
  archive.Field("delete_error", file.delete_error);
  archive.Field("failing_deletions", file.failing_deletions);
  archive.Field("open_error", file.open_error);
  archive.Field("start_error", file.start_error);
}

}  // namespace simulator
