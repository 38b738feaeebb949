// Any bytes as a machine file: refused with file, line and path, or a machine that reads back as it was
// written.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "simulator/machine_file.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

/// Whether it is "FILE:LINE: /path: what is wrong".
bool IsWhole(std::string_view error, std::string_view file) {
  if (!error.starts_with(file)) return false;
  error.remove_prefix(file.size());
  const std::size_t path = error.find(": /");
  return path != error.npos && path > 1 && error.front() == ':' &&
         error.substr(1, path - 1).find_first_not_of("0123456789") == error.npos &&
         error.find(": ", path + 2) != error.npos;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(data, data + size);
  try {
    const simulator::Machine machine = simulator::ParseMachine(text, "input");
    const simulator::Machine again = simulator::ParseMachine(simulator::WriteMachine(machine), "written");
    // A file cannot say once more what is null though it is there when nothing is said.
    Require(again == machine || text.find("null") != text.npos);
    Require(simulator::ParseMachine(simulator::WriteMachine(again), "written") == again);
  } catch (const simulator::MachineFileError& error) {
    Require(IsWhole(error.what(), "input"));
  }
  return 0;
}
