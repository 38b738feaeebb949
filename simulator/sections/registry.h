#pragma once

#include "simulator/sections/common.h"

namespace simulator {

/// A registry value as it is stored. One of the three forms is given: `text` is stored as UTF-16 with its
/// zero, `number` as 32 bits, `raw` as it is.
struct RegistryValue {
  std::uint32_t type = 1;  ///< 1 text, 3 bytes, 4 number
  Text text;
  std::optional<std::uint32_t> number;
  std::optional<Bytes> raw;
  Error read_error = 0;

  bool operator==(const RegistryValue&) const = default;
};

template <class Archive>
void Fields(Archive& archive, RegistryValue& value) {
  archive.Field("type", value.type);
  archive.Field("text", value.text);
  archive.Field("number", value.number);
  archive.Field("raw", value.raw);
  archive.Field("read_error", value.read_error);
}

/// One key below the root HKEY_LOCAL_MACHINE.
struct RegistryKeyScript {
  Error open_error = 0;
  std::map<std::string, RegistryValue> values;

  bool operator==(const RegistryKeyScript&) const = default;
};

template <class Archive>
void Fields(Archive& archive, RegistryKeyScript& key) {
  archive.Field("open_error", key.open_error);
  archive.Field("values", key.values);
}

/// Keys by their path. File key `registry`. Paths and names are found in either letter case.
using Registry = std::map<std::string, RegistryKeyScript>;

}  // namespace simulator
