/// What a simulated device class is: how it answers queries, makes its table and takes settings.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "platform/ostrine/device_record.h"
#include "simulator/machine.h"

namespace simulator {

/// The query fails.
struct Refused {};

/// Text of the system's narrow code page.
struct Narrow {
  std::string text;
};

/// Text that crosses as UTF-16; written here in UTF-8.
struct Wide {
  std::string text;
};

/// The bytes of a record as they cross.
struct Record {
  std::string bytes;
};

/// The answer to one query.
using Information = std::variant<Refused, Narrow, Wide, Record, std::uint32_t, std::uint64_t>;

/// One query.
struct Question {
  Machine& machine;
  std::optional<std::uint32_t> device_number;  ///< nothing: the class as a whole was asked
  unsigned int information_id;
  unsigned int buffer_size;
};

/// A device class over a machine. A function answers nothing when the machine has no script for the class.
struct DeviceClassScript {
  velmora::hal::DeviceClass device_class;
  std::optional<Information> (*query)(const Question& question);
  /// How many entries the class's table has; null for a class without a table.
  std::size_t (*count_entries)(const Machine& machine) = nullptr;
  /// By which numbers queries then speak of the entries; null where that is their position. A table whose
  /// devices come and go keeps theirs.
  std::vector<std::uint32_t> (*number_entries)(const Machine& machine) = nullptr;
  std::size_t entry_size = sizeof(velmora::hal::DeviceRecord);
  /// Whether a device opens; null for a class whose devices are not opened.
  bool (*opens)(const Machine& machine, std::uint32_t number) = nullptr;
  /// Takes a setting; false refuses it.
  bool (*set)(Machine& machine, unsigned int information_id, std::span<const unsigned char> bytes) = nullptr;
};

/// Narrow or wide text that may be absent, and then is refused.
Information NarrowOrRefused(const Text& text);
Information WideOrRefused(const Text& text);

/// A number that may be absent, and then is refused.
template <class Number>
Information NumberOrRefused(const std::optional<Number>& number) {
  if (!number) return Refused{};
  return *number;
}

/// A table, allocated with malloc: entries of `entry_size` bytes behind the 8-byte head, whose second half
/// holds their count.
void* MakeTable(std::size_t count, std::size_t entry_size);

/// Writes `information` into `buffer` as the contract demands; false when it is refused or does not fit.
bool WriteInformation(const Information& information, std::span<unsigned char> buffer,
                      unsigned int* returned_size);

// One script a device class, each in the file of its device.
extern const DeviceClassScript kAudioScript;
extern const DeviceClassScript kBaseboardScript;
extern const DeviceClassScript kCpuScript;
extern const DeviceClassScript kDiskScript;
extern const DeviceClassScript kFailingDriverScript;
extern const DeviceClassScript kMemoryScript;
extern const DeviceClassScript kVideoScript;

}  // namespace simulator
