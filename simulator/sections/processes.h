#pragma once

#include "simulator/sections/common.h"

namespace simulator {

/// One process. File key `processes`, a list.
struct Process {
  std::uint32_t process_id = 0;
  std::string caption;
  std::string executable_path;
  Error open_error = 0;
  Error end_error = 0;

  bool operator==(const Process&) const = default;
};

template <class Archive>
void Fields(Archive& archive, Process& process) {
  archive.Field("process_id", process.process_id);
  archive.Field("caption", process.caption);
  archive.Field("executable_path", process.executable_path);
  archive.Field("open_error", process.open_error);
  archive.Field("end_error", process.end_error);
}

}  // namespace simulator
