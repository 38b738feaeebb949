#pragma once

#include "simulator/sections/common.h"

namespace simulator {

/// What a row has for a property.
using WmiValue = std::variant<std::string, std::uint64_t>;

/// One object of a class: its properties by name.
using WmiRow = std::map<std::string, WmiValue>;

/// The WMI service and its tables. File key `wmi`. Processes and services have rows of their own
/// (Win32_Process, Win32_Service), which come before those that are written here.
struct Wmi {
  bool broken = false;                                 ///< no connection succeeds
  std::map<std::string, std::vector<WmiRow>> classes;  ///< of "ROOT\CIMV2"

  bool operator==(const Wmi&) const = default;
};

template <class Archive>
void Fields(Archive& archive, Wmi& wmi) {
  archive.Field("broken", wmi.broken);
  archive.Field("classes", wmi.classes);
}

/// One answer of the firmware's method in "ROOT\WMI". File key `firmware`, a list; an input that is not in it
/// is not supported.
struct FirmwareAnswer {
  std::uint64_t input = 0;
  Bytes output;
  Error error = 0;

  bool operator==(const FirmwareAnswer&) const = default;
};

template <class Archive>
void Fields(Archive& archive, FirmwareAnswer& answer) {
  archive.Field("input", answer.input);
  archive.Field("output", answer.output);
  archive.Field("error", answer.error);
}

}  // namespace simulator
