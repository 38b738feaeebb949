#pragma once

#include "simulator/sections/common.h"

namespace simulator {

/// The processor. File key `cpu`.
struct Cpu {
  Text vendor;
  Text name;
  std::optional<std::uint32_t> address_bits;
  std::optional<std::uint32_t> current_clock;   ///< MHz
  std::optional<std::uint32_t> external_clock;  ///< MHz
  std::optional<std::uint32_t> maximum_clock;   ///< MHz
  std::optional<std::uint32_t> cores;
  std::optional<std::uint32_t> threads;
  std::optional<std::uint32_t> l1_size;  ///< KiB
  std::optional<std::uint32_t> l2_size;  ///< KiB
  std::optional<std::uint32_t> l3_size;  ///< KiB
  Text l1_associativity;
  Text l2_associativity;
  Text l3_associativity;
  std::optional<std::uint32_t> load;  ///< percent
  std::optional<std::uint32_t> kind;  ///< 1 Intel, 2 AMD, 3 ARM

  bool operator==(const Cpu&) const = default;
};

template <class Archive>
void Fields(Archive& archive, Cpu& cpu) {
  archive.Field("vendor", cpu.vendor);
  archive.Field("name", cpu.name);
  archive.Field("address_bits", cpu.address_bits);
  archive.Field("current_clock", cpu.current_clock);
  archive.Field("external_clock", cpu.external_clock);
  archive.Field("maximum_clock", cpu.maximum_clock);
  archive.Field("cores", cpu.cores);
  archive.Field("threads", cpu.threads);
  archive.Field("l1_size", cpu.l1_size);
  archive.Field("l2_size", cpu.l2_size);
  archive.Field("l3_size", cpu.l3_size);
  archive.Field("l1_associativity", cpu.l1_associativity);
  archive.Field("l2_associativity", cpu.l2_associativity);
  archive.Field("l3_associativity", cpu.l3_associativity);
  archive.Field("load", cpu.load);
  archive.Field("kind", cpu.kind);
}

}  // namespace simulator
