/// Machines as JSON files. The keys are described in docs/machine-files.md.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>

#include "simulator/machine.h"

namespace simulator {

/// Why a machine file cannot be used: "FILE:LINE: /path/of/the/field: what is wrong".
class MachineFileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads the machine that `file` holds. Throws MachineFileError for a file that cannot be read, is not JSON,
/// or has a field of an unknown name, of the wrong kind or given twice.
Machine ReadMachine(const std::filesystem::path& file);

/// The same from text; `file` only names it in errors.
Machine ParseMachine(std::string_view json, const std::string& file);

/// The text of a machine file that reads back as `machine`, but for what it does not script although a file
/// that does not name it does. Throws MachineFileError for a machine with text that is not UTF-8, which no
/// file can hold.
std::string WriteMachine(const Machine& machine);

}  // namespace simulator
