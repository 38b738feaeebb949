/// What Linux tells about the processor, below a root folder.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ostrine/common/processor.h"

namespace ostrine {

class LinuxProcessor final : public ProcessorSystem {
 public:
  /// `root` is the root folder without a slash at its end, empty for the machine's own.
  explicit LinuxProcessor(std::string root) : root_(std::move(root)) {}

  bool IsArm() const override;
  std::optional<std::string> Vendor() const override;
  std::optional<std::string> Name() const override;
  std::optional<std::uint32_t> CurrentClock() const override;
  std::optional<std::uint32_t> MaximumClock() const override;
  std::optional<std::uint32_t> NominalClock() const override;
  std::optional<std::uint32_t> Cores() const override;
  std::optional<std::uint32_t> Threads() const override;
  std::vector<Cache> Caches(unsigned int level, CacheExtent extent) const override;
  std::optional<ProcessorTime> Time() const override;
  std::optional<FirmwareTable> Firmware() const override;

 private:
  /// Numbers of the logical processors in use.
  std::optional<std::vector<std::uint32_t>> Online() const;
  /// The folder of a logical processor.
  std::string Folder(std::uint32_t processor) const;
  /// /proc/cpuinfo, empty where it cannot be read.
  std::vector<std::uint8_t> Info() const;
  /// The highest of the clocks, in MHz, that stand in this file of each logical processor's folder.
  std::optional<std::uint32_t> HighestClock(const char* file) const;

  std::string root_;
};

}  // namespace ostrine
